#pragma once

#include <string>
#include <vector>

namespace vantorix::apps::cli {

/// Rows as lines with columns of equal width: the first column to the left, the others to the
/// right, two blanks between them. Shorter rows end early. Cells are plain ASCII.
std::string columnsText(const std::vector<std::vector<std::string>>& rows);

}  // namespace vantorix::apps::cli
