#include "wind/wind_graph.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "wind/wind_fit.h"

namespace wakeline {
namespace {

constexpr double kMinutesPerDay = 1440.0;
// Date-times of whole minutes carry rounding in their last bits; a tick or a time within this
// many days (about a millisecond) of a boundary counts as on it.
constexpr double kTimeSlack = 1e-8;

int HeldCount(const WindData& history) {
    return std::clamp<int>(history.Count, 0, kWindCapacity);
}

const WindObservation& Observation(const WindData& history, int i) {
    return history.Obs[static_cast<std::size_t>(i)];
}

// The ticks of [lo, hi] on whole multiples of the first step that gives at most `most` ticks,
// the range widened outwards to those multiples; with fewer than `least` ticks the range grows
// upwards by whole steps.
struct Axis {
    double min = 0, max = 0;
    std::vector<double> ticks;
};

Axis TickedAxis(double lo, double hi, const std::vector<double>& steps, int least, int most) {
    Axis axis;
    // Past the list, whole tens of its last step, so that even an absurd value gets few ticks.
    double step = steps.back();
    for (std::size_t i = 0;; ++i) {
        const double candidate = i < steps.size() ? steps[i] : step * 10.0;
        const double first = std::floor(lo / candidate) * candidate;
        const double last = std::ceil(hi / candidate) * candidate;
        step = candidate;
        if ((last - first) / candidate + 1 <= most + 0.5) {
            break;
        }
    }
    axis.min = std::floor(lo / step) * step;
    axis.max = std::ceil(hi / step) * step;
    long count = std::lround((axis.max - axis.min) / step) + 1;
    if (count < least) {
        axis.max += step * static_cast<double>(least - count);
        count = least;
    }
    for (long k = 0; k < count; ++k) {
        axis.ticks.push_back(axis.min + step * static_cast<double>(k));
    }
    return axis;
}

std::string_view Trimmed(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// A number of `least`..`most` digits at the front of `text`, consumed; empty otherwise.
std::optional<int> Digits(std::string_view& text, std::size_t least, std::size_t most) {
    std::size_t n = 0;
    int value = 0;
    while (n < text.size() && n < most && text[n] >= '0' && text[n] <= '9') {
        value = value * 10 + (text[n] - '0');
        ++n;
    }
    if (n < least || (n < text.size() && text[n] >= '0' && text[n] <= '9')) {
        return std::nullopt;
    }
    text.remove_prefix(n);
    return value;
}

bool Consume(std::string_view& text, char c) {
    if (text.empty() || text.front() != c) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

// "H:MM" or "HH:MM" making up the whole of `text`.
std::optional<std::pair<int, int>> HourMinute(std::string_view text) {
    const auto hour = Digits(text, 1, 2);
    if (!hour || !Consume(text, ':')) {
        return std::nullopt;
    }
    const auto minute = Digits(text, 1, 2);
    if (!minute || !text.empty() || *hour > 23 || *minute > 59) {
        return std::nullopt;
    }
    return std::pair{*hour, *minute};
}

}  // namespace

WindGraphModel MakeWindGraph(const WindData& history, DateTime start) {
    WindGraphModel model;
    model.start = start;
    model.end = start + 1.0 / kMinutesPerDay;
    std::vector<double> directions;
    for (int i = 0; i < HeldCount(history); ++i) {
        const WindObservation& o = Observation(history, i);
        // A value that is not a number cannot be drawn; the rest of the history still can.
        if (o.Time >= start && std::isfinite(o.Time) && std::isfinite(o.Direction) &&
            std::isfinite(o.Speed)) {
            model.points.push_back({o.Time, o.Direction, o.Speed});
            directions.push_back(o.Direction);
        }
    }
    if (model.points.empty()) {
        return model;
    }
    model.empty = false;
    const UnwrappedDirections unwrapped = UnwrapDirections(directions);
    double lo = unwrapped.directions.front(), hi = lo, fastest = 0, newest = start;
    for (std::size_t i = 0; i < model.points.size(); ++i) {
        WindGraphPoint& p = model.points[i];
        p.direction = unwrapped.directions[i];
        lo = std::min(lo, p.direction);
        hi = std::max(hi, p.direction);
        fastest = std::max(fastest, p.speed);
        newest = std::max(newest, p.time);
    }
    model.end = std::max(newest, model.end);

    // A steady wind still gets an axis a sailor can read: at least 10 degrees around it.
    if (hi - lo < 10.0) {
        const double middle = (lo + hi) / 2.0;
        lo = middle - 5.0;
        hi = middle + 5.0;
    }
    const Axis direction = TickedAxis(lo, hi, {1, 2, 5, 10, 20, 45, 90}, 4, 8);
    model.directionMin = direction.min;
    model.directionMax = direction.max;
    model.directionTicks = direction.ticks;

    const Axis speed = TickedAxis(0.0, std::max(fastest, 1.0), {1, 2, 5, 10, 20, 50}, 4, 8);
    model.speedMax = speed.max;
    model.speedTicks = speed.ticks;

    // Whole minutes of the UTC day: every step divides a day, so a tick on a whole multiple of
    // the step since 1899-12-30 is on the same multiple since midnight.
    const double startMinute = model.start * kMinutesPerDay;
    const double endMinute = model.end * kMinutesPerDay;
    for (double step :
         {1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 60.0, 120.0, 180.0, 360.0, 720.0, 1440.0}) {
        const double first = std::ceil(startMinute / step - kTimeSlack * kMinutesPerDay);
        const double last = std::floor(endMinute / step + kTimeSlack * kMinutesPerDay);
        if (!(last - first + 1 <= 8)) {
            continue;
        }
        for (int k = 0; k <= static_cast<int>(last - first); ++k) {
            model.timeTicks.push_back((first + k) * step / kMinutesPerDay);
        }
        break;
    }
    return model;
}

DateTime DefaultGraphStart(const WindData& history) {
    const int count = HeldCount(history);
    if (count == 0) {
        return 0;
    }
    const DateTime newest = Observation(history, count - 1).Time;
    const DateTime hourBefore = newest - 1.0 / 24.0 - kTimeSlack;
    for (int i = 0; i < count; ++i) {
        if (Observation(history, i).Time >= hourBefore) {
            return Observation(history, i).Time;
        }
    }
    return newest;
}

std::optional<DateTime> ParseGraphStart(std::string_view entry, DateTime reference) {
    std::string_view text = Trimmed(entry);
    if (const auto time = HourMinute(text)) {
        CalendarFields fields = FieldsFromDateTime(reference);
        fields.hour = time->first;
        fields.minute = time->second;
        fields.second = 0;
        DateTime start = DateTimeFromFields(fields);
        if (start > reference) {
            start -= 1.0;
        }
        return start;
    }
    const auto year = Digits(text, 4, 4);
    if (!year || !Consume(text, '/')) {
        return std::nullopt;
    }
    const auto month = Digits(text, 1, 2);
    if (!month || !Consume(text, '/')) {
        return std::nullopt;
    }
    const auto day = Digits(text, 1, 2);
    if (!day || text.empty() || (text.front() != ' ' && text.front() != '\t')) {
        return std::nullopt;
    }
    const auto time = HourMinute(Trimmed(text));
    if (!time || !IsValidDate(*year, *month, *day)) {
        return std::nullopt;
    }
    return DateTimeFromFields({*year, *month, *day, time->first, time->second, 0});
}

std::string GraphTimeText(DateTime t) {
    const CalendarFields fields = FieldsFromDateTime(t);
    char text[8];
    std::snprintf(text, sizeof text, "%02d:%02d", fields.hour, fields.minute);
    return text;
}

WindObservation AverageLastMinutes(const WindData& history, double minutes) {
    const int count = HeldCount(history);
    float reference = kNoReference;
    if (count == 0) {
        return AverageWind(history, 0, reference);
    }
    const DateTime cutoff = Observation(history, count - 1).Time - minutes / kMinutesPerDay;
    int within = 0;
    while (within < count && Observation(history, count - 1 - within).Time >= cutoff - kTimeSlack) {
        ++within;
    }
    // The newest observation always lies within its own span, whatever `minutes` holds.
    within = std::max(within, 1);
    return AverageWind(history, static_cast<std::int16_t>(within), reference);
}

}  // namespace wakeline
