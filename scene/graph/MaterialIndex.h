#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/unordered/unordered_map.hpp>

namespace vantorix::scene {

class Material;
class SceneManager;

/// Answers as SceneManager::getMaterialWithID does, for many IDs. List and materials may change
/// between two calls: additions are taken in, other changes make the index anew.
class MaterialIndex {
public:
    /// @p scene must outlive the index.
    explicit MaterialIndex(const SceneManager& scene) : scene_(scene) {}

    boost::shared_ptr<Material> find(const std::string& id);

private:
    void catchUp();

    const SceneManager& scene_;
    std::uint64_t renames_ = 0;
    std::uint64_t rewrites_ = 0;
    std::size_t covered_ = 0;  ///< Places in the list that were taken in.
    boost::unordered_map<std::string, std::size_t> first_;
};

}  // namespace vantorix::scene
