// frmPowerAlarm on Qt's offscreen platform, driven by the real battery monitor over scripted
// battery readings, with a clock the test moves and a chime that records when it was asked.

#include "power/window/power_alarm_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "power/power_monitor.h"
#include "support/run_fakes.h"

namespace wakeline {
namespace {

// Plays or fails as scripted and counts the chimes asked for.
class ScriptedChime : public ChimePlayer {
  public:
    Status PlayChime() override {
        ++played;
        return fails ? Status::Failure("play", "chime.wav", "Connection refused") : Status{};
    }
    bool fails = false;
    int played = 0;
};

// The run around the window: the battery monitor with the window as its alarm.
struct Cabin : AlarmWindowHost {
    Cabin() {
        alarm.SetHost(*this);
        monitor.StartWithSoundCheck();
    }
    const PowerState& AlarmPowerState() const override {
        return forced ? *forced : monitor.State();
    }
    DateTime AlarmNow() const override { return now; }
    void AcknowledgeAlarm() override { monitor.Noticed(now); }
    void ShowChimeFailure(const std::string& text) override { failures.push_back(text); }

    // One battery check `seconds` after 22-11-2026 10:00:00 UTC, sound loud.
    void Check(int seconds, int percent, bool charging) {
        now = DateTimeFromFields({2026, 11, 22, 10, 0, 0}) + seconds / 86400.0;
        battery.status = {percent, charging ? BatteryStatus::kChargingFlag : std::uint8_t{0}};
        monitor.PowerCheck(now, true);
    }
    PowerAlarmWindow* Window() const { return alarm.Window(); }

    testing::FakeBattery battery;
    testing::FakeSoundLevels levels;
    ScriptedChime chime;
    WindowPowerAlarm alarm{levels, chime};
    PowerMonitor monitor{battery, alarm};
    std::optional<PowerState> forced;  // the state the window reads, when the test sets one
    DateTime now = 0;
    std::vector<std::string> failures;
};

int AlarmWindowsOnScreen() {
    int count = 0;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        count += qobject_cast<PowerAlarmWindow*>(widget) != nullptr && widget->isVisible() ? 1 : 0;
    }
    return count;
}

TEST(PowerAlarmWindow, ShowsEachStatesMessageAndTheButtonMovesTheStateOn) {
    Cabin cabin;
    cabin.levels.changesLevels = true;  // the sound check at start raised the levels
    const std::tuple<const char*, int, int, bool, const char*, int> steps[] = {
        // legend, seconds, percent, charging, message ("" none), state after acknowledging
        {"the sound check at start", 0, 50, false, "Check Sound Volume Levels", 0},
        {"25 % on battery, discharging since the start", 60, 25, false, "Warning Batteries", 1},
        {"below 20 % after the warning", 120, 15, false, "Switch Loader On!! ", 2},
        {"acknowledged twice: no more battery alarms", 180, 10, false, "", 2},
        {"the charger in: charging since now", 240, 50, true, "", -1},
        {"full 3 h 25 min later", 240 + 12300, 99, true, "Charging Completed 03:25", 0},
        {"unplugged: on battery since now", 20000, 40, false, "", 0},
        {"1 h 5 min on battery, 25 %", 20000 + 3900, 25, false, "Warning Batteries01:05", 1},
        {"20 s later below 20 %", 20000 + 3920, 15, false, "Switch Loader On!! 01:05", 2},
    };
    for (const auto& [legend, seconds, percent, charging, message, after] : steps) {
        cabin.Check(seconds, percent, charging);
        if (*message == '\0') {
            EXPECT_EQ(AlarmWindowsOnScreen(), 0) << legend;
            EXPECT_EQ(cabin.monitor.State().AlarmState, after) << legend;
            continue;
        }
        PowerAlarmWindow* window = cabin.Window();
        ASSERT_NE(window, nullptr) << legend;
        cabin.Check(seconds, percent, charging);  // the next check asks again: one window
        EXPECT_EQ(cabin.Window(), window) << legend;
        EXPECT_EQ(AlarmWindowsOnScreen(), 1) << legend;
        EXPECT_EQ(window->MessageLabel()->text().toStdString(), message) << legend;
        EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint)) << legend;
        EXPECT_TRUE(window->Timer().isActive()) << legend;
        window->NoticedButton()->click();
        EXPECT_FALSE(window->isVisible()) << legend;
        EXPECT_FALSE(window->Timer().isActive()) << "no wake-ups while shut: " << legend;
        EXPECT_EQ(cabin.monitor.State().AlarmState, after) << legend;
        EXPECT_EQ(cabin.monitor.State().LastNoticed, cabin.now) << legend;
    }
}

TEST(PowerAlarmWindow, ChimesAtThePaceOfTheUrgency) {
    // One character a second of the window's first 32: x when a chime starts.
    const std::tuple<const char*, std::int16_t, std::string> cases[] = {
        {"state 1: every second", 1, std::string(32, 'x')},
        {"state 2 and more: every second", 2, std::string(32, 'x')},
        {"state 0: two in every ten", 0, "xx........xx........xx........xx"},
        {"charging completed: two in every thirty", -1, "xx............................xx"},
        {"sound check: two in every thirty", -2, "xx............................xx"},
    };
    Cabin cabin;
    for (const auto& [legend, state, expected] : cases) {
        cabin.forced = PowerState{};
        cabin.forced->AlarmState = state;
        cabin.alarm.ShowPowerAlarm(*cabin.forced, 0);
        PowerAlarmWindow* window = cabin.Window();
        std::string chimes;
        for (int c = 0; c < 32; ++c) {
            const int before = cabin.chime.played;
            window->Timer1_Timer();
            chimes += cabin.chime.played > before ? 'x' : '.';
        }
        EXPECT_EQ(chimes, expected) << legend;
        EXPECT_EQ(window->SecondsLabel()->text().toStdString(), "32 s open") << legend;
        // Opened again while up, in the same state: the count and the pace go on.
        cabin.alarm.ShowPowerAlarm(*cabin.forced, 0);
        EXPECT_EQ(window->Core().SecondsOpen(), 32) << legend;
        window->hide();
    }
    // Up at the warning, then the escalation: the new message starts its own count.
    cabin.forced->AlarmState = 0;
    cabin.alarm.ShowPowerAlarm(*cabin.forced, 0);
    cabin.Window()->Timer1_Timer();
    cabin.forced->AlarmState = 1;
    cabin.alarm.ShowPowerAlarm(*cabin.forced, 0);
    EXPECT_EQ(cabin.Window()->Core().SecondsOpen(), 0);
    EXPECT_EQ(cabin.Window()->MessageLabel()->text(), "Switch Loader On!! ");
}

// The longest texts: a message with its time, five digits of seconds and a chime that fails,
// told once while it keeps failing and again after it played in between.
TEST(PowerAlarmWindow, AFailingChimeIsToldOnceAndEveryTextFitsByDayAndAtNight) {
    Cabin cabin;
    cabin.forced = PowerState{};
    cabin.forced->AlarmState = 1;
    cabin.forced->DischargeStart = 1;
    cabin.alarm.SetNight(true);
    cabin.alarm.ShowPowerAlarm(*cabin.forced, 1.5);
    PowerAlarmWindow* window = cabin.Window();
    EXPECT_EQ(window->MessageLabel()->text(), "Switch Loader On!! 12:00");
    EXPECT_EQ(window->MessageLabel()->palette().color(QPalette::WindowText), QColor(255, 0, 0));
    EXPECT_EQ(window->palette().color(QPalette::Window), QColor(0, 0, 0));
    cabin.chime.fails = true;
    for (int c = 0; c < 5; ++c) {
        window->Timer1_Timer();
    }
    EXPECT_EQ(cabin.chime.played, 5) << "it keeps trying";
    EXPECT_EQ(cabin.failures,
              std::vector<std::string>{"The battery alarm's chime cannot be played: could not "
                                       "play chime.wav: Connection refused"});
    cabin.chime.fails = false;  // the sound server is back
    window->Timer1_Timer();
    EXPECT_EQ(window->ChimeLabel()->text(), "");
    cabin.chime.fails = true;  // and gone again
    for (int c = 0; c < 12345; ++c) {
        window->Timer1_Timer();
    }
    EXPECT_EQ(cabin.failures.size(), 2u);
    EXPECT_EQ(window->ChimeLabel()->text(),
              "No chime: could not play chime.wav: Connection refused");
    for (const bool night : {true, false}) {
        cabin.alarm.SetNight(night);
        for (QWidget* part : {static_cast<QWidget*>(window->MessageLabel()),
                              static_cast<QWidget*>(window->SecondsLabel()),
                              static_cast<QWidget*>(window->ChimeLabel()),
                              static_cast<QWidget*>(window->NoticedButton())}) {
            EXPECT_TRUE(window->rect().contains(part->geometry()))
                << part->objectName().toStdString();
        }
        // The message stays on one line, and the other texts within their own places.
        const QFontMetrics big(window->MessageLabel()->font());
        EXPECT_LE(big.horizontalAdvance(window->MessageLabel()->text()),
                  window->MessageLabel()->width());
        EXPECT_LE(big.height(), window->MessageLabel()->height());
        const QFontMetrics small(window->SecondsLabel()->font());
        EXPECT_LE(small.horizontalAdvance(window->SecondsLabel()->text()),
                  window->SecondsLabel()->width());
        EXPECT_LE(small
                      .boundingRect(window->ChimeLabel()->rect(), Qt::TextWordWrap,
                                    window->ChimeLabel()->text())
                      .height(),
                  window->ChimeLabel()->height());
        const QFontMetrics button(window->NoticedButton()->font());
        EXPECT_LT(button.horizontalAdvance(window->NoticedButton()->text()),
                  window->NoticedButton()->width() - 2 * button.averageCharWidth());
    }
    EXPECT_EQ(window->palette().color(QPalette::Window), QColor(255, 255, 0));
}

}  // namespace
}  // namespace wakeline
