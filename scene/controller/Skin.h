#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class IGeometry;
class Stream;

/// The influences of joints on the vertices of a source geometry.
///
/// Layout: VCount holds the number of influences of each vertex, V a pair (joint index, weight
/// index) for each influence, in vertex order. Weight indices address the weight stream's floats.
/// The "JOINT" stream of the joints input names the joints in its string values; the inverse bind
/// matrix stream holds 16 floats for each of them, row by row.
/// Inputs refer to streams of this skin; setStreams() leaves them as they are.
/// Ownership: geometry and streams are shared. Threads: not locked; queries may run side by side.
class VANTORIX_SCENE_EXPORT Skin {
public:
    explicit Skin(boost::shared_ptr<IGeometry> sourceGeometry);
    virtual ~Skin();

    boost::shared_ptr<IGeometry> getSourceGeometry() const;

    const std::vector<boost::shared_ptr<Stream>>& getStreams() const;
    void setStreams(std::vector<boost::shared_ptr<Stream>> streams);

    /// The identity until set.
    const Eigen::Matrix4f& getBindShapeMatrix() const;
    void setBindShapeMatrix(const Eigen::Matrix4f& matrix);

    const std::vector<int>& getV() const;
    void setV(std::vector<int> v);
    const std::vector<unsigned int>& getVCount() const;
    void setVCount(std::vector<unsigned int> vCount);

    /// @name Inputs
    /// The joints input knows the semantics "JOINT" and "INV_BIND_MATRIX", the vertex weights input
    /// "JOINT" and "WEIGHT". An unknown semantic or stream changes nothing and is answered empty.
    /// @{
    void setJointsInput(const std::string& semantic, const std::string& streamId);
    boost::shared_ptr<Stream> getJointsInput(const std::string& semantic) const;
    void setVertexWeightsInput(const std::string& semantic, const std::string& streamId);
    boost::shared_ptr<Stream> getVertexWeightsInput(const std::string& semantic) const;

    /// Puts @p stream in the place of the current stream of that vertex weights semantic, in the
    /// list and as the input. Changes nothing when the current one is not in the list. V stays, so
    /// @p stream must keep the indexing.
    void replaceVertexWeightsStream(const std::string& semantic, boost::shared_ptr<Stream> stream);
    /// @}

    /// @name Influences
    /// Results are appended: both lists grow by the same number of entries.
    /// @{
    /// Constant time per influence. Pairs past the end of V are left out; a weight index outside
    /// the weight stream gives weight 0.
    void getVertexJointsAndWeights(unsigned int vertex, std::vector<int>& joints,
                                   std::vector<float>& weights) const;

    /// The influences of a new vertex midway between two: the mean weight of every joint of either,
    /// in ascending joint order. Then all entries of @p weights, earlier ones too, are divided by
    /// their sum, unless it is zero or not finite. Without any influence nothing changes.
    void calculateNewJointsAndWeights(unsigned int vertexA, unsigned int vertexB,
                                      std::vector<int>& joints, std::vector<float>& weights) const;
    /// @}

protected:
    /// The first stream of that name, or empty.
    boost::shared_ptr<Stream> getStreamById(const std::string& id) const;

private:
    struct Input {
        const char* semantic;
        boost::shared_ptr<Stream> stream;
    };
    using Inputs = std::array<Input, 2>;

    void setInput(Inputs& inputs, const std::string& semantic, const std::string& streamId);

    boost::shared_ptr<IGeometry> sourceGeometry_;
    std::vector<boost::shared_ptr<Stream>> streams_;
    Eigen::Matrix4f bindShapeMatrix_ = Eigen::Matrix4f::Identity();
    Inputs joints_{{{"JOINT", {}}, {"INV_BIND_MATRIX", {}}}};
    Inputs vertexWeights_{{{"JOINT", {}}, {"WEIGHT", {}}}};
    std::vector<unsigned int> vCount_;
    std::vector<std::size_t> firstInfluence_{0};  ///< Per vertex, and of all: the counts before it.
    std::vector<int> v_;
};

}  // namespace vantorix::scene
