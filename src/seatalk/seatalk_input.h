#pragma once
// The SeaTalk input of one run: the raw byte stream of the port (or of a recording) in, one
// event out for every receive event that completed a datagram, with its report and the data
// line composed right after it, from the values as they stood at the end of that event.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "seatalk/parmrk_decoder.h"
#include "seatalk/seatalk_decoder.h"
#include "seatalk/seatalk_frame.h"
#include "seatalk/seatalk_line.h"

namespace wakeline {

// The warning shown before the port is opened for the first time in a run.
inline constexpr const char* kSeaTalkPortWarning =
    "SeaTalk option may not work well if other software, "
    "esp. hyperterminal, has used COM port before; "
    "you may want to restart your computer before running in this mode";

struct SeaTalkEvent {
    std::string report;     // the datagrams completed (see ReceiveOutcome::report)
    std::string line;       // the data line, ending in CR LF
    std::string timeStamp;  // the status text of the line
    // The bus's date-time when the line was composed, 0 before the bus sent one: the time of
    // the line's track record, whatever later events of the same read change.
    DateTime busTime = 0;
};

class SeaTalkInput {
  public:
    explicit SeaTalkInput(std::int16_t mode) : receiver_(mode, values_) {}
    // The receiver refers to the values: the object stays where it was made.
    SeaTalkInput(const SeaTalkInput&) = delete;
    SeaTalkInput& operator=(const SeaTalkInput&) = delete;

    // The warning text the first time it is asked for in this object's life, then nothing: the
    // caller shows it (OK only) before opening the port.
    std::optional<std::string> TakePortWarning();

    // One read of the port (the stream under parity marking). `now` stamps lines composed
    // before the bus sent a time. Each receive event that completed a datagram gives one event,
    // in order; an event that spans reads gives it in the read that completed the datagram.
    std::vector<SeaTalkEvent> Feed(std::span<const std::uint8_t> bytes, DateTime now);

    // The end of a recorded stream: a last 0xFF waiting for its partner is delivered.
    std::vector<SeaTalkEvent> Finish(DateTime now);

    const SeaTalkValues& Values() const { return values_; }
    const SeaTalkFrame& Frame() const { return receiver_.Frame(); }

  private:
    std::vector<SeaTalkEvent> Handle(const std::vector<ReceivePiece>& pieces, DateTime now);

    SeaTalkValues values_;
    SeaTalkReceiver receiver_;
    ParmrkDecoder decoder_;
    bool seaTalkWarningShown_ = false;
};

}  // namespace wakeline
