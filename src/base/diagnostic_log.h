#pragma once
// The diagnostic log through which every subsystem reports its progress. The command line's
// diagnostic mode decides where a line goes: nowhere, a message box, or the log file.

#include <cstdint>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/file_system.h"
#include "base/user_dialogs.h"

namespace wakeline {

// Diagnostic modes (the command line's field 3).
inline constexpr std::int16_t kDebugNone = 0;
inline constexpr std::int16_t kDebugMessageBox = 1;
inline constexpr std::int16_t kDebugLogFile = 2;
inline constexpr std::int16_t kDebugSilent = 3;

// Line kinds: 0 time stamp, blank, text, line end; 1 the same without the line end; 2 the text
// and a line end; 3 the text alone. Every line of this system is kind 0; the others let a
// caller build one line from pieces.
inline constexpr std::int16_t kLineStamped = 0;

class DiagnosticLog {
  public:
    // The objects must outlive the log. `path` is the log file of mode 2.
    DiagnosticLog(const ProgramClock& clock, FileSystem& files, UserDialogs& dialogs,
                  std::string path);

    void SetMode(std::int16_t mode) { mode_ = mode; }
    std::int16_t Mode() const { return mode_; }
    const std::string& Path() const { return path_; }

    // Mode 0 and unknown modes: nothing. Mode 1: a message box with the text unless it is
    // blank (the kind is ignored). Mode 2: the file is opened, one line appended by its kind
    // (time stamp "DD-MM-YYYY HH:MM:SS", CR LF endings; each CR LF, lone CR or lone LF inside
    // the text written as one space, so a line never holds more than one record) and closed,
    // so the log is complete on
    // disk even when the program is killed; a kind outside 0..3 appends nothing. A line that
    // cannot be written is dropped and counted, never fatal; the first one is told once through
    // the dialogs. Mode 3: the clock is read only.
    void DebugWriteLine(std::string_view text, std::int16_t kind = kLineStamped);

    // Lines that mode 2 could not write since the start.
    std::uint64_t DroppedLines() const { return dropped_; }

  private:
    const ProgramClock& clock_;
    FileSystem& files_;
    UserDialogs& dialogs_;
    std::string path_;
    std::int16_t mode_ = kDebugNone;
    std::uint64_t dropped_ = 0;
};

}  // namespace wakeline
