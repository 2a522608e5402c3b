#pragma once
// Writing the polar file "WakelinePolar.txt" whole, in the layout the reader takes back:
// header comment with the time written, damping factor, correction table, every polar table,
// and the current table's name. 8-bit text, CR LF after every line, numbers through the
// program's formatter with fixed masks, so values come back rounded to them (row speeds and
// angles to whole numbers, cells to one decimal).

#include <optional>
#include <string>

#include "base/date_time.h"
#include "base/file_system.h"
#include "performance/performance_tables.h"

namespace wakeline {

// The file's bytes, stamped with `writtenAt` (UTC, from the program clock). Empty when a count
// lies outside its table's arrays (possible after reading a corrupt file): such tables cannot
// be written as they stand.
std::optional<std::string> PolarFileText(const PerformanceTables& tables, DateTime writtenAt);

// Creates or truncates the file at `path` and writes the tables. A failure when the tables
// cannot be written (the file is then left as it was) or the file system refused, with why.
Status WritePolarFile(FileSystem& files, const std::string& path, const PerformanceTables& tables,
                      DateTime writtenAt);

}  // namespace wakeline
