#pragma once
// The data line: one text of 23 fields separated by "," with no quotes and no escapes; empty
// fields are allowed. Whatever follows the 22nd comma, line-end characters included, is the
// text of the last field, so a line received from the link ends its field 22 with CR LF.

#include <array>
#include <cstddef>
#include <string_view>

#include "livedata/field_table.h"

namespace wakeline {

// The first 23 pieces of a line split at ",", as views into the line (which must outlive
// them). Pieces beyond the 23rd are not kept. Every line has at least one piece.
struct DataLinePieces {
    std::array<std::string_view, kFieldCount> piece;
    std::size_t count = 0;  // pieces found, at most 23
};

DataLinePieces SplitPieces(std::string_view line);

// How far a split got: the number of entries whose `Value` now holds a piece of the line.
struct SplitOutcome {
    std::size_t fieldsTaken = 0;
    bool Complete() const { return fieldsTaken == kFieldCount; }
};

// Puts piece i of the line into `Value` of entry i, for i from 0 up. Blanks are kept, empty
// pieces are taken as empty texts, pieces beyond index 22 are ignored. A line of fewer than 23
// pieces stops at the first missing one: the entries before it already hold the new pieces
// and the entries from it on keep the old ones.
SplitOutcome SplitDataLine(std::string_view line, FieldTable& table);

}  // namespace wakeline
