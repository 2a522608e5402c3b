#include "livedata/chart_plotter_link.h"

#include <utility>

namespace wakeline {

ChartPlotterLink::ChartPlotterLink(DiagnosticLog& log, ProgramStarter& starter)
    : log_(log), starter_(starter) {}

bool ChartPlotterLink::OnTimerTick() {
    if (linkMode_ != kLinkModeNone || attemptUnderWay_) {
        return false;
    }
    attemptUnderWay_ = true;
    return true;
}

void ChartPlotterLink::OnConnected() {
    attemptUnderWay_ = false;
    linkMode_ = kLinkModeNotify;
}

LinkFailure ChartPlotterLink::OnConnectFailed(const std::string& seaClearExe) {
    attemptUnderWay_ = false;
    linkMode_ = kLinkModeNone;
    if (!SeaClearStarted_) {
        // Started once per run at most: a chart plotter the user closed stays closed.
        log_.DebugWriteLine("Timer1 attempt load Seaclear: " + seaClearExe);
        if (!seaClearExe.empty()) {
            const Status started = starter_.StartProgram(seaClearExe);
            if (!started.Ok()) {
                log_.DebugWriteLine("Timer1 " + started.Message());
            }
        }
        log_.DebugWriteLine("Timer1 finished attempt load Seaclear");
        SeaClearStarted_ = true;
    }
    return LinkFailure{"No seaclear input", LinkSeen_};
}

void ChartPlotterLink::OnLinkClosed() {
    attemptUnderWay_ = false;
    linkMode_ = kLinkModeNone;
}

LinkNotification ChartPlotterLink::OnNotification(std::string_view itemText, DateTime now,
                                                  bool recordTrack, DataLineSink& sink) {
    LinkSeen_ = true;
    LastTimeStamp_ = FormatLogTime(now) + " (CZ)";

    std::string line;
    line.reserve(itemText.size() + 2);
    line.append(itemText);
    line.append("\r\n");
    if (line == LastDataLine_) {
        return LinkNotification{false, "unchanged " + LastTimeStamp_, false};
    }

    LastDataLine_ = std::move(line);
    log_.DebugWriteLine("lblDDE_LinkNotify " + LastDataLine_);
    const bool displayed = sink.TraceDisplayLine(LastDataLine_);
    log_.DebugWriteLine("lblDDE_LinkNotify Line Displayed");
    if (recordTrack && displayed) {
        sink.TraceWriteLine(LastDataLine_, false);
    }
    // Before the first data the label held two lines of instruction; from now on one line.
    const bool layOutAgain = statusLabelHeight_ != kStatusLabelDataHeight;
    statusLabelHeight_ = kStatusLabelDataHeight;
    return LinkNotification{true, LastTimeStamp_, layOutAgain};
}

}  // namespace wakeline
