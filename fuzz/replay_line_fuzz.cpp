// Classifies arbitrary bytes as a replay line. Beyond the sanitizers' checks it insists that a
// note is a line starting "/* ", that a plain line is the whole line, and that a stamped line's
// time, written back as a stamp, gives the stamp exactly as it stood (no date the calendar
// lacks, no time outside the day slips through).

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/date_time.h"
#include "livedata/replay_line.h"
#include "require.h"

using wakeline::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace wakeline;
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    const ReplayLine classified = ClassifyReplayLine(line);
    switch (classified.kind) {
        case ReplayLine::Kind::Note:
            Require(line.starts_with("/* "));
            break;
        case ReplayLine::Kind::Plain:
            Require(classified.text == line);
            break;
        case ReplayLine::Kind::Stamped: {
            Require(std::isfinite(classified.time));
            Require(line.size() >= 21 && line.substr(17, 4) == " CZ,");
            Require(classified.text == line.substr(21));
            Require(FormatStampTime(classified.time) == line.substr(0, 17));
            const CalendarFields fields = FieldsFromDateTime(classified.time);
            Require(IsValidDate(fields.year, fields.month, fields.day));
            break;
        }
    }
    return 0;
}
