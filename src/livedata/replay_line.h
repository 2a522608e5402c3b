#pragma once
// One line of a replay: recorded data lines, one per line, as a track file holds them or as a
// plain list. A track record starts with its UTC time stamp "YYYYMMDD HH:MM:SS CZ," and the
// replay sets the program clock to it; notes ("/* " at the start) are not data and are
// skipped; any other line is a data line as the link would deliver it.

#include <string_view>

#include "base/date_time.h"

namespace wakeline {

struct ReplayLine {
    enum class Kind {
        Note,     // skipped
        Stamped,  // `time` is the record's UTC time, `text` the data after the stamp
        Plain,    // `text` is the whole line
    };
    Kind kind = Kind::Plain;
    DateTime time = 0;
    std::string_view text;  // a view into the classified line
};

// `line` comes without its end. The stamp is taken only when it is complete and valid: eight
// digits of a real calendar date (years 1900 to 9999), a blank, hours 00-23, minutes and
// seconds 00-59, and " CZ,"; a line with a damaged stamp is a plain data line, so nothing is
// silently lost.
ReplayLine ClassifyReplayLine(std::string_view line);

}  // namespace wakeline
