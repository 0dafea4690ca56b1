#include "scene/controller/Morph.h"

#include <utility>

#include "scene/geometry/Stream.h"

namespace vantorix::scene {

Morph::Morph(boost::shared_ptr<IGeometry> sourceGeometry)
    : sourceGeometry_(std::move(sourceGeometry)) {}

Morph::Morph(const Morph& other) = default;

Morph& Morph::operator=(const Morph& other) = default;

Morph::~Morph() = default;

boost::shared_ptr<IGeometry> Morph::getSourceGeometry() const { return sourceGeometry_; }

const std::vector<Stream>& Morph::getStreams() const { return streams_; }

void Morph::setStreams(const std::vector<Stream>& streams) { streams_ = streams; }

}  // namespace vantorix::scene
