#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vantorix::apps::cli {

class LoadedModel;

/// What can be told of one thing in a scene, as pairs of a name and a value in words.
struct Facts {
    std::string id;  ///< Unique in its section: a repeated ID is numbered.
    std::vector<std::pair<std::string, std::string>> fields;
};

struct FactSection {
    const char* name;
    std::vector<Facts> items;
};

/// The structure of a scene: description, nodes, geometries, materials, images, layers, cameras,
/// lights and controllers. Streams and faces are told by their number and a checksum. Takes the
/// scene lock.
std::vector<FactSection> factsOf(const LoadedModel& model);

/// What distinguishes two sections of one name.
struct SectionDifference {
    struct Change {
        std::string id;
        std::string field;
        std::string first;
        std::string second;
    };

    bool empty() const { return onlyFirst.empty() && onlySecond.empty() && changes.empty(); }

    const char* name;
    std::vector<std::string> onlyFirst;
    std::vector<std::string> onlySecond;
    std::vector<Change> changes;
};

/// All sections in order, those without differences too.
std::vector<SectionDifference> compareFacts(const std::vector<FactSection>& first,
                                            const std::vector<FactSection>& second);

}  // namespace vantorix::apps::cli
