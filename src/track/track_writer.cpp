#include "track/track_writer.h"

#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "base/elapsed_seconds.h"
#include "base/single_precision.h"
#include "base/text_number.h"
#include "display/navigation.h"
#include "livedata/replay_line.h"
#include "wind/wind_file.h"

namespace wakeline {
namespace {

// Thousandths of a minute per degree.
constexpr double kMilliMinutesPerDegree = 60000.0;

// The first two fields of a data line: latitude and longitude in decimal degrees.
std::pair<std::string_view, std::string_view> PositionFields(std::string_view line) {
    const std::size_t firstComma = line.find(',');
    if (firstComma == std::string_view::npos) {
        return {line, {}};
    }
    std::string_view rest = line.substr(firstComma + 1);
    return {line.substr(0, firstComma), rest.substr(0, rest.find(','))};
}

bool FitsInt32(double value) {
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max();
}

// A threshold of 0 is switched off; a value that reaches it meets it.
bool Meets(double value, float threshold) {
    return threshold != 0.0f && value >= threshold;
}

// Seconds since an earlier event have passed `threshold` (0 switches it off). A negative time
// means the clock was set back: it counts as passed, or recording and flushing would stall
// until the clock caught up with the time before the change (an hour, for a clock corrected
// from an hour fast).
bool TimeMeets(double elapsed, float threshold) {
    return threshold != 0.0f && (elapsed < 0 || elapsed >= threshold);
}

// The journal's text split after each LF, every entry keeping its line end. A last entry cut
// off without one (a power cut during an append) gets CR LF, so that what follows it in the
// track file starts on a line of its own.
std::vector<std::string> JournalEntries(std::string_view text) {
    std::vector<std::string> entries;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) {
            entries.push_back(std::string(text) + "\r\n");
            break;
        }
        entries.emplace_back(text.substr(0, end + 1));
        text.remove_prefix(end + 1);
    }
    return entries;
}

// The UTC time of a record's stamp "YYYYMMDD HH:MM:SS CZ," or of a note's
// "/* YYYYMMDD HH:MM:SS CZ - "; nothing for an entry without a valid stamp.
std::optional<DateTime> EntryTime(std::string_view entry) {
    constexpr std::string_view kNotePrefix = "/* ";
    constexpr std::size_t kStampLength = 20;  // "YYYYMMDD HH:MM:SS CZ"
    if (entry.starts_with(kNotePrefix)) {
        entry.remove_prefix(kNotePrefix.size());
    }
    const std::string stamp = std::string(entry.substr(0, kStampLength)) + ",";
    const ReplayLine line = ClassifyReplayLine(stamp);
    if (line.kind != ReplayLine::Kind::Stamped) {
        return std::nullopt;
    }
    return line.time;
}

}  // namespace

TrackWriter::TrackWriter(TrackSettings settings, const ProgramClock& clock, FileSystem& files,
                         DiagnosticLog& log, UserDialogs& dialogs, WindData& windHistory,
                         WindData& windSamples)
    : settings_(std::move(settings)),
      clock_(clock),
      files_(files),
      log_(log),
      dialogs_(dialogs),
      windHistory_(windHistory),
      windSamples_(windSamples) {}

void TrackWriter::TraceWriteLine(std::string_view text, bool force, std::string_view shownCog) {
    const DateTime now = Now();
    bool flushAllowed = true;
    if (force) {
        // Notes stay out of the thresholds and the wind history.
        if (!text.empty() && settings_.SetLogData) {
            Keep("/* " + FormatStampTime(now) + " CZ - " + std::string(text) + "\r\n");
        }
    } else {
        flushAllowed = RecordDataLine(text, shownCog, now);
    }
    if (flushAllowed && FlushDue(force, now)) {
        Flush(now);
    }
    GiveOutReports();
}

void TrackWriter::GiveOutReports() {
    // Reports go out last: a message box runs the event loop, and a line arriving meanwhile
    // must find the writer settled.
    std::vector<std::string> logLines = std::exchange(logLines_, {});
    std::vector<std::string> messages = std::exchange(messages_, {});
    for (const std::string& line : logLines) {
        log_.DebugWriteLine(line);
    }
    for (const std::string& message : messages) {
        dialogs_.ShowMessage(message);
    }
}

DateTime TrackWriter::Now() const {
    if (seaTalkTime_) {
        const DateTime busTime = seaTalkTime_();
        if (busTime != 0.0) {
            return busTime;
        }
    }
    return clock_.NowUtc();
}

bool TrackWriter::RecordDataLine(std::string_view text, std::string_view shownCog, DateTime now) {
    const auto [latText, lonText] = PositionFields(text);
    const double courseValue = LeadingNumber(shownCog);
    const double latValue = RoundHalfEven(LeadingNumber(latText) * kMilliMinutesPerDegree);
    const double lonValue = RoundHalfEven(LeadingNumber(lonText) * kMilliMinutesPerDegree);
    const std::optional<float> single = ToSingle(courseValue);
    // An overflow ends the routine before anything is stored, as any arithmetic fault does.
    if (!single || !FitsInt32(latValue) || !FitsInt32(lonValue)) {
        logLines_.push_back("TraceWriteLine position or course out of range, line not recorded");
        return false;
    }
    const float course = *single;
    const auto lat = static_cast<std::int32_t>(latValue);
    const auto lon = static_cast<std::int32_t>(lonValue);

    const double elapsed = ElapsedSeconds(state_.LastTime, now);
    // A plain difference: 359 to 1 degrees is a turn of 358, as the chart plotter counts it.
    const float turn = std::fabs(course - state_.LastCourse);
    const std::optional<float> distance = GrCDXY(state_.LastLon, state_.LastLat, lon, lat);
    if (!distance) {
        logLines_.push_back("TraceWriteLine distance not computable, line not recorded");
        return false;
    }
    if (!TimeMeets(elapsed, settings_.TrackTime) && !Meets(turn, settings_.TrackCompDev) &&
        !Meets(*distance, settings_.TrackDistance)) {
        return false;
    }

    Keep(FormatStampTime(now) + " CZ," + std::string(text));
    state_.LastTime = now;
    state_.LastCourse = course;
    state_.LastLat = lat;
    state_.LastLon = lon;
    TakeWindObservation();
    return true;
}

void TrackWriter::TakeWindObservation() {
    float reference = kNoReference;
    const WindObservation mean = AverageWind(windSamples_, 0, reference);
    // Even the all-zero mean of an empty sample buffer goes into the history.
    AddWindObservation(windHistory_, mean.Speed, mean.Direction, mean.Time, mean.Samples);
    ClearWindData(windSamples_);
    if (graphRedraw_) {
        graphRedraw_();
    }
}

void TrackWriter::Keep(std::string entry) {
    if (pendingBytes_ + entry.size() > kMaxPendingBytes) {
        ++dropped_;
        if (!dropLogged_) {
            dropLogged_ = true;
            logLines_.push_back("TraceWriteLine track buffer full while the disk fails, " +
                                std::string("new records are dropped"));
        }
        return;
    }
    pendingBytes_ += entry.size();
    pending_.push_back(std::move(entry));
    JournalAppend(pending_.back());
}

bool TrackWriter::FlushDue(bool force, DateTime now) const {
    // A clock set back counts as the interval passed, as for Track Time.
    const double sinceWrite = ElapsedSeconds(state_.LastWrite, now);
    return force || sinceWrite < 0 || sinceWrite > settings_.DiskWriteInterval ||
           pending_.size() - carried_ >= kFlushAfterRecords;
}

void TrackWriter::Flush(DateTime now) {
    state_.LastWrite = now;
    if (settings_.TraceOn && !settings_.TrackDir.empty()) {
        WriteTrack(DayFilePath(clock_.LocalToday()));
    } else {
        DiscardPending();
    }
    SaveHistory();
}

void TrackWriter::DiscardPending() {
    pending_.clear();
    pendingBytes_ = 0;
    carried_ = 0;
}

std::string TrackWriter::DayFilePath(const CalendarDate& day) const {
    return settings_.TrackDir + "/" + FormatDayName(day) + ".TRT";
}

void TrackWriter::WriteTrack(const std::string& path) {
    std::string bytes;
    bytes.reserve(pendingBytes_);
    for (const std::string& entry : pending_) {
        bytes += entry;
    }
    // An empty flush still opens the file, so the day's file exists from the first note on
    // and a directory that refuses writing shows at the start of the run.
    const Status written = files_.AppendDurably(path, bytes);
    if (!written.Ok()) {
        // The file system cut back whatever part of the batch reached the file, so the retry
        // writes the whole batch once.
        carried_ = pending_.size();
        logLines_.push_back("TraceWriteLine " + written.Message() + "; " +
                            std::to_string(pending_.size()) + " records kept for the next write");
        if (!trackFailureShown_) {
            trackFailureShown_ = true;
            messages_.push_back("The track file " + path +
                                " cannot be written. The track is kept in memory and written "
                                "when the disk accepts it again.");
        }
        SyncJournal(bytes);
        return;
    }
    if (trackFailureShown_ || carried_ > 0) {
        logLines_.push_back("TraceWriteLine wrote " + std::to_string(pending_.size()) +
                            " kept records to " + path);
    }
    if (dropLogged_) {
        logLines_.push_back("TraceWriteLine " + std::to_string(dropped_) +
                            " records dropped so far while the disk failed");
    }
    DiscardPending();
    trackFailureShown_ = false;
    dropLogged_ = false;
    SyncJournal({});
}

bool TrackWriter::JournalOn() const {
    return settings_.TraceOn && !settings_.TrackDir.empty() && !journalLeftAlone_;
}

std::string TrackWriter::JournalPath() const {
    return settings_.TrackDir + "/" + kTrackJournalName;
}

void TrackWriter::JournalAppend(std::string_view entry) {
    // After a failed write the journal is out of step; only the next flush's rewrite puts it
    // right, so that a journal holding part of an entry is never appended to.
    if (!JournalOn() || !journalInSync_) {
        return;
    }
    journalHoldsEntries_ = true;
    const Status appended = files_.AppendToFile(JournalPath(), entry);
    if (!appended.Ok()) {
        journalInSync_ = false;
        ReportJournalFailure(appended);
    }
}

void TrackWriter::SyncJournal(std::string_view pending) {
    if (!JournalOn()) {
        return;
    }
    Status written;
    if (pending_.empty()) {
        if (!journalHoldsEntries_) {
            return;  // an empty journal is not written again at every flush
        }
        written = files_.WriteFile(JournalPath(), "");
    } else if (!journalInSync_) {
        written = files_.ReplaceFile(JournalPath(), pending);
    } else {
        return;
    }
    journalInSync_ = written.Ok();
    if (!written.Ok()) {
        ReportJournalFailure(written);
        return;
    }
    journalHoldsEntries_ = !pending_.empty();
    journalFailureLogged_ = false;
}

void TrackWriter::ReportJournalFailure(const Status& failure) {
    if (journalFailureLogged_) {
        return;
    }
    journalFailureLogged_ = true;
    logLines_.push_back("Track journal: " + failure.Message() +
                        "; recording goes on, records since the last flush are in memory only");
}

void TrackWriter::RecoverJournal() {
    if (!JournalOn()) {
        return;
    }
    const std::string path = JournalPath();
    if (!files_.FileExists(path)) {
        journalHoldsEntries_ = false;
        return;
    }
    Result<std::string> read = files_.ReadFile(path);
    if (!read.Ok()) {
        // Emptying a journal nobody could read would lose what it holds: leave it for the sailor.
        journalLeftAlone_ = true;
        log_.DebugWriteLine("Track journal: " + read.GetStatus().Message() +
                            "; left as it is, this run records without a journal");
        return;
    }
    std::vector<std::string> entries = JournalEntries(read.Value());
    if (entries.empty()) {
        journalHoldsEntries_ = false;
        return;
    }
    CalendarDate day = clock_.LocalToday();
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        if (const std::optional<DateTime> time = EntryTime(*entry)) {
            day = clock_.LocalDateAt(*time);
            break;
        }
    }
    const std::size_t recovered = entries.size();
    // The journal already holds these: they are taken in without being appended again.
    for (std::string& entry : entries) {
        pendingBytes_ += entry.size();
        pending_.push_back(std::move(entry));
    }
    const std::string trackPath = DayFilePath(day);
    WriteTrack(trackPath);
    if (pending_.empty()) {
        logLines_.push_back("Track journal: " + std::to_string(recovered) +
                            (recovered == 1 ? " record" : " records") + " recovered into " +
                            trackPath);
    }
    GiveOutReports();
}

void TrackWriter::SaveHistory() {
    if (!historyLoaded_ || settings_.TrackDir.empty()) {
        return;
    }
    const std::string path = WindHistoryPath(settings_.TrackDir);
    const Status saved = SaveWindHistory(files_, path, windHistory_);
    if (saved.Ok()) {
        historyFailureShown_ = false;
        return;
    }
    logLines_.push_back("TraceWriteLine could not save the wind history: " + saved.Message());
    if (!historyFailureShown_) {
        historyFailureShown_ = true;
        messages_.push_back("The wind history " + path + " cannot be saved.");
    }
}

}  // namespace wakeline
