#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include <Eigen/Core>
#include <boost/container/small_vector.hpp>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {

struct VertexElement;

/// A corner of a face: at most one element per semantic, in the order in which they came.
///
/// Ownership: elements are shared; copies of a vertex share them. What setters store becomes
/// elements when somebody first asks for one of them, which needs memory.
/// Threads: any number of threads may read one vertex; changes need a lock of the caller's.
class VANTORIX_SCENE_EXPORT Vertex {
public:
    /// As many as vertices usually have lie in the list itself.
    using Elements = boost::container::small_vector<boost::shared_ptr<VertexElement>, 3>;

    Vertex();
    Vertex(const Vertex& other);
    Vertex& operator=(const Vertex& other);
    virtual ~Vertex();

    /// Appends @p element, or takes the place of the element of the same semantic when
    /// @p replace is set; otherwise that one stays. An empty pointer is ignored.
    void addElement(boost::shared_ptr<VertexElement> element, bool replace);

    unsigned int getElementCount() const;
    /// An empty pointer outside the list.
    boost::shared_ptr<VertexElement> getElementAt(unsigned int index) const;
    boost::shared_ptr<VertexElement> getElementBySemantic(StreamSemantic semantic) const;
    const Elements& getElements() const;

    /// @name Elements by meaning: an empty pointer when the vertex has none
    /// @{
    boost::shared_ptr<VertexElement> getPosition() const;
    boost::shared_ptr<VertexElement> getColor() const;
    boost::shared_ptr<VertexElement> getNormal() const;
    boost::shared_ptr<VertexElement> getBinormal() const;
    boost::shared_ptr<VertexElement> getTangent() const;
    /// A set outside 0 to 7 names the semantic INVALID.
    boost::shared_ptr<VertexElement> getTexCoord(int set) const;
    boost::shared_ptr<VertexElement> getTexCoord(StreamSemantic semantic) const;
    /// @}

    /// The first three floats of the position; missing ones, and a missing position, count as 0.
    Eigen::Vector3f getPositionVector() const;

    /// @name Setters
    /// Each stores a new element with a copy of the floats and replaces the one that was there.
    /// @{
    void setPosition(float x, float y);
    void setPosition(float x, float y, float z);
    void setPosition(float x, float y, float z, float w);
    /// Takes real pointers only, so that (1, 0) remains a pair of coordinates.
    template <typename Float>
    void setPosition(int size, Float* values) {
        setValues(POSITION, size, values);
    }
    void setPosition(const std::vector<float>& values);

    void setColor(float r, float g, float b, float a);
    void setColor(const std::vector<float>& values);
    void setNormal(float x, float y, float z);
    void setNormal(const std::vector<float>& values);
    void setBinormal(float x, float y, float z);
    void setBinormal(const std::vector<float>& values);
    void setTangent(float x, float y, float z);
    void setTangent(const std::vector<float>& values);

    void setTextCoord(int set, float s);
    void setTextCoord(int set, float s, float t);
    void setTextCoord(int set, float s, float t, float p);
    void setTextCoord(int set, float s, float t, float p, float q);
    /// Takes real pointers only, so that (0, 1, 0) remains set 0 with two coordinates.
    template <typename Float>
    void setTextCoord(int set, int size, Float* values) {
        setValues(textureSemantic(set), size, values);
    }
    void setTextCoord(int set, const std::vector<float>& values);
    /// @}

    /// Writes "x, y, z" to standard output, with no line end.
    void print() const;

private:
    friend class VertexValues;

    static StreamSemantic textureSemantic(int set);
    void setValues(StreamSemantic semantic, int size, const float* values);
    void setValues(StreamSemantic semantic, const std::vector<float>& values);
    void setValues(StreamSemantic semantic, std::initializer_list<float> values);
    Elements& makeElements() const;

    // Made when somebody asks for it; from then on it counts instead of the values below.
    mutable std::atomic<Elements*> elements_{nullptr};
    // Few and small values lie in the vertex, one after the other: a byte for each, first ones
    // lowest, with its semantic in the upper half and its size in the lower one, which is not 0.
    std::uint64_t shape_ = 0;
    std::array<float, 14> floats_;
};

}  // namespace vantorix::scene
