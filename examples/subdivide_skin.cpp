// Refines a skinned mesh: every triangle becomes four, and the skin follows.

#include <cmath>
#include <core_api/core_api.h>
#include <cstdlib>
#include <iostream>
#include <scene/scene.h>
#include <vector>

#include <boost/make_shared.hpp>

using namespace vantorix::scene;

namespace {

/// A strip of two triangles, two units long.
boost::shared_ptr<Mesh> makeStrip() {
    const auto positions = boost::make_shared<Stream>("positions", 3, true);
    positions->values = std::vector<float>{0, 0, 0, 2, 0, 0, 2, 1, 0, 0, 1, 0};
    positions->count = 4;
    const auto mesh = boost::make_shared<Mesh>("strip", "");
    mesh->addStream(positions);
    mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
        mesh, std::vector<StreamMapping>{StreamMapping(VERTEX, positions, 0)},
        std::vector<unsigned int>{0, 1, 2, 0, 2, 3}));
    return mesh;
}

/// The left end follows joint 0, the right end joint 1, both entirely.
boost::shared_ptr<Controller> makeSkin(const boost::shared_ptr<Mesh>& mesh) {
    const auto joints = boost::make_shared<Stream>("joints", 1, true);
    joints->stringValues = {"shoulder", "hand"};
    const auto weights = boost::make_shared<Stream>("weights", 1, true);
    weights->values = std::vector<float>{1};
    weights->count = 1;

    const auto skin = boost::make_shared<Skin>(mesh);
    skin->setStreams({joints, weights});
    skin->setJointsInput("JOINT", "joints");
    skin->setVertexWeightsInput("JOINT", "joints");
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount({1, 1, 1, 1});         // influences per vertex
    skin->setV({0, 0, 1, 0, 1, 0, 0, 0});  // joint and weight index of each
    const auto controller = boost::make_shared<Controller>("strip-skin", "");
    controller->setSkin(skin);
    return controller;
}

}  // namespace

int main() {
    const auto events = boost::make_shared<vantorix::core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    const auto mesh = makeStrip();
    const auto controller = makeSkin(mesh);
    scene->getGeometryManager()->addGeometry(mesh);
    scene->addController(controller);

    scene->getGeometryManager()->subDivideGeometry("strip", controller);
    scene->stop();

    // The streams were replaced: ask the mesh for the new ones.
    const auto positions = mesh->getVertices().front().stream;
    std::cout << positions->count << " vertices, " << mesh->getPrimitive(0)->getCount()
              << " triangles\n";
    bool isRight = positions->count == 9 && mesh->getPrimitive(0)->getCount() == 8;
    for (int vertex = 0; vertex < positions->count; ++vertex) {
        std::vector<int> joints;
        std::vector<float> weights;
        controller->getSkin()->getVertexJointsAndWeights(static_cast<unsigned int>(vertex), joints,
                                                         weights);
        // Along the strip, the hand's share grows from 0 to 1.
        const float x = positions->values[3 * static_cast<std::size_t>(vertex)];
        float hand = 0;
        for (std::size_t i = 0; i < joints.size(); ++i) hand += joints[i] == 1 ? weights[i] : 0;
        std::cout << "x = " << x << ": the hand moves it by " << hand << '\n';
        isRight = isRight && std::abs(hand - x / 2) < 1e-5f;
    }
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
