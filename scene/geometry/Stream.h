#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/FloatArray.h"

namespace vantorix::scene {

class TupleIndex;

/// A named array of float tuples: positions, normals, key times, weights, ...
///
/// Ownership: shared between meshes, primitives, skins and animations.
/// Threads: not locked; insertValue changes the stream even when it finds an equal tuple.
class VANTORIX_SCENE_EXPORT Stream {
public:
    Stream(const std::string& name, int stride, bool allowDuplicates);
    Stream(const Stream& other);
    Stream& operator=(const Stream& other);
    virtual ~Stream();

    /// A new stream with the same name, stride, allowDuplicates, count and values.
    /// Deliberate: unlike a copy, a clone has no params and no stringValues.
    boost::shared_ptr<Stream> clone() const;

    /// Stores one tuple of @p tupleStride floats and returns its index. Without allowDuplicates
    /// the lowest tuple with the same bytes is reused and count stays (so -0.0 differs from 0.0,
    /// and a NaN equals a NaN of the same bits). @p value may point into values.
    /// Cost: constant on average; linear while a reference that was handed out by values for
    /// writing can be valid.
    /// @return -1, with nothing changed, when @p tupleStride is not stride, when it is 0, or when
    ///         @p value is null. With a negative stride only count rises.
    int insertValue(int tupleStride, const float* value);

    /// Stores @p tupleCount tuples that lie one after the other, each as insertValue does, and
    /// writes what that returns to @p indices. Faster than single calls. Does nothing when @p
    /// indices is null.
    void insertValues(int tupleStride, const float* tuples, std::size_t tupleCount, int* indices);

    std::string name;      ///< Unique within a mesh.
    int stride;            ///< Floats per tuple: 3 for positions, 2 for texture coordinates.
    int count;             ///< Tuples added by insertValue; writing to values leaves it alone.
    bool allowDuplicates;  ///< False: insertValue reuses equal tuples.
    TrackedVector<std::pair<std::string, std::string>> params;  ///< Name and type per component.
    FloatArray values;                        ///< Tuple i starts at float i * stride.
    TrackedVector<std::string> stringValues;  ///< As the others, acts as a std::vector.

private:
    friend class FaceAssembler;
    friend class FaceColumn;
    friend class MeshPrimitiveBase;
    friend class TriangleMeshPrimitive;

    int insert(const float* value);
    int insert(const float* value, std::uint32_t hash);
    /// Tuples of a positive stride from outside values, with the keys of TupleIndex::insertAll.
    void insertEach(const float* tuples, std::size_t tupleCount, int* indices, const int* keys);
    int appendTuple(const float* value);
    /// Makes room for @p tupleCount more of them, and then some.
    void makeRoomFor(std::size_t tupleCount);
    bool isIndexUseful() const;
    /// Whether no two tuples are equal, as far as earlier calls have found out.
    bool isKnownDistinct() const;
    bool canInsertTogether(std::size_t tupleCount) const;

    std::unique_ptr<TupleIndex> index_;  // Made by the first search that it speeds up.
};

}  // namespace vantorix::scene
