#pragma once

#include <random>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

namespace vantorix::scene {
class SceneManager;
}

namespace vantorix::test {

/// Numbers and short identifiers, the same for the same seed.
class RandomChoices {
public:
    explicit RandomChoices(unsigned int seed) : engine_(seed) {}

    unsigned int below(unsigned int end) {
        return std::uniform_int_distribution<unsigned int>(0, end - 1)(engine_);
    }
    bool chance(unsigned int percent) { return below(100) < percent; }
    /// One of @p count identifiers of that kind.
    std::string id(const std::string& kind, unsigned int count) {
        return kind + std::to_string(below(count));
    }
    template <class List>
    const typename List::value_type& of(const List& list) {
        return list[below(static_cast<unsigned int>(list.size()))];
    }

private:
    std::mt19937 engine_;
};

/// Fills libraries, layers and tree with few identifiers, @p nodeIDs for the nodes, so that scenes
/// clash with each other and nodes within a scene; nodes may be attached twice.
void fillRandomly(const boost::shared_ptr<scene::SceneManager>& scene, unsigned int nodeIDs,
                  RandomChoices& random);

/// All that a merge may change, as text. Materials and parameters that are those of @p other, and
/// geometries that are, are marked.
std::vector<std::string> describe(scene::SceneManager& scene, scene::SceneManager& other);

}  // namespace vantorix::test
