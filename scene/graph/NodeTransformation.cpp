#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include <Eigen/SVD>
#include <boost/container/small_vector.hpp>
#include <boost/unordered/unordered_set.hpp>

#include "core_api/event/EventData.h"
#include "core_api/utils/Matrix.h"

#include "scene/graph/ChildRow.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeExtras.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneSending.h"
#include "scene/transform/AxisAngle.h"
#include "scene/transform/EditCounter.h"
#include "scene/transform/Lanes.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::scene {
namespace {

bool isFinite(const Eigen::Vector4f& vector) {
    return isZero(~(loadLanes(vector.data()) * allLanes(0) == allLanes(0)));
}

/// Whether a product with a finite translation adds this to its last column and, to the last bit,
/// nothing to the others: these hold no -0, and the last row is that of the identity.
bool turnsOnly(const Eigen::Matrix4f& rotation) {
    constexpr std::int32_t negativeZero = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t one = 0x3F800000;
    LaneBits others = bitsOf(loadLanes(rotation.data() + 12)) ^ LaneBits { 0, 0, 0, one };
    for (std::size_t i = 0; i < 12; i += 4) {
        const LaneBits column = bitsOf(loadLanes(rotation.data() + i));
        others |= column & LaneBits{0, 0, 0, -1};
        others |= (column == LaneBits{negativeZero, negativeZero, negativeZero, 1});
    }
    return isZero(others);
}

}  // namespace

void Node::move(const Eigen::Vector3f& offset) {
    // The product first: scaling the turned offset instead would round differently.
    const Eigen::Matrix4f product = scaling_.homogeneous().asDiagonal() * rotation_;
    translation_.head<3>() +=
        product.topLeftCorner<3, 3>() * offset + product.topRightCorner<3, 1>();
    triggerTranslationUpdate();
}

void Node::move(float x, float y, float z) { move(Eigen::Vector3f(x, y, z)); }

void Node::addTranslation(const Eigen::Vector3f& offset) {
    translation_.head<3>() += offset;
    triggerTranslationUpdate();
}

void Node::addTranslation(float x, float y, float z) { addTranslation(Eigen::Vector3f(x, y, z)); }

void Node::setTranslation(const Eigen::Translation<float, 3>& translation) {
    translation_.head<3>() = translation.vector();
    triggerTranslationUpdate();
}

void Node::rotate(const Eigen::Matrix3f& rotation) {
    turn(rotation);
    triggerTransformationUpdate();
}

void Node::addRotation(const Eigen::Matrix3f& rotation) { rotate(rotation); }

void Node::setRotation(const Eigen::Matrix4f& rotation) {
    rotation_ = rotation;
    triggerTransformationUpdate();
}

void Node::scale(const Eigen::Vector3f& factors) { setScale(factors); }

void Node::setScale(const Eigen::Vector3f& factors) {
    scaling_ = factors;
    triggerTransformationUpdate();
}

void Node::addTransformation(const Eigen::Matrix4f& matrix) {
    // The argument may be this node's own local matrix: read it before anything changes.
    const Eigen::Vector3f offset = matrix.topRightCorner<3, 1>();
    rotation_ = (rotation_ * matrix).eval();
    translation_.head<3>() += offset;
    triggerTransformationUpdate();
}

void Node::addTransformation(boost::shared_ptr<ITransformation> element) {
    if (!element) return;
    applyElement(*element);
    extras().elements.push_back(std::move(element));
    elementEdits.note();
    triggerTransformationUpdate();
}

void Node::setTransformations(const Eigen::Translation<float, 3>& translation,
                              const Eigen::Matrix4f& rotation) {
    translation_.head<3>() = translation.vector();
    rotation_ = rotation;
    triggerTransformationUpdate();
}

void Node::setTransformations(const Eigen::Matrix4f& matrix) {
    takePlacement(matrix);
    triggerTransformationUpdate();
}

void Node::poseUnheard(const Eigen::Matrix4f& matrix, const Eigen::Vector4f& factors) {
    takePlacement(matrix);
    scaling_ = factors.head<3>();
    updateLocalMatrix();
}

void Node::copyPlacement(const Node& other) {
    if (isMoveHeard()) {
        setTranslation(other.getTranslation());
        setRotation(other.getRotation());
        setScale(other.getScale());
        return;
    }
    translation_ = other.translation_;
    rotation_ = other.rotation_;
    scaling_ = other.scaling_;
    updateLocalMatrix();
}

void Node::takePlacement(const Eigen::Matrix4f& matrix) {
    // Written whole: what reads them next waits for parts to come together.
    storeLanes(translation_.data(), withoutLast(loadLanes(matrix.col(3).data())));
    for (Eigen::Index column = 0; column < 3; ++column) {
        const Lanes axis = loadLanes(matrix.col(column).data());
        const Lanes squares = axis * axis;
        // No guard: defined so.
        Lanes unit = axis / allLanes(std::sqrt(squares[0] + (squares[1] + squares[2])));
        unit[3] = rotation_(3, column);
        storeLanes(rotation_.col(column).data(), unit);
    }
}

std::vector<boost::shared_ptr<ITransformation>> Node::getOriginalTransformations() const {
    return readExtras().elements;
}

void Node::setOriginalTransformations(std::vector<boost::shared_ptr<ITransformation>> elements) {
    extras().elements = std::move(elements);
    elementEdits.note();
}

Eigen::Translation<float, 3> Node::getTranslation() const {
    return Eigen::Translation<float, 3>(translation_.head<3>());
}

void Node::turn(const Eigen::Matrix3f& rotation) {
    rotation_.topLeftCorner<3, 3>() = (rotation_.topLeftCorner<3, 3>() * rotation).eval();
}

// The polar decomposition by way of the singular values: A = U S V' = (U V') (V S V'). A mirrored
// matrix turns by the negated orthogonal factor and scales by negated factors, the same product.
void Node::applyMatrix(const Eigen::Matrix4f& matrix) {
    translation_.head<3>() += matrix.topRightCorner<3, 1>();
    const Eigen::Matrix3f block = matrix.topLeftCorner<3, 3>();
    if (!block.allFinite()) return;
    const Eigen::JacobiSVD<Eigen::Matrix3f> split(block, Eigen::ComputeFullU | Eigen::ComputeFullV);
    const Eigen::Matrix3f rotation = split.matrixU() * split.matrixV().transpose();
    const Eigen::Matrix3f scaling =
        split.matrixV() * split.singularValues().asDiagonal() * split.matrixV().transpose();
    const float handedness = rotation.determinant() < 0.0f ? -1.0f : 1.0f;
    turn(rotation * handedness);
    scaling_ = scaling.diagonal() * handedness;
}

void Node::applyElement(ITransformation& element) {
    if (auto* const matrix = dynamic_cast<TransformationMatrix*>(&element)) {
        applyMatrix(Eigen::Map<const Eigen::Matrix4f>(matrix->getMatrix().getMatrix()));
    } else if (auto* const rotate = dynamic_cast<TransformationRotate*>(&element)) {
        turn(rotationAbout(toEigen(rotate->getRotationAxis()), rotate->getAngle()));
    } else if (auto* const scaling = dynamic_cast<TransformationScale*>(&element)) {
        if (scaling->getScale().size() >= 3) scaling_ = toEigen(scaling->getScale());
    } else if (auto* const translate = dynamic_cast<TransformationTranslate*>(&element)) {
        translation_.head<3>() += toEigen(translate->getTranslation());
    }
}

void Node::updateLocalMatrix() {
    const Lanes translation = loadLanes(translation_.data());
    const auto moved = [&](Eigen::Index column) {
        const Lanes axis = loadLanes(rotation_.col(column).data());
        return axis + translation * allLanes(axis[3]);
    };
    for (Eigen::Index column = 0; column < 3; ++column) {
        storeLanes(localMatrix_.col(column).data(), moved(column) * allLanes(scaling_[column]));
    }
    storeLanes(localMatrix_.col(3).data(), moved(3));
    isLocalShifted_ = isFinite(translation_) && turnsOnly(rotation_);
    forgetWorldMatrix();
}

// Leaves alone what could only become what it is, and with it the memory of most of the node.
void Node::updateLocalTranslation() {
    if (!isLocalShifted_ || !isFinite(translation_)) return updateLocalMatrix();
    localMatrix_.col(3) = Eigen::Vector4f::UnitW() + translation_;
    forgetWorldMatrix();
}

void Node::triggerTransformationUpdate() {
    updateLocalMatrix();
    announceMove();
}

void Node::triggerTranslationUpdate() {
    updateLocalTranslation();
    announceMove();
}

void Node::announceMove() {
    if (isMoveHeard()) sendMove();
}

void Node::sendMove() {
    const auto scene = scene_;  // A listener may release this node.
    if (isHeard(scene, events::nodeTransformationUpdate)) {
        dispatch(scene, events::nodeTransformationUpdate,
                 core::event::EventData::withMatrix(id_, localMatrix_.data()));
    }
    sendEmpty(scene, events::sceneUpdate);
}

Eigen::Matrix4f Node::getCombinedTransformations() const {
    if (isWorldCurrent() || cacheWorldMatrix()) return worldMatrix_;
    return combineFromTop(&Node::localMatrix_);
}

Eigen::Matrix4f Node::getCombinedRotations() const { return combineFromTop(&Node::rotation_); }

// In the order of a recursion over the parents, to the last bit: ((top * a) * b) * this.
Eigen::Matrix4f Node::combineFromTop(Eigen::Matrix4f Node::*own) const {
    std::vector<const Node*> chain;
    boost::unordered_set<const Node*> met;
    for (const Node* node = this; node && met.insert(node).second; node = node->liveParent()) {
        chain.push_back(node);
    }
    Eigen::Matrix4f combined = chain.back()->*own;
    for (std::size_t i = chain.size() - 1; i-- > 0;) {
        combined = (combined * (chain[i]->*own)).eval();
    }
    return combined;
}

// Leaves the matrix uncached where parents form a circle, since there every start has its own
// product, and below a removed node, which must not be listed by the parent that it still names.
bool Node::cacheWorldMatrix() const {
    const Node* const parent = liveParent();
    if (parent && attachments_ == 0) return false;
    if (parent && !parent->isWorldCurrent()) return cacheWorldMatricesDown(parent);
    adoptWorldMatrix(parent);
    return true;
}

// By itself, since a walk takes more room than the common case is worth.
bool Node::cacheWorldMatricesDown(const Node* parent) const {
    boost::container::small_vector<const Node*, 32> path{this};
    const Node* landmark = this;  // Moved ahead at powers of two: a circle comes back to it.
    for (const Node* node = parent; node && !node->isWorldCurrent(); node = node->liveParent()) {
        if (node == landmark || (node->attachments_ == 0 && node->liveParent())) return false;
        if ((path.size() & (path.size() - 1)) == 0) landmark = node;
        path.push_back(node);
    }
    while (!path.empty()) {
        path.back()->adoptWorldMatrix(path.back()->liveParent());
        path.pop_back();
    }
    return true;
}

void Node::adoptWorldMatrix(const Node* parent) const {
    if (!parent) {
        worldMatrix_ = localMatrix_;
        parentEpoch_ = noParent;
        return;
    }
    worldMatrix_.noalias() = parent->worldMatrix_ * localMatrix_;
    if (!parent->hasDependents_) parent->becomeBranch();
    parentEpoch_ = parent->epoch_;
}

// Whose world matrix is current: it is the parent that makes it stale.
void Node::becomeBranch() const {
    const Node* const parent = liveParent();
    if (parent && branchPlace_ == unlisted) listBelow(*parent);
    hasDependents_ = true;
}

void Node::listBelow(const Node& parent) const {
    auto* const self = const_cast<Node*>(this);
    if (!parent.soleBranch_ && !parent.hasBranchList_) {
        parent.soleBranch_ = self;
        branchPlace_ = alone;
        return;
    }
    auto& branches = parent.children_->branches().nodes;
    if (!parent.hasBranchList_) {
        branches.reserve(2);
        branches.push_back(parent.soleBranch_);
        parent.soleBranch_->branchPlace_ = 0;
        parent.soleBranch_ = nullptr;
        parent.hasBranchList_ = true;
    }
    branches.push_back(self);
    branchPlace_ = static_cast<std::uint32_t>(branches.size() - 1);
}

void Node::unlinkFromParent() const {
    if (branchPlace_ == unlisted) return;
    if (branchPlace_ == alone) {
        parentPointer_->soleBranch_ = nullptr;
    } else {
        auto& branches = parentPointer_->children_->branches().nodes;
        branches[branchPlace_] = branches.back();
        branches[branchPlace_]->branchPlace_ = branchPlace_;
        branches.pop_back();
    }
    branchPlace_ = unlisted;
}

void Node::forgetWorldMatrix() const {
    parentEpoch_ = notCached;
    if (!hasDependents_) return;
    if (soleBranch_ || hasBranchList_) return forgetDependents();
    hasDependents_ = false;
    ++epoch_;
}

// Empties every list below, in a loop: whoever is asked again lists itself again. First come, first
// served, so that what a list refers to can be asked for some time before its turn.
void Node::forgetDependents() const {
    Branches* last = forgetChain(*this);
    for (Branches* list = last; list; list = std::exchange(list->next, nullptr)) {
        if (list->next) __builtin_prefetch(list->next->nodes.data());
        for (const Node* const node : list->nodes) {
            node->branchPlace_ = unlisted;
            if (auto* const below = forgetChain(*node)) last = last->next = below;
        }
        list->nodes.clear();
    }
}

// Goes down as long as nodes have one branch each; returns the list where that ends, if any.
Branches* Node::forgetChain(const Node& top) {
    constexpr std::ptrdiff_t nodesAhead = 16;
    const Node* node = &top;
    for (;;) {
        node->hasDependents_ = false;
        ++node->epoch_;
        const Node* const below = std::exchange(node->soleBranch_, nullptr);
        if (!below) break;
        // Nodes that were made one after the other mostly lie one after the other.
        const auto* const place = reinterpret_cast<const char*>(&below->epoch_);
        const auto step = place - reinterpret_cast<const char*>(&node->epoch_);
        __builtin_prefetch(place + nodesAhead * step);
        below->branchPlace_ = unlisted;
        node = below;
    }
    if (!std::exchange(node->hasBranchList_, false)) return nullptr;
    return &node->children_->branches();
}

}  // namespace vantorix::scene
