#pragma once

#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/IGeometry.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/StreamMapping.h"

namespace vantorix::scene {

/// Float streams, the vertices mappings that say which of them make up a vertex, and primitives
/// that group indices into faces.
///
/// Ownership: streams and primitives are shared; copies of a mesh share them. A primitive that
/// stands in its mesh's list refers back weakly.
/// Threads: not locked; the first bounding volume query writes the cache.
class VANTORIX_SCENE_EXPORT Mesh : public IGeometry {
public:
    Mesh(const std::string& id, const std::string& name);
    /// The primitives of a copy are those of @p other and refer to it weakly: keep it alive as long
    /// as the faces of the copy are wanted.
    Mesh(const Mesh& other);
    Mesh& operator=(const Mesh& other);

    std::string getID() override;
    /// Leaves the vertices ID as it is.
    void setID(const std::string& id) override;
    std::string getName() override;
    void setName(const std::string& name) override;
    void setType(Type type) override;
    Type getType() override;
    /// Prints every primitive, nothing of its own.
    void print() override;

    /// A mesh with the same ID and name, clones of the streams and of the primitives.
    /// Deliberate: vertices ID, type and bounding volume are those of a new mesh, and the copied
    /// mappings still point at the streams of this one.
    boost::shared_ptr<IGeometry> clone() override;

    /// @name Bounding volume
    /// From the boxes of the primitives, or from the positions of a mesh without primitives, of
    /// which about 100000 are sampled. (0, 0, 0) for all three when there are neither.
    /// Deliberate: the first query fixes the answers, whatever is added afterwards; the centre of
    /// a mesh of several primitives is the sum of their centres.
    /// @throws std::out_of_range when sampled positions have more than three components.
    /// @{
    Eigen::Vector3f getBVCenter() override;
    Eigen::Vector3f getBVMin() override;
    Eigen::Vector3f getBVMax() override;
    /// @}

    /// Recalculates each primitive in list order.
    void recalculateVertexNormals() override;
    /// Subdivides each primitive in list order, with the same @p controller, which may be empty.
    /// The bounding volume stays as it was asked first. If memory runs out, a primitive is split
    /// together with the skin or stays as it was.
    void subDivide(boost::shared_ptr<Controller> controller) override;
    ~Mesh() override;

    /// The constructor's ID followed by "_vertices", until it is set.
    std::string getVerticesID() const;
    void setVerticesID(const std::string& id);

    /// @name Streams
    /// @{
    /// Appends, without a check for repeated names.
    void addStream(boost::shared_ptr<Stream> stream);
    /// Removes the first entry that is this very object.
    void removeStream(boost::shared_ptr<Stream> stream);
    /// The first stream of that name, or an empty pointer.
    boost::shared_ptr<Stream> getStream(const std::string& name) const;
    std::vector<boost::shared_ptr<Stream>> getStreams() const;
    void setStreams(const std::vector<boost::shared_ptr<Stream>>& streams);
    void clearStreams();
    /// @}

    /// @name Vertices mappings
    /// @{
    /// Dropped when a mapping of the same semantic is there: the first one wins.
    void addVerticesMapping(const StreamMapping& mapping);
    const std::vector<StreamMapping>& getVertices() const;
    void setVertices(const std::vector<StreamMapping>& vertices);
    void clearVertices();
    /// @}

    /// @name Primitives
    /// @{
    /// Appends; an empty pointer is ignored. A primitive of this mesh no longer keeps it alive.
    void addPrimitive(boost::shared_ptr<IMeshPrimitive> primitive);
    const std::vector<boost::shared_ptr<IMeshPrimitive>>& getMeshPrimitives() const;
    unsigned int getPrimitiveCount() const;
    /// An empty pointer outside the list.
    boost::shared_ptr<IMeshPrimitive> getPrimitive(unsigned int index) const;
    /// @}

protected:
    void calculateBV();
    void calculateBVMin();
    void calculateBVMax();
    /// Fills the new mesh @p target with clones of the streams and primitives.
    void cloneContentsTo(const boost::shared_ptr<Mesh>& target) const;

private:
    using Primitives = std::vector<boost::shared_ptr<IMeshPrimitive>>;
    using BoxCorner = core::utils::Vector<float, 3> (IMeshPrimitive::*)();

    template <typename Rule>
    Eigen::Vector3f calculateCorner(const Primitives& primitives, BoxCorner corner) const;
    template <typename Rule>
    Eigen::Vector3f cornerOfPositions() const;

    std::string id_;
    std::string name_;
    std::string verticesID_;
    std::vector<boost::shared_ptr<Stream>> streams_;
    std::vector<StreamMapping> vertices_;
    std::vector<boost::shared_ptr<IMeshPrimitive>> primitives_;
    Type type_;
    bool bvValid_;
    Eigen::Vector3f bvMin_, bvMax_, bvCenter_;
    int bvSampleDivisor_;
};

}  // namespace vantorix::scene
