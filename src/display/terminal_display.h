#pragma once
// The live display as text for a terminal: one row per field, its code and the caption the
// window would show, then the status lines. A headless logger on a boat computer with a
// console shows the same values as the window.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "livedata/field_table.h"

namespace wakeline {

// Rows 0..lastRow (14 or 22), each the code left-aligned in 9 characters (the width of the
// longest code) followed by the row's caption, then each non-empty status line (a CR LF
// inside a status text starts a new line). Lines end with "\n"; captions keep their own
// characters except that CR and LF are left out (the name field carries the line's end).
std::string RenderTerminalDisplay(const FieldTable& table,
                                  const std::array<std::string, kFieldCount>& captions,
                                  std::int16_t lastRow, const std::vector<std::string>& status);

}  // namespace wakeline
