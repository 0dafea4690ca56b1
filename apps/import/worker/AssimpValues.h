#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <assimp/matrix4x4.h>
#include <assimp/types.h>

// Assimp's values as the document holds them.

namespace vantorix::apps::import {

std::string textOf(const aiString& text);

/// Column-major, from Assimp's rows; the identity, and false, when an element is not finite.
bool convertMatrix(const aiMatrix4x4& matrix, std::array<float, 16>& result);

bool isFinite(const aiVector3D& vector);

/// Sets elements that are not finite to 0 and returns their number.
std::size_t repairFloats(std::vector<float>& values);

}  // namespace vantorix::apps::import
