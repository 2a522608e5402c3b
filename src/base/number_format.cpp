#include "base/number_format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/text_number.h"

namespace wakeline {
namespace {

struct MaskShape {
    int integerZeros = 0;  // required integer digits
    bool hasPoint = false;
    int decimals = 0;          // digits after the point, rounded at the last one
    int requiredDecimals = 0;  // decimals up to the last "0" after the point
};

MaskShape ParseMask(std::string_view mask) {
    MaskShape shape;
    for (char c : mask) {
        if (c == '.') {
            shape.hasPoint = true;
        } else if (!shape.hasPoint) {
            shape.integerZeros += (c == '0') ? 1 : 0;
        } else if (c == '0' || c == '#') {
            // No mask of the program comes near this; it keeps the digit buffers bounded.
            if (shape.decimals == 30) {
                continue;
            }
            ++shape.decimals;
            if (c == '0') {
                shape.requiredDecimals = shape.decimals;
            }
        }
    }
    return shape;
}

constexpr std::array<double, 9> kPowersOfTen = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};

// Decimal digits without sign or point, most significant first. Large enough for the
// largest double (309 integer digits) and the 30 decimals a mask may ask for, plus a carry.
struct Digits {
    std::array<char, 352> text;
    std::size_t size = 0;
    char operator[](std::size_t i) const { return text[i]; }
};

// The decimal digits of magnitude * 10^decimals rounded half away from zero.
void ScaledDigits(double magnitude, int decimals, Digits& out) {
    // A 32-bit float has 24 significant bits and 10^8 fits in 27, so for such values the
    // product is exact in a double and std::round (halves away from zero) is exact too.
    // (Converting a double beyond the float range to float is undefined, hence the first test.)
    if (decimals <= 8 && magnitude <= std::numeric_limits<float>::max() &&
        static_cast<double>(static_cast<float>(magnitude)) == magnitude) {
        const double rounded = std::round(magnitude * kPowersOfTen[decimals]);
        if (rounded < 1.8e19) {
            auto whole = static_cast<std::uint64_t>(rounded);
            char reversed[24];
            std::size_t n = 0;
            do {
                reversed[n++] = static_cast<char>('0' + whole % 10);
                whole /= 10;
            } while (whole != 0);
            for (std::size_t k = 0; k < n; ++k) {
                out.text[k] = reversed[n - 1 - k];
            }
            out.size = n;
            return;
        }
        // The largest float times 10^8 has 47 digits; the value is an exact integer.
        const auto written = std::to_chars(out.text.data(), out.text.data() + out.text.size(),
                                           rounded, std::chars_format::fixed, 0);
        out.size = static_cast<std::size_t>(written.ptr - out.text.data());
        return;
    }
    // Any other double: its exact decimal expansion has no more fractional digits than the
    // binary exponent of its last bit. Below 2^-40 nothing reaches the digits that are kept.
    if (magnitude < 0x1p-40 && decimals <= 10) {
        out.text[0] = '0';
        out.size = 1;
        return;
    }
    // to_chars, unlike printf, ignores the C locale, which a Qt program sets from the user's
    // environment: with a decimal comma printf would write no "." for the search below.
    char buffer[512];  // the largest double has 309 integer digits
    const auto written =
        std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::fixed, 100);
    const std::string_view text(buffer, static_cast<std::size_t>(written.ptr - buffer));
    const std::size_t point = text.find('.');
    // One place ahead for a carry out of the top digit.
    std::size_t n = 1;
    out.text[0] = '0';
    for (std::size_t k = 0; k < point; ++k) {
        out.text[n++] = text[k];
    }
    for (std::size_t k = 0; k < static_cast<std::size_t>(decimals); ++k) {
        out.text[n++] = text[point + 1 + k];
    }
    if (text[point + 1 + static_cast<std::size_t>(decimals)] >= '5') {
        std::size_t k = n - 1;
        while (out.text[k] == '9') {
            out.text[k--] = '0';
        }
        ++out.text[k];
    }
    out.size = n;
}

}  // namespace

std::string FormatMask(double value, std::string_view mask) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    const MaskShape shape = ParseMask(mask);
    const auto decimals = static_cast<std::size_t>(shape.decimals);
    Digits digits;
    ScaledDigits(std::fabs(value), shape.decimals, digits);
    // At least one integer digit, so that the point has something before it to count from.
    std::size_t integerLength = digits.size > decimals ? digits.size - decimals : 0;
    std::size_t firstSignificant = 0;
    while (firstSignificant < integerLength && digits[firstSignificant] == '0') {
        ++firstSignificant;
    }
    const std::size_t significant = integerLength - firstSignificant;
    const std::size_t fractionStart = integerLength;
    // Missing leading fraction digits (a value below 10^-decimals of its last digit) are 0.
    const std::size_t fractionDigits = digits.size - fractionStart;
    const std::size_t leadingFractionZeros = decimals - fractionDigits;
    auto fractionDigit = [&](std::size_t k) {
        return k < leadingFractionZeros ? '0' : digits[fractionStart + k - leadingFractionZeros];
    };

    std::string result;
    result.reserve(significant + decimals + 8);
    if (value < 0) {
        result.push_back('-');
    }
    const auto zeros = static_cast<std::size_t>(shape.integerZeros);
    if (significant < zeros) {
        result.append(zeros - significant, '0');
    }
    result.append(digits.text.data() + firstSignificant, significant);
    if (shape.hasPoint) {
        std::size_t shown = decimals;
        while (shown > static_cast<std::size_t>(shape.requiredDecimals) &&
               fractionDigit(shown - 1) == '0') {
            --shown;
        }
        result.push_back('.');
        for (std::size_t k = 0; k < shown; ++k) {
            result.push_back(fractionDigit(k));
        }
    }
    return result;
}

std::string FormatToWidth(float value, std::string_view mask, std::int16_t width) {
    // The masks hold no thousands separator and FormatMask always writes ".", so there is no
    // decimal comma to replace here.
    std::string text = FormatMask(value, mask);
    if (width <= 0) {
        return text;
    }
    const auto fit = static_cast<std::size_t>(width);
    if (text.size() < fit) {
        text.insert(0, fit - text.size(), ' ');
        return text;
    }
    if (text.size() == fit) {
        return text;
    }
    text.resize(fit);
    const auto cutWhole = std::floor(static_cast<float>(LeadingNumber(text)));
    if (cutWhole == std::floor(value)) {
        return text;
    }
    return FormatMask(value, "0");
}

}  // namespace wakeline
