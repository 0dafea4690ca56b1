#include "core_api/logger/BasicDecorator.h"

#include <boost/date_time/posix_time/posix_time.hpp>

namespace vantorix::core::logger {

std::string BasicDecorator::decorate(std::string line) {
    const auto now = boost::posix_time::microsec_clock::local_time();
    auto prefix = boost::posix_time::to_iso_extended_string(now);
    prefix.resize(sizeof("2024-05-31T18:04:05.123") - 1, '0');
    return prefix + ' ' + line;
}

}  // namespace vantorix::core::logger
