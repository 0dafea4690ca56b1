#pragma once

#include <cstddef>
#include <vector>

#include "apps/render/DrawList.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {
class IMeshPrimitive;
class Mesh;
class StreamMapping;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

class SkinPose;

/// Reads the corners of one primitive out of its index records. The mesh must not change or go
/// while the reader is used.
class CornerReader {
public:
    /// @param pose moves positions and normals, if there is one; it must outlive the reader.
    CornerReader(const scene::Mesh& mesh, scene::IMeshPrimitive& primitive,
                 scene::StreamSemantic texCoords, const SkinPose* pose = nullptr);

    /// False when the record at @p start, counted in indices, has or gets no finite position. What
    /// else is missing gets neutral values: no normal, texture coordinates 0, white.
    bool read(std::size_t start, Corner& corner) const;

    bool hasTexCoords() const { return texCoord_.values != nullptr; }

private:
    /// Where one kind of value comes from.
    struct Source {
        const float* values = nullptr;
        std::size_t size = 0;    ///< Floats.
        std::size_t stride = 0;  ///< Floats per tuple.
        std::size_t slot = 0;    ///< In the index record.
    };

    void addOwn(const scene::StreamMapping& mapping, std::size_t slot);
    void addVertices(const scene::Mesh& mesh, std::size_t slot);
    Source* sourceFor(scene::StreamSemantic semantic);
    const float* find(const Source& source, std::size_t start) const;
    void readNormal(std::size_t start, Corner& corner) const;
    bool applyPose(std::size_t start, Corner& corner) const;
    void readTexCoord(std::size_t start, Corner& corner) const;
    void readColour(std::size_t start, Corner& corner) const;

    const std::vector<unsigned int>& indices_;
    std::size_t recordLength_ = 0;
    scene::StreamSemantic texCoords_;
    const SkinPose* pose_;
    Source position_, normal_, texCoord_, colour_;
};

}  // namespace vantorix::apps::render
