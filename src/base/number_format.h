#pragma once
// The one number formatter of the program. Every number that is shown or written to a file
// goes through FormatToWidth, so "." is the decimal point everywhere whatever the locale.

#include <cstdint>
#include <string>
#include <string_view>

namespace wakeline {

// Formats a value with a number mask made of "0" (a required digit), "#" (an optional digit)
// and at most one "." (the decimal point); other characters are not supported. The exact
// binary value is rounded at the last digit the mask shows, halves away from zero: 7.25 with
// "0.0" is "7.3". Integer digits beyond the mask's are all shown ("0" formats 123 as "123");
// zeros in the mask pad with leading zeros ("00" formats 5 as "05"), "#" positions drop them
// ("#0.0" formats 0.5 as "0.5", "#.0" as ".5"). Optional decimals ("#" after the point) drop
// trailing zeros, the point stays. A negative value keeps its sign even when it rounds to zero
// (-0.04 with "0.0" is "-0.0"). Infinities and NaN format as "inf", "-inf" and "nan".
std::string FormatMask(double value, std::string_view mask);

// FormatMask of a 32-bit value, then fitted to a width: width 0 or less leaves the text as it
// is; a shorter text is right-aligned with blanks; a longer one is cut to the width when the
// cut text's whole part still equals the value's (Int rounding down: "123." for 123.46 with
// "0.0" and width 4), and otherwise the value is formatted with "0" and may exceed the width
// ("12346" for 12345.6; "-4" for -3.75 with "0.0" and width 3).
std::string FormatToWidth(float value, std::string_view mask, std::int16_t width);

}  // namespace wakeline
