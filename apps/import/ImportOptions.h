#pragma once

#include <string>

#include "apps/import/ImportLimits.h"

namespace vantorix::apps::import {

struct ImportOptions {
    ImportLimits limits;
    /// Path of vantorix-import-worker; empty to look beside the running program and in
    /// ../libexec/vantorix/ from there.
    std::string worker;
};

}  // namespace vantorix::apps::import
