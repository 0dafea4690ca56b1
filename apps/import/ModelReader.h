#pragma once

#include <string>

#include "apps/import/ImportLimits.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {

/// Reads model files, each in a worker process of its own.
/// Threads: independent objects and calls do not share anything.
class ModelReader {
public:
    /// @p worker is the path of the worker program, or empty to look for it (findWorker).
    explicit ModelReader(const ImportLimits& limits, const std::string& worker = "");

    /// @throws RefusedError when @p file cannot be read or is no sound model.
    /// @throws LimitError when it costs more than the limits allow.
    ModelDocument read(const std::string& file) const;

private:
    void checkFile(const std::string& file) const;

    ImportLimits limits_;
    std::string worker_;
};

}  // namespace vantorix::apps::import
