#include "scene/geometry/PackedCorners.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <boost/make_shared.hpp>

#include "scene/geometry/BlockAllocation.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {
namespace {

constexpr unsigned int semanticBits = 4;

using VertexBlock = std::array<Vertex, 3>;

/// Elements in one block with the floats behind them, handed out one after the other.
class ElementBlock {
public:
    ElementBlock(std::size_t elements, std::size_t floats) : element_(nullptr), floats_(nullptr) {
        const std::size_t size = elements * sizeof(VertexElement) + floats * sizeof(float);
        block_ = makeBlock<VertexElement>(size, [&](void* place, void*) {
            // One element too many is reserved, so that none at all is possible too.
            element_ = new (place) VertexElement[elements + 1];
            floats_ = reinterpret_cast<float*>(element_ + elements + 1);
            return element_;
        });
    }

    boost::shared_ptr<VertexElement> next(StreamSemantic semantic, const std::uint32_t* words,
                                          std::size_t size) {
        element_->semantic = semantic;
        element_->size = static_cast<int>(size);
        element_->values = floats_;
        std::memcpy(floats_, words, size * sizeof(float));
        floats_ += size;
        return boost::shared_ptr<VertexElement>(block_, element_++);
    }

private:
    boost::shared_ptr<VertexElement> block_;
    VertexElement* element_;
    float* floats_;
};

}  // namespace

void PackedCorners::add(std::size_t corner, StreamSemantic semantic, const float* values,
                        std::size_t size) {
    std::uint32_t* const header = words() + ends_.back();
    *header = static_cast<std::uint32_t>(semantic) | static_cast<std::uint32_t>(size)
                                                         << semanticBits;
    std::memcpy(header + 1, values, size * sizeof(float));
    const auto end = ends_.back() + static_cast<std::uint32_t>(wordsFor(size));
    std::fill(ends_.begin() + static_cast<std::ptrdiff_t>(corner), ends_.end(), end);
}

Eigen::Vector3f PackedCorners::position(std::size_t corner) const {
    Eigen::Vector3f position = Eigen::Vector3f::Zero();
    const auto value = findPosition(corner);
    std::memcpy(position.data(), words() + value.start,
                std::min<std::size_t>(value.size, 3) * sizeof(float));
    return position;
}

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
    // Elements have a block apart: vertices that shared it with them would keep themselves alive.
    ElementBlock elements(countValues(), ends_.back());
    const auto vertices = boost::make_shared<VertexBlock>();
    std::array<boost::shared_ptr<Vertex>, 3> handles;
    for (std::size_t corner = 0; corner < handles.size(); ++corner) {
        handles[corner] = boost::shared_ptr<Vertex>(vertices, &(*vertices)[corner]);
        for (std::size_t word = begin(corner); word < ends_[corner];) {
            const auto value = read(word);
            auto element = elements.next(value.semantic, words() + value.start, value.size);
            handles[corner]->addElement(std::move(element), true);
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

std::size_t PackedCorners::countValues() const {
    std::size_t count = 0;
    for (std::size_t word = 0; word < ends_.back(); ++count) word = read(word).end();
    return count;
}

}  // namespace vantorix::scene
