#pragma once
// Starts the chart plotter's program, detached, so that it outlives this one. A Windows
// program (a path ending in ".exe", any case) is started through `wine` when `wine` is on the
// PATH; without `wine` it cannot be started and the reason says so. Any other path is started
// as it is. The program runs in its own directory, as a program started from its shortcut
// does.

#include <QStringList>
#include <string>
#include <utility>

#include "livedata/chart_plotter_link.h"

namespace wakeline {

class ProgramLauncher : public ProgramStarter {
  public:
    // `searchPaths` are where `wine` is looked for; empty means the PATH.
    explicit ProgramLauncher(QStringList searchPaths = {}) : searchPaths_(std::move(searchPaths)) {}

    // Ok when the program was started, otherwise why not (the system's reason where it
    // gives one).
    Status StartProgram(const std::string& path) override;

  private:
    QStringList searchPaths_;
};

}  // namespace wakeline
