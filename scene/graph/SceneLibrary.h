#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "scene/graph/SceneManager.h"

/// What the libraries of a scene, plain lists of shared items, have in common.
namespace vantorix::scene {

/// The first item that @p matches accepts, in library order; empty when there is none.
template <class Item, class Matches>
boost::shared_ptr<Item> findItem(const std::vector<boost::shared_ptr<Item>>& library,
                                 Matches matches) {
    for (const auto& item : library) {
        if (item && matches(*item)) return item;
    }
    return {};
}

template <class Item>
boost::shared_ptr<Item> findByID(const std::vector<boost::shared_ptr<Item>>& library,
                                 const std::string& id) {
    return findItem(library, [&](const Item& item) { return item.getID() == id; });
}

template <class Item>
boost::shared_ptr<Item> itemAt(const std::vector<boost::shared_ptr<Item>>& library,
                               unsigned int index) {
    return index < library.size() ? library[index] : boost::shared_ptr<Item>();
}

template <class Item>
unsigned int countOf(const std::vector<boost::shared_ptr<Item>>& library) {
    return static_cast<unsigned int>(library.size());
}

template <class Item>
bool contains(const std::vector<boost::shared_ptr<Item>>& library,
              const boost::shared_ptr<Item>& item) {
    return std::find(library.begin(), library.end(), item) != library.end();
}

template <class Item>
void eraseFirst(std::vector<boost::shared_ptr<Item>>& library,
                const boost::shared_ptr<Item>& item) {
    const auto found = std::find(library.begin(), library.end(), item);
    if (found != library.end()) library.erase(found);
}

/// Items that come in from outside may carry identifiers that look like generated ones.
template <class Item>
void recordIDs(SceneManager& scene, const std::vector<boost::shared_ptr<Item>>& items) {
    for (const auto& item : items) {
        if (item) scene.addID(item->getID());
    }
}

/// What a merge's map of renamed identifiers makes of @p id.
template <class ID>
ID translatedID(const std::map<ID, ID>& renamed, const ID& id) {
    const auto found = renamed.find(id);
    return found == renamed.end() ? id : found->second;
}

}  // namespace vantorix::scene
