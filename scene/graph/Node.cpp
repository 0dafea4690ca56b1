#include "scene/graph/Node.h"

#include <atomic>
#include <cstddef>
#include <stdexcept>
#include <utility>

#include "core_api/event/EventData.h"

#include "core/utils/Fetch.h"
#include "scene/graph/ChildRow.h"
#include "scene/graph/NodeExtras.h"
#include "scene/graph/NodeIndex.h"
#include "scene/graph/NodeWalk.h"
#include "scene/graph/NumberedID.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneIdentifiers.h"
#include "scene/graph/SceneLife.h"
#include "scene/graph/SceneManager.h"
#include "scene/graph/SceneSending.h"

namespace vantorix::scene {
namespace {

unsigned int nextNumber() {
    static std::atomic<unsigned int> next{0};
    return next++;
}

/// Asks for the memory behind a node and the next one: an allocator mostly hands it out after that,
/// with room for reference counts in between.
void fetchBehind(const Node& node) {
    constexpr std::size_t roomBetween = 64;
    const auto* const behind = reinterpret_cast<const char*>(&node) + 2 * sizeof(Node);
    core::utils::fetchLines<true>(behind, behind + sizeof(Node) + roomBetween);
}

}  // namespace

Node::Node(boost::shared_ptr<SceneManager> sceneManager)
    : id_(generateID()), scene_(sceneManager ? sceneManager->life_->handle() : SceneHandle()) {
    fetchBehind(*this);
}

Node::Node(const Key&, const SceneHandle& scene, std::string id)
    : id_(std::move(id)), scene_(scene) {
    fetchBehind(*this);
    nextNumber();
    if (auto* const live = liveScene()) live->identifiers_->record(id_);
}

Node::~Node() {
    forgetWorldMatrix();
    unlinkFromParent();
    releaseChildren();
}

std::string Node::generateID() { return numberedID("Node", nextNumber()); }

void Node::setID(std::string id) {
    auto* const scene = liveScene();
    const bool listed = scene && scene->nodeIndex_->lists(*this);
    if (listed) scene->nodeIndex_->beforeRename(*this, true);
    id_ = std::move(id);
    if (listed) scene->nodeIndex_->afterRename(*this, true);
    if (!scene) return;
    if (attachments_ > 0) {
        scene->nodeIndex_->countRename();
    } else {
        scene->nodeIndex_->fetchEntry(id_);  // It is mostly attached next.
    }
    scene->identifiers_->record(id_);
}

void Node::setName(std::string name) {
    auto* const scene = liveScene();
    const bool listed = scene && scene->nodeIndex_->lists(*this);
    if (listed) scene->nodeIndex_->beforeRename(*this, false);
    name_ = std::move(name);
    if (listed) scene->nodeIndex_->afterRename(*this, false);
}

void Node::addNode(boost::shared_ptr<Node> child) {
    auto* const scene = liveScene();
    if (!child || !scene || wouldCloseCircle(*child)) return;
    if (!children_) children_ = std::make_unique<ChildRow>();
    Node& added = *child;
    const bool isAnnounced = isAdditionHeard(added);
    // Whoever hears of the move may remove the child again, which is then held here until its
    // addition has been told, too.
    const bool hasMoved = isAnnounced && isMoveAnnounced(added);
    added.ticket_ = children_->append(hasMoved ? child : std::move(child));
    ++added.attachments_;
    added.forgetWorldMatrix();
    added.unlinkFromParent();
    added.parent_.reset();
    added.parentPointer_ = this;
    added.isInParentsRow_ = true;
    if (scene->nodeIndex_->lists(*this)) scene->nodeIndex_->attached(added);
    if (isAnnounced) announceNewChild(added, hasMoved);
}

void Node::expectChildren(std::size_t count) {
    if (!children_) children_ = std::make_unique<ChildRow>();
    children_->reserve(count);
}

// A child of another scene is heard by that scene's manager.
bool Node::isAdditionHeard(const Node& child) const {
    return isAnythingHeard() || (child.liveScene() != liveScene() && child.isAnythingHeard());
}

bool Node::isMoveAnnounced(const Node& child) const {
    return isMoveHeard() || child.liveScene() != liveScene();
}

void Node::announceNewChild(Node& child, bool hasMoved) {
    const auto scene = scene_;
    const auto self = hasMoved ? weak_from_this().lock() : nullptr;
    // The child's local matrix has not changed, and its world matrix is forgotten.
    if (hasMoved) child.announceMove();
    if (isHeard(scene, events::nodeNewChild)) {
        dispatch(scene, events::nodeNewChild, core::event::EventData::joined(id_, child.id_));
    }
    sendEmpty(scene, events::sceneTopologyUpdate);
}

void Node::removeChild(boost::shared_ptr<Node> child) {
    if (!child) return;
    const auto slot = slotOf(*child);
    if (slot == ChildRow::npos) {
        triggerTopologyUpdate();
        return;
    }
    const auto removed = children_->take(slot);
    if (child->isInParentsRow_ && child->parentPointer_ == this) {
        child->parent_ = weak_from_this();
        child->isInParentsRow_ = false;
    }
    child->loseAttachment();
    auto* const scene = liveScene();
    if (scene && scene->nodeIndex_->lists(*this)) scene->nodeIndex_->detached(*child);
}

std::size_t Node::slotOf(const Node& child) const {
    if (!children_) return ChildRow::npos;
    if (child.attachments_ == 1) {
        const auto slot = children_->findTicket(&child, child.ticket_);
        if (slot != ChildRow::npos) return slot;
    }
    return child.attachments_ == 0 ? ChildRow::npos : children_->findFirst(&child);
}

boost::shared_ptr<Node> Node::getParent() const {
    if (!isInParentsRow_) return parent_.lock();
    return parentPointer_->weak_from_this().lock();
}

unsigned int Node::getChildCount() const {
    return children_ ? static_cast<unsigned int>(children_->size()) : 0u;
}

boost::shared_ptr<Node> Node::getChildNode(unsigned int index) const {
    if (index >= getChildCount()) throw std::out_of_range("invalid vector<T> subscript");
    return children_->at(index);
}

// A deep tree is taken down in the outermost destructor's loop, not in as many nested calls. The
// rows themselves make the queue, since a destructor cannot ask for memory.
void Node::releaseChildren() {
    static thread_local std::unique_ptr<ChildRow>* waiting = nullptr;
    if (!children_) return;
    for (auto slot = children_->nextSlot(0); slot != ChildRow::npos;
         slot = children_->nextSlot(slot + 1)) {
        leaveRow(*children_->inSlot(slot));
    }
    if (waiting) {
        children_->next().swap(*waiting);
        waiting->swap(children_);
        return;
    }
    auto queue = std::move(children_);
    waiting = &queue;
    while (queue) {
        const auto released = std::move(queue);
        queue = std::move(released->next());
    }
    waiting = nullptr;
}

void Node::leaveRow(Node& child) {
    child.loseAttachment();
    if (child.parentPointer_ != this) return;
    child.isInParentsRow_ = false;
    child.parentPointer_ = nullptr;
}

// A node in no row leaves nothing in the tree that its release, which needs no lock, would touch.
void Node::loseAttachment() {
    if (--attachments_ > 0) return;
    forgetWorldMatrix();
    unlinkFromParent();
}

// The only node whose row holds this one, null when there is none or it cannot be told.
const Node* Node::soleContainer() const {
    const Node* const parent = attachments_ == 1 ? liveParent() : nullptr;
    return parent && parent->slotOf(*this) != ChildRow::npos ? parent : nullptr;
}

// Searches upwards from this node and downwards from the child in turn: the cost is that of the
// shorter way, so that trees may grow at their leaves and at their root alike.
bool Node::wouldCloseCircle(const Node& child) const {
    if (&child == this) return true;
    if (child.getChildCount() == 0 || attachments_ == 0) return false;
    const Node* above = this;
    NodeWalk below(const_cast<Node&>(child), NodeWalk::SKIP_REPEATS);
    while (const Node* const node = below.next()) {
        if (node == this) return true;
        if (!above) continue;
        if (above->attachments_ == 0) return false;
        above = above->soleContainer();
        if (above == &child) return true;
    }
    return false;
}

bool Node::isMoveHeard() const {
    const auto* const manager = peekEventManager(scene_);
    return manager && hearsMoves(*manager);
}

bool Node::isAnythingHeard() const {
    const auto* const manager = peekEventManager(scene_);
    return manager && (hearsMoves(*manager) || manager->isHeard(events::nodeNewChild) ||
                       manager->isHeard(events::sceneTopologyUpdate));
}

void Node::triggerTopologyUpdate() { sendEmpty(scene_, events::sceneTopologyUpdate); }

}  // namespace vantorix::scene
