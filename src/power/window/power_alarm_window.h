#pragma once
// frmPowerAlarm: the battery alarm that cannot be overlooked. It stays above every window, in
// large bold letters on a warning colour by day and red on black at night, chimes at the pace
// the state calls for and counts the seconds until the sailor presses cmdNoticed. A thin view:
// texts, pace, geometry and colours come from AlarmWindow; its timer runs only while the
// window is up, so a run without an alarm has no wake-ups of its own.
//
// WindowPowerAlarm is the battery monitor's PowerAlarm for a run with windows: it creates the
// window at the first alarm and brings the same one up at each later one.

#include <QTimer>
#include <QWidget>
#include <memory>

#include "power/alarm_window.h"
#include "power/chime_player.h"
#include "power/power_alarm.h"
#include "power/sound_levels.h"

class QLabel;
class QPushButton;

namespace wakeline {

class PowerAlarmWindow : public QWidget {
    Q_OBJECT
  public:
    // `host` and `chime` must outlive the window.
    PowerAlarmWindow(AlarmWindowHost& host, ChimePlayer& chime, QWidget* parent = nullptr);

    // ShowPowerAlarm: a closed window opens with the state's message, raised and activated;
    // an open one is raised, and its message set again only when the state moved on.
    void ShowPowerAlarm(const PowerState& state, DateTime now);
    // Red on black for night watches; the warning colours by day.
    void SetNight(bool on);
    bool Night() const { return night_; }

    // Timer1's tick, also for tests that drive the seconds by hand.
    void Timer1_Timer();
    const AlarmWindow& Core() const { return core_; }
    QLabel* MessageLabel() const { return lblMsg_; }
    QLabel* SecondsLabel() const { return lblSeconds_; }
    QLabel* ChimeLabel() const { return lblChime_; }
    QPushButton* NoticedButton() const { return cmdNoticed_; }
    const QTimer& Timer() const { return timer1_; }

  protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void cmdNoticed_Click();
    void ShowTexts();
    void ApplyGeometry();
    void ApplyColours();

    AlarmWindowHost& host_;
    ChimePlayer& chime_;
    AlarmWindow core_;
    QLabel* lblMsg_;
    QLabel* lblChime_;
    QLabel* lblSeconds_;
    QPushButton* cmdNoticed_;
    QTimer timer1_;
    bool night_ = false;
};

class WindowPowerAlarm : public PowerAlarm {
  public:
    // `levels` and `chime` must outlive the alarm.
    WindowPowerAlarm(SoundLevels& levels, ChimePlayer& chime);
    ~WindowPowerAlarm() override;

    // The run the window belongs to; set before the first check. Must outlive the alarm.
    void SetHost(AlarmWindowHost& host) { host_ = &host; }
    // The night palette, now and for a window made later.
    void SetNight(bool on);

    void ShowPowerAlarm(const PowerState& state, DateTime now) override;
    std::int16_t CheckSoundLevels(bool loud, bool restore) override {
        return levels_.CheckSoundLevels(loud, restore);
    }

    // Null until the first alarm.
    PowerAlarmWindow* Window() const { return window_.get(); }

  private:
    SoundLevels& levels_;
    ChimePlayer& chime_;
    AlarmWindowHost* host_ = nullptr;
    bool night_ = false;
    std::unique_ptr<PowerAlarmWindow> window_;
};

}  // namespace wakeline
