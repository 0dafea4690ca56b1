#pragma once

#include <string>

namespace vantorix::apps::render {

struct Picture;

/// Stores @p picture as a PNG file of 8-bit RGBA.
/// @throws RenderError that names the file when it cannot be written; no part of it is left.
void writePng(const Picture& picture, const std::string& path);

/// @throws RenderError that names the file when it cannot be read or is no PNG file.
Picture readPng(const std::string& path);

}  // namespace vantorix::apps::render
