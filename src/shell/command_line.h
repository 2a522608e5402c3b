#pragma once
// The program's comma-separated command line: settings file path, data source, trace switch
// or disk write interval, diagnostic mode. Fields are never trimmed; option fields are
// compared upper-cased and must match exactly (" SB" is not "SB").

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wakeline {

// The line split at every ",", empty fields kept. An empty line has no fields at all.
std::vector<std::string> SplitCommandLine(std::string_view line);

// Field 3: "I" (message boxes) is 1, "F" (log file) is 2, anything else its whole-number
// value, 0 for text that does not begin with a number. Empty when the number does not fit
// in 16 bits (the caller keeps 0 and logs the field).
std::optional<std::int16_t> ParseDebugMode(std::string_view field);

// Field 1: the data source and options.
struct SourceOptions {
    std::int16_t SeaTalkMode = 0;  // 1 for "SB", 2 for "SC"
    bool LiveOptionM = false;      // "M": depth arrives in feet
    bool TablesLocked = false;     // "X": the tables command is disabled
};
SourceOptions ParseSourceOptions(std::string_view field);

// Field 2: "NOTRACE" switches the track file off; independently a numeric value other than 0
// becomes the disk write interval rounded to a whole number (halves to even).
struct TraceOptions {
    bool TraceOn = true;
    std::optional<std::int16_t> DiskWriteInterval;  // set when the field's value is not 0
    bool IntervalOutOfRange = false;                // a value that does not fit in 16 bits
};
TraceOptions ParseTraceOptions(std::string_view field);

}  // namespace wakeline
