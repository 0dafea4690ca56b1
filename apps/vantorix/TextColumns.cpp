#include "apps/vantorix/TextColumns.h"

#include <algorithm>

#include <fmt/format.h>

namespace vantorix::apps::cli {

std::string columnsText(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()), 0);
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += i == 0 ? fmt::format("{:<{}}", row[i], row.size() > 1 ? widths[i] : 0)
                           : fmt::format("  {:>{}}", row[i], widths[i]);
        }
        text += '\n';
    }
    return text;
}

}  // namespace vantorix::apps::cli
