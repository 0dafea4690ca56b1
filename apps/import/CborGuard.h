#pragma once

#include <cstddef>
#include <cstdint>

namespace vantorix::apps::import {

/// Whether @p size bytes are one whole CBOR item whose lists and objects are nested at most
/// @p depth deep and that holds at most @p values values and keys. The parser itself recurses
/// with the nesting and keeps every value, so a hostile message has to be refused before.
bool isBoundedCbor(const std::uint8_t* bytes, std::size_t size, std::size_t depth,
                   std::size_t values);

}  // namespace vantorix::apps::import
