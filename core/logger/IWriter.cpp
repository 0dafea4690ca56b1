#include "core_api/logger/IWriter.h"

namespace vantorix::core::logger {

// Here, so that one library holds the type's table and information.
IWriter::~IWriter() = default;

}  // namespace vantorix::core::logger
