#include "scene/animation/ChannelTarget.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace vantorix::scene {
namespace {

char toLowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string sidWithin(const std::string& text) {
    const auto slash = text.find('/');
    if (slash == std::string::npos) return {};
    const auto dot = text.find('.');
    const bool ends = dot != std::string::npos && dot > slash;
    return text.substr(slash + 1, ends ? dot - slash - 1 : std::string::npos);
}

std::string componentWithin(const std::string& text) {
    const auto dot = text.find('.');
    return dot == std::string::npos ? std::string() : text.substr(dot + 1);
}

}  // namespace

ChannelTarget::ChannelTarget(const std::string& text)
    : nodeID(text.substr(0, text.find('/'))),
      sid(sidWithin(text)),
      component(componentWithin(text)),
      componentIndex(coordinateIndex(component)) {}

int coordinateIndex(const std::string& name) {
    static constexpr std::array<std::pair<const char*, int>, 5> coordinates = {
        {{"x", 0}, {"y", 1}, {"z", 2}, {"w", 3}, {"angle", 3}}};
    for (const auto& [text, index] : coordinates) {
        if (equalsInLowerCase(name, text)) return index;
    }
    return -1;
}

bool equalsInLowerCase(const std::string& text, const char* lowerCase) {
    return text.size() == std::strlen(lowerCase) &&
           std::equal(text.begin(), text.end(), lowerCase,
                      [](char left, char right) { return toLowerCase(left) == right; });
}

}  // namespace vantorix::scene
