#include "fuzz/geometry/GarbageMaker.h"

#include <boost/make_shared.hpp>

#include "scene/controller/Skin.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

namespace vantorix::fuzz {

using namespace scene;
using StreamPointer = boost::shared_ptr<Stream>;

StreamSemantic GarbageMaker::semantic() {
    static constexpr std::array<StreamSemantic, 6> usual{VERTEX,    POSITION, NORMAL,
                                                         TEXCOORD0, COLOR,    TEXCOORD1};
    if (reader_.oneIn(16)) return static_cast<StreamSemantic>(reader_.integer());
    return reader_.of(usual);
}

StreamPointer GarbageMaker::stream() {
    const auto name = reader_.name();
    const int stride = reader_.oneIn(4) ? reader_.integer() : 3;
    const auto made = boost::make_shared<Stream>(name, stride, reader_.flag());
    for (const float value : floats()) made->values.push_back(value);
    made->count = reader_.oneIn(4) ? reader_.integer() : static_cast<int>(made->values.size() / 3);
    if (reader_.oneIn(4)) made->stringValues = {reader_.name(), reader_.name()};
    return made;
}

std::vector<StreamMapping> GarbageMaker::mappings(const std::vector<StreamPointer>& streams) {
    std::vector<StreamMapping> made;
    for (unsigned int i = reader_.below(5); i > 0; --i) {
        const auto meaning = semantic();
        const auto mapped = streams.empty() || reader_.oneIn(4) ? stream() : reader_.of(streams);
        made.emplace_back(meaning, reader_.oneIn(16) ? nullptr : mapped, reader_.integer() % 5);
        if (reader_.oneIn(16)) made.back().offset = reader_.integer();
    }
    return made;
}

std::vector<unsigned int> GarbageMaker::indices() {
    std::vector<unsigned int> made(reader_.below(49));
    for (auto& index : made) index = reader_.index();
    return made;
}

std::vector<float> GarbageMaker::floats() {
    std::vector<float> made(reader_.below(25));
    for (auto& value : made) value = reader_.real();
    return made;
}

boost::shared_ptr<Vertex> GarbageMaker::vertex() {
    if (reader_.oneIn(32)) return {};
    const auto made = boost::make_shared<Vertex>();
    const Eigen::Vector3f position = reader_.vector();
    if (!reader_.oneIn(16)) made->setPosition(position.x(), position.y(), position.z());
    for (unsigned int i = reader_.below(3); i > 0; --i) {
        const auto meaning = semantic();
        const auto values = floats();
        const auto size = static_cast<int>(reader_.flag() ? values.size() % 5 : values.size());
        made->addElement(VertexElement::create(meaning, size, values.data()), reader_.flag());
    }
    return made;
}

boost::shared_ptr<Triangle> GarbageMaker::triangle() {
    const auto a = vertex(), b = vertex();
    return boost::make_shared<Triangle>(a, b, reader_.oneIn(16) ? a : vertex());
}

boost::shared_ptr<Polygon> GarbageMaker::polygon() {
    const auto made = boost::make_shared<Polygon>();
    for (unsigned int i = reader_.below(7); i > 0; --i) made->addVertex(vertex());
    return made;
}

boost::shared_ptr<Skin> GarbageMaker::skin(std::vector<StreamPointer> streams) {
    const auto made = boost::make_shared<Skin>(nullptr);
    for (unsigned int i = reader_.below(3); i > 0; --i) streams.push_back(stream());
    made->setStreams(std::move(streams));
    for (const char* semantic : {"JOINT", "INV_BIND_MATRIX"}) {
        made->setJointsInput(semantic, reader_.name());
    }
    for (const char* semantic : {"JOINT", "WEIGHT"}) {
        made->setVertexWeightsInput(semantic, reader_.name());
    }
    std::vector<int> influences(reader_.below(33));
    for (int& entry : influences) entry = reader_.integer();
    made->setV(influences);
    std::vector<unsigned int> counts(reader_.below(13));
    for (auto& count : counts) count = reader_.index();
    made->setVCount(counts);
    return made;
}

}  // namespace vantorix::fuzz
