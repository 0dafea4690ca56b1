#include "apps/check/Finding.h"

#include <array>

namespace vantorix::apps::check {
namespace {

struct Words {
    const char* name;
    const char* title;
};

constexpr std::array<Words, Finding::KIND_COUNT> words{
    {{"index", "Indices out of range"},
     {"stride", "Strides that do not fit"},
     {"count", "Counts that disagree"},
     {"not-finite", "Numbers that are not finite"},
     {"degenerate", "Faces without area"},
     {"unused", "Positions without a face"},
     {"orphan", "References to nothing"},
     {"identifier", "Identifiers"},
     {"channel", "Animation channels"},
     {"skin", "Skins"}}};

}  // namespace

const char* nameOf(Finding::Kind kind) { return words.at(kind).name; }

const char* titleOf(Finding::Kind kind) { return words.at(kind).title; }

}  // namespace vantorix::apps::check
