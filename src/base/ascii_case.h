#pragma once
// Case changes of the program's own keys and options: ASCII letters only, other bytes of 8-bit
// text stay as they are.

#include <string>
#include <string_view>

namespace wakeline {

std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);

}  // namespace wakeline
