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

/// The 32 bits of power * factor / 2^64, the last one set when anything was cut off.
std::uint32_t roundedToOdd(std::uint64_t power, std::uint32_t factor) {
    const std::uint64_t low = (power & 0xFFFFFFFFu) * factor;
    const std::uint64_t high = (power >> 32) * factor + (low >> 32);
    return static_cast<std::uint32_t>(high >> 32) | ((high & 0xFFFFFFFFu) > 1u ? 1u : 0u);
}

/// The shortest decimal of significand * 2^exponent that reads back as that float.
Decimal shortestDecimal(std::uint32_t significand, int exponent, bool isLowerGapHalf) {
    const int power =
        (exponent * 1262611 - (isLowerGapHalf ? 524031 : 0)) >> 22;  // floor(log10(interval))
    const int shift = exponent + floorLog2Pow10(-power) + 1;
    const std::uint64_t scale = powersOfTen[-power - leastPower];
    const std::uint32_t center = 4 * significand;
    // An even significand also owns the ends of its interval.
    const std::uint32_t open = significand & 1u;
    const auto lower =
        roundedToOdd(scale, (center - 2 + (isLowerGapHalf ? 1u : 0u)) << shift) + open;
    const auto value = roundedToOdd(scale, center << shift);
    const auto upper = roundedToOdd(scale, (center + 2) << shift) - open;

    const std::uint32_t floor = value / 4;
    if (floor >= 10) {
        const std::uint32_t tens = floor / 10;
        const bool isBelowInside = lower <= 40 * tens;
        const bool isAboveInside = 40 * tens + 40 <= upper;
        if (isBelowInside != isAboveInside) return {tens + (isAboveInside ? 1u : 0u), power + 1};
    }
    const bool isBelowInside = lower <= 4 * floor;
    const bool isAboveInside = 4 * floor + 4 <= upper;
    if (isBelowInside != isAboveInside) return {floor + (isAboveInside ? 1u : 0u), power};
    const std::uint32_t middle = 4 * floor + 2;
    const bool isUp = value > middle || (value == middle && (floor & 1u));
    return {floor + (isUp ? 1u : 0u), power};
}

constexpr char pairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839404142434445"
    "46474849505152535455565758596061626364656667686970717273747576777879808182838485868788899091"
    "9293949596979899";

template <class Number>
int digitCount(Number number) {
    if (number >= 10000000 && number < 1000000000) return number < 100000000 ? 8 : 9;  // Usual.
    int count = 1;
    for (; number >= 100; number /= 100) count += 2;
    return number >= 10 ? count + 1 : count;
}

/// Writes @p count digits of @p number, which has no more.
template <class Number>
char* writeDigits(char* out, Number number, int count) {
    char* at = out + count;
    while (at - out >= 2) {
        at -= 2;
        std::memcpy(at, pairs + 2 * (number % 100), 2);
        number /= 100;
    }
    if (at != out) *out = static_cast<char>('0' + number);
    return out + count;
}

char* writeText(char* out, const char* text) {
    const auto size = std::strlen(text);
    std::memcpy(out, text, size);
    return out + size;
}

/// "d.ddde-xx"
char* writeScientific(char* out, const Decimal& decimal, int count) {
    char* const end = writeDigits(out + 1, decimal.digits, count);
    *out = out[1];
    out[1] = '.';
    out = count > 1 ? end : end - 1;
    const int exponent = decimal.exponent + count - 1;
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    return writeDigits(out, static_cast<std::uint32_t>(std::abs(exponent)), 2);
}

/// "0.00ddd" or "d.ddd"
char* writeFraction(char* out, const Decimal& decimal, int count) {
    const int whole = count + decimal.exponent;
    if (whole <= 0) {
        std::memcpy(out, "0.000", 5);  // With more zeros the scientific notation is shorter.
        return writeDigits(out + 2 - whole, decimal.digits, count);
    }
    char* const end = writeDigits(out + 1, decimal.digits, count);
    for (int i = 0; i < whole; ++i) out[i] = out[i + 1];
    out[whole] = '.';
    return end;
}

/// Without the zeros at the end of the digits.
Decimal stripped(Decimal decimal) {
    while (decimal.digits % 10 == 0) {
        decimal.digits /= 10;
        ++decimal.exponent;
    }
    return decimal;
}

/// Plain notation unless the other one is shorter. @p magnitude is the value of @p decimal.
char* writeDecimal(char* out, const Decimal& decimal, float magnitude) {
    const int count = digitCount(decimal.digits);
    const int scientificSize = count + (count > 1 ? 5 : 4);
    if (decimal.exponent >= 0) {
        if (count + decimal.exponent > scientificSize) return writeScientific(out, decimal, count);
        const auto whole = static_cast<std::uint64_t>(magnitude);  // All digits, not only enough.
        return writeDigits(out, whole, digitCount(whole));
    }
    const int fractionSize = count + decimal.exponent > 0 ? count + 1 : 2 - decimal.exponent;
    return fractionSize > scientificSize ? writeScientific(out, decimal, count)
                                         : writeFraction(out, decimal, count);
}

char* writeFinite(char* out, std::uint32_t bits, float magnitude) {
    const std::uint32_t fraction = bits & 0x7FFFFFu;
    const int biased = static_cast<int>(bits >> 23 & 0xFFu);
    const auto decimal = biased == 0 ? shortestDecimal(fraction, -149, false)
                                     : shortestDecimal(fraction | 0x800000u, biased - 150,
                                                       fraction == 0 && biased > 1);
    return writeDecimal(out, stripped(decimal), magnitude);
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
            return writeDigits(out, whole, digitCount(whole));
        }
    } else if (!std::isfinite(value)) {
        return writeText(out, std::isnan(value) ? "nan" : "inf");
    }
    return writeFinite(out, bits, magnitude);
}

}  // namespace vantorix::core::utils
