#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vantorix::apps::import {

/// What an import changed, dropped or missed, one line each, in the order it was found.
class ImportReport {
public:
    /// Keeps the first mostNotes lines; a model can be wrong in more places than anyone reads.
    void add(const std::string& note);

    const std::vector<std::string>& getNotes() const { return notes_; }

    /// Notes that came after the list was full.
    std::size_t getOmittedCount() const { return omitted_; }

    static constexpr std::size_t mostNotes = 1000;

private:
    std::vector<std::string> notes_;
    std::size_t omitted_ = 0;
};

}  // namespace vantorix::apps::import
