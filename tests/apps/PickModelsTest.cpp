// Picking on whole models against a test of every face. VANTORIX_PICK_RAYS sets the rays per model.

#include <cstdlib>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PosedSkins.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/Vertex.h"
#include "scene/graph/SceneManager.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/Ray.h"

namespace vantorix::apps {
namespace {

using Eigen::Vector3d;
using Eigen::Vector3f;

struct Face {
    Vector3d a, ab, ac;
};

std::vector<Face> facesOf(const scene::Octree& octree) {
    std::vector<Face> faces;
    for (const auto& face : octree.getRoot()->getPrimitives()) {
        std::vector<Vector3d> corners;
        for (const auto& vertex : face->getVertexArray()) {
            corners.push_back(vertex->getPositionVector().cast<double>());
        }
        faces.push_back({corners[0], corners[1] - corners[0], corners[2] - corners[0]});
    }
    return faces;
}

/// Moeller and Trumbore, in doubles. How far inside the triangle a hit lies is the smallest of its
/// barycentric coordinates.
double distanceTo(const Face& face, const Vector3d& origin, const Vector3d& direction,
                  double& inside) {
    const Vector3d across = direction.cross(face.ac);
    const double determinant = face.ab.dot(across);
    const Vector3d from = origin - face.a;
    const double u = from.dot(across) / determinant;
    const Vector3d along = from.cross(face.ab);
    const double v = direction.dot(along) / determinant;
    inside = std::min({u, v, 1 - u - v});
    return face.ac.dot(along) / determinant;
}

struct PickModels : ::testing::TestWithParam<const char*> {};

TEST_P(PickModels, AgreesWithATestOfEveryFace) {
    const char* const asked = std::getenv("VANTORIX_PICK_RAYS");
    const int rays = asked ? std::atoi(asked) : 300;
    import::ImportOptions options;
    options.triangulate = true;
    const cli::LoadedModel model(GetParam(), nullptr, options);
    auto& scene = model.getScene();
    const cli::PosedSkins skins(scene);
    scene::Octree octree;
    octree.setSceneNode(scene.getRoot());
    octree.calculate(0, std::numeric_limits<int>::max());
    const auto faces = facesOf(octree);
    Vector3f least = Vector3f::Constant(std::numeric_limits<float>::max());
    Vector3f most = -least;
    for (const auto& face : faces) {
        least = least.cwiseMin(face.a.cast<float>());
        most = most.cwiseMax(face.a.cast<float>());
    }
    ASSERT_GT(faces.size(), 100u);
    std::mt19937 random(1);
    std::uniform_real_distribution<float> between(0, 1);
    const auto place = [&] {
        const float x = between(random);
        const float y = between(random);
        return Vector3f(least + (most - least).cwiseProduct(Vector3f(x, y, between(random))));
    };
    int hits = 0;
    for (int i = 0; i < rays; ++i) {
        const Vector3f middle = (least + most) / 2;
        const Vector3f origin = middle + (place() - middle) * 4;
        const Vector3f direction = place() - origin;
        double nearest = std::numeric_limits<double>::infinity();
        double nearestBeyondDoubt = nearest;
        for (const auto& face : faces) {
            double inside = 0;
            const double t =
                distanceTo(face, origin.cast<double>(), direction.cast<double>(), inside);
            // Close to an edge either answer is right, and so it is for an origin on the face.
            if (inside >= -1e-4 && t > -1e-5) nearest = std::min(nearest, t);
            if (inside >= 1e-4 && t > 1e-5) nearestBeyondDoubt = std::min(nearestBeyondDoubt, t);
        }
        const auto hit = octree.pick(scene::Ray(origin, direction));
        const double found = hit ? static_cast<double>(hit->distance / direction.norm())
                                 : std::numeric_limits<double>::infinity();
        EXPECT_GE(found, nearest - 1e-4) << "ray " << i;
        EXPECT_LE(found, nearestBeyondDoubt + 1e-4) << "ray " << i;
        hits += hit.has_value();
    }
    EXPECT_GT(hits, rays / 20);
}

INSTANTIATE_TEST_SUITE_P(Samples, PickModels,
                         ::testing::Values(VANTORIX_SAMPLES "/figure.dae",
                                           VANTORIX_SAMPLES "/cactus.dae"));

}  // namespace
}  // namespace vantorix::apps
