#pragma once

#include <string>

#include "apps/import/ImportOptions.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {

/// Reads model files, each in a worker process of its own.
/// Threads: independent objects and calls do not share anything.
class ModelReader {
public:
    explicit ModelReader(const ImportOptions& options) : options_(options) {}

    /// @throws RefusedError when @p file cannot be read or is no sound model.
    /// @throws LimitError when it costs more than the limits allow.
    ModelDocument read(const std::string& file) const;

private:
    void checkFile(const std::string& file) const;

    ImportOptions options_;
};

}  // namespace vantorix::apps::import
