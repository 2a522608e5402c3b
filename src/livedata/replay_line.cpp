#include "livedata/replay_line.h"

#include <optional>

namespace wakeline {
namespace {

constexpr std::string_view kNotePrefix = "/* ";
constexpr std::string_view kStampSuffix = " CZ,";
// "YYYYMMDD HH:MM:SS"
constexpr std::size_t kStampTimeLength = 17;

// The value of `count` decimal digits at `at`, or nothing when any of them is not a digit.
std::optional<int> Digits(std::string_view text, std::size_t at, std::size_t count) {
    int value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        const char c = text[i];
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        value = value * 10 + (c - '0');
    }
    return value;
}

std::optional<CalendarFields> ParseStamp(std::string_view line) {
    if (line.size() < kStampTimeLength + kStampSuffix.size() ||
        line.substr(kStampTimeLength, kStampSuffix.size()) != kStampSuffix || line[8] != ' ' ||
        line[11] != ':' || line[14] != ':') {
        return std::nullopt;
    }
    const auto year = Digits(line, 0, 4);
    const auto month = Digits(line, 4, 2);
    const auto day = Digits(line, 6, 2);
    const auto hour = Digits(line, 9, 2);
    const auto minute = Digits(line, 12, 2);
    const auto second = Digits(line, 15, 2);
    if (!year || !month || !day || !hour || !minute || !second) {
        return std::nullopt;
    }
    // Dates before 1900 are out of any voyage's reach and are kept out of the clock.
    if (*year < 1900 || !IsValidDate(*year, *month, *day) || *hour > 23 || *minute > 59 ||
        *second > 59) {
        return std::nullopt;
    }
    return CalendarFields{*year, *month, *day, *hour, *minute, *second};
}

}  // namespace

ReplayLine ClassifyReplayLine(std::string_view line) {
    if (line.starts_with(kNotePrefix)) {
        return ReplayLine{ReplayLine::Kind::Note, 0, line};
    }
    if (const auto fields = ParseStamp(line)) {
        return ReplayLine{ReplayLine::Kind::Stamped, DateTimeFromFields(*fields),
                          line.substr(kStampTimeLength + kStampSuffix.size())};
    }
    return ReplayLine{ReplayLine::Kind::Plain, 0, line};
}

}  // namespace wakeline
