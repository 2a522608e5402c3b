#include "base/text_number.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace wakeline {
namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

double LeadingNumber(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i])) {
        ++i;
    }
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
        negative = text[i] == '-';
        ++i;
    }
    // from_chars would also take "inf" and "nan"; only a digit or a point before a digit may
    // start the number here.
    const std::string_view rest = text.substr(i);
    const bool startsNumber =
        !rest.empty() &&
        (IsDigit(rest[0]) || (rest[0] == '.' && rest.size() > 1 && IsDigit(rest[1])));
    if (!startsNumber) {
        return 0.0;
    }
    double value = 0.0;
    const auto [end, error] =
        std::from_chars(rest.data(), rest.data() + rest.size(), value, std::chars_format::fixed);
    (void)end;
    if (error == std::errc::result_out_of_range) {
        // Too many digits for a double: either overflow or a value too small to hold.
        std::size_t integerDigits = 0;
        while (integerDigits < rest.size() && IsDigit(rest[integerDigits])) {
            ++integerDigits;
        }
        bool nonZeroInteger = false;
        for (std::size_t k = 0; k < integerDigits; ++k) {
            nonZeroInteger = nonZeroInteger || rest[k] != '0';
        }
        value = nonZeroInteger ? std::numeric_limits<double>::infinity() : 0.0;
    } else if (error != std::errc{}) {
        return 0.0;
    }
    return negative ? -value : value;
}

std::optional<double> DecimalNumberValue(std::string_view text) {
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && IsBlank(text[begin])) {
        ++begin;
    }
    while (end > begin && IsBlank(text[end - 1])) {
        --end;
    }
    bool negative = false;
    if (begin < end && (text[begin] == '-' || text[begin] == '+')) {
        negative = text[begin] == '-';
        ++begin;
    }
    int digits = 0;
    int points = 0;
    for (std::size_t i = begin; i < end; ++i) {
        if (IsDigit(text[i])) {
            ++digits;
        } else if (text[i] == '.' && points == 0) {
            ++points;
        } else {
            return std::nullopt;
        }
    }
    if (digits == 0) {
        return std::nullopt;
    }
    double value = 0.0;
    const auto [ptr, error] =
        std::from_chars(text.data() + begin, text.data() + end, value, std::chars_format::fixed);
    (void)ptr;
    if (error == std::errc::result_out_of_range) {
        // Too many digits for a double: an overflow, or a value too small to hold.
        value = LeadingNumber(text.substr(begin, end - begin));
    }
    return negative ? -value : value;
}

bool IsDecimalNumber(std::string_view text) {
    return DecimalNumberValue(text).has_value();
}

double RoundHalfEven(double value) {
    // nearbyint follows the current rounding mode, which is round-to-nearest-even unless
    // someone changed it; do it by hand so that no global state can change the answer.
    const double floorValue = std::floor(value);
    const double diff = value - floorValue;
    if (diff < 0.5) {
        return floorValue;
    }
    if (diff > 0.5) {
        return floorValue + 1.0;
    }
    return std::fmod(floorValue, 2.0) == 0.0 ? floorValue : floorValue + 1.0;
}

std::optional<std::int16_t> WholeNumber16(std::string_view text) {
    const double rounded = RoundHalfEven(LeadingNumber(text));
    if (!std::isfinite(rounded) || rounded < std::numeric_limits<std::int16_t>::min() ||
        rounded > std::numeric_limits<std::int16_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int16_t>(rounded);
}

}  // namespace wakeline
