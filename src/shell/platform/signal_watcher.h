#pragma once
// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal on the event loop, so that the close runs
// on the one thread like every other event: a closed terminal or a dropped SSH session ends
// the run the way Ctrl-C or a shutdown does, with the track flushed. The signals are blocked
// and read from a signalfd; block them before any thread starts, so that every thread inherits
// the blocked mask.

#include <QObject>

class QSocketNotifier;

namespace wakeline {

// Blocks SIGINT, SIGTERM and SIGHUP in the calling thread; call it first thing in main().
void BlockTerminationSignals();

// Makes a closed standard stream harmless for the rest of the run, so that a logger nobody
// watches never dies of its own messages: SIGPIPE is ignored (a write to a pipe whose reader is
// gone then fails with EPIPE instead of ending the process), and a standard descriptor that is
// not open at all gets /dev/null, so that no file the run opens later takes its number and
// receives its messages. Call it first thing in main(), before anything opens a file.
void KeepStandardStreamsHarmless();

class SignalWatcher : public QObject {
    Q_OBJECT
  public:
    explicit SignalWatcher(QObject* parent = nullptr);
    ~SignalWatcher() override;

  Q_SIGNALS:
    void terminationRequested(int signalNumber);

  private:
    QSocketNotifier* notifier_ = nullptr;
    int fd_ = -1;
};

}  // namespace wakeline
