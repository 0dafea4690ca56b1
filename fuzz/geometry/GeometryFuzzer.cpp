// Fuzzes streams, faces, normals, subdivision, skins, octrees and picking: the input is a list of
// calls.

#include <boost/make_shared.hpp>

#include "core_api/logger/Logger.h"

#include "fuzz/Fuzzer.h"
#include "fuzz/geometry/GarbageMaker.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/PickHit.h"
#include "scene/spatial/Ray.h"

namespace vantorix::fuzz {
namespace {

using namespace scene;
using MeshPointer = boost::shared_ptr<Mesh>;
using StreamPointer = boost::shared_ptr<Stream>;

/// Four meshes with streams and primitives, a controller and an octree, which calls pick by number.
class GeometryFuzzer {
public:
    explicit GeometryFuzzer(CallReader reader) : reader_(reader), make_(reader_) {
        for (auto& mesh : meshes_) mesh = boost::make_shared<Mesh>("a", "mesh");
    }

    void run() {
        while (!reader_.isAtEnd()) tolerate(&GeometryFuzzer::step);
        for (const auto& mesh : meshes_) checkMesh(*mesh);
    }

private:
    using Call = void (GeometryFuzzer::*)();
    static constexpr unsigned int mostFaces = 64;

    /// What positions of more than three components throw is the only error there is.
    void tolerate(Call call) {
        try {
            (this->*call)();
        } catch (const std::out_of_range& error) {
            require(error.what() == std::string("invalid vector<T> subscript"), "the known error");
        }
    }

    void step() {
        static constexpr std::array<Call, 20> calls{
            &GeometryFuzzer::addTriangles,    &GeometryFuzzer::addTriangles,
            &GeometryFuzzer::addPolygons,     &GeometryFuzzer::insertValues,
            &GeometryFuzzer::spoilStream,     &GeometryFuzzer::editStreams,
            &GeometryFuzzer::setVertices,     &GeometryFuzzer::addGarbageTriangles,
            &GeometryFuzzer::replaceMesh,     &GeometryFuzzer::addGarbagePolygons,
            &GeometryFuzzer::askBounds,       &GeometryFuzzer::recalculateNormals,
            &GeometryFuzzer::subdivide,       &GeometryFuzzer::replaceSkin,
            &GeometryFuzzer::askInfluences,   &GeometryFuzzer::cloneMesh,
            &GeometryFuzzer::calculateOctree, &GeometryFuzzer::pick,
            &GeometryFuzzer::readFaces,       &GeometryFuzzer::transformFaces};
        (this->*reader_.of(calls))();
    }

    MeshPointer& mesh() { return reader_.of(meshes_); }

    StreamPointer stream() {
        const auto streams = mesh()->getStreams();
        const auto found = streams.empty() ? nullptr : reader_.of(streams);
        return found ? found : make_.stream();
    }

    template <typename Primitive>
    boost::shared_ptr<Primitive> primitive() {
        const auto& owner = mesh();
        for (const auto& each : owner->getMeshPrimitives()) {
            if (auto found = boost::dynamic_pointer_cast<Primitive>(each)) return found;
        }
        auto made = boost::make_shared<Primitive>(owner, std::vector<StreamMapping>());
        owner->addPrimitive(made);
        return made;
    }

    static unsigned int faceCount(const Mesh& mesh) {
        unsigned int faces = 0;
        for (const auto& each : mesh.getMeshPrimitives()) faces += each->getCount();
        return faces;
    }

    void addTriangles() {
        const auto target = primitive<TriangleMeshPrimitive>();
        for (unsigned int i = reader_.below(4); i > 0; --i) {
            const auto before = target->getCount();
            const int stride = target->getIndexStreamStride();
            const auto triangle = make_.triangle();
            const bool added = target->addTriangle(triangle, reader_.flag());
            // A record that became longer makes fewer triangles of the indices that were there.
            const bool isComparable = stride > 0 && stride == target->getIndexStreamStride();
            require(!added || !isComparable || target->getCount() > before,
                    "an added triangle counts");
        }
    }

    void addPolygons() {
        const auto target = primitive<PolygonMeshPrimitive>();
        const auto before = target->getCount();
        const auto polygon = make_.polygon();
        if (target->addPolygon(polygon, reader_.flag())) {
            require(target->getCount() == before + 1, "an added polygon counts");
        }
    }

    void insertValues() {
        const auto target = stream();
        const auto values = make_.floats();
        const int stride = reader_.flag() ? target->stride : static_cast<int>(values.size());
        if (stride > static_cast<int>(values.size())) return;
        const bool wasSound = isSound(*target);
        const int tuple = target->insertValue(stride, values.data());
        if (tuple < 0 || stride <= 0 || !wasSound) return;
        require(isSound(*target) && tuple < target->count, "a sound stream stays sound");
        const auto size = static_cast<std::size_t>(stride);
        const float* const stored = target->values.data() + static_cast<std::size_t>(tuple) * size;
        require(std::memcmp(stored, values.data(), sizeof(float) * size) == 0,
                "a value lies where the stream says");
    }

    static bool isSound(const Stream& checked) {
        return checked.stride > 0 && checked.count >= 0 &&
               static_cast<std::size_t>(checked.count) * static_cast<std::size_t>(checked.stride) ==
                   checked.values.size();
    }

    void spoilStream() {
        const auto target = stream();
        switch (reader_.below(5)) {
            case 0:
                target->stride = reader_.integer();
                return;
            case 1:
                target->count = reader_.integer();
                return;
            case 2:
                target->values.resize(reader_.below(64));
                return;
            case 3:
                target->allowDuplicates = reader_.flag();
                return;
            default:
                if (!target->values.empty()) {
                    auto& slot = target->values[reader_.below(256) % target->values.size()];
                    slot = reader_.real();
                }
        }
    }

    void editStreams() {
        auto& owner = *mesh();
        switch (reader_.below(4)) {
            case 0:
                return owner.addStream(make_.stream());
            case 1:
                return owner.removeStream(owner.getStream(reader_.name()));
            case 2:
                return owner.setStreams({stream(), nullptr});
            default:
                owner.clearStreams();
        }
    }

    void setVertices() {
        auto& owner = *mesh();
        const auto mappings = make_.mappings(owner.getStreams());
        if (reader_.flag()) return owner.setVertices(mappings);
        for (const auto& mapping : mappings) owner.addVerticesMapping(mapping);
    }

    void addGarbageTriangles() {
        const auto& owner = mesh();
        const auto mappings = make_.mappings(owner->getStreams());
        owner->addPrimitive(
            boost::make_shared<TriangleMeshPrimitive>(owner, mappings, make_.indices()));
    }

    void addGarbagePolygons() {
        const auto& owner = mesh();
        const auto mappings = make_.mappings(owner->getStreams());
        const auto indices = make_.indices();
        owner->addPrimitive(
            boost::make_shared<PolygonMeshPrimitive>(owner, mappings, indices, make_.indices()));
    }

    void replaceMesh() {
        auto& slot = mesh();
        const auto id = reader_.name();
        if (reader_.flag()) {
            slot = boost::make_shared<Mesh>(id, "mesh");
            return;
        }
        const auto hull = boost::make_shared<ConvexMesh>(id, "hull");
        hull->setConvexHullOf(mesh());
        slot = hull;
    }

    void askBounds() {
        auto& owner = *mesh();
        owner.getBVMin();
        owner.getBVMax();
        owner.getBVCenter();
    }

    void recalculateNormals() {
        auto& owner = *mesh();
        owner.recalculateVertexNormals();
    }

    void subdivide() {
        auto& owner = *mesh();
        if (faceCount(owner) <= mostFaces) owner.subDivide(reader_.flag() ? controller_ : nullptr);
    }

    void replaceSkin() {
        controller_ = boost::make_shared<Controller>("controller", "");
        controller_->setSkin(make_.skin(mesh()->getStreams()));
    }

    void askInfluences() {
        if (!controller_) return;
        std::vector<int> joints;
        std::vector<float> weights;
        const auto skin = controller_->getSkin();
        skin->getVertexJointsAndWeights(reader_.index(), joints, weights);
        const unsigned int first = reader_.index();
        skin->calculateNewJointsAndWeights(first, reader_.index(), joints, weights);
        require(joints.size() == weights.size(), "every joint has a weight");
        skin->replaceVertexWeightsStream("WEIGHT", stream());
    }

    void cloneMesh() {
        const auto source = mesh();
        const auto copy = boost::dynamic_pointer_cast<Mesh>(source->clone());
        require(copy && copy->getPrimitiveCount() == source->getPrimitiveCount(),
                "a clone has as many primitives");
        mesh() = copy;
    }

    void calculateOctree() {
        const auto node = boost::make_shared<Node>(scene());
        for (const auto& each : meshes_) {
            if (faceCount(*each) > mostFaces) continue;
            node->addInstanceGeometry(
                boost::make_shared<InstanceGeometry>(each, boost::shared_ptr<Material>()));
        }
        if (reader_.flag()) node->setTransformations(reader_.matrix());
        octree_ = Octree();
        octree_.setSceneNode(node);
        const int depth = static_cast<int>(reader_.below(4)) - 1;
        octree_.calculate(depth, reader_.integer());
    }

    void pick() {
        const Eigen::Vector3f origin = reader_.vector();
        const Ray ray(origin, reader_.vector());
        const auto nearest = octree_.pick(ray);
        const auto all = octree_.pickAll(ray);
        require(nearest.has_value() == !all.empty(), "one hit is found where all are");
        if (!nearest) return;
        require(nearest->distance == all.front().distance, "the nearest hit is the first of all");
        require(nearest->face && nearest->geometry && nearest->node, "a hit says what was hit");
        for (std::size_t i = 1; i < all.size(); ++i) {
            require(all[i - 1].distance <= all[i].distance, "hits are sorted");
        }
    }

    void readFaces() {
        for (const auto& each : mesh()->getMeshPrimitives()) {
            each->getPrimitiveAt(reader_.index());
            for (const auto& face : each->getPrimitives()) readFace(*face);
        }
    }

    void readFace(IPrimitive& face) {
        face.getFaceNormal();
        for (const auto& vertex : face.getVertexArray()) {
            if (vertex) vertex->getPositionVector();
        }
    }

    void transformFaces() {
        const Eigen::Matrix4f matrix = reader_.matrix();
        const Eigen::Vector3f corner = reader_.vector();
        const auto ray = boost::make_shared<Ray>(corner, reader_.vector());
        for (const auto& each : mesh()->getMeshPrimitives()) {
            for (const auto& face : each->getPrimitives()) {
                face->applyTransform(matrix);
                face->intersects(corner, Eigen::Vector3f::Ones());
                face->intersects(ray);
            }
        }
    }

    void checkMesh(Mesh& checked) {
        for (const auto& each : checked.getMeshPrimitives()) {
            const auto count = each->getCount();
            if (count > 1000) continue;
            require(each->getPrimitives().size() == count, "as many faces as are counted");
        }
    }

    /// For nodes alone: one for all inputs, for its thread costs more than most inputs.
    static boost::shared_ptr<SceneManager> scene() {
        static const auto made = boost::make_shared<SceneManager>(nullptr);
        return made;
    }

    CallReader reader_;
    GarbageMaker make_;
    std::array<MeshPointer, 4> meshes_;
    boost::shared_ptr<Controller> controller_;
    Octree octree_;
};

}  // namespace
}  // namespace vantorix::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    vantorix::core::logger::Logger::active = false;
    vantorix::fuzz::GeometryFuzzer(vantorix::fuzz::CallReader(bytes, size)).run();
    return 0;
}
