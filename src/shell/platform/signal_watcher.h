#pragma once
// Turns SIGINT and SIGTERM into a Qt signal on the event loop, so that the close runs on the
// one thread like every other event. The signals are blocked and read from a signalfd; block
// them before any thread starts, so that every thread inherits the blocked mask.

#include <QObject>

class QSocketNotifier;

namespace wakeline {

// Blocks SIGINT and SIGTERM in the calling thread; call it first thing in main().
void BlockTerminationSignals();

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
