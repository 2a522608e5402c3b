#pragma once
// The starter settings file that `wakeline-tool init` writes for a sailor who has no chart
// plotter's SeaClear_2.ini to point the program at: where it goes, where its tracks go, the
// file's text with each setting explained, and what to tell the sailor afterwards.
// Everything here is text; the tool does the writing.

#include <optional>
#include <string>

#include "base/status.h"

namespace wakeline {

// The environment's base directories as set; an empty or relative value counts as unset, as
// the XDG base directory rules say.
struct UserHomes {
    std::string configHome;  // $XDG_CONFIG_HOME
    std::string dataHome;    // $XDG_DATA_HOME
    std::string home;        // $HOME
};

// The user's own settings file, $XDG_CONFIG_HOME/Wakeline/SeaClear_2.ini (default
// ~/.config/...), where `wakeline` without a command line looks once the program's own
// directory has none. Empty when neither $XDG_CONFIG_HOME nor $HOME is usable.
std::string UserSettingsPath(const UserHomes& homes);

// Where init writes: the settings file and the track directory that it names.
struct StarterPlace {
    std::string settingsPath;
    std::string trackDir;
    bool userDefault = false;  // the user's own file, which `wakeline` finds by itself
};

// Without `dir`: the user's settings file and $XDG_DATA_HOME/wakeline/traces (default
// ~/.local/share/...). With `dir`: DIR/SeaClear_2.ini and DIR/traces, a relative DIR taken from
// `currentDir`, so that the file names its track directory wherever the program is started.
// Fails when a default is needed and no home directory is known.
Result<StarterPlace> ChooseStarterPlace(const std::optional<std::string>& dir,
                                        const UserHomes& homes, const std::string& currentDir);

// The settings file's text, LF line ends, plain ASCII: the [Program Setup] keys (DDE, Track
// Time, Track Distance, Track CompDev, Track Dir = `trackDir`, SeaClear Dir empty), each after
// comment lines starting with ";" that the settings reader never takes for a key.
std::string StarterSettingsText(const std::string& trackDir);

// What init says after writing `place`: the two paths, then what to do next, LF-ended lines.
std::string StarterReport(const StarterPlace& place);

}  // namespace wakeline
