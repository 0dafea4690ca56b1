#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/ModelDocument.h"

namespace vantorix::scene {
class Skin;
class Stream;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

/// Puts the skins of several meshes of a document into one skin of a scene.
///
/// Joints are the bones that differ in node or matrix, in the order in which they come. Weights
/// that are equal byte for byte are stored once.
class SkinAssembly {
public:
    SkinAssembly();

    /// The number of the list of influences that each vertex of @p source follows. Equal lists have
    /// equal numbers; that of the empty list, which vertices without a bone follow, is 0.
    std::vector<unsigned int> listsOf(const ModelMesh& source);

    /// The next vertex of the skin follows this list.
    void addVertex(unsigned int list);

    const std::vector<ModelBone>& getJoints() const { return joints_; }

    /// Gives @p skin its streams, inputs and influences. Stream names are @p id and "-joints",
    /// "-bind_poses" and "-weights"; a joint is named by the ID of its node, its inverse bind
    /// matrix stands row by row. @p nodeIds are by node number.
    void fill(const std::string& id, const std::vector<std::string>& nodeIds,
              scene::Skin& skin) const;

private:
    struct Influence {
        int joint;
        float weight;
    };
    using JointKey = std::pair<std::uint32_t, std::array<float, 16>>;

    std::vector<int> jointsOf(const ModelSkin& source);
    unsigned int listFor(std::vector<Influence>& influences);
    unsigned int numberOf(const std::vector<int>& pairs);
    boost::shared_ptr<scene::Stream> jointStream(const std::string& id,
                                                 const std::vector<std::string>& nodeIds) const;
    boost::shared_ptr<scene::Stream> matrixStream(const std::string& id) const;

    std::vector<ModelBone> joints_;
    std::map<JointKey, int> jointNumbers_;
    boost::shared_ptr<scene::Stream> weights_;
    std::unordered_map<std::string, unsigned int> listNumbers_;  ///< By the bytes of the pairs.
    std::vector<std::vector<int>> lists_;  ///< Pairs of a joint and a weight's tuple.
    std::vector<unsigned int> vertices_;   ///< The list of each.
};

}  // namespace vantorix::apps::import
