#pragma once
// The tools' machine-readable output is JSON in UTF-8, while the program's texts are 8-bit:
// each byte is carried as the Latin-1 character of the same number, so nothing is lost.

#include <string>
#include <string_view>

namespace wakeline::tool {

// Every byte of `bytes` as one Latin-1 character, encoded in UTF-8.
std::string Latin1ToUtf8(std::string_view bytes);

}  // namespace wakeline::tool
