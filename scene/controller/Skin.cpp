#include "scene/controller/Skin.h"

#include <algorithm>
#include <cmath>
#include <map>
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

/// Weights by joint. Of a joint that a vertex names twice, the first entry counts.
std::map<int, float> influencesByJoint(const Skin& skin, unsigned int vertex) {
    std::vector<int> joints;
    std::vector<float> weights;
    skin.getVertexJointsAndWeights(vertex, joints, weights);
    std::map<int, float> byJoint;
    for (std::size_t i = 0; i < joints.size(); ++i) byJoint.emplace(joints[i], weights[i]);
    return byJoint;
}

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
    vCount_ = std::move(vCount);
    firstInfluence_.resize(vCount_.size());
    std::size_t sum = 0;
    for (std::size_t vertex = 0; vertex < vCount_.size(); ++vertex) {
        firstInfluence_[vertex] = sum;
        sum += vCount_[vertex];
    }
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
    const std::size_t first = std::min(firstInfluence_[vertex], v_.size() / 2);
    const std::size_t end = std::min<std::size_t>(first + vCount_[vertex], v_.size() / 2);
    const Stream* const stream = vertexWeights_[weightInput].stream.get();
    const std::size_t floats = stream ? stream->values.size() : 0;
    for (std::size_t i = first; i < end; ++i) {
        // A negative index becomes one past every stream.
        const auto weight = static_cast<std::size_t>(v_[2 * i + 1]);
        joints.push_back(v_[2 * i]);
        weights.push_back(weight < floats ? stream->values[weight] : 0.0f);
    }
}

void Skin::calculateNewJointsAndWeights(unsigned int vertexA, unsigned int vertexB,
                                        std::vector<int>& joints,
                                        std::vector<float>& weights) const {
    auto sums = influencesByJoint(*this, vertexA);
    for (const auto& [joint, weight] : influencesByJoint(*this, vertexB)) {
        const auto [known, added] = sums.emplace(joint, weight);
        if (!added) known->second += weight;
    }
    if (sums.empty()) return;
    for (const auto& [joint, sum] : sums) {
        joints.push_back(joint);
        weights.push_back(static_cast<float>(sum * 0.5));
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
