#include "apps/import/CborGuard.h"

#include <nlohmann/json.hpp>

namespace vantorix::apps::import {
namespace {

using nlohmann::json;

/// Follows a parse without keeping anything; false from any call ends it.
class BoundsCheck : public nlohmann::json_sax<json> {
public:
    BoundsCheck(std::size_t depth, std::size_t values) : depth_(depth), values_(values) {}

    bool null() override { return countOne(); }
    bool boolean(bool) override { return countOne(); }
    bool number_integer(number_integer_t) override { return countOne(); }
    bool number_unsigned(number_unsigned_t) override { return countOne(); }
    bool number_float(number_float_t, const string_t&) override { return countOne(); }
    bool string(string_t&) override { return countOne(); }
    bool binary(binary_t&) override { return countOne(); }
    bool key(string_t&) override { return countOne(); }
    bool start_object(std::size_t) override { return enter(); }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t) override { return enter(); }
    bool end_array() override { return leave(); }
    bool parse_error(std::size_t, const std::string&, const json::exception&) override {
        return false;
    }

private:
    bool countOne() { return values_ > 0 && values_-- > 0; }
    bool enter() { return depth_ > 0 && depth_-- > 0 && countOne(); }
    bool leave() {
        ++depth_;
        return true;
    }

    std::size_t depth_;
    std::size_t values_;
};

}  // namespace

bool isBoundedCbor(const std::uint8_t* bytes, std::size_t size, std::size_t depth,
                   std::size_t values) {
    BoundsCheck check(depth, values);
    return json::sax_parse(bytes, bytes + size, &check, json::input_format_t::cbor);
}

}  // namespace vantorix::apps::import
