#include "apps/check/IdentifierCheck.h"

#include <algorithm>
#include <map>

#include "apps/check/Report.h"

namespace vantorix::apps::check {
namespace {

bool isSafe(const std::string& id) {
    return std::none_of(id.begin(), id.end(), [](char letter) {
        return letter == ',' || letter == '/' || (letter >= 0 && letter < ' ') || letter == 127;
    });
}

}  // namespace

void checkIdentifiers(const std::string& kind, const std::vector<std::string>& ids,
                      const Report& report) {
    std::map<std::string, std::vector<std::size_t>> positions;
    for (std::size_t i = 0; i < ids.size(); ++i) positions[ids[i]].push_back(i);
    for (const auto& [id, places] : positions) {
        const auto named = report.in(kind + " " + id);
        if (id.empty()) named.addAt(Finding::IDENTIFIER, "empty, of numbers", places);
        if (!isSafe(id)) named.add(Finding::IDENTIFIER, "holds ',', '/' or a control character");
        if (!id.empty() && places.size() > 1) {
            named.addAt(Finding::IDENTIFIER, "repeated, by numbers", places);
        }
    }
}

}  // namespace vantorix::apps::check
