#pragma once

#include <string>
#include <vector>

namespace vantorix::apps::check {

class Report;

/// Reports identifiers of @p kind ("node") that are empty, stand in the list more than once, or
/// hold what separates other texts: ',' (values of an event), '/' (a channel's target), or control
/// characters.
void checkIdentifiers(const std::string& kind, const std::vector<std::string>& ids,
                      const Report& report);

}  // namespace vantorix::apps::check
