#pragma once
// Everything the core asks of the platform for one run, handed to the run's object at
// construction. All referenced objects must outlive the run.

#include <string>

#include "base/clock.h"
#include "base/file_system.h"
#include "base/settings_store.h"
#include "base/user_dialogs.h"
#include "livedata/program_starter.h"
#include "power/battery_status.h"
#include "power/power_alarm.h"
#include "power/sound_levels.h"

namespace wakeline {

// The main window as start-up sees it: sizes in twips (15 twips are one pixel at 96 dpi).
// Setting a size may be limited by the window system; reading it back tells what was taken.
class MainWindowFrame {
  public:
    virtual ~MainWindowFrame() = default;
    virtual void SetWidth(int twips) = 0;
    virtual int Width() const = 0;
    virtual void SetHeight(int twips) = 0;
    virtual int Height() const = 0;
    virtual void SetCaption(const std::string& caption) = 0;
};

// A frame without a window: it takes every size as given.
class DetachedFrame : public MainWindowFrame {
  public:
    void SetWidth(int twips) override { width_ = twips; }
    int Width() const override { return width_; }
    void SetHeight(int twips) override { height_ = twips; }
    int Height() const override { return height_; }
    void SetCaption(const std::string& caption) override { caption_ = caption; }
    const std::string& Caption() const { return caption_; }

  private:
    int width_ = 0;
    int height_ = 0;
    std::string caption_;
};

// The program's title, version numbers and directory.
struct ProgramInfo {
    std::string title = "Wakeline";
    int major = 0;
    int minor = 0;
    int revision = 0;
    std::string programDir;   // directory of the running executable, no trailing "/"
    std::string programName;  // the executable's file name
    std::string dataDir;      // the installed data directory (help text), empty when none
    std::string homepage;     // the project's web address
    std::string userIniPath;  // the user's own settings file, taken without a command line
};

struct PlatformServices {
    const Clock& clock;
    FileSystem& files;
    UserDialogs& dialogs;
    SettingsStore& settings;
    MainWindowFrame& window;
    ProgramStarter& programs;  // starts the chart plotter's program
    BatterySource& battery;
    PowerAlarm& alarm;   // the alarm window and the sound check
    SoundLevels& sound;  // the levels the sound check raised, put back at the close
    ProgramInfo program;
    std::string logPath;  // the diagnostic log file
    // Every message and question also goes into the diagnostic log while it writes its file
    // (a run without windows, whose dialogs only reach standard error).
    bool dialogsIntoLog = false;
};

}  // namespace wakeline
