#pragma once
// The track writer: picks the data lines that become track records by time, distance and
// course thresholds, keeps them with the user's notes in memory and appends them to the
// day's file TrackDir + "/" + YYYYMMDD + ".TRT" every DiskWriteInterval seconds, after 60
// records, and on every note. A clock set back (the time since the last record or flush is
// negative) counts as Track Time met and the interval passed. Each record also moves one averaged
// observation from the wind samples into the wind history, which is saved beside the track after
// every flush.
//
// Nothing recorded is given up because the disk refused it: a failed append is logged, shown
// to the user once per failure spell, and its records are kept (ahead of newer ones) for the
// next flush. The kept text is bounded by kMaxPendingBytes; see there.
//
// Nor is anything given up because the program dies between flushes (a crash, SIGKILL, the
// out-of-memory killer): every pending record and note is also appended, as it is kept, to the
// crash journal kTrackJournalName in the track directory. That append is a plain one, not
// forced to the disk: it costs no disk write of its own, and what the system has been handed
// survives the death of the process. Each successful flush empties the journal; a crash
// between the two leaves records that the next start-up appends a second time (a repeated line
// is better than a lost one). A journal the disk refuses is logged once per failure spell with
// the system's reason and never stops recording; the next flush rewrites it whole. Tracing
// off or no track directory: the journal is never touched.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/date_time.h"
#include "base/diagnostic_log.h"
#include "base/file_system.h"
#include "base/user_dialogs.h"
#include "track/track_settings.h"
#include "wind/wind_data.h"

namespace wakeline {

// The last track record and the last flush; all zero at the start of a run, so the first line
// meets an enabled Track Time at once.
struct TrackState {
    DateTime LastTime = 0.0;
    float LastCourse = 0.0f;   // degrees
    std::int32_t LastLat = 0;  // thousandths of a minute
    std::int32_t LastLon = 0;
    DateTime LastWrite = 0.0;
};

// A full buffer flushes; a flush that fails keeps its records and the buffer grows past it.
inline constexpr std::size_t kFlushAfterRecords = 60;

// Upper bound of the pending text while the disk refuses it: 16 MiB, about a day of records
// at one per second (a data line is some 150 to 200 bytes). A record or note that would pass
// it is dropped, counted and logged; what is already kept stays and is written first, so the
// file gets the track up to the failure and from the recovery on.
inline constexpr std::size_t kMaxPendingBytes = 16u * 1024u * 1024u;

// The crash journal's file name in the track directory.
inline constexpr const char* kTrackJournalName = "wakeline_pending.txt";

class TrackWriter {
  public:
    // The referenced objects must outlive the writer. `windHistory` receives one observation
    // per record and is saved; `windSamples` is averaged and emptied at each record.
    TrackWriter(TrackSettings settings, const ProgramClock& clock, FileSystem& files,
                DiagnosticLog& log, UserDialogs& dialogs, WindData& windHistory,
                WindData& windSamples);

    // force false: `text` is a data line (fields "," separated, latitude and longitude in
    // decimal degrees first; it keeps its own line end) and becomes a record
    // "YYYYMMDD HH:MM:SS CZ," + text when a threshold is reached. `shownCog` is the COG text
    // of the live display (its leading number is the course in degrees). A line whose
    // position or course does not fit the arithmetic is not recorded and is logged.
    // force true: `text` is a note, kept as "/* YYYYMMDD HH:MM:SS CZ - " + text + CR LF when
    // SetLogData is set and the text is not empty, and everything pending is flushed.
    // A failure message may be shown at the very end, after all state is settled, so a call
    // made while that dialog is open finds the writer consistent.
    void TraceWriteLine(std::string_view text, bool force, std::string_view shownCog = {});

    // Start-up, once the settings are in and before anything is recorded: the records a run
    // that died left in the crash journal are appended to a track file, the journal is emptied
    // and "Track journal: N records recovered into PATH" is logged. The file is the one of the
    // local date at the newest recovered stamp, the file a flush right after that record would
    // have opened: a run that died on Monday evening and is restarted on Tuesday puts Monday's
    // records into Monday's file (today's file when no entry carries a readable stamp). A
    // journal that cannot be written to its file stays pending like any failed flush; one that
    // cannot be read is logged and left alone, and the run records without a journal.
    void RecoverJournal();

    // In SeaTalk mode, the bus's date-time; a source giving 0 (no time from the bus yet), or none,
    // leaves "now" to the program clock.
    void SetSeaTalkTime(std::function<DateTime()> source) { seaTalkTime_ = std::move(source); }
    // Called after each record has reached the wind history, while the wind graph is open;
    // an empty function when it is closed.
    void SetGraphRedraw(std::function<void()> redraw) { graphRedraw_ = std::move(redraw); }
    // Until start-up has loaded the wind history, a flush must not overwrite the saved
    // history with the still-empty one; from this call on every flush saves it.
    void SetHistoryLoaded() { historyLoaded_ = true; }

    const TrackSettings& Settings() const { return settings_; }
    TrackSettings& Settings() { return settings_; }
    const TrackState& State() const { return state_; }
    // Records and notes waiting for the disk, oldest first.
    const std::vector<std::string>& PendingRecords() const { return pending_; }
    std::size_t PendingCount() const { return pending_.size(); }
    // Records and notes lost to kMaxPendingBytes since the start.
    std::uint64_t DroppedRecords() const { return dropped_; }

  private:
    DateTime Now() const;
    // True when the line became a record.
    bool RecordDataLine(std::string_view text, std::string_view shownCog, DateTime now);
    void Keep(std::string entry);
    bool FlushDue(bool force, DateTime now) const;
    void Flush(DateTime now);
    void WriteTrack(const std::string& path);
    std::string DayFilePath(const CalendarDate& day) const;
    bool JournalOn() const;
    std::string JournalPath() const;
    void JournalAppend(std::string_view entry);
    // After a flush: empties the journal once nothing is pending, rewrites it whole (`pending`
    // is the pending text) when an append had failed.
    void SyncJournal(std::string_view pending);
    void ReportJournalFailure(const Status& failure);
    void GiveOutReports();
    void DiscardPending();
    void SaveHistory();
    void TakeWindObservation();

    TrackSettings settings_;
    const ProgramClock& clock_;
    FileSystem& files_;
    DiagnosticLog& log_;
    UserDialogs& dialogs_;
    WindData& windHistory_;
    WindData& windSamples_;
    std::function<DateTime()> seaTalkTime_;
    std::function<void()> graphRedraw_;
    bool historyLoaded_ = false;

    TrackState state_;
    std::vector<std::string> pending_;
    std::size_t pendingBytes_ = 0;
    // Records kept from failed flushes; the 60-record rule counts only the ones after them,
    // so a failing disk is retried every 60 records rather than on every record.
    std::size_t carried_ = 0;
    std::uint64_t dropped_ = 0;
    bool dropLogged_ = false;
    bool trackFailureShown_ = false;
    bool historyFailureShown_ = false;
    // The journal holds exactly the pending entries; false after a failed journal write.
    bool journalInSync_ = true;
    // The journal may hold entries: unknown until start-up has looked at it.
    bool journalHoldsEntries_ = true;
    bool journalFailureLogged_ = false;
    // Found unreadable at start-up: left alone for the whole run.
    bool journalLeftAlone_ = false;
    // Log lines and user messages of the current call, given out at its end.
    std::vector<std::string> logLines_;
    std::vector<std::string> messages_;
};

}  // namespace wakeline
