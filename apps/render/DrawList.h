#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <Eigen/Core>

// What a picture shows, in plain records: the scene is read into a DrawList, the painter draws it.

namespace vantorix::apps::render {

/// One corner of a triangle, as the shaders read it.
struct Corner {
    float position[3];
    float normal[3];  ///< Unit length, or zeros where neither the mesh nor the face has one.
    float texCoord[2];
    std::uint8_t colour[4];
};

/// Triangles of one mesh primitive, three corners each.
using Corners = std::vector<Corner>;

/// How the triangles of one item look. Colours as they are written, not linear.
struct Surface {
    /// What the opacity of the texture does.
    enum Alpha {
        BLENDED,  ///< Lets through what lies behind.
        IGNORED,
        CUT  ///< Below the cutoff there is no surface, above it an opaque one.
    };

    Eigen::Vector4f colour{0.8f, 0.8f, 0.8f, 1.0f};  ///< Red, green, blue, opacity.
    Eigen::Vector3f emission{0.0f, 0.0f, 0.0f};
    Eigen::Vector3f specular{0.0f, 0.0f, 0.0f};
    float shininess = 20.0f;
    std::string imageId;  ///< Empty: no texture.
    int texCoordSet = 0;  ///< 0 to 7.
    Alpha alpha = BLENDED;
    float alphaCutoff = 0.5f;
    bool unlit = false;  ///< The colour is shown as it is.
};

struct DrawItem {
    std::shared_ptr<const Corners> corners;  ///< Shared by all items that show the same primitive.
    Eigen::Matrix4d world = Eigen::Matrix4d::Identity();
    Surface surface;
    bool hasTransparentCorners = false;  ///< Some corner's colour lets through what lies behind.
};

struct LightSource {
    Eigen::Vector3f colour{1.0f, 1.0f, 1.0f};
    Eigen::Vector4d position{0.0, 0.0, 1.0, 0.0};  ///< In the world; w = 0: direction to the light.
    Eigen::Vector3d direction{0.0, 0.0, -1.0};     ///< Axis of the cone, unit length.
    float coneCosine = -2.0f;                      ///< Of half the opening; below -1: no cone.
    float coneExponent = 0.0f;
    Eigen::Vector3f attenuation{1.0f, 0.0f, 0.0f};  ///< Constant, linear, quadratic.
};

struct Lighting {
    Eigen::Vector3f ambient{0.0f, 0.0f, 0.0f};
    std::vector<LightSource> sources;
};

/// Where a picture is taken from.
struct Viewpoint {
    Eigen::Matrix4d view = Eigen::Matrix4d::Identity();  ///< World to eye; looks along -z.
    Eigen::Matrix4d projection = Eigen::Matrix4d::Identity();
    bool orthographic = false;
};

struct DrawList {
    std::vector<DrawItem> items;
    Lighting lighting;
};

}  // namespace vantorix::apps::render
