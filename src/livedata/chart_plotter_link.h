#pragma once
// The link to the chart plotter as the main window keeps it: the link mode, the status texts,
// the last data line and its time stamp, and the two run-wide flags `LinkSeen` and
// `SeaClearStarted`. The transport (a TCP client standing in for the DDE conversation) lives
// in the platform; it reports to this object, which decides what follows: when to try to
// link, when to start the chart plotter's program, when to ask whether to end the voyage,
// and what a notification means for the display, the track and the status label.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/date_time.h"
#include "base/diagnostic_log.h"
#include "livedata/data_line_sink.h"
#include "livedata/program_starter.h"

namespace wakeline {

// Link modes of the status label.
inline constexpr std::int16_t kLinkModeNone = 0;
inline constexpr std::int16_t kLinkModeNotify = 3;

// The status label's height once data arrive: one text line, in twips.
inline constexpr int kStatusLabelDataHeight = 255;

// What a failed attempt to link asks of the main window.
struct LinkFailure {
    std::string statusText;  // "No seaclear input"
    // Data had arrived, so the chart plotter was closed since: close the main window, which
    // asks "ending trace function"; a refusal must be reported with OnCloseRefused().
    bool askClose = false;
};

// What a notification asks of the main window.
struct LinkNotification {
    bool newLine = false;    // the line differed from the last one and was handled
    std::string statusText;  // the time stamp, or "unchanged " + the time stamp
    // The status label was shrunk to kStatusLabelDataHeight: lay the window out again for its
    // current width. True once, with the first new data.
    bool layOutAgain = false;
};

class ChartPlotterLink {
  public:
    // `log` and `starter` must outlive the link.
    ChartPlotterLink(DiagnosticLog& log, ProgramStarter& starter);

    // A tick of the main timer: true when a connection attempt is to be made now, that is, the
    // link mode is none and no attempt is under way. The caller must then report the outcome
    // with OnConnected() or OnConnectFailed().
    bool OnTimerTick();

    // The attempt succeeded: the link mode is notify and the chart plotter will send changes.
    void OnConnected();

    // The attempt failed (no server answers). The first failure of the run logs "Timer1 attempt
    // load Seaclear: " + `seaClearExe`, starts that program when the path is not empty, logs
    // "Timer1 finished attempt load Seaclear" and sets SeaClearStarted, so the program is
    // started at most once per run. The next tick tries again.
    LinkFailure OnConnectFailed(const std::string& seaClearExe);

    // The server closed the link: the mode is none again; the next tick finds out whether the
    // chart plotter is gone.
    void OnLinkClosed();

    // The user refused to end the voyage: a lost link no longer asks again until new data
    // have arrived.
    void OnCloseRefused() { LinkSeen_ = false; }

    // One change notification. `itemText` is the item's text as delivered, without its line
    // end; the data line is that text followed by CR LF, so that each track record is one
    // line. `now` is the program clock's NowUtc. A line that differs from LastDataLine is
    // logged ("lblDDE_LinkNotify " + line), displayed, logged again ("lblDDE_LinkNotify Line
    // Displayed") and, when `recordTrack` (a track directory is set) and the display took
    // it, handed to the track writer.
    LinkNotification OnNotification(std::string_view itemText, DateTime now, bool recordTrack,
                                    DataLineSink& sink);

    std::int16_t LinkMode() const { return linkMode_; }
    bool AttemptUnderWay() const { return attemptUnderWay_; }
    bool LinkSeen() const { return LinkSeen_; }
    bool SeaClearStarted() const { return SeaClearStarted_; }
    const std::string& LastDataLine() const { return LastDataLine_; }
    const std::string& LastTimeStamp() const { return LastTimeStamp_; }
    // Empty until the first new data: the label keeps the height the layout gave it.
    std::optional<int> StatusLabelHeight() const { return statusLabelHeight_; }

  private:
    DiagnosticLog& log_;
    ProgramStarter& starter_;
    std::int16_t linkMode_ = kLinkModeNone;
    bool attemptUnderWay_ = false;
    bool LinkSeen_ = false;
    bool SeaClearStarted_ = false;
    std::string LastDataLine_;
    std::string LastTimeStamp_;
    std::optional<int> statusLabelHeight_;
};

}  // namespace wakeline
