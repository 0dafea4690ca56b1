#include "apps/vantorix/GeometrySize.h"

#include <set>
#include <utility>

#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Stream.h"

namespace vantorix::apps::cli {
namespace {

using Streams = std::set<boost::shared_ptr<scene::Stream>>;

std::size_t tuplesOf(const Streams& streams) {
    std::size_t tuples = 0;
    for (const auto& stream : streams) {
        if (stream->stride <= 0) continue;
        tuples += std::as_const(*stream).values.size() / static_cast<std::size_t>(stream->stride);
    }
    return tuples;
}

/// The streams behind the mappings of one meaning, each once.
Streams streamsFor(const scene::Mesh& mesh, scene::StreamSemantic semantic) {
    Streams streams;
    const auto addFrom = [&](const std::vector<scene::StreamMapping>& mappings) {
        for (const auto& mapping : mappings) {
            if (mapping.semantic == semantic && mapping.stream) streams.insert(mapping.stream);
        }
    };
    addFrom(mesh.getVertices());
    for (const auto& primitive : mesh.getMeshPrimitives()) addFrom(primitive->getStreamMapping());
    return streams;
}

std::size_t floatsOf(const scene::Mesh& mesh) {
    Streams streams;
    for (const auto& stream : mesh.getStreams()) {
        if (stream) streams.insert(stream);
    }
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        for (const auto& mapping : primitive->getStreamMapping()) {
            if (mapping.stream) streams.insert(mapping.stream);
        }
    }
    std::size_t floats = 0;
    for (const auto& stream : streams) floats += std::as_const(*stream).values.size();
    return floats;
}

}  // namespace

GeometrySize& GeometrySize::operator+=(const GeometrySize& other) {
    positions += other.positions;
    normals += other.normals;
    faces += other.faces;
    bytes += other.bytes;
    influences += other.influences;
    return *this;
}

GeometrySize measure(const scene::Mesh& mesh,
                     const boost::shared_ptr<scene::Controller>& controller) {
    GeometrySize size;
    size.positions = tuplesOf(streamsFor(mesh, scene::POSITION));
    size.normals = tuplesOf(streamsFor(mesh, scene::NORMAL));
    size.bytes = floatsOf(mesh) * sizeof(float);
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        size.faces += primitive->getCount();
        size.bytes += primitive->getIndexStream().size() * sizeof(unsigned int);
    }
    const auto skin = controller ? controller->getSkin() : nullptr;
    if (!skin) return size;
    size.influences = skin->getV().size() / 2;
    size.bytes += (skin->getV().size() + skin->getVCount().size()) * sizeof(int);
    const auto weights = skin->getVertexWeightsInput("WEIGHT");
    if (weights) size.bytes += std::as_const(*weights).values.size() * sizeof(float);
    return size;
}

}  // namespace vantorix::apps::cli
