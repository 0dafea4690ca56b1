#pragma once

#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "core_api/utils/Vector.h"

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Controller;
class IPrimitive;
class Mesh;
class StreamMapping;

/// A group of faces of one mesh under one material symbol, stored as interleaved index records:
/// one record per face corner, one slot per distinct offset among the mappings.
class VANTORIX_SCENE_EXPORT IMeshPrimitive {
public:
// Inside its class, INVALID is this one and not the stream semantic of the same name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
    /// Starts at 1, unlike IGeometry::Type.
    enum Type : int {
        TRIANGLES = 1,
        POLYGONS = 2,
        LINES = 3,
        LINE_STRIPS = 4,
        POLYLISTS = 5,
        TRIANGLE_FANS = 6,
        TRIANGLE_STRIPS = 7,
        INVALID = 8
    };
#pragma GCC diagnostic pop

    /// Record k starts at index k * getIndexStreamStride().
    virtual const std::vector<unsigned int>& getIndexStream() const = 0;
    /// Indices per record: the number of distinct offsets among the mappings.
    virtual int getIndexStreamStride() = 0;
    virtual const std::vector<StreamMapping>& getStreamMapping() const = 0;
    virtual Type getType() = 0;
    /// Number of faces.
    virtual unsigned int getCount() = 0;
    /// A new face object; an empty pointer past the end.
    virtual boost::shared_ptr<IPrimitive> getPrimitiveAt(unsigned int index) = 0;
    /// All faces in order, as new objects on every call.
    virtual std::vector<boost::shared_ptr<IPrimitive>> getPrimitives() = 0;
    virtual void print() = 0;
    virtual core::utils::Vector<float, 3> getBVMin() = 0;
    virtual core::utils::Vector<float, 3> getBVMax() = 0;
    virtual Eigen::Vector3f getBVCenter() = 0;
    virtual void setMaterialSymbol(const std::string& symbol) = 0;
    virtual std::string getMaterialSymbol() = 0;
    virtual void recalculateVertexNormals() = 0;
    /// Splits the faces; the skin of @p controller, which may be empty, follows.
    virtual void subDivide(boost::shared_ptr<Controller> controller) = 0;
    /// A primitive of @p newMesh with copies of the mappings and indices; the mappings still point
    /// at the streams of this one, and the material symbol is the default again.
    virtual boost::shared_ptr<IMeshPrimitive> clone(boost::shared_ptr<Mesh> newMesh) = 0;
    virtual ~IMeshPrimitive();

    /// "Triangles" to "Triangle Strips", "Invalid"; "Invalid2" for 0 and any other value.
    static std::string typeToString(Type type);
};

}  // namespace vantorix::scene
