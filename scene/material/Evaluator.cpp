#include "scene/material/Evaluator.h"

#include <utility>

namespace vantorix::scene {

Evaluator::Evaluator(std::string name) : name_(std::move(name)) {}

const std::string& Evaluator::getName() const { return name_; }

void Evaluator::setName(const std::string& name) { name_ = name; }

void Evaluator::addRender(boost::shared_ptr<Render> render) {
    if (render) renders_.push_back(std::move(render));
}

unsigned int Evaluator::getRendersCount() const {
    return static_cast<unsigned int>(renders_.size());
}

boost::shared_ptr<Render> Evaluator::getRenderAt(unsigned int index) const {
    return index < renders_.size() ? renders_[index] : nullptr;
}

}  // namespace vantorix::scene
