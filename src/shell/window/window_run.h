#pragma once
// A run of the navigation centre with its window: the same sources, timer and close as a run
// without windows, but the messages are message boxes, the close asks "ending trace function"
// (from the window's close button, or when the chart plotter went away after data), and the
// live display is the main window. SIGINT, SIGTERM and SIGHUP close it with OK without asking,
// since nobody may be there to answer; the end of a replay leaves the window open.

#include <QObject>
#include <memory>

#include "shell/platform/run_options.h"

namespace wakeline {

class HelpWindow;
class MainWindow;
class MessageBoxDialogs;
class TablesWindow;
class WindGraphWindow;
class NavigationCentre;
class UserDialogs;

class WindowRun : public QObject {
    Q_OBJECT
  public:
    // `dialogs`, when given, answers instead of message boxes (tests); it must outlive the run.
    explicit WindowRun(ProgramOptions options, UserDialogs* dialogs = nullptr,
                       QObject* parent = nullptr);
    ~WindowRun() override;

    // Starts the run: start-up, the window, then the data source. Returns the exit status when
    // the run ended at once (no settings file: 1; a bad option value: 2), or -1 when the event
    // loop is to run; the loop's exit status is then the run's.
    int Start();

    MainWindow& Window();
    NavigationCentre& Centre();
    MessageBoxDialogs& MessageBoxes();
    // cmdHelp: opens the help window, or raises the one that is open.
    HelpWindow* OpenHelp();
    // cmdTab: shows the tables window modally; returns once it is closed and the tables are
    // in use (and saved when changed).
    void OpenTables();
    // cmdWind: opens the wind graph beside the main window, or raises the one that is open.
    WindGraphWindow* OpenWindGraph();

  Q_SIGNALS:
    // The run has closed with this exit status: the program ends its event loop.
    void finished(int status);
    // The tables window is about to wait for the sailor (tests and screenshots drive it).
    void tablesOpened(wakeline::TablesWindow* window);

  private:
    struct Parts;
    void OnCommand(int button);
    void OnResized();
    void Refresh();
    bool AskToClose();
    void CloseUnasked();
    // Stops the sources, saves what the track file refused, and ends the event loop.
    void Finish(bool askedUser);

    ProgramOptions options_;
    UserDialogs* dialogsOverride_;
    std::unique_ptr<Parts> parts_;
};

}  // namespace wakeline
