#include "apps/check/StreamCheck.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "apps/check/Report.h"
#include "scene/geometry/Stream.h"

namespace vantorix::apps::check {
namespace {

std::vector<std::size_t> tuplesNotFinite(const scene::Stream& stream) {
    const std::vector<float>& values = stream.values;
    const std::size_t stride = stream.stride > 0 ? static_cast<std::size_t>(stream.stride) : 1;
    std::vector<std::size_t> tuples;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isfinite(values[i])) continue;
        if (tuples.empty() || tuples.back() != i / stride) tuples.push_back(i / stride);
    }
    return tuples;
}

struct Strides {
    int least, most;
};

Strides usualStrides(scene::StreamSemantic semantic) {
    if (semantic == scene::COLOR) return {3, 4};
    if (semantic >= scene::TEXCOORD0 && semantic <= scene::TEXCOORD7) return {1, 4};
    return {3, 3};
}

}  // namespace

std::size_t tuplesOf(const scene::Stream& stream) {
    return stream.stride > 0 ? stream.values.size() / static_cast<std::size_t>(stream.stride) : 0;
}

void checkStream(const scene::Stream& stream, const Report& report) {
    report.addAt(Finding::NOT_FINITE, "tuples with infinity or NaN", tuplesNotFinite(stream));
    if (stream.stride <= 0) {
        report.add(Finding::STRIDE, "stride " + std::to_string(stream.stride));
        return;
    }
    const auto stride = static_cast<std::size_t>(stream.stride);
    report.require(
        stream.values.size() % stride == 0, Finding::STRIDE,
        std::to_string(stream.values.size()) + " values for stride " + std::to_string(stride));
    // A stream of texts has no values, and as many texts as it counts.
    const auto tuples = std::max(tuplesOf(stream), stream.stringValues.size());
    report.require(
        stream.count >= 0 && static_cast<std::size_t>(stream.count) == tuples, Finding::COUNT,
        "counts " + std::to_string(stream.count) + " tuples and has " + std::to_string(tuples));
}

void checkMeaning(const scene::Stream& stream, scene::StreamSemantic semantic,
                  const Report& report) {
    const auto usual = usualStrides(semantic);
    report.require(stream.stride >= usual.least && stream.stride <= usual.most, Finding::STRIDE,
                   "stride " + std::to_string(stream.stride) + " for " +
                       scene::streamSemanticToString(semantic));
}

}  // namespace vantorix::apps::check
