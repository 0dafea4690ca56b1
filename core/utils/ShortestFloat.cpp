#include "core/utils/ShortestFloat.h"

#include <cmath>
#include <cstdint>
#include <cstring>

// R. Giulietti, The Schubfach way to render doubles (2020), for floats: the interval of the numbers
// that read back as the value is scaled by a power of ten, so that it holds one or two multiples of
// ten or at least one integer; the shortest of them, and then the nearest to the value, is taken.

namespace vantorix::core::utils {
namespace {

constexpr int leastPower = -31;

/// 10^k for k from -31 to 45, scaled by a power of two to 64 bits and rounded up.
constexpr std::uint64_t powersOfTen[] = {
    0x81CEB32C4B43FCF5u, 0xA2425FF75E14FC32u, 0xCAD2F7F5359A3B3Fu, 0xFD87B5F28300CA0Eu,
    0x9E74D1B791E07E49u, 0xC612062576589DDBu, 0xF79687AED3EEC552u, 0x9ABE14CD44753B53u,
    0xC16D9A0095928A28u, 0xF1C90080BAF72CB2u, 0x971DA05074DA7BEFu, 0xBCE5086492111AEBu,
    0xEC1E4A7DB69561A6u, 0x9392EE8E921D5D08u, 0xB877AA3236A4B44Au, 0xE69594BEC44DE15Cu,
    0x901D7CF73AB0ACDAu, 0xB424DC35095CD810u, 0xE12E13424BB40E14u, 0x8CBCCC096F5088CCu,
    0xAFEBFF0BCB24AAFFu, 0xDBE6FECEBDEDD5BFu, 0x89705F4136B4A598u, 0xABCC77118461CEFDu,
    0xD6BF94D5E57A42BDu, 0x8637BD05AF6C69B6u, 0xA7C5AC471B478424u, 0xD1B71758E219652Cu,
    0x83126E978D4FDF3Cu, 0xA3D70A3D70A3D70Bu, 0xCCCCCCCCCCCCCCCDu, 0x8000000000000000u,
    0xA000000000000000u, 0xC800000000000000u, 0xFA00000000000000u, 0x9C40000000000000u,
    0xC350000000000000u, 0xF424000000000000u, 0x9896800000000000u, 0xBEBC200000000000u,
    0xEE6B280000000000u, 0x9502F90000000000u, 0xBA43B74000000000u, 0xE8D4A51000000000u,
    0x9184E72A00000000u, 0xB5E620F480000000u, 0xE35FA931A0000000u, 0x8E1BC9BF04000000u,
    0xB1A2BC2EC5000000u, 0xDE0B6B3A76400000u, 0x8AC7230489E80000u, 0xAD78EBC5AC620000u,
    0xD8D726B7177A8000u, 0x878678326EAC9000u, 0xA968163F0A57B400u, 0xD3C21BCECCEDA100u,
    0x84595161401484A0u, 0xA56FA5B99019A5C8u, 0xCECB8F27F4200F3Au, 0x813F3978F8940985u,
    0xA18F07D736B90BE6u, 0xC9F2C9CD04674EDFu, 0xFC6F7C4045812297u, 0x9DC5ADA82B70B59Eu,
    0xC5371912364CE306u, 0xF684DF56C3E01BC7u, 0x9A130B963A6C115Du, 0xC097CE7BC90715B4u,
    0xF0BDC21ABB48DB21u, 0x96769950B50D88F5u, 0xBC143FA4E250EB32u, 0xEB194F8E1AE525FEu,
    0x92EFD1B8D0CF37BFu, 0xB7ABC627050305AEu, 0xE596B7B0C643C71Au, 0x8F7E32CE7BEA5C70u,
    0xB35DBF821AE4F38Cu,
};

/// value = digits * 10^exponent
struct Decimal {
    std::uint32_t digits;
    int exponent;
};

int floorLog2Pow10(int power) { return (power * 1741647) >> 19; }

__extension__ using Wide = unsigned __int128;

/// The bits from the 64th on, the last one set when anything was cut off that counts.
std::uint32_t roundedToOdd(Wide product) {
    const bool isCut = static_cast<std::uint64_t>(product) >= std::uint64_t{2} << 32;
    return static_cast<std::uint32_t>(product >> 64) | isCut;
}

/// The shortest decimal of significand * 2^exponent that reads back as that float.
Decimal shortestDecimal(std::uint32_t significand, int exponent, bool isLowerGapHalf) {
    const int power =
        (exponent * 1262611 - (isLowerGapHalf ? 524031 : 0)) >> 22;  // floor(log10(interval))
    const int shift = exponent + floorLog2Pow10(-power) + 1;
    const Wide quarter = Wide(powersOfTen[-power - leastPower]) << shift;
    const Wide center = quarter * Wide(4 * significand);
    // An even significand also owns the ends of its interval.
    const std::uint32_t open = significand & 1u;
    const auto lower = roundedToOdd(center - (isLowerGapHalf ? quarter : 2 * quarter)) + open;
    const auto value = roundedToOdd(center);
    const auto upper = roundedToOdd(center + 2 * quarter) - open;

    // Both candidates, without a branch: which one it is, no processor would guess.
    const std::uint32_t floor = value / 4;
    const bool isBelowInside = lower <= 4 * floor;
    const bool isAboveInside = 4 * floor + 4 <= upper;
    const bool isNearerAbove = value + (floor & 1u) > 4 * floor + 2;
    const bool isOneInside = isBelowInside != isAboveInside;
    const std::uint32_t fine =
        floor + ((isOneInside & isAboveInside) | (!isOneInside & isNearerAbove));

    const std::uint32_t tens = floor / 10;
    const bool isTenBelowInside = lower <= 40 * tens;
    const bool isTenAboveInside = 40 * tens + 40 <= upper;
    const std::uint32_t coarse = tens + isTenAboveInside;

    const std::uint32_t isCoarse = (floor >= 10) & (isTenBelowInside != isTenAboveInside);
    return {fine ^ ((fine ^ coarse) & (0u - isCoarse)), power + static_cast<int>(isCoarse)};
}

constexpr std::uint32_t powersOfTenBelow32Bits[] = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

int digitCount(std::uint32_t number) {
    const int least = (32 - __builtin_clz(number | 1u)) * 1233 >> 12;  // By the digits of a bit.
    return number < powersOfTenBelow32Bits[least] ? least : least + 1;
}

/// Eight digits as bytes, the first of them lowest, after P. Khuong's itoa: two lanes of four
/// digits, then four of two, then eight of one.
std::uint64_t digitBytes(std::uint32_t number) {
    const std::uint64_t fours = number / 10000 | std::uint64_t(number % 10000) << 32;
    const std::uint64_t hundreds = fours * 10486 >> 20 & 0x7F0000007Fu;
    const std::uint64_t twos = hundreds | (fours - 100 * hundreds) << 16;
    const std::uint64_t tens = twos * 103 >> 10 & 0x000F000F000F000Fu;
    return tens | (twos - 10 * tens) << 8;
}

constexpr std::uint64_t zeroCharacters = 0x3030303030303030u;

/// Writes characters of which the first stands lowest.
void writeBytes(char* out, std::uint64_t bytes) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    bytes = __builtin_bswap64(bytes);
#endif
    std::memcpy(out, &bytes, sizeof(bytes));
}

/// d.dddddddd * 10^(whole - 1): the digits of a decimal, its zeros at the end left out.
class Digits {
public:
    explicit Digits(const Decimal& decimal) {
        const int count = digitCount(decimal.digits);
        const std::uint32_t nine = decimal.digits * powersOfTenBelow32Bits[9 - count];
        const std::uint64_t rest = digitBytes(nine % 100000000);
        first_ = static_cast<char>('0' + nine / 100000000);
        rest_ = rest + zeroCharacters;
        size_ = rest == 0 ? 1 : 9 - (__builtin_clzll(rest) >> 3);
        whole_ = count + decimal.exponent;
    }

    int size() const { return size_; }
    /// Digits before the decimal point; below 1 that many zeros come behind it.
    int whole() const { return whole_; }

    /// Returns the end of the last digit that counts. Nine characters are written.
    char* write(char* out) const {
        *out = first_;
        writeBytes(out + 1, rest_);
        return out + size_;
    }

    /// With the decimal point behind the first @p whole of them, from 1 to 8.
    char* writeWithPoint(char* out, int whole) const {
        write(out);
        writeBytes(out + whole + 1, rest_ >> 8 * (whole - 1));
        out[whole] = '.';
        return out + size_ + 1;
    }

private:
    char first_;
    std::uint64_t rest_;
    int size_;
    int whole_;
};

char* writeWhole(char* out, std::uint64_t number) {
    if (number < 10) {
        *out = static_cast<char>('0' + number);
        return out + 1;
    }
    char* end = out;
    for (auto rest = number; rest != 0; rest /= 10) ++end;
    for (char* at = end; at != out; number /= 10) {
        *--at = static_cast<char>('0' + number % 10);
    }
    return end;
}

char* writeText(char* out, const char* text) {
    const auto size = std::strlen(text);
    std::memcpy(out, text, size);
    return out + size;
}

/// "d.ddde-xx"
char* writeScientific(char* out, const Digits& digits) {
    out = digits.size() > 1 ? digits.writeWithPoint(out, 1) : digits.write(out);
    const int exponent = digits.whole() - 1;
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    *out++ = static_cast<char>('0' + std::abs(exponent) / 10);
    *out++ = static_cast<char>('0' + std::abs(exponent) % 10);
    return out;
}

/// "0.00ddd" or "d.ddd"
char* writeFraction(char* out, const Digits& digits) {
    if (digits.whole() > 0) return digits.writeWithPoint(out, digits.whole());
    std::memcpy(out, "0.000", 5);  // With more zeros the scientific notation is shorter.
    return digits.write(out + 2 - digits.whole());
}

/// Plain notation unless the other one is shorter. @p magnitude is the value of @p digits.
char* writeDigits(char* out, const Digits& digits, float magnitude) {
    const int size = digits.size();
    const int whole = digits.whole();
    const int scientificSize = size + (size > 1 ? 5 : 4);
    if (whole >= size) {
        if (whole > scientificSize) return writeScientific(out, digits);
        // All digits, not only enough.
        return writeWhole(out, static_cast<std::uint64_t>(magnitude));
    }
    const int fractionSize = whole > 0 ? size + 1 : size + 2 - whole;
    return fractionSize > scientificSize ? writeScientific(out, digits)
                                         : writeFraction(out, digits);
}

char* writeFinite(char* out, std::uint32_t bits, float magnitude) {
    const std::uint32_t fraction = bits & 0x7FFFFFu;
    const int biased = static_cast<int>(bits >> 23 & 0xFFu);
    const auto decimal = biased == 0 ? shortestDecimal(fraction, -149, false)
                                     : shortestDecimal(fraction | 0x800000u, biased - 150,
                                                       fraction == 0 && biased > 1);
    return writeDigits(out, Digits(decimal), magnitude);
}

}  // namespace

char* writeShortest(char* out, float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    *out = '-';
    out += bits >> 31;  // Without a branch, which would be wrong half of the time.
    const float magnitude = std::fabs(value);
    if (magnitude < 10000.0f) {
        const auto whole = static_cast<std::uint32_t>(magnitude);
        if (static_cast<float>(whole) == magnitude) {
            return writeWhole(out, whole);
        }
    } else if (!std::isfinite(value)) {
        return writeText(out, std::isnan(value) ? "nan" : "inf");
    }
    return writeFinite(out, bits, magnitude);
}

}  // namespace vantorix::core::utils
