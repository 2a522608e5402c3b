#pragma once
// The data sources of a run and its main timer, the same with or without windows: the link to
// the chart plotter, a replay of recorded lines, the SeaTalk port or a recorded SeaTalk stream.
// Each event is handed to the run's object; what a run does when its source ends, when the
// chart plotter went away after data, and after each tick is its own, told by signals.

#include <QObject>
#include <QTimer>
#include <memory>
#include <string>

#include "livedata/link_endpoint.h"
#include "shell/platform/run_options.h"

namespace wakeline {

class NavigationCentre;
class ReplaySource;
class SeaTalkReplayStream;
class SeaTalkSerialPort;
class TcpLink;

class RunSources : public QObject {
    Q_OBJECT
  public:
    // `centre` must have loaded (FormLoad) and must outlive this object.
    RunSources(NavigationCentre& centre, ProgramOptions options, QObject* parent = nullptr);
    ~RunSources() override;

    // Starts the main timer at the interval start-up chose, and the data source.
    void Start(const LinkEndpoint& endpoint);
    // Stops the timer and every source: no further events.
    void Stop();
    // 1 once a source could not be opened or read, else 0.
    int ExitStatus() const { return exitStatus_; }

  Q_SIGNALS:
    // A data line or a tick changed what the window shows.
    void changed();
    // A tick of the main timer has been handled (the battery check included).
    void ticked();
    // The replay (or the recorded SeaTalk stream) has ended or could not be read.
    void sourceEnded();
    // The chart plotter went away after data had arrived: the voyage is over, ask to close.
    void linkLostAfterData();

  private:
    void StartReplay();
    void StartLink(const LinkEndpoint& endpoint);
    void StartSeaTalk();
    void OnTick();
    void OnDataLine(const QByteArray& line, bool replay);

    NavigationCentre& centre_;
    ProgramOptions options_;
    QTimer timer1_;
    std::unique_ptr<TcpLink> link_;
    std::unique_ptr<ReplaySource> replay_;
    std::unique_ptr<SeaTalkSerialPort> serial_;
    std::unique_ptr<SeaTalkReplayStream> seaTalkReplay_;
    std::string loggedStatus_;
    std::string loggedFailure_;  // the last connect failure logged
    bool stopped_ = false;
    int exitStatus_ = 0;
};

}  // namespace wakeline
