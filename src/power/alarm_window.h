#pragma once
// frmPowerAlarm without its widgets: the message chosen by the alarm state, the seconds the
// window has been open, the chime's pace by urgency, what a chime that cannot be played tells
// the sailor, and the window's layout in twips and colours by day and at night. The window
// shows these values and turns its timer, activation and button into calls here.

#include <cstdint>
#include <optional>
#include <string>

#include "base/date_time.h"
#include "base/status.h"
#include "display/display_layout.h"
#include "power/power_alarm.h"

namespace wakeline {

// What the alarm window asks of the run it belongs to. Must outlive the window.
class AlarmWindowHost {
  public:
    virtual ~AlarmWindowHost() = default;
    // The battery monitor's state, read at every tick and activation.
    virtual const PowerState& AlarmPowerState() const = 0;
    // The run's clock (UTC; a replay's own time while one runs).
    virtual DateTime AlarmNow() const = 0;
    // cmdNoticed: the sailor has read the alarm; the state moves on.
    virtual void AcknowledgeAlarm() = 0;
    // A chime that could not be played, told once, as the run tells its messages.
    virtual void ShowChimeFailure(const std::string& text) = 0;
};

// Where the window's parts go, in twips from the client area's top left.
struct AlarmWindowGeometry {
    int width = 0;  // the client area
    int height = 0;
    TwipsRect message;  // lblMsg, wrapped over two lines when it must
    TwipsRect chimeProblem;
    TwipsRect seconds;
    TwipsRect noticed;  // cmdNoticed
};

// Blue x 65536 + green x 256 + red, as the main window's palette.
struct AlarmWindowColours {
    std::uint32_t background;
    std::uint32_t message;
    std::uint32_t text;  // the seconds and the chime problem
    std::uint32_t buttonBackground;
    std::uint32_t buttonText;
};

class AlarmWindow {
  public:
    static constexpr int kTimerMilliseconds = 1000;
    // The message's font: large and bold, readable from across the cabin.
    static constexpr int kMessagePoints = 24;
    static constexpr int kTextPoints = 11;
    static constexpr const char* kNoticedCaption = "Noticed";
    static constexpr const char* kNoticedToolTip =
        "I have read the alarm: close the window and stop the chime";

    // SetAlarmMessage: the state's message with its elapsed time; a state outside -2..1 keeps
    // the message as it was. Counting starts again at 0, and with it the chime's pace.
    void SetAlarmMessage(const PowerState& state, DateTime now);
    // The window is opened again while it is up: the message is set again only when the state
    // moved on since it was set (the escalation brings its own text and pace). Otherwise the
    // count goes on, so that a check that asks ten times a second does not restart it. True
    // when the message was set again.
    bool ShowAgain(const PowerState& state, DateTime now);
    // One tick of Timer1: true when the chime is to start now. With c the seconds before this
    // tick: state 1 and above every second; 0 when c mod 10 <= 1; -1 and -2 when c mod 30 <= 1
    // (two starts in a row each time, the second restarting the sound). Then the count grows.
    bool Timer1_Timer(std::int16_t alarmState);
    // The outcome of a chime: a failure's text is returned for the sailor to read once, until
    // a chime plays again; it stays in the window (ChimeProblem) while the chime fails.
    std::optional<std::string> ChimePlayed(const Status& played);

    const std::string& Message() const { return message_; }
    std::int32_t SecondsOpen() const { return secondsOpen_; }
    // The seconds label: "12 s open".
    std::string SecondsText() const;
    // "" while the chime plays.
    const std::string& ChimeProblem() const { return chimeProblem_; }

    static AlarmWindowGeometry Geometry();
    static AlarmWindowColours Colours(bool night);

  private:
    std::string message_;
    std::optional<std::int16_t> messageState_;  // the state the message was set for
    // Wider than 16 bits on purpose: a 16-bit count overflows after nine hours, and a window
    // left open through a night must keep its chime's pace.
    std::int32_t secondsOpen_ = 0;
    std::string chimeProblem_;
    bool chimeFailureTold_ = false;
};

}  // namespace wakeline
