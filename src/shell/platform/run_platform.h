#pragma once
// What every run of the navigation centre takes from this machine, with or without windows:
// the program's own description, where its log and state files go, and where the records the
// close could not write are saved instead.

#include <optional>
#include <string>

#include "shell/platform_services.h"

namespace wakeline {

class FileSystem;
class NavigationCentre;
struct CloseOutcome;

// The running program's title, version, directory and name, and the installed data directory.
ProgramInfo ThisProgram();

// $XDG_STATE_HOME/wakeline (~/.local/state/wakeline by default).
std::string StateDirectory();

// The diagnostic log's path when --log does not give one; its directory is created.
std::string PrepareLogPath(const std::optional<std::string>& given);

// Writes the records the close could not put into the track file to
// StateDirectory()/unsaved-YYYYMMDD-HHMMSS.TRT (the local time of the close) and tells the user
// where they went, or that they are lost and why.
void SaveUnsaved(const CloseOutcome& outcome, FileSystem& files, NavigationCentre& centre);

}  // namespace wakeline
