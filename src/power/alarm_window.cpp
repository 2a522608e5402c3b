#include "power/alarm_window.h"

#include "display/display_palette.h"

namespace wakeline {
namespace {

// Twips; 8100 is five and a half inches: the longest message with its time fits one line
// with room to spare at the message's size, and wraps onto a second line in a larger font.
constexpr int kWidth = 8100;
constexpr int kMargin = 150;
constexpr int kGap = 60;
constexpr int kMessageHeight = 1500;
constexpr int kProblemHeight = 480;
constexpr int kButtonWidth = 2400;
constexpr int kButtonHeight = 600;

// By day black on yellow, the colours of a warning sign; the chime does the rest.
constexpr AlarmWindowColours kDayColours{0x00FFFF, 0x000000, 0x000000, 0xF0F0F0, 0x000000};
// At night the main window's dark palette, with the message in full red: it must be seen at
// a glance, and red spares the sailor's night sight even at full brightness.
constexpr AlarmWindowColours kNightAlarmColours{kNightColours.background, kStatusRed,
                                                kNightColours.text, kNightColours.buttonBackground,
                                                kNightColours.buttonText};

}  // namespace

void AlarmWindow::SetAlarmMessage(const PowerState& state, DateTime now) {
    std::string message = AlarmMessage(state, now);
    if (!message.empty()) {
        message_ = std::move(message);
    }
    messageState_ = state.AlarmState;
    secondsOpen_ = 0;
}

bool AlarmWindow::ShowAgain(const PowerState& state, DateTime now) {
    if (messageState_ == state.AlarmState) {
        return false;
    }
    SetAlarmMessage(state, now);
    return true;
}

bool AlarmWindow::Timer1_Timer(std::int16_t alarmState) {
    const std::int32_t c = secondsOpen_;
    bool chime = false;
    if (alarmState >= 1) {
        chime = true;
    } else if (alarmState == 0) {
        chime = c % 10 <= 1;
    } else if (alarmState == -1 || alarmState == -2) {
        chime = c % 30 <= 1;
    }
    if (secondsOpen_ < INT32_MAX) {
        secondsOpen_ = c + 1;
    }
    return chime;
}

std::optional<std::string> AlarmWindow::ChimePlayed(const Status& played) {
    if (played.Ok()) {
        chimeProblem_.clear();
        chimeFailureTold_ = false;
        return std::nullopt;
    }
    chimeProblem_ = "No chime: " + played.Message();
    if (chimeFailureTold_) {
        return std::nullopt;
    }
    chimeFailureTold_ = true;
    return "The battery alarm's chime cannot be played: " + played.Message();
}

std::string AlarmWindow::SecondsText() const {
    return std::to_string(secondsOpen_) + " s open";
}

AlarmWindowGeometry AlarmWindow::Geometry() {
    AlarmWindowGeometry g;
    const int inner = kWidth - 2 * kMargin;
    g.width = kWidth;
    g.message = {kMargin, kMargin, inner, kMessageHeight};
    g.chimeProblem = {kMargin, g.message.Bottom() + kGap, inner, kProblemHeight};
    const int rowTop = g.chimeProblem.Bottom() + kGap;
    g.noticed = {kWidth - kMargin - kButtonWidth, rowTop, kButtonWidth, kButtonHeight};
    g.seconds = {kMargin, rowTop, g.noticed.left - kGap - kMargin, kButtonHeight};
    g.height = g.noticed.Bottom() + kMargin;
    return g;
}

AlarmWindowColours AlarmWindow::Colours(bool night) {
    return night ? kNightAlarmColours : kDayColours;
}

}  // namespace wakeline
