#pragma once

#include <string>
#include <utility>
#include <vector>

#include "apps/check/Finding.h"

namespace vantorix::apps::check {

/// Takes findings about one place; what lies inside of it gets a report of its own by in().
class Report {
public:
    Report(Findings& findings, std::string place)
        : findings_(&findings), place_(std::move(place)) {}

    Report in(const std::string& part) const {
        return Report(*findings_, place_.empty() ? part : place_ + ", " + part);
    }

    void add(Finding::Kind kind, std::string text) const { put(kind, std::move(text), {}); }

    /// Nothing without @p positions.
    void addAt(Finding::Kind kind, std::string text, std::vector<std::size_t> positions) const {
        if (!positions.empty()) put(kind, std::move(text), std::move(positions));
    }

    void require(bool holds, Finding::Kind kind, const std::string& text) const {
        if (!holds) add(kind, text);
    }

private:
    void put(Finding::Kind kind, std::string text, std::vector<std::size_t> positions) const {
        findings_->push_back({kind, place_, std::move(text), std::move(positions)});
    }

    Findings* findings_;
    std::string place_;
};

}  // namespace vantorix::apps::check
