#include "scene/graph/NodeIndex.h"

#include <atomic>
#include <new>

#include "scene/graph/Node.h"
#include "scene/graph/NodeWalk.h"

namespace vantorix::scene {
namespace {

// Generations are unique in the process: no node can carry one of another index by chance.
std::uint64_t nextGeneration() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

Node* search(Node& root, const std::string& text, const NodeTable& table) {
    NodeWalk walk(root, NodeWalk::SKIP_REPEATS);
    for (Node* node = walk.next(); node; node = walk.next()) {
        if (table.textOf(*node) == text) return node;
    }
    return nullptr;
}

}  // namespace

NodeIndex::NodeIndex(const SceneManager* scene)
    : scene_(scene),
      generation_(nextGeneration()),
      ids_{NodeTable(&Node::id_), false},
      names_{NodeTable(&Node::name_), false} {}

Node* NodeIndex::findByID(Node& root, const std::string& id, bool& isOnly) {
    return find(ids_, root, id, isOnly);
}

bool NodeIndex::isCarried(Node& root, const std::string& id) {
    return ids_.built ? ids_.table.isCarried(id) : findByID(root, id) != nullptr;
}

Node* NodeIndex::findByName(Node& root, const std::string& name) {
    bool isOnly = false;
    return find(names_, root, name, isOnly);
}

void NodeIndex::findAllByID(Node& root, const std::vector<std::string>& ids,
                            std::vector<Node*>& nodes) {
    nodes.assign(ids.size(), nullptr);
    const bool isBuilt = prepare(ids_, root);
    Wanted wanted;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (isBuilt) {
            const auto found = ids_.table.find(ids[i]);
            nodes[i] = found.node;
            if (found.answer != NodeTable::SEVERAL) continue;
        }
        wanted.emplace(ids[i], i);
    }
    if (!wanted.empty()) searchIDs(root, wanted, nodes);
}

void NodeIndex::searchIDs(Node& root, Wanted& wanted, std::vector<Node*>& nodes) {
    NodeWalk walk(root, NodeWalk::SKIP_REPEATS);
    for (Node* node = walk.next(); node && !wanted.empty(); node = walk.next()) {
        const auto found = wanted.find(node->id_);
        if (found == wanted.end()) continue;
        nodes[found->second] = node;
        ids_.table.rememberFirst(node->id_, node);
        wanted.erase(found);
    }
}

bool NodeIndex::lists(const Node& node) const { return node.indexGeneration_ == generation_; }

Node* NodeIndex::find(View& view, Node& root, const std::string& text, bool& isOnly) {
    isOnly = false;
    if (!prepare(view, root)) return search(root, text, view.table);
    const auto found = view.table.find(text);
    isOnly = found.answer == NodeTable::ONE && !view.table.isShared(text);
    if (found.answer != NodeTable::SEVERAL) return found.node;
    Node* const first = search(root, text, view.table);
    view.table.rememberFirst(text, first);
    return first;
}

template <class Change>
bool NodeIndex::changeOrDrop(Change change) {
    try {
        if (change()) return true;
    } catch (const std::bad_alloc&) {
        // The tree has changed already; without the index it is searched.
    }
    drop();
    return false;
}

bool NodeIndex::prepare(View& view, Node& root) {
    if (!view.built) return build(view, root);
    return changeOrDrop([&] {
        view.table.settle();
        return true;
    });
}

bool NodeIndex::build(View& view, Node& root) {
    view.built = changeOrDrop([&] {
        NodeWalk walk(root, NodeWalk::SKIP_REPEATS);
        for (Node* node = walk.next(); node; node = walk.next()) {
            if (node->liveScene() != scene_) return false;
            node->indexGeneration_ = generation_;
            view.table.insert(node);
        }
        view.table.settle();
        return true;
    });
    return view.built;
}

void NodeIndex::attached(Node& child) {
    changeOrDrop([&] {
        if (!child.children_) return list(child);
        NodeWalk walk(child, NodeWalk::SKIP_REPEATS);
        for (Node* node = walk.next(); node; node = walk.next()) {
            if (!list(*node)) return false;
        }
        return true;
    });
}

// A node that already hangs elsewhere in the tree may now come earlier than its namesakes.
bool NodeIndex::list(Node& node) {
    if (node.liveScene() != scene_ || lists(node)) return false;
    node.indexGeneration_ = generation_;
    ++revision_;
    if (ids_.built) ids_.table.insert(&node);
    if (names_.built) names_.table.insert(&node);
    return true;
}

void NodeIndex::detached(Node& child) {
    if (child.attachments_ > 0) return drop();  // It may still hang elsewhere in the tree.
    ++revision_;
    changeOrDrop([&] {
        NodeWalk walk(child, NodeWalk::SKIP_REPEATS);
        for (Node* node = walk.next(); node; node = walk.next()) {
            if (node->attachments_ > 1) return false;
            if (ids_.built) ids_.table.erase(node);
            if (names_.built) names_.table.erase(node);
            node->indexGeneration_ = 0;
        }
        return true;
    });
}

void NodeIndex::beforeRename(Node& node, bool isID) {
    if (isID) ++revision_;
    if (viewOf(isID).built) viewOf(isID).table.erase(&node);
}

void NodeIndex::afterRename(Node& node, bool isID) {
    if (!viewOf(isID).built) return;
    changeOrDrop([&] {
        viewOf(isID).table.insert(&node);
        return true;
    });
}

void NodeIndex::reserve(std::size_t count) {
    changeOrDrop([&] {
        if (ids_.built) ids_.table.reserve(count);
        return true;
    });
}

void NodeIndex::drop() {
    generation_ = nextGeneration();
    ++revision_;
    for (auto* view : {&ids_, &names_}) {
        view->table.clear();
        view->built = false;
    }
}

}  // namespace vantorix::scene
