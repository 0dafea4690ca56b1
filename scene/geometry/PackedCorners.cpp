#include "scene/geometry/PackedCorners.h"

#include <cstring>
#include <vector>

#include <boost/make_shared.hpp>

#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexValues.h"

namespace vantorix::scene {
namespace {

using VertexBlock = std::array<Vertex, 3>;

}  // namespace

bool PackedCorners::setPositions(const std::array<Eigen::Vector3f, 3>& positions) {
    for (std::size_t corner = 0; corner < positions.size(); ++corner) {
        if (findPosition(corner).size != 3) return false;
    }
    for (std::size_t corner = 0; corner < positions.size(); ++corner) {
        std::memcpy(words() + findPosition(corner).start, positions[corner].data(),
                    3 * sizeof(float));
    }
    return true;
}

std::array<boost::shared_ptr<Vertex>, 3> PackedCorners::makeVertices() const {
    const auto vertices = boost::make_shared<VertexBlock>();
    std::array<boost::shared_ptr<Vertex>, 3> handles;
    std::vector<float> floats;
    for (std::size_t corner = 0; corner < handles.size(); ++corner) {
        handles[corner] = boost::shared_ptr<Vertex>(vertices, &(*vertices)[corner]);
        for (std::size_t word = begin(corner); word < ends_[corner];) {
            const auto value = read(word);
            floats.resize(value.size);
            std::memcpy(floats.data(), words() + value.start, value.size * sizeof(float));
            VertexValues::set(*handles[corner],
                              {value.semantic, static_cast<int>(value.size), floats.data()});
            word = value.end();
        }
    }
    return handles;
}

PackedCorners::Value PackedCorners::read(std::size_t word) const {
    const std::uint32_t header = words()[word];
    const auto semantic = static_cast<StreamSemantic>(header & ((1u << semanticBits) - 1));
    return {semantic, header >> semanticBits, word + 1};
}

PackedCorners::Value PackedCorners::findPosition(std::size_t corner) const {
    Value position{INVALID, 0, 0};
    for (std::size_t word = begin(corner); word < ends_[corner];) {
        const auto value = read(word);
        if (value.semantic == POSITION) position = value;
        word = value.end();
    }
    return position;
}

}  // namespace vantorix::scene
