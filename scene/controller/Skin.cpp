#include "scene/controller/Skin.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

#include "scene/geometry/Stream.h"

namespace vantorix::scene {

namespace {

constexpr std::size_t weightInput = 1;  // Of the vertex weights inputs.

/// Null for an unknown semantic; @p inputs may be const.
template <class Inputs>
auto findInput(Inputs& inputs, const std::string& semantic) -> decltype(&*inputs.begin()) {
    for (auto& input : inputs) {
        if (input.semantic == semantic) return &input;
    }
    return nullptr;
}

/// The influences of two vertices, one after the other.
struct TwoVertices {
    TwoVertices(const Skin& skin, unsigned int vertexA, unsigned int vertexB) {
        skin.getVertexJointsAndWeights(vertexA, joints, weights);
        countOfA = joints.size();
        skin.getVertexJointsAndWeights(vertexB, joints, weights);
    }

    /// Positions in ascending order of joint; those of one joint stay in order.
    std::vector<std::size_t> byJoint() const {
        std::vector<std::size_t> order(joints.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::sort(order.begin(), order.end(), [this](std::size_t left, std::size_t right) {
            return std::make_pair(joints[left], left) < std::make_pair(joints[right], right);
        });
        return order;
    }

    std::vector<int> joints;
    std::vector<float> weights;
    std::size_t countOfA;
};

void normalise(std::vector<float>& weights) {
    const float sum = std::accumulate(weights.begin(), weights.end(), 0.0f);
    if (sum == 0.0f || !std::isfinite(sum)) return;
    for (auto& weight : weights) weight /= sum;
}

}  // namespace

Skin::Skin(boost::shared_ptr<IGeometry> sourceGeometry)
    : sourceGeometry_(std::move(sourceGeometry)) {}

Skin::~Skin() = default;

boost::shared_ptr<IGeometry> Skin::getSourceGeometry() const { return sourceGeometry_; }

const std::vector<boost::shared_ptr<Stream>>& Skin::getStreams() const { return streams_; }

void Skin::setStreams(std::vector<boost::shared_ptr<Stream>> streams) {
    streams_ = std::move(streams);
}

const Eigen::Matrix4f& Skin::getBindShapeMatrix() const { return bindShapeMatrix_; }

void Skin::setBindShapeMatrix(const Eigen::Matrix4f& matrix) { bindShapeMatrix_ = matrix; }

const std::vector<int>& Skin::getV() const { return v_; }

void Skin::setV(std::vector<int> v) { v_ = std::move(v); }

const std::vector<unsigned int>& Skin::getVCount() const { return vCount_; }

void Skin::setVCount(std::vector<unsigned int> vCount) {
    std::vector<std::size_t> firstInfluence(vCount.size() + 1);
    std::inclusive_scan(vCount.begin(), vCount.end(), firstInfluence.begin() + 1, std::plus<>(),
                        std::size_t{0});
    // Both or none: where the memory ends, the old lists still fit each other.
    firstInfluence_ = std::move(firstInfluence);
    vCount_ = std::move(vCount);
}

void Skin::setJointsInput(const std::string& semantic, const std::string& streamId) {
    setInput(joints_, semantic, streamId);
}

boost::shared_ptr<Stream> Skin::getJointsInput(const std::string& semantic) const {
    const auto* const input = findInput(joints_, semantic);
    return input ? input->stream : nullptr;
}

void Skin::setVertexWeightsInput(const std::string& semantic, const std::string& streamId) {
    setInput(vertexWeights_, semantic, streamId);
}

boost::shared_ptr<Stream> Skin::getVertexWeightsInput(const std::string& semantic) const {
    const auto* const input = findInput(vertexWeights_, semantic);
    return input ? input->stream : nullptr;
}

void Skin::replaceVertexWeightsStream(const std::string& semantic,
                                      boost::shared_ptr<Stream> stream) {
    auto* const input = findInput(vertexWeights_, semantic);
    if (!stream || !input || !input->stream) return;
    const auto found = std::find(streams_.begin(), streams_.end(), input->stream);
    if (found == streams_.end()) return;
    *found = stream;
    input->stream = std::move(stream);
}

void Skin::getVertexJointsAndWeights(unsigned int vertex, std::vector<int>& joints,
                                     std::vector<float>& weights) const {
    if (vertex >= vCount_.size()) return;
    const std::size_t end = std::min(firstInfluence_[vertex + std::size_t{1}], v_.size() / 2);
    const Stream* const stream = vertexWeights_[weightInput].stream.get();
    const std::size_t floats = stream ? stream->values.size() : 0;
    for (std::size_t i = firstInfluence_[vertex]; i < end; ++i) {
        // A negative index becomes one past every stream.
        const auto weight = static_cast<std::size_t>(v_[2 * i + 1]);
        joints.push_back(v_[2 * i]);
        weights.push_back(weight < floats ? stream->values[weight] : 0.0f);
    }
}

void Skin::calculateNewJointsAndWeights(unsigned int vertexA, unsigned int vertexB,
                                        std::vector<int>& joints,
                                        std::vector<float>& weights) const {
    const TwoVertices both(*this, vertexA, vertexB);
    if (both.joints.empty()) return;
    const auto order = both.byJoint();
    for (auto first = order.begin(); first != order.end();) {
        const int joint = both.joints[*first];
        const auto end = std::find_if(first, order.end(),
                                      [&](std::size_t i) { return both.joints[i] != joint; });
        // Of a joint that a vertex names twice, the first entry counts.
        float sum = both.weights[*first];
        const auto firstOfB = std::lower_bound(first, end, both.countOfA);
        if (firstOfB != first && firstOfB != end) sum += both.weights[*firstOfB];
        joints.push_back(joint);
        weights.push_back(static_cast<float>(sum * 0.5));
        first = end;
    }
    normalise(weights);
}

boost::shared_ptr<Stream> Skin::getStreamById(const std::string& id) const {
    const auto found = std::find_if(streams_.begin(), streams_.end(), [&](const auto& stream) {
        return stream && stream->name == id;
    });
    return found == streams_.end() ? nullptr : *found;
}

void Skin::setInput(Inputs& inputs, const std::string& semantic, const std::string& streamId) {
    auto* const input = findInput(inputs, semantic);
    const auto stream = getStreamById(streamId);
    if (input && stream) input->stream = stream;
}

}  // namespace vantorix::scene
