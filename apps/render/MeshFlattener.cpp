#include "apps/render/MeshFlattener.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include <Eigen/Geometry>

#include "apps/render/CornerReader.h"
#include "apps/render/PolygonTriangulator.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"

namespace vantorix::apps::render {
namespace {

using Eigen::Vector3f;

Vector3f positionOf(const Corner& corner) { return Vector3f(corner.position); }

bool hasNormal(const Corner& corner) {
    return corner.normal[0] != 0.0f || corner.normal[1] != 0.0f || corner.normal[2] != 0.0f;
}

void giveFaceNormal(Corner (&face)[3]) {
    const Vector3f first = positionOf(face[0]);
    const Vector3f normal =
        (positionOf(face[1]) - first).cross(positionOf(face[2]) - first).stableNormalized();
    if (!normal.allFinite()) return;
    for (auto& corner : face) {
        if (!hasNormal(corner)) std::copy_n(normal.data(), 3, corner.normal);
    }
}

/// Collects triangles whose corners stand at given records.
class Flattening {
public:
    explicit Flattening(const CornerReader& reader) : reader_(reader) {}

    void reserveTriangles(std::size_t count) { corners_.reserve(count * 3); }

    void addTriangle(std::size_t a, std::size_t b, std::size_t c) {
        Corner face[3];
        if (reader_.read(a, face[0]) && reader_.read(b, face[1]) && reader_.read(c, face[2])) {
            addFace(face);
        }
    }

    /// @p count records that follow each other.
    void addPolygon(std::size_t start, std::size_t count, std::size_t stride) {
        if (count < 3) return;
        if (!readPolygon(start, count, stride)) {
            addFan(start, count, stride);
            return;
        }
        for (const auto& triangle : triangulator_.triangulate(positions_)) {
            Corner face[3] = {polygon_[triangle[0]], polygon_[triangle[1]], polygon_[triangle[2]]};
            addFace(face);
        }
    }

    Corners take() {
        ignoreUnsetColours();
        return std::move(corners_);
    }

private:
    void addFace(Corner (&face)[3]) {
        if (!hasNormal(face[0]) || !hasNormal(face[1]) || !hasNormal(face[2])) giveFaceNormal(face);
        corners_.insert(corners_.end(), std::begin(face), std::end(face));
    }

    /// False when a corner cannot be read.
    bool readPolygon(std::size_t start, std::size_t count, std::size_t stride) {
        polygon_.resize(count);
        positions_.clear();
        for (std::size_t i = 0; i < count; ++i) {
            if (!reader_.read(start + i * stride, polygon_[i])) return false;
            positions_.push_back(positionOf(polygon_[i]));
        }
        return true;
    }

    void addFan(std::size_t start, std::size_t count, std::size_t stride) {
        for (std::size_t k = 2; k < count; ++k) {
            addTriangle(start, start + (k - 1) * stride, start + k * stride);
        }
    }

    /// Files that have room for colours but set none leave zeros: nobody paints to be invisible.
    void ignoreUnsetColours() {
        const auto isClear = [](const Corner& corner) { return corner.colour[3] == 0; };
        if (!std::all_of(corners_.begin(), corners_.end(), isClear)) return;
        for (auto& corner : corners_) std::fill_n(corner.colour, 4, std::uint8_t{255});
    }

    const CornerReader& reader_;
    Corners corners_;
    PolygonTriangulator triangulator_;
    Corners polygon_;
    std::vector<Vector3f> positions_;
};

void addTriangles(std::size_t indexCount, std::size_t stride, Flattening& flattening) {
    const std::size_t count = indexCount / stride / 3;
    flattening.reserveTriangles(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t first = i * 3 * stride;
        flattening.addTriangle(first, first + stride, first + 2 * stride);
    }
}

void addPolygons(const std::vector<unsigned int>& polygons, std::size_t indexCount,
                 std::size_t stride, Flattening& flattening) {
    for (std::size_t i = 0; i + 1 < polygons.size(); i += 2) {
        const std::size_t start = polygons[i + 1];
        if (start >= indexCount) continue;
        const std::size_t corners =
            std::min<std::size_t>(polygons[i], (indexCount - start) / stride);
        flattening.addPolygon(start, corners, stride);
    }
}

}  // namespace

FlatPrimitive flatten(const scene::Mesh& mesh, scene::IMeshPrimitive& primitive,
                      scene::StreamSemantic texCoords, const SkinPose* pose) {
    const int stride = primitive.getIndexStreamStride();
    if (stride <= 0) return {};
    const CornerReader reader(mesh, primitive, texCoords, pose);
    Flattening flattening(reader);
    const auto step = static_cast<std::size_t>(stride);
    const std::size_t indexCount = primitive.getIndexStream().size();
    if (const auto* polygons = dynamic_cast<scene::PolygonMeshPrimitive*>(&primitive)) {
        addPolygons(polygons->getPolygonStream(), indexCount, step, flattening);
    } else if (primitive.getType() == scene::IMeshPrimitive::TRIANGLES) {
        addTriangles(indexCount, step, flattening);
    }
    FlatPrimitive flat{flattening.take(), false, reader.hasTexCoords()};
    flat.hasTransparentCorners =
        std::any_of(flat.corners.begin(), flat.corners.end(),
                    [](const Corner& corner) { return corner.colour[3] < 255; });
    return flat;
}

}  // namespace vantorix::apps::render
