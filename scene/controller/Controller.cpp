#include "scene/controller/Controller.h"

#include <utility>

#include "scene/controller/Morph.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/Stream.h"

namespace vantorix::scene {

Controller::Controller(std::string id, std::string name)
    : id_(std::move(id)), name_(std::move(name)) {}

Controller::Controller(const Controller& other) = default;

Controller& Controller::operator=(const Controller& other) = default;

Controller::~Controller() = default;

std::string Controller::getID() const { return id_; }

std::string Controller::getName() const { return name_; }

boost::shared_ptr<Skin> Controller::getSkin() const { return skin_; }

void Controller::setSkin(boost::shared_ptr<Skin> skin) { skin_ = std::move(skin); }

boost::shared_ptr<Morph> Controller::getMorph() const { return morph_; }

void Controller::setMorph(boost::shared_ptr<Morph> morph) { morph_ = std::move(morph); }

const std::vector<Stream>& Controller::getStreams() const { return streams_; }

void Controller::setStreams(const std::vector<Stream>& streams) { streams_ = streams; }

boost::shared_ptr<IGeometry> Controller::getSourceGeometry() const {
    if (skin_) return skin_->getSourceGeometry();
    return morph_ ? morph_->getSourceGeometry() : nullptr;
}

}  // namespace vantorix::scene
