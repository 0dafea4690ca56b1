#pragma once

#include <string>

namespace vantorix::apps::import {

/// Path of the worker program: @p given when it is not empty, else the worker beside the running
/// program, or in ../libexec/vantorix/ from there.
/// @throws RefusedError when there is none.
std::string findWorker(const std::string& given);

}  // namespace vantorix::apps::import
