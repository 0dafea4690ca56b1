#pragma once

#include <string>

namespace vantorix::apps::cli {

class Console;
struct ModelSummary;

/// The summary for people: description, tree, libraries, notes.
std::string summaryText(const ModelSummary& summary, const Console& console);

}  // namespace vantorix::apps::cli
