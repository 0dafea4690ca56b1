#include "core_api/logger/BasicDecorator.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace vantorix::core::logger {
namespace {

/// Appends the last @p count decimal digits of @p number and then @p after.
void appendDigits(std::string& text, std::size_t count, long number, char after) {
    text.append(count, '0');
    for (auto digit = text.rbegin(); count > 0; --count, ++digit, number /= 10) {
        *digit = static_cast<char>('0' + number % 10);
    }
    text += after;
}

}  // namespace

// Written digit by digit: the formatters of a stream took two thirds of the time of a line.
std::string BasicDecorator::decorate(std::string line) {
    const auto now = boost::posix_time::microsec_clock::local_time();
    const auto day = now.date().year_month_day();
    const auto time = now.time_of_day();
    std::string text;
    text.reserve(sizeof("2024-05-31T18:04:05.123 ") + line.size());
    appendDigits(text, 4, day.year, '-');
    appendDigits(text, 2, day.month.as_number(), '-');
    appendDigits(text, 2, day.day, 'T');
    appendDigits(text, 2, time.hours(), ':');
    appendDigits(text, 2, time.minutes(), ':');
    appendDigits(text, 2, time.seconds(), '.');
    appendDigits(text, 3, time.total_milliseconds(), ' ');
    return text += line;
}

}  // namespace vantorix::core::logger
