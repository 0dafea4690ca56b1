#include "tests/import/SampleDocument.h"

using namespace vantorix::apps::import;

namespace {

ModelMesh triangleMesh(std::uint32_t material, float offset) {
    ModelMesh mesh;
    mesh.name = "square";
    mesh.material = material;
    mesh.positions = {offset, offset, 0, 1, 0, 0, 0, 1, 0};
    mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1};
    mesh.texCoords = {{2, {offset, offset, 1, 0, 0, 1}}};
    mesh.triangles = {0, 1, 2};
    return mesh;
}

ModelNode node(const std::string& name, std::uint32_t parent, std::vector<std::uint32_t> meshes) {
    ModelNode result;
    result.name = name;
    result.parent = parent;
    result.meshes = std::move(meshes);
    return result;
}

}  // namespace

ModelDocument sampleDocument() {
    ModelDocument document;
    document.name = "sample";
    document.format = "Sample";
    document.nodes = {node("root", 0, {}), node("square", 0, {0, 1}), node("half", 1, {0})};
    document.nodes[1].matrix[12] = 5.0f;
    document.meshes = {triangleMesh(0, 0.0f), triangleMesh(1, 1.0f)};
    document.materials = {{"red", "phong", {{"diffuse", "float4", "1 0 0 1"}}, {}},
                          {"wood",
                           "pbr",
                           {},
                           {{"diffuseTexture", "wood.png", -1, 1}, {"normalTexture", "*0", 0, 0}}}};
    document.textures = {{"bumps", "rgba8", 1, 1, {1, 2, 3, 4}}};
    document.cameras.resize(1);
    document.cameras[0].name = "eye";
    document.cameras[0].placement.node = 1;
    document.cameras[0].placement.matrix[14] = 10.0f;
    document.lights.resize(1);
    document.lights[0].name = "sun";
    document.lights[0].kind = ModelLight::DIRECTIONAL;
    document.lights[0].color = {1.0f, 0.5f, 0.25f};
    document.notes = {"a note"};
    return document;
}

ModelDocument skinnedDocument() {
    auto document = sampleDocument();
    document.nodes.push_back(node("hip", 0, {}));
    document.nodes.push_back(node("shin", 3, {}));
    document.nodes.push_back(node("knee", 4, {}));
    document.nodes.push_back(node("leg", 0, {2}));
    ModelMesh mesh;
    mesh.name = "leg";
    mesh.positions = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 2, 0, 0, 2, 0};
    mesh.triangles = {4, 6, 7, 5, 2, 6};
    mesh.polygonSizes = {4};
    mesh.polygons = {0, 1, 2, 3};
    mesh.skin.bones.resize(2);
    mesh.skin.bones[0].node = 3;
    mesh.skin.bones[1].node = 5;
    mesh.skin.bones[1].inverseBind[13] = -1.0f;
    mesh.skin.counts = {1, 0, 2, 1, 1, 1, 3, 1};
    mesh.skin.influences = {0, 0, 1, 0, 1, 0, 1, 1, 0, 1};
    mesh.skin.weights = {1, 0.5f, 0.5f, 1, 1, 1, 0.25f, 0.125f, 0.5f, 1};
    document.meshes.push_back(mesh);
    ModelChannel knee, hip;
    knee.node = 5;
    knee.positions = {{0}, {0, 1, 0}};
    knee.rotations = {{0, 1}, {0, 0, 0, 1, 0, 0, 0.6f, 0.8f}};
    hip.node = 3;
    hip.positions = {{0.5f, 1.5f}, {0, 1, 0, 0, 2, 0}};
    document.clips = {{"bend", 2.0f, {knee, hip}}};
    return document;
}

WorkerAnswer sampleAnswer() {
    WorkerAnswer answer;
    answer.status = WorkerAnswer::DONE;
    answer.document = skinnedDocument();
    return answer;
}
