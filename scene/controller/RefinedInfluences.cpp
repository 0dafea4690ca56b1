#include "scene/controller/RefinedInfluences.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "scene/controller/Skin.h"
#include "scene/geometry/Stream.h"

namespace vantorix::scene {

RefinedInfluences::RefinedInfluences(const Skin& skin)
    : skin_(skin),
      weightStream_(boost::make_shared<Stream>("VTX_SUBDIVIDE_WEIGHT_STREAM", 1, false)) {}

void RefinedInfluences::addCorner(unsigned int vertex) {
    skin_.getVertexJointsAndWeights(vertex, joints_, weights_);
    append();
}

void RefinedInfluences::addMidpoint(unsigned int vertexA, unsigned int vertexB) {
    skin_.calculateNewJointsAndWeights(vertexA, vertexB, joints_, weights_);
    append();
}

void RefinedInfluences::append() {
    vCount_.push_back(static_cast<unsigned int>(joints_.size()));
    for (std::size_t i = 0; i < joints_.size(); ++i) {
        v_.push_back(joints_[i]);
        v_.push_back(weightStream_->insertValue(1, &weights_[i]));
    }
    joints_.clear();
    weights_.clear();
}

void RefinedInfluences::storeIn(Skin& skin) {
    skin.setVCount(std::move(vCount_));  // First: it alone needs memory.
    skin.replaceVertexWeightsStream("WEIGHT", weightStream_);
    skin.setV(std::move(v_));
}

}  // namespace vantorix::scene
