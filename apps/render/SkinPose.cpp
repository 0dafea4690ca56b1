#include "apps/render/SkinPose.h"

#include <algorithm>
#include <utility>

#include "scene/controller/Skin.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::render {
namespace {

using RowByRow = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

/// The identity where the stream has no such matrix.
Eigen::Matrix4f inverseBindMatrix(const scene::Stream* stream, std::size_t joint) {
    if (!stream || stream->values.size() / 16 <= joint) return Eigen::Matrix4f::Identity();
    const auto& values = stream->values;
    return Eigen::Map<const RowByRow>(values.data() + joint * 16);
}

}  // namespace

SkinPose::SkinPose(const scene::SceneManager& scene, boost::shared_ptr<const scene::Skin> skin,
                   const Eigen::Matrix4f& world)
    : skin_(std::move(skin)), rest_((world * skin_->getBindShapeMatrix()).topRows<3>()) {
    const auto names = skin_->getJointsInput("JOINT");
    const auto matrices = skin_->getJointsInput("INV_BIND_MATRIX");
    if (!names) return;
    for (std::size_t joint = 0; joint < names->stringValues.size(); ++joint) {
        const auto node = scene.getNodeByID(names->stringValues[joint]);
        const Eigen::Matrix4f place =
            node ? node->getCombinedTransformations() : Eigen::Matrix4f::Identity();
        const Eigen::Matrix4f matrix =
            place * inverseBindMatrix(matrices.get(), joint) * skin_->getBindShapeMatrix();
        joints_.emplace_back(matrix.topRows<3>());
        found_.push_back(node && matrix.allFinite());
    }
}

SkinPose::Affine SkinPose::matrixOf(unsigned int vertex) const {
    vertexJoints_.clear();
    vertexWeights_.clear();
    skin_->getVertexJointsAndWeights(vertex, vertexJoints_, vertexWeights_);
    Affine sum = Affine::Zero();
    float total = 0.0f;
    for (std::size_t i = 0; i < vertexJoints_.size(); ++i) {
        const auto joint = static_cast<std::size_t>(vertexJoints_[i]);  // Negative: out of range.
        if (joint >= joints_.size() || !found_[joint]) continue;
        sum += joints_[joint] * vertexWeights_[i];
        total += vertexWeights_[i];
    }
    return total > 0.0f && sum.allFinite() ? Affine(sum / total) : rest_;
}

}  // namespace vantorix::apps::render
