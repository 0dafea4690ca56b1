#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include <boost/container/small_vector.hpp>

#include "scene/geometry/StreamSemantic.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {

/// One value of a vertex.
struct VertexValue {
    StreamSemantic semantic;
    int size;
    const float* values;
};

/// Reads and stores the values of a vertex without making elements of them.
class VertexValues {
public:
    using Shape = std::uint64_t;  ///< As in Vertex.
    static constexpr unsigned int bitsPerValue = 8;
    static constexpr unsigned int bitsPerSize = 4;
    static constexpr Shape sizeMask = (Shape{1} << bitsPerSize) - 1;

    /// The semantics and sizes of a vertex's values; 0 when there are none, or when they are too
    /// many, too large or missing.
    static Shape shapeOf(const Vertex& vertex) {
        const auto* const elements = vertex.elements_.load(std::memory_order_acquire);
        return elements ? shapeOf(*elements) : vertex.shape_;
    }
    /// Those values one after the other; null where they lie in elements.
    static const float* rowOf(const Vertex& vertex) {
        const auto* const elements = vertex.elements_.load(std::memory_order_acquire);
        return elements ? nullptr : vertex.floats_.data();
    }

    static StreamSemantic semanticIn(Shape shape) {
        return static_cast<StreamSemantic>((shape >> bitsPerSize) & sizeMask);
    }
    static std::size_t sizeIn(Shape shape) { return shape & sizeMask; }
    /// Of all values together.
    static std::size_t floatsIn(Shape shape) {
        std::size_t floats = 0;
        for (; shape != 0; shape >>= bitsPerValue) floats += sizeIn(shape);
        return floats;
    }

    /// Calls @p visit with each value, in the order in which they came.
    template <typename Visit>
    static void forEach(const Vertex& vertex, const Visit& visit) {
        if (const auto* const elements = vertex.elements_.load(std::memory_order_acquire)) {
            for (const auto& element : *elements) {
                visit(VertexValue{element->semantic, element->size, element->values});
            }
            return;
        }
        const float* values = vertex.floats_.data();
        for (auto shape = vertex.shape_; shape != 0; shape >>= bitsPerValue) {
            visit(VertexValue{semanticIn(shape), static_cast<int>(sizeIn(shape)), values});
            values += sizeIn(shape);
        }
    }

    static std::size_t countOf(const Vertex& vertex) {
        std::size_t count = 0;
        forEach(vertex, [&](const VertexValue&) { ++count; });
        return count;
    }

    using List = boost::container::small_vector<VertexValue, 8>;
    static List of(const Vertex& vertex) {
        List values;
        forEach(vertex, [&](const VertexValue& value) { values.push_back(value); });
        return values;
    }

    /// The first value of a semantic.
    static std::optional<VertexValue> find(const Vertex& vertex, StreamSemantic semantic) {
        std::optional<VertexValue> found;
        forEach(vertex, [&](const VertexValue& value) {
            if (!found && value.semantic == semantic) found = value;
        });
        return found;
    }

    /// As the setters of the vertex do.
    static void set(Vertex& vertex, const VertexValue& value) {
        vertex.setValues(value.semantic, value.size, value.values);
    }

    /// The same without an element; false, with nothing changed, when the vertex has elements, no
    /// room or a value of that semantic with another size.
    static bool keep(Vertex& vertex, const VertexValue& value) {
        const auto size = static_cast<std::size_t>(std::max(value.size, 0));
        if (size == 0 || size > sizeMask || vertex.elements_.load(std::memory_order_relaxed)) {
            return false;
        }
        std::size_t start = 0;
        unsigned int place = 0;
        auto shape = vertex.shape_;
        for (; shape != 0 && semanticIn(shape) != value.semantic; shape >>= bitsPerValue) {
            start += sizeIn(shape);
            place += bitsPerValue;
        }
        if (shape != 0 ? sizeIn(shape) != size : start + size > vertex.floats_.size()) return false;
        if (shape == 0) {
            if (place == mostBits) return false;
            const auto semantic = static_cast<Shape>(value.semantic);
            vertex.shape_ |= (semantic << bitsPerSize | size) << place;
        }
        std::copy_n(value.values, size, vertex.floats_.data() + start);
        return true;
    }

private:
    static constexpr unsigned int mostBits = 64;

    static Shape shapeOf(const Vertex::Elements& elements) {
        Shape shape = 0;
        unsigned int place = 0;
        for (const auto& element : elements) {
            const auto semantic = static_cast<Shape>(element->semantic);
            const auto size = static_cast<Shape>(element->size);
            const bool isSmall = semantic <= sizeMask && size > 0 && size <= sizeMask;
            if (!isSmall || !element->values || place == mostBits) return 0;
            shape |= (semantic << bitsPerSize | size) << place;
            place += bitsPerValue;
        }
        return shape;
    }
};

}  // namespace vantorix::scene
