#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/container/small_vector.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "core_api/logger/Logger.h"

#include "scene/SceneExport.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/StreamMapping.h"

namespace vantorix::scene {

class FaceLayout;
class FaceRows;
class Stream;
class Vertex;
struct VertexElement;
struct VertexValue;

/// What triangle and polygon primitives share: mappings, index records, box, material symbol, and
/// the rules by which a semantic finds its stream, in the primitive's own mappings first and then
/// in the vertices mappings of the mesh.
///
/// Ownership: keeps its mesh alive until it is added to that mesh's list, then refers back weakly.
/// Once the mesh is gone the primitive can still be read, without what the mesh held.
/// Threads: not locked.
class VANTORIX_SCENE_EXPORT MeshPrimitiveBase : public IMeshPrimitive {
public:
    MeshPrimitiveBase(const MeshPrimitiveBase&) = delete;
    MeshPrimitiveBase& operator=(const MeshPrimitiveBase&) = delete;

    const std::vector<unsigned int>& getIndexStream() const override;
    int getIndexStreamStride() override;
    const std::vector<StreamMapping>& getStreamMapping() const override;
    Type getType() override;
    /// The box of the corners; inverted (minimum 3.4028235e38) while there are none.
    core::utils::Vector<float, 3> getBVMin() override;
    core::utils::Vector<float, 3> getBVMax() override;
    Eigen::Vector3f getBVCenter() override;
    void setMaterialSymbol(const std::string& symbol) override;
    /// "vantorix_material" until it is set.
    std::string getMaterialSymbol() override;
    ~MeshPrimitiveBase() override;

protected:
    /// The vertices of one face.
    struct Corners {
        const boost::shared_ptr<Vertex>* begin() const { return first; }
        const boost::shared_ptr<Vertex>* end() const { return first + count; }

        const boost::shared_ptr<Vertex>* first;
        std::size_t count;
    };

    /// @throws std::out_of_range when a corner's position has more than three components.
    MeshPrimitiveBase(boost::shared_ptr<Mesh> mesh, const std::vector<StreamMapping>& mappings);
    MeshPrimitiveBase(boost::shared_ptr<Mesh> mesh, const std::vector<StreamMapping>& mappings,
                      const std::vector<unsigned int>& indexStream);

    void initLogger();
    int calculateIndexStreamStride() const;
    void calculateMinMax();

    /// @name From a semantic to its stream, list index and offset
    /// @{
    boost::shared_ptr<Stream> getStreamBySemantic(StreamSemantic semantic) const;
    /// The list index of the mapping, or of the VERTEX mapping when the mesh's vertices hold the
    /// semantic; -1 otherwise, with a log line when there is no VERTEX mapping.
    int getStreamMappingIndexForSemantic(StreamSemantic semantic);
    /// The same walk, with the offset of that mapping as the answer.
    int getStreamMappingOffsetForSemantic(StreamSemantic semantic);
    /// @}

    /// Creates the stream and mappings that @p element needs, where they are missing.
    /// @return the element's stream; empty for an empty element and for a new position, whose
    ///         stream is then found by its semantic.
    boost::shared_ptr<Stream> validateStreamStateForVertexElement(
        boost::shared_ptr<VertexElement> element, bool deduplicate);

    /// Stores the values of all corners and appends one record per corner. On failure the records
    /// and values of earlier corners stay.
    bool appendFace(const Corners& corners, bool deduplicate);

    /// What many records get from one semantic: values that lie one after the other, which are
    /// stored in @p stream while their indices go to a slot of the records.
    struct Column {
        std::size_t size() const;  ///< Floats per value.

        Stream* stream;
        std::size_t slot;
        bool isPosition;  ///< Of three components at most; the box grows by them.
        const float* values;
    };
    using Columns = boost::container::small_vector<Column, 8>;

    /// Whether storing column by column has the same outcome as storing record by record.
    static bool areIndependent(const Columns& columns);
    /// Appends @p count records of @p stride indices, whose streams and slots have to be there.
    void appendRecords(const Columns& columns, std::size_t count, std::size_t stride);
    /// Where the indices of that stream's values go; -1 when there is no slot, which is logged.
    int findSlot(StreamSemantic semantic, const Stream& stream);

    /// Empty once the mesh is gone.
    boost::shared_ptr<Mesh> lockMesh() const;

    core::logger::Logger logger_;
    std::vector<StreamMapping> streamMappings_;
    std::vector<unsigned int> indexStream_;
    Type type_;

private:
    friend class Mesh;
    using IndexRecord = boost::container::small_vector<unsigned int, 16>;

    /// From now on @p mesh is referred to weakly, if it is the primitive's own.
    /// @return what kept it alive; empty for another mesh.
    boost::shared_ptr<Mesh> releaseMesh(const Mesh& mesh);
    /// Without a reference: for use while somebody is known to hold the mesh.
    Mesh* peekMesh() const;

    const StreamMapping* findMapping(StreamSemantic semantic) const;
    const StreamMapping* findSharedMapping(StreamSemantic semantic) const;
    const StreamMapping* findSlotMapping(StreamSemantic semantic);
    boost::shared_ptr<Stream> prepareStream(StreamSemantic semantic, int size, bool deduplicate);
    void addPositionStreams(int size, bool deduplicate);

    /// Where the elements of one semantic go while a face is added.
    struct Input {
        static constexpr int unknownSlot = -2;

        StreamSemantic semantic;
        Stream* stream;  // Held by its mapping; null where there is none.
        int slot;
    };
    using Inputs = boost::container::small_vector<Input, 8>;

    static Input* findInput(Inputs& inputs, StreamSemantic semantic);
    bool findInputs(const Vertex& corner, Inputs& inputs) const;
    bool canAddStreamFor(StreamSemantic semantic) const;
    bool prepareStreams(const Vertex& corner, bool deduplicate, Inputs& inputs);
    /// False, with nothing changed, where not all streams and slots are as they usually are.
    bool appendUsual(const FaceRows& rows);
    /// The layout of faces whose corners have that shape, from the last face where it still holds;
    /// null where their streams and slots are not as they usually are.
    const FaceLayout* findLayout(std::uint64_t shape);
    void appendRows(const FaceLayout& layout, const FaceRows& rows);
    void growBox(const FaceRows& rows, std::size_t place, std::size_t size);
    bool appendRecord(const Vertex& corner, std::size_t stride, Inputs& inputs);
    bool storeValue(const VertexValue& value, Input& input, IndexRecord& record);
    void growBox(const Eigen::Vector3f& sample);
    void growBox(const float* positions, std::size_t size, std::size_t count);

    boost::shared_ptr<Mesh> keptMesh_;  // Empty once the mesh's list holds this primitive.
    boost::weak_ptr<Mesh> mesh_;
    Mesh* meshAddress_;
    std::string materialSymbol_;
    Eigen::Vector3f bvMin_, bvMax_;
    std::unique_ptr<FaceLayout> layout_;  // Of the last faces.
};

}  // namespace vantorix::scene
