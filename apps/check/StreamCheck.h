#pragma once

#include <cstddef>

#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {
class Stream;
}

namespace vantorix::apps::check {

class Report;

/// Whole tuples of values; 0 for a stride below 1.
std::size_t tuplesOf(const scene::Stream& stream);

/// Whether its values, texts, stride and count agree, and all values are finite.
void checkStream(const scene::Stream& stream, const Report& report);

/// Whether its stride is usual for @p semantic.
void checkMeaning(const scene::Stream& stream, scene::StreamSemantic semantic,
                  const Report& report);

}  // namespace vantorix::apps::check
