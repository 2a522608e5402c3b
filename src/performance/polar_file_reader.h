#pragma once
// Reading the polar file "WakelinePolar.txt": the damping factor, the correction table and up
// to five sails' polar tables, and which sail is current.
//
// The file is 8-bit text, one record per line; a line ends at LF, CR LF or CR. Sections start
// with a line beginning with "[" (keys up to and including their first "=" compare without
// regard to case); the lines after a section's key line hold comma-separated numbers with "."
// as the decimal point. A blank line or a "[" line ends a table. A bad file never stops the
// program: a missing number is reported and taken as -1, and any other fault (more than 11
// wind speeds or rows, more than 10 columns, the file ending inside the correction table, a
// number too large for a 32-bit float) is reported with the file's path and ends the reading.
// Whatever was stored before a fault stays, including a count already raised past its array:
// readers of the tables check the bounds.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_system.h"
#include "performance/performance_tables.h"

namespace wakeline {

// The messages that reading showed to the user, in order (one message box each), and whether
// the file could be read at all: ok, or why not.
struct PolarReadReport {
    std::vector<std::string> messages;
    Status fileStatus;
};

// The numeric value of field `index` (zero-based) of a comma-separated line: the number at the
// start of the field after leading blanks, 0 when there is none. Empty when the line has no
// such field (the reader then reports a missing cell). A value too large for a double is
// +-infinity.
std::optional<double> ParseField(std::string_view line, int index);

// Reads the file's text into `tables`. Count is reset to 0 and Current to -1 first; the
// correction table, the damping factor and the table records change only where the file says
// so, so the correction defaults set before reading stand when the file has no correction
// section. `path` only goes into the messages.
PolarReadReport ReadPolarText(std::string_view text, const std::string& path,
                              PerformanceTables& tables);

// Reads the file at `path` through `files`. A file that cannot be read is reported like a
// corrupt one and leaves no tables (fileStatus says why).
PolarReadReport ReadPolarFile(const FileSystem& files, const std::string& path,
                              PerformanceTables& tables);

}  // namespace wakeline
