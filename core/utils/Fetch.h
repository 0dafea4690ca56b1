#pragma once

namespace vantorix::core::utils {

/// Asks for the memory from @p first to before @p end, for when it is needed. None of it is read:
/// it need not be anybody's.
template <bool forWriting = false>
void fetchLines(const void* first, const void* end) {
    constexpr int cacheLine = 64;
    const auto* at = static_cast<const char*>(first);
    const auto* const last = static_cast<const char*>(end) - 1;
    for (; at < last; at += cacheLine) __builtin_prefetch(at, forWriting);
    __builtin_prefetch(last, forWriting);
}

}  // namespace vantorix::core::utils
