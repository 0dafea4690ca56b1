#include "scene/graph/JointPlacement.h"

#include <limits>
#include <string>

#include <Eigen/Geometry>
#include <Eigen/QR>
#include <boost/unordered/unordered_map.hpp>

#include "scene/controller/Skin.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"

namespace vantorix::scene {
namespace {

using RowByRow = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

constexpr std::size_t floatsPerMatrix = 16;

/// Solves by way of a complete orthogonal decomposition (Golub and Van Loan, "Matrix Computations",
/// 5.4.2), which gives a singular matrix the least solution that comes nearest. What the rounding
/// of the matrix could have made counts as zero.
Eigen::Vector3d solveNearest(const Eigen::Matrix3d& matrix, const Eigen::Vector3d& wanted) {
    Eigen::CompleteOrthogonalDecomposition<Eigen::Matrix3d> split;
    split.setThreshold(4.0 * static_cast<double>(std::numeric_limits<float>::epsilon()));
    return split.compute(matrix).solve(wanted);
}

/// The translation for which the world matrix's last column begins with @p position. With
/// local = translation * rotation * scale, that column is parent * (offset + weight * translation,
/// weight), where (offset, weight) is the last column of the rotation.
Eigen::Vector3f translationTo(const Eigen::Vector3f& position, const Eigen::Matrix4f& parent,
                              const Eigen::Matrix4f& rotation) {
    const Eigen::Matrix4d above = parent.cast<double>();
    const Eigen::Vector4d column = rotation.col(3).cast<double>();
    const double weight = column.w();
    const Eigen::Vector3d wanted = position.cast<double>() - above.topRightCorner<3, 1>() * weight;
    const auto local = solveNearest(above.topLeftCorner<3, 3>(), wanted);
    return ((local - column.head<3>()) / weight).cast<float>();
}

template <class Matrix>
Matrix pseudoInverse(const Matrix& matrix) {
    return matrix.completeOrthogonalDecomposition().pseudoInverse();
}

/// The inverse. A singular affine matrix gets the pseudo-inverse of its 3x3 part and takes its own
/// origin back to (0, 0, 0), so that it stays affine.
Eigen::Matrix4f inverseBindMatrix(const Eigen::Matrix4f& world) {
    const Eigen::Matrix4d matrix = world.cast<double>();
    if (matrix.row(3) != Eigen::RowVector4d::Unit(3)) return pseudoInverse(matrix).cast<float>();
    Eigen::Matrix4d inverse = Eigen::Matrix4d::Identity();
    const Eigen::Matrix3d linear = matrix.topLeftCorner<3, 3>();
    inverse.topLeftCorner<3, 3>() = pseudoInverse(linear);
    inverse.topRightCorner<3, 1>() =
        -(inverse.topLeftCorner<3, 3>() * matrix.topRightCorner<3, 1>());
    return inverse.cast<float>();
}

}  // namespace

void placeJoint(Node& joint, const Eigen::Vector3f& position) {
    auto translation = joint.getTranslation();
    const Eigen::Vector3f present = joint.getCombinedTransformations().topRightCorner<3, 1>();
    if (present != position) {
        const auto parent = joint.getParent();
        const Eigen::Matrix4f above =
            parent ? parent->getCombinedTransformations() : Eigen::Matrix4f::Identity();
        const auto found = translationTo(position, above, joint.getRotation());
        if (above.allFinite() && found.allFinite()) translation = Eigen::Translation3f(found);
    }
    joint.setTransformations(translation, joint.getRotation());
}

void bindSkin(Skin& skin, const std::vector<boost::shared_ptr<Node>>& joints) {
    skin.setBindShapeMatrix(Eigen::Matrix4f::Identity());
    const auto names = skin.getJointsInput("JOINT");
    const auto matrices = skin.getJointsInput("INV_BIND_MATRIX");
    if (!names || !matrices) return;
    boost::unordered_map<std::string, const Node*> firstByID;
    for (const auto& joint : joints) firstByID.emplace(joint->getID(), joint.get());
    std::vector<float> values = matrices->values;
    for (std::size_t i = 0; i < names->stringValues.size(); ++i) {
        if (values.size() / floatsPerMatrix <= i) break;
        const auto joint = firstByID.find(names->stringValues[i]);
        if (joint == firstByID.end()) continue;
        const auto inverse = inverseBindMatrix(joint->second->getCombinedTransformations());
        if (!inverse.allFinite()) continue;
        Eigen::Map<RowByRow>(values.data() + i * floatsPerMatrix) = inverse;
    }
    matrices->values = values;
}

}  // namespace vantorix::scene
