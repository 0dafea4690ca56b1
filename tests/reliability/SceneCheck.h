#pragma once

#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

namespace vantorix::scene {
class SceneManager;
}

namespace vantorix::test {

/// What contradicts itself in the tree: circles, look-ups that give another node than a search from
/// the root, world matrices that are not the product of the parents'. Empty when all is well.
std::vector<std::string> findTreeFaults(scene::SceneManager& scene);

/// What contradicts itself in the libraries: empty entries, streams shorter than their count,
/// records that lead past the positions, influences that are not those of as many vertices.
std::vector<std::string> findLibraryFaults(scene::SceneManager& scene);

/// Adds, finds, moves and removes a node. @returns what failed.
std::vector<std::string> findUseFaults(const boost::shared_ptr<scene::SceneManager>& scene);

}  // namespace vantorix::test
