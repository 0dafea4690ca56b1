#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

namespace vantorix::scene {

class Skin;
class Stream;

/// The influences of the vertices of a refined mesh, collected in the order of its positions while
/// the skin still has those of the mesh as it was.
class RefinedInfluences {
public:
    explicit RefinedInfluences(const Skin& skin);

    /// Appends what a new vertex in the place of an old one has.
    void addCorner(unsigned int vertex);
    /// Appends what a new vertex midway between two old ones has.
    void addMidpoint(unsigned int vertexA, unsigned int vertexB);

    /// Gives @p skin the new weights and influences.
    void storeIn(Skin& skin);

private:
    void append();

    const Skin& skin_;
    boost::shared_ptr<Stream> weightStream_;
    std::vector<unsigned int> vCount_;
    std::vector<int> v_;
    std::vector<int> joints_;  // Of the vertex at hand, as are the weights.
    std::vector<float> weights_;
};

}  // namespace vantorix::scene
