#pragma once

#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "fuzz/CallReader.h"
#include "scene/geometry/StreamMapping.h"

namespace vantorix::scene {
class Polygon;
class Skin;
class Stream;
class Triangle;
class Vertex;
}  // namespace vantorix::scene

namespace vantorix::fuzz {

/// Streams, mappings, faces and skins out of an input: usual ones, and ones that contradict
/// themselves.
class GarbageMaker {
public:
    explicit GarbageMaker(CallReader& reader) : reader_(reader) {}

    scene::StreamSemantic semantic();
    boost::shared_ptr<scene::Stream> stream();
    std::vector<scene::StreamMapping> mappings(
        const std::vector<boost::shared_ptr<scene::Stream>>& streams);
    std::vector<unsigned int> indices();
    std::vector<float> floats();
    boost::shared_ptr<scene::Vertex> vertex();
    boost::shared_ptr<scene::Triangle> triangle();
    boost::shared_ptr<scene::Polygon> polygon();
    /// Over the streams given, and some of its own.
    boost::shared_ptr<scene::Skin> skin(std::vector<boost::shared_ptr<scene::Stream>> streams);

private:
    CallReader& reader_;
};

}  // namespace vantorix::fuzz
