#pragma once

#include "apps/import/ImportResult.h"
#include "apps/render/ImageFile.h"

namespace vantorix::apps::cli {

/// Hands the images of an imported model to a renderer. @p import must outlive the result.
render::ImageSource imagesOf(const import::ImportResult& import);

}  // namespace vantorix::apps::cli
