#pragma once

#include "apps/import/ModelDocument.h"

struct aiTexture;

namespace vantorix::apps::import {

class ImportReport;
struct ImportLimits;

/// Copies an embedded picture: the bytes of a picture file, or plain pixels as "rgba8".
/// @throws LimitError when it is larger than the largest file that may be read.
ModelTexture convertTexture(const aiTexture& source, const ImportLimits& limits,
                            ImportReport& report);

}  // namespace vantorix::apps::import
