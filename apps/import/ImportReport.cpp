#include "apps/import/ImportReport.h"

#include "apps/import/ImportError.h"

namespace vantorix::apps::import {

void ImportReport::add(const std::string& note) {
    if (notes_.size() < mostNotes) {
        notes_.push_back(oneLine(note));
    } else {
        ++omitted_;
    }
}

}  // namespace vantorix::apps::import
