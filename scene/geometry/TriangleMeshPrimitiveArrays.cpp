// How triangles come out of flat arrays.

#include <algorithm>

#include <boost/make_shared.hpp>

#include "scene/geometry/InsideTuples.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {

namespace {

using CornerValues = TriangleMeshPrimitive::CornerValues;

/// Arrays that lie in @p growing would move with it: copies take their place.
void copyFrom(const Stream& growing, std::size_t cornerCount, std::vector<CornerValues>& corners,
              std::vector<std::vector<float>>& copies) {
    for (auto& values : corners) {
        if (values.size <= 0 || !liesIn(growing.values, values.values)) continue;
        const std::size_t floats = cornerCount * static_cast<std::size_t>(values.size);
        copies.push_back(copyFromInside(growing.values, floats, values.values));
        values.values = copies.back().data();
    }
}

boost::shared_ptr<Triangle> makeTriangle(const std::vector<CornerValues>& corners,
                                         std::size_t index) {
    const auto makeVertex = [&corners](std::size_t corner) {
        const auto vertex = boost::make_shared<Vertex>();
        for (const auto& values : corners) {
            const auto size = static_cast<std::size_t>(std::max(values.size, 0));
            vertex->addElement(
                VertexElement::create(values.semantic, values.size, values.values + corner * size),
                true);
        }
        return vertex;
    };
    return boost::make_shared<Triangle>(makeVertex(3 * index), makeVertex(3 * index + 1),
                                        makeVertex(3 * index + 2));
}

/// How many new ones @p left more corners will bring, when the first @p done have brought @p met.
std::size_t expectedTuples(const Stream& stream, std::size_t met, std::size_t done,
                           std::size_t left) {
    if (stream.allowDuplicates || done == 0) return left;
    // Six corners share each value of a closed mesh, but the first rows are all new.
    return std::min(met * left / done, left / 6);
}

/// At least twice what there was: many calls are to copy each index a few times only.
void makeRoom(std::vector<unsigned int>& indices, std::size_t count) {
    const std::size_t size = indices.size() + count;
    if (size > indices.capacity()) indices.reserve(std::max(size, 2 * indices.capacity()));
}

}  // namespace

bool TriangleMeshPrimitive::addTriangles(const std::vector<CornerValues>& givenCorners,
                                         std::size_t triangleCount, bool deduplicate) {
    for (const auto& values : givenCorners) {
        if (values.size > 0 && !values.values) return false;
    }
    if (triangleCount == 0) return true;
    auto corners = givenCorners;
    std::vector<std::vector<float>> copies;
    for (const auto& values : givenCorners) {
        const auto stream = getStreamBySemantic(values.semantic);
        if (stream) copyFrom(*stream, 3 * triangleCount, corners, copies);
    }
    // The first one makes streams and mappings, or fails as all others would.
    if (!addTriangle(makeTriangle(corners, 0), deduplicate)) return false;
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    Columns columns;
    if (!findColumns(corners, stride, columns)) {
        for (std::size_t i = 1; i < triangleCount; ++i) {
            if (!addTriangle(makeTriangle(corners, i), deduplicate)) return false;
        }
        return true;
    }
    makeRoom(indexStream_, 3 * (triangleCount - 1) * stride);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].values = corners[i].values + 3 * columns[i].size();
    }
    appendColumns(columns, 3 * (triangleCount - 1), stride);
    return true;
}

void TriangleMeshPrimitive::appendColumns(Columns& columns, std::size_t count, std::size_t stride) {
    constexpr std::size_t most = 1536;  // Few enough for the memory next to the processor.
    const std::size_t first = std::min(most, count);
    std::vector<std::size_t> sizes;
    for (const auto& column : columns) sizes.push_back(column.stream->values.size());
    appendBlock(columns, first, stride);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        auto& stream = *columns[i].stream;
        const std::size_t met = (stream.values.size() - sizes[i]) / columns[i].size();
        stream.makeRoomFor(expectedTuples(stream, met, first, count - first));
    }
    for (std::size_t done = first; done < count; done += most) {
        appendBlock(columns, std::min(most, count - done), stride);
    }
}

void TriangleMeshPrimitive::appendBlock(Columns& columns, std::size_t count, std::size_t stride) {
    appendRecords(columns, count, stride);
    for (auto& column : columns) column.values += count * column.size();
}

bool TriangleMeshPrimitive::findColumns(const std::vector<CornerValues>& corners,
                                        std::size_t stride, Columns& columns) {
    for (const auto& values : corners) {
        const auto stream = getStreamBySemantic(values.semantic);
        if (!stream || values.size <= 0) return false;
        const int slot = findSlot(values.semantic, *stream);
        if (slot < 0 || static_cast<std::size_t>(slot) >= stride) return false;
        columns.push_back(
            {stream.get(), static_cast<std::size_t>(slot), values.semantic == POSITION, nullptr});
    }
    return areIndependent(columns);
}

}  // namespace vantorix::scene
