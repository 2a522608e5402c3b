#pragma once
// Reading numbers out of texts the way the instruments' data lines and the settings files
// write them: "." is always the decimal point, whatever the user's locale.

#include <cstdint>
#include <optional>
#include <string_view>

namespace wakeline {

// The plain leading-number conversion: leading blanks (space, tab) are skipped, then an
// optional sign and digits with at most one "." are read up to the first other character.
// A text with no number at its start gives 0 ("abc", "", "-", "."). No exponent is read:
// "1e3" is 1. A number too large for a double gives +-infinity, which callers that need a
// finite value must check (an overflow is an error of their routine, never clamped).
double LeadingNumber(std::string_view text);

// True when the whole text, less leading and trailing blanks, is one signed decimal number:
// optional "+" or "-", digits with at most one ".", at least one digit. This is the
// "is it numeric" check of the position and angle formatters.
bool IsDecimalNumber(std::string_view text);

// The value of a text that IsDecimalNumber accepts (its LeadingNumber), empty for any other
// text; one pass over the text instead of two.
std::optional<double> DecimalNumberValue(std::string_view text);

// Rounds to the nearest whole number, halves to even (0.5 -> 0, 1.5 -> 2, -2.5 -> -2), the
// whole-number conversion of settings and command lines.
double RoundHalfEven(double value);

// The whole-number value of a text for a 16-bit field: LeadingNumber rounded halves to even.
// Empty when the rounded value does not fit in a signed 16-bit integer (or is not finite);
// the caller then keeps its default and logs the text.
std::optional<std::int16_t> WholeNumber16(std::string_view text);

}  // namespace wakeline
