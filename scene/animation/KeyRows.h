#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace vantorix::scene {

struct KeyInterval;
struct Track;

/// Copies of the values of many lines that share their key times and follow one another, those of
/// one key side by side: whoever plays them reads two rows from one end to the other, where the
/// streams would make it wait for two places in each of them. Rows are copied when they are needed
/// for the second time, so that nothing is lost where a time is played once.
class KeyRows {
public:
    /// Floats per track and row.
    static constexpr std::size_t lineWidth = 4;

    /// Of the tracks from @p first to before @p end.
    KeyRows(std::size_t first, std::size_t end, std::uint32_t table)
        : first_(first), end_(end), table_(table) {}

    std::size_t first() const { return first_; }
    std::size_t end() const { return end_; }
    std::uint32_t table() const { return table_; }
    std::size_t rowLength() const { return (end_ - first_) * lineWidth; }

    /// Makes room for the rows of @p keyCount keys; returns whether there is enough memory.
    bool makeRoom(std::size_t keyCount);
    /// Goes to an interval. What @p tracks hold has to stay as it is.
    void seek(const KeyInterval& interval, const std::vector<Track>& tracks);

    /// Whether the rows of the interval are there.
    bool isReady() const { return earlier_ != nullptr; }
    /// The value of a track at the earlier key of the interval; that at the later one lies a row
    /// behind it.
    const float* earlier(std::size_t track) const {
        return earlier_ + (track - first_) * lineWidth;
    }

private:
    enum Block : std::uint8_t { NEVER_NEEDED, NEEDED_ONCE, COPIED };
    struct Release {
        void operator()(float* floats) const { std::free(floats); }
    };

    bool provide(std::size_t key, const std::vector<Track>& tracks);
    void copyBlock(std::size_t firstKey, const std::vector<Track>& tracks);

    std::size_t first_;
    std::size_t end_;
    std::uint32_t table_;
    std::size_t keyCount_ = 0;
    std::unique_ptr<float, Release> floats_;  ///< Not touched, and thus no memory, before a copy.
    std::vector<Block> blocks_;               ///< Rows that are copied together.
    const float* earlier_ = nullptr;
};

}  // namespace vantorix::scene
