#pragma once

namespace vantorix::apps::import {

struct ImportLimits;
struct ModelDocument;

/// Passes only documents that can be built without any further check: every reference exists,
/// nodes form one tree, attributes fit their vertices, floats that stand alone are usable.
/// Finite floats in arrays are the reader's business.
/// @throws RefusedError for an unsound document, LimitError for one above @p limits.
void checkDocument(const ModelDocument& document, const ImportLimits& limits);

}  // namespace vantorix::apps::import
