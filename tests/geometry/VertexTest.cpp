#include <algorithm>
#include <random>

#include "scene/geometry/Polygon.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

const Floats three = {7, 8, 9};

TEST(Vertex, EverySetterStoresItsSemanticAndSize) {
    struct Case {
        const char* name;
        std::function<void(Vertex&)> set;
        StreamSemantic semantic;
        Floats values;
    };
    const std::vector<Case> cases = {
        {"position2", [](Vertex& v) { v.setPosition(1, 0); }, POSITION, {1, 0}},
        {"position3", [](Vertex& v) { v.setPosition(1, 2, 3); }, POSITION, {1, 2, 3}},
        {"position4", [](Vertex& v) { v.setPosition(1, 2, 3, 4); }, POSITION, {1, 2, 3, 4}},
        {"position*", [](Vertex& v) { v.setPosition(2, three.data()); }, POSITION, {7, 8}},
        {"positions", [](Vertex& v) { v.setPosition(three); }, POSITION, three},
        {"color", [](Vertex& v) { v.setColor(1, 2, 3, 4); }, COLOR, {1, 2, 3, 4}},
        {"colors", [](Vertex& v) { v.setColor(three); }, COLOR, three},
        {"normal", [](Vertex& v) { v.setNormal(1, 2, 3); }, NORMAL, {1, 2, 3}},
        {"normals", [](Vertex& v) { v.setNormal(three); }, NORMAL, three},
        {"binormal", [](Vertex& v) { v.setBinormal(1, 2, 3); }, BINORMAL, {1, 2, 3}},
        {"binormals", [](Vertex& v) { v.setBinormal(three); }, BINORMAL, three},
        {"tangent", [](Vertex& v) { v.setTangent(1, 2, 3); }, TANGENT, {1, 2, 3}},
        {"tangents", [](Vertex& v) { v.setTangent(three); }, TANGENT, three},
        {"texture1", [](Vertex& v) { v.setTextCoord(0, 1); }, TEXCOORD0, {1}},
        {"texture2", [](Vertex& v) { v.setTextCoord(1, 1, 0); }, TEXCOORD1, {1, 0}},
        {"texture3", [](Vertex& v) { v.setTextCoord(2, 1, 2, 3); }, TEXCOORD2, {1, 2, 3}},
        {"texture4", [](Vertex& v) { v.setTextCoord(7, 1, 2, 3, 4); }, TEXCOORD7, {1, 2, 3, 4}},
        {"texture*", [](Vertex& v) { v.setTextCoord(3, 2, three.data()); }, TEXCOORD3, {7, 8}},
        {"textures", [](Vertex& v) { v.setTextCoord(4, three); }, TEXCOORD4, three},
        {"no set 8", [](Vertex& v) { v.setTextCoord(8, 1); }, INVALID, {1}},
        {"no set -1", [](Vertex& v) { v.setTextCoord(-1, 1); }, INVALID, {1}},
    };
    for (const auto& [name, set, semantic, values] : cases) {
        Vertex vertex;
        set(vertex);
        set(vertex);
        ASSERT_EQ(vertex.getElementCount(), 1u) << name;
        EXPECT_EQ(vertex.getElementAt(0)->semantic, semantic) << name;
        EXPECT_EQ(floatsOf(vertex.getElementBySemantic(semantic)), values) << name;
    }
}

TEST(Vertex, ElementsAreFoundByMeaning) {
    Vertex vertex;
    EXPECT_FALSE(vertex.getPosition() || vertex.getColor() || vertex.getNormal());
    vertex.setPosition(1, 2, 3);
    vertex.setColor(4, 5, 6, 7);
    vertex.setNormal(three);
    vertex.setBinormal(three);
    vertex.setTangent(three);
    vertex.setTextCoord(5, 1);
    EXPECT_EQ(vertex.getPosition(), vertex.getElementAt(0));
    EXPECT_EQ(vertex.getColor(), vertex.getElementAt(1));
    EXPECT_EQ(vertex.getNormal(), vertex.getElementAt(2));
    EXPECT_EQ(vertex.getBinormal(), vertex.getElementAt(3));
    EXPECT_EQ(vertex.getTangent(), vertex.getElementAt(4));
    EXPECT_EQ(vertex.getTexCoord(5), vertex.getElementAt(5));
    EXPECT_EQ(vertex.getTexCoord(TEXCOORD5), vertex.getElementAt(5));
    EXPECT_FALSE(vertex.getTexCoord(8));
    EXPECT_FALSE(vertex.getElementAt(6));
}

TEST(Vertex, AnElementReplacesItsLikeInPlaceOnlyOnRequest) {
    Vertex vertex;
    vertex.setNormal(1, 0, 0);
    vertex.setColor(1, 1, 1, 1);
    const auto other = VertexElement::create(NORMAL, 3, three.data());
    vertex.addElement(other, false);
    EXPECT_EQ(floatsOf(vertex.getNormal()), (Floats{1, 0, 0}));
    vertex.addElement(other, true);
    EXPECT_EQ(vertex.getElementAt(0), other);
    vertex.addElement({}, true);
    EXPECT_EQ(vertex.getElementCount(), 2u);
}

TEST(Vertex, HoldsWhatWasSetWhateverItsSizeAndWhoeverAskedBefore) {
    std::mt19937 random(5);
    const auto below = [&](unsigned int limit) { return random() % limit; };
    for (int round = 0; round < 300; ++round) {
        Vertex vertex;
        std::vector<std::pair<int, Floats>> expected;  // Texture sets, 8 for INVALID.
        for (int step = 0; step < 20; ++step) {
            const int set = static_cast<int>(below(9));
            const Floats values(below(round % 3 == 0 ? 18 : 4), static_cast<float>(step));
            vertex.setTextCoord(set, values);
            const auto present = std::find_if(expected.begin(), expected.end(),
                                              [&](const auto& pair) { return pair.first == set; });
            if (present != expected.end()) {
                present->second = values;
            } else {
                expected.emplace_back(set, values);
            }
            const bool isAsked = below(30) == 0;
            ASSERT_TRUE(!isAsked || vertex.getElements().size() == expected.size());
        }
        ASSERT_EQ(vertex.getElementCount(), expected.size());
        const Vertex copy = vertex;
        for (unsigned int i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(floatsOf(vertex.getElementAt(i)), expected[i].second);
            EXPECT_EQ(copy.getTexCoord(expected[i].first), vertex.getElementAt(i));
        }
    }
}

TEST(Vertex, WhatIsWrittenToAnElementIsTheVertexsValue) {
    Vertex vertex;
    vertex.setPosition(1, 2, 3);
    vertex.getPosition()->values[0] = 7;
    EXPECT_EQ(vertex.getPositionVector(), Eigen::Vector3f(7, 2, 3));
    vertex.getPosition()->size = 1;
    EXPECT_EQ(vertex.getPositionVector(), Eigen::Vector3f(7, 0, 0));
}

TEST(Vertex, CopiesShareTheElements) {
    Vertex vertex;
    vertex.setPosition(1, 2, 3);
    Vertex copy = vertex;
    EXPECT_EQ(copy.getPosition(), vertex.getPosition());
    copy.setPosition(4, 5, 6);
    EXPECT_EQ(vertex.getPositionVector(), Eigen::Vector3f(1, 2, 3));
}

TEST(Vertex, AnElementOutlivesItsVertex) {
    auto vertex = makeVertex({1, 2, 3});
    const auto element = vertex->getPosition();
    vertex.reset();
    EXPECT_EQ(floatsOf(element), (Floats{1, 2, 3}));
}

TEST(Vertex, MissingCoordinatesCountAsZero) {
    Vertex vertex;
    EXPECT_EQ(vertex.getPositionVector(), Eigen::Vector3f(0, 0, 0));
    vertex.setPosition(1, 2);
    EXPECT_EQ(vertex.getPositionVector(), Eigen::Vector3f(1, 2, 0));
    EXPECT_EQ(outputOf([&] { vertex.print(); }), "1, 2, 0");
}

TEST(Vertex, APlainRecordWithoutFloatsIsHarmless) {
    const auto record = boost::make_shared<VertexElement>();
    record->semantic = POSITION;
    record->size = 3;
    Vertex vertex;
    vertex.addElement(record, true);
    EXPECT_EQ(vertex.getPositionVector(), Eigen::Vector3f(0, 0, 0));
    vertex.setNormal(Floats());
    EXPECT_EQ(vertex.getNormal()->size, 0);
    float* const nothing = nullptr;
    vertex.setTextCoord(0, 2, nothing);
    EXPECT_FALSE(vertex.getTexCoord(0));
}

TEST(Polygon, TakesNoPartInNormalsTransformsAndPicking) {
    Polygon polygon;
    polygon.addVertex(makeVertex({1, 2, 3}));
    const Eigen::Vector3f corner(9, 9, 9);
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(polygon.getFaceNormal(), Eigen::Vector3f(0, 0, 0)); }),
              "Polygon::getFaceNormal() not implemented yet!\n");
    EXPECT_EQ(outputOf([&] { polygon.applyTransform(Eigen::Matrix4f::Zero()); }),
              "Polygon::applyTransform() not implemented yet!\n");
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(polygon.intersects(-corner, corner)); }),
              "Polygon::intersects() not implemented yet!\n");
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(polygon.intersects(boost::shared_ptr<Ray>())); }),
              "Polygon::intersects() not implemented yet!\n");
    EXPECT_EQ(outputOf([&] { polygon.print(); }), "");
    EXPECT_EQ(polygon.getVertexAt(0)->getPositionVector(), Eigen::Vector3f(1, 2, 3));
    EXPECT_FALSE(polygon.getVertexAt(1));
}

}  // namespace
}  // namespace vantorix::scene
