#pragma once
// A run of the navigation centre without windows: the platform's clock, files, settings and
// dialogs, the main timer, the chart-plotter link or a replay, the close on SIGINT, SIGTERM or
// SIGHUP or at the end of a replay, and the live display drawn on a terminal.
//
// The run's exit status is 1 when a replay could not be opened or read, or when track records
// could not be written by the close: those go to $XDG_STATE_HOME/wakeline/unsaved-YYYYMMDD-
// HHMMSS.TRT (the local time of the close), and a message names the file.

#include <QObject>
#include <memory>

#include "shell/platform/run_options.h"

namespace wakeline {

class HeadlessRun : public QObject {
    Q_OBJECT
  public:
    explicit HeadlessRun(ProgramOptions options, QObject* parent = nullptr);
    ~HeadlessRun() override;

    // Starts the run: start-up, then the data source. Returns the exit status when the run
    // ended at once (no settings file: 1; a bad option value: 2), or -1 when the event loop
    // is to run; the loop's exit status is then the run's.
    int Start();

  private:
    struct Parts;
    void OnTick();
    void CloseRun();
    void Draw();

    ProgramOptions options_;
    std::unique_ptr<Parts> parts_;
};

}  // namespace wakeline
