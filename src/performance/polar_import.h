#pragma once
// Importing a polar grid: the text table of target boat speeds that sailors get from
// designers, rating certificates and other sailing software, made into one sail's PolarTable.
//
// A grid is 8-bit text, one record per line; a line ends at LF, CR LF or CR, and blank lines
// are skipped. The first line holds the wind speeds (knots) after a corner cell ("TWA\TWS" or
// any other text, or nothing); every further line starts with a true wind angle (degrees) and
// holds the boat speeds (knots) at that angle, one per wind speed of the first line. Fields
// beyond the first line's wind speeds are ignored; missing ones are no speed.
//
// The separator is chosen once per grid, from its first line: a tab if the line has one, else
// a semicolon, else a comma, else runs of blanks. Blanks around a field and one pair of double
// quotes around it are dropped. With runs of blanks a first line that starts with a blank has
// an empty corner, and the corner cannot hold a blank itself. Numbers have "." as the decimal
// point; a cell that is empty, not a number, or not above 0 is no speed and stored as 0 (cells
// that are not numbers are counted in the import's message, since a decimal comma or a dash
// would otherwise vanish silently).
//
// Every value is rounded as the polar file writes it (wind speeds and angles to whole numbers,
// boat speeds to one decimal), and every rule below applies to the rounded values, so the
// table in memory is the one that the written polar file reads back.
//
// The table:
// - Rows: the wind speeds that have a boat speed above 0 at some angle, ascending. A wind
//   speed with none (a grid's 0 kt column) is left out and the message says so.
// - RowTwaMin: the row's smallest angle with a speed above 0, and Cell[r][0] that speed.
// - Columns: the grid's angles above the smallest RowTwaMin of all rows, and Cell[r][c] the
//   row's speed there (0 where it has none). An angle with no speed above 0 at any wind speed
//   is left out as well: a column of zeros would pull every target next to it towards 0. (The
//   0-degree row of zeros that many grids start with lies below every RowTwaMin anyway and is
//   dropped without a word; one in the columns' range is named in the message.)
// - With n > 10 such angles, the 10 at positions round(i * (n - 1) / 9), i = 0..9, of the n
//   are kept (halves rounding up): spread evenly, the first and the last always among them.
//   The message names the angles left out.
// - A line whose first field is not a number (a "Beat VMG" line of a certificate) is left out
//   and named in the message.
//
// Refused, with the reason, and no table: no first line, no wind speeds in it or more than 50
// (a first line may name a few more than 11 only for columns without speeds), a wind speed
// that is not a number or is negative, wind speeds that do not ascend; no line of angles;
// an angle outside 0..180 or angles that do not ascend; a value too large for a 32-bit float;
// no wind speed with a speed above 0; more than 11 wind speeds with speeds; no angle above the
// smallest RowTwaMin; a sail name that is empty or holds "=", CR or LF (the polar file's
// "[PolarTable=" line could not give it back).

#include <string>
#include <string_view>

#include "base/status.h"
#include "performance/performance_tables.h"

namespace wakeline {

struct PolarImport {
    PolarTable table;
    // What was left out of the grid, one note per line ("\n" between them); empty when the
    // table holds the whole grid.
    std::string message;
};

// The grid's text made into a table named `name`. A failure's reason says what is wrong with
// the grid, with its line number where there is one.
Result<PolarImport> ImportPolarGrid(std::string_view text, std::string name);

// Appends `table` to the set and makes it the current sail. Refused, leaving the set as it
// was, when the set holds six tables already (or a count outside 0..6) or a sail of the same
// name: the polar file selects the current sail by name, so two of one name could not be told
// apart. On success the value is a note for the sailor, empty unless the table is the sixth:
// the polar file is read back with five sails at most, so a sixth is lost at the next start.
Result<std::string> AddImportedTable(PolarSet& set, PolarTable table);

}  // namespace wakeline
