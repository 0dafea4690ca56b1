// Whatever a primitive is made of, nothing reads outside its data, and boxes stay sane.

#include <limits>
#include <random>

#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

class GarbageMaker {
public:
    explicit GarbageMaker(unsigned int seed) : random_(seed) {}

    boost::shared_ptr<Mesh> makeMesh() {
        const auto mesh = boost::make_shared<Mesh>("g", "");
        mesh->setVertices(mappings());
        return mesh;
    }

    std::vector<StreamMapping> mappings() {
        std::vector<StreamMapping> list;
        const auto count = below(6);
        for (unsigned int i = 0; i < count; ++i) {
            const auto semantic = static_cast<StreamSemantic>(
                below(2) ? below(2) : static_cast<unsigned int>(below(17)) - 1);
            list.emplace_back(semantic, stream(), static_cast<int>(below(6)) - 1);
        }
        return list;
    }

    Indices indices() {
        Indices list(below(60));
        for (auto& index : list)
            index = below(10) ? below(12) : static_cast<unsigned int>(random_());
        return list;
    }

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_()) % limit; }

private:
    boost::shared_ptr<Stream> stream() {
        if (below(8) == 0) return {};
        const int strides[] = {3,
                               3,
                               3,
                               3,
                               3,
                               2,
                               1,
                               0,
                               -2,
                               4,
                               std::numeric_limits<int>::max(),
                               std::numeric_limits<int>::min()};
        const auto made = makeStream("s", strides[below(12)], Floats(below(40), 1.5f));
        const int counts[] = {made->count,
                              3,
                              -1,
                              0,
                              std::numeric_limits<int>::max(),
                              std::numeric_limits<int>::min()};
        made->count = counts[below(6)];
        made->allowDuplicates = below(2);
        return made;
    }

    std::mt19937 random_;
};

/// Runs @p action, which may only fail with the one error that exists.
template <typename Action>
void tolerate(const Action& action) {
    try {
        action();
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
}

void exercise(const boost::shared_ptr<TriangleMeshPrimitive>& primitive, Mesh& mesh) {
    for (unsigned int i = 0; i < 70; ++i) {
        if (const auto triangle = primitive->getTriangleAt(i)) triangle->getVertexArray();
    }
    for (const auto& face : primitive->getPrimitives()) {
        face->applyTransform(Eigen::Matrix4f::Identity());
        contentsOf(*face);
        face->getFaceNormal();
    }
    tolerate([&] { primitive->addTriangle(makeRightTriangle(), true); });
    mesh.addPrimitive(primitive);
    mesh.recalculateVertexNormals();
    mesh.recalculateVertexNormals();
    tolerate([&] { mesh.clone(); });
    tolerate([&] { primitive->addTriangle(makeRightTriangle(), false); });
    tolerate([&] { mesh.getBVCenter(); });
    mesh.subDivide({});
    EXPECT_EQ(primitive->getIndexStream().size() % 12, 0u);
    mesh.recalculateVertexNormals();
    mesh.subDivide({});
}

struct Garbage : QuietTest, ::testing::WithParamInterface<unsigned int> {
    GarbageMaker make{GetParam()};
};

TEST_P(Garbage, IsHarmlessInTriangles) {
    for (int i = 0; i < 100; ++i) {
        tolerate([&] {
            const auto mesh = make.makeMesh();
            tolerate([&] { mesh->getBVMin(); });
            const auto copy = boost::make_shared<Mesh>("copy", "");
            copy->setVertices(mesh->getVertices());
            exercise(
                boost::make_shared<TriangleMeshPrimitive>(copy, make.mappings(), make.indices()),
                *copy);
        });
    }
}

TEST_P(Garbage, IsHarmlessInPolygons) {
    outputOf([&] {
        for (int i = 0; i < 100; ++i) {
            tolerate([&] {
                PolygonMeshPrimitive primitive(make.makeMesh(), make.mappings(), make.indices(),
                                               make.indices());
                EXPECT_EQ(primitive.getPrimitives().size(), primitive.getCount());
                primitive.clone({});
            });
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Seeds, Garbage, ::testing::Range(0u, 20u));

}  // namespace
}  // namespace vantorix::scene
