#include <algorithm>
#include <numeric>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/import/ImportOptions.h"
#include "apps/import/ModelBuilder.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "scene/transform/ITransformation.h"
#include "tests/import/SampleDocument.h"
#include "tests/support/RecordedScene.h"
#include "tests/support/TemporaryFolder.h"

using namespace vantorix::apps::import;
using namespace vantorix::scene;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;

struct BuiltModel : ::testing::Test {
    void build(const ImportOptions& options = {}) {
        ModelBuilder(document, folder.path("sample.obj"), scene.manager, result).build(options);
    }
    boost::shared_ptr<Node> node(const std::string& id) { return scene->getNodeByID(id); }
    boost::shared_ptr<Mesh> meshAt(const std::string& nodeId) {
        return boost::dynamic_pointer_cast<Mesh>(
            node(nodeId)->getInstanceGeometry(0)->getGeometry());
    }

    vantorix::test::TemporaryFolder folder;
    vantorix::test::RecordedScene scene;
    ModelDocument document = sampleDocument();
    ImportResult result;
};

namespace {

std::vector<std::string> materialSymbols(const Mesh& mesh) {
    std::vector<std::string> symbols;
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        symbols.push_back(primitive->getMaterialSymbol());
    }
    return symbols;
}

std::vector<std::string> parameterLines(const Material& material) {
    std::vector<std::string> lines;
    for (const auto& p : material.getMaterialParameters()) {
        lines.push_back(p->getName() + " " + p->getType() + " " + p->getValue());
    }
    return lines;
}

}  // namespace

TEST_F(BuiltModel, NodesArriveCompleteAndParentsFirst) {
    scene.forgetEvents();
    build();
    std::vector<std::string> arrivals;
    for (const auto& line : scene.eventLines()) {
        if (line.rfind("NodeNewChild|", 0) == 0) arrivals.push_back(line.substr(13));
    }
    EXPECT_THAT(arrivals, ElementsAre(scene->getRoot()->getID() + ",root", "root,square",
                                      "square,half", "square,eye"));
    EXPECT_EQ(result.root, node("root"));

    const auto square = node("square");
    EXPECT_EQ(square->getTransformations()(0, 3), 5.0f);
    const auto elements = square->getOriginalTransformations();
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0]->getType(), ITransformation::MATRIX);
    EXPECT_EQ(elements[0]->getSid(), "transform");
}

TEST_F(BuiltModel, MeshesOfANodeBecomeOneGeometryWithSharedPositions) {
    build();
    const auto mesh = meshAt("square");
    EXPECT_THAT(materialSymbols(*mesh), ElementsAre("red", "wood"));
    // Two triangles along a diagonal: four corners, of which two are shared.
    EXPECT_EQ(mesh->getStream("position_stream")->count, 4);
    EXPECT_EQ(mesh->getStream("NORMAL_stream")->count, 1);
    EXPECT_EQ(mesh->getBVMax(), Eigen::Vector3f(1, 1, 0));

    const auto wood = boost::dynamic_pointer_cast<TriangleMeshPrimitive>(mesh->getPrimitive(1));
    ASSERT_EQ(wood->getCount(), 1u);
    const auto corner = wood->getTriangleAt(0)->getVertexAt(0);
    EXPECT_EQ(corner->getPosition()->toEigenVector(), Eigen::Vector4f(1, 1, 0, 1));
    EXPECT_EQ(corner->getNormal()->toEigenVector(), Eigen::Vector4f(0, 0, 1, 1));
    EXPECT_EQ(corner->getTexCoord(0)->toEigenVector(), Eigen::Vector4f(1, 1, 0, 1));

    const auto instance = node("square")->getInstanceGeometry(0);
    EXPECT_EQ(instance->getMaterial("wood"), scene->getMaterialWithID("wood"));
    EXPECT_EQ(instance->getMaterialList().size(), 2u);
}

TEST_F(BuiltModel, EqualListsShareAGeometryAndEqualMaterialsAPrimitive) {
    document.nodes[0].meshes = {0};
    document.meshes[1].material = 0;
    build();
    EXPECT_EQ(meshAt("root"), meshAt("half"));
    EXPECT_NE(meshAt("root"), meshAt("square"));
    EXPECT_THAT(materialSymbols(*meshAt("square")), ElementsAre("red"));
    EXPECT_EQ(meshAt("square")->getPrimitive(0)->getCount(), 2u);
    EXPECT_EQ(scene->getGeometryManager()->getCount(), 2u);
}

TEST_F(BuiltModel, DifferentAttributesOfOneMaterialDoNotMix) {
    document.meshes[1].material = 0;
    document.meshes[1].normals.clear();
    document.meshes[1].texCoords[0] = {3, {0, 0, 5, 0, 0, 5, 0, 0, 5}};
    document.meshes[1].colors.assign(12, 0.5f);
    build();
    const auto mesh = meshAt("square");
    ASSERT_THAT(materialSymbols(*mesh), ElementsAre("red", "red"));
    const auto second = boost::dynamic_pointer_cast<TriangleMeshPrimitive>(mesh->getPrimitive(1));
    const auto corner = second->getTriangleAt(0)->getVertexAt(2);
    EXPECT_EQ(corner->getPosition()->toEigenVector(), Eigen::Vector4f(0, 1, 0, 1));
    EXPECT_EQ(corner->getTexCoord(0)->toEigenVector(), Eigen::Vector4f(0, 0, 5, 1));
    EXPECT_EQ(corner->getColor()->toEigenVector(), Eigen::Vector4f(0.5f, 0.5f, 0.5f, 0.5f));
    EXPECT_EQ(corner->getNormal()->toEigenVector(), Eigen::Vector4f(0, 0, -1, 1)) << "generated";
}

TEST_F(BuiltModel, MaterialsKeepTheirParametersInOrder) {
    const auto file = folder.write("WOOD.png", "x");
    build();
    EXPECT_THAT(parameterLines(*scene->getMaterialWithID("red")),
                ElementsAre("diffuse float4 1 0 0 1"));
    const auto wood = scene->getMaterialWithID("wood");
    EXPECT_THAT(parameterLines(*wood),
                ElementsAre("diffuseTexture texture wood.png", "diffuseTextureSet int 1",
                            "normalTexture texture *0"));
    EXPECT_EQ(scene->getEffectByID(wood->getEffectID())->getFilename(), "pbr.fx");
    EXPECT_EQ(scene->getImageByID("wood.png")->getFilename(), "wood.png");
    EXPECT_EQ(result.images["wood.png"].path, file);
    ASSERT_TRUE(result.images["*0"].embedded);
    EXPECT_EQ(result.images["*0"].embedded->bytes.size(), 4u);
    EXPECT_THAT(result.report.getNotes(), ElementsAre(HasSubstr("\"square_2\"")));
}

TEST_F(BuiltModel, CamerasAndLightsStandWhereTheFilePutsThem) {
    build();
    const auto camera = scene->getCameraByID("eye");
    ASSERT_TRUE(camera);
    const auto place = scene->getCameraInstanceBySID("eye")->getParentNode();
    EXPECT_EQ(place->getParent(), node("square"));
    EXPECT_EQ(place->getCombinedTransformations().col(3), Eigen::Vector4f(5, 0, 10, 1));
    EXPECT_EQ(place->getInstanceCamera(0), camera);

    const auto sun = scene->getLightByID("sun");
    ASSERT_TRUE(sun);
    EXPECT_EQ(sun->getLightType(), Light::DIRECTIONAL);
    EXPECT_EQ(sun->getColor(), Eigen::Vector3f(1.0f, 0.5f, 0.25f));
    EXPECT_EQ(node("root")->getInstanceLight(0), sun);
}

TEST_F(BuiltModel, ASecondModelGetsIdsOfItsOwn) {
    build();
    build();
    EXPECT_EQ(scene->getRoot()->getChildCount(), 2u);
    EXPECT_TRUE(node("square_2"));
    EXPECT_TRUE(scene->getMaterialWithID("wood_2"));
    EXPECT_EQ(scene->getImageCount(), 4u);
    EXPECT_EQ(scene->getGeometryManager()->getCount(), 4u);
    EXPECT_TRUE(scene->getLightByID("sun_2"));
    EXPECT_TRUE(scene->getCameraByID("eye_2"));
    EXPECT_EQ(scene->getEffectLibrary().size(), 3u) << "effects of a kind are shared";
    EXPECT_EQ(scene->getSceneName(), "sample");
    EXPECT_THAT(result.report.getNotes(),
                IsSupersetOf({"node \"square\": its id is \"square_2\"",
                              "image \"wood.png\": there is no such file"}));
}

TEST_F(BuiltModel, PolygonsStayPolygonsBesideTriangles) {
    document = skinnedDocument();
    document.meshes[2].skin = {};
    build();
    const auto mesh = meshAt("leg");
    ASSERT_THAT(materialSymbols(*mesh), ElementsAre("red", "red"));
    EXPECT_EQ(mesh->getPrimitive(0)->getType(), IMeshPrimitive::TRIANGLES);
    EXPECT_EQ(mesh->getPrimitive(0)->getCount(), 2u);
    const auto polygons = boost::dynamic_pointer_cast<PolygonMeshPrimitive>(mesh->getPrimitive(1));
    ASSERT_TRUE(polygons);
    EXPECT_THAT(polygons->getPolygonStream(), ElementsAre(4, 0));
    // Positions are shared by both primitives; the generated normals are all the same.
    EXPECT_EQ(mesh->getStream("position_stream")->count, 6);
    EXPECT_THAT(polygons->getIndexStream(), ElementsAre(0, 0, 1, 0, 2, 0, 3, 0));
    EXPECT_EQ(polygons->getBVMax()[1], 1.0f);
}

TEST_F(BuiltModel, ASkinIsShownThroughItsController) {
    document = skinnedDocument();
    build();
    const auto controller = scene->getControllerById("leg-skin");
    ASSERT_TRUE(controller);
    EXPECT_EQ(node("leg")->getInstanceGeometryCount(), 0u);
    const auto instance = node("leg")->getInstanceController(0);
    EXPECT_EQ(instance->getController(), controller);
    EXPECT_EQ(instance->getInstanceGeometry()->getGeometry(), controller->getSourceGeometry());
    EXPECT_EQ(instance->getInstanceGeometry()->getMaterial("red"), scene->getMaterialWithID("red"));
    EXPECT_THAT(instance->getSkeletons(), ElementsAre("hip"));
    EXPECT_EQ(node("hip")->getType(), "JOINT");
    EXPECT_EQ(node("knee")->getType(), "JOINT");
    EXPECT_EQ(node("shin")->getType(), "");

    const auto skin = controller->getSkin();
    EXPECT_THAT(skin->getJointsInput("JOINT")->stringValues, ElementsAre("hip", "knee"));
    const auto matrices = skin->getJointsInput("INV_BIND_MATRIX");
    EXPECT_EQ(matrices->stride, 16);
    EXPECT_EQ(matrices->values[16 + 7], -1.0f) << "row by row";
    // Vertex 5 is vertex 3, vertex 4 is not.
    EXPECT_THAT(skin->getVCount(), ElementsAre(1, 0, 2, 1, 1, 2, 1));
    EXPECT_EQ(skin->getVertexWeightsInput("WEIGHT")->count, 3);
}

TEST_F(BuiltModel, EveryCornerKeepsItsInfluences) {
    std::mt19937 random(3);
    const auto pick = [&random](unsigned int count) {
        return static_cast<unsigned int>(random()) % count;
    };
    document = skinnedDocument();
    auto& mesh = document.meshes[2];
    mesh.skin = {mesh.skin.bones, {}, {}, {}};
    mesh.positions.clear();
    for (unsigned int vertex = 0; vertex < 2000; ++vertex) {
        for (int i = 0; i < 3; ++i) mesh.positions.push_back(static_cast<float>(pick(2)));
        mesh.skin.counts.push_back(pick(3));
        for (unsigned int i = mesh.skin.counts.back(); i > 0; --i) {
            mesh.skin.influences.push_back(i - 1);
            mesh.skin.weights.push_back(static_cast<float>(1 + pick(2)));
        }
    }
    mesh.triangles.clear();
    for (unsigned int i = 0; i < 600; ++i) mesh.triangles.push_back(pick(2000));
    build();

    const auto skin = scene->getControllerById("leg-skin")->getSkin();
    const auto built = boost::dynamic_pointer_cast<Mesh>(skin->getSourceGeometry());
    EXPECT_EQ(built->getStream("position_stream")->count, 8 * (1 + 2 + 4)) << "none twice";
    const auto& records = built->getPrimitive(0)->getIndexStream();
    for (std::size_t corner = 0; corner < mesh.triangles.size(); ++corner) {
        const auto vertex = mesh.triangles[corner];
        const auto tuple = records[corner * 2];
        const float* const position = &built->getStream("position_stream")->values[tuple * 3];
        EXPECT_TRUE(std::equal(position, position + 3, &mesh.positions[vertex * 3]));
        std::vector<int> joints;
        std::vector<float> weights;
        skin->getVertexJointsAndWeights(tuple, joints, weights);
        std::reverse(joints.begin(), joints.end());  // They come in ascending order.
        std::reverse(weights.begin(), weights.end());
        const auto first = std::accumulate(mesh.skin.counts.begin(),
                                           mesh.skin.counts.begin() + vertex, std::ptrdiff_t{0});
        ASSERT_EQ(joints.size(), mesh.skin.counts[vertex]);
        EXPECT_TRUE(std::equal(joints.begin(), joints.end(), mesh.skin.influences.begin() + first));
        EXPECT_TRUE(std::equal(weights.begin(), weights.end(), mesh.skin.weights.begin() + first));
    }
}

TEST_F(BuiltModel, PrimitivesBecomeGeometriesWhereAsked) {
    document.nodes[2].meshes = {0, 0};
    ImportOptions options;
    options.separatePrimitives = true;
    build(options);
    ASSERT_EQ(node("square")->getInstanceGeometryCount(), 2u);
    const auto wood = node("square")->getInstanceGeometry(1);
    EXPECT_EQ(wood->getGeometry()->getID(), "square-wood");
    EXPECT_EQ(wood->getGeometry()->getName(), "square");
    EXPECT_EQ(wood->getMaterialList().size(), 1u);
    EXPECT_EQ(wood->getMaterial("wood"), scene->getMaterialWithID("wood"));
    EXPECT_EQ(node("half")->getInstanceGeometryCount(), 1u);
    EXPECT_EQ(meshAt("half")->getPrimitiveCount(), 1u);
    EXPECT_EQ(meshAt("half")->getID(), "square_2");
}

TEST_F(BuiltModel, CombinationsOfMeshesAreLimited) {
    ImportOptions options;
    options.limits.faces = 2;  // The document has two, but they are built as {0, 1} and as {0}.
    EXPECT_THROW(build(options), LimitError);
    EXPECT_EQ(scene->getRoot()->getChildCount(), 0u);
    EXPECT_EQ(scene->getGeometryManager()->getCount(), 0u);
}
