#pragma once
// Hears that the system is about to suspend: logind's PrepareForSleep signal of
// org.freedesktop.login1.Manager on the system bus. While watching it holds a "delay" sleep
// inhibitor, so that logind waits (up to its InhibitDelayMaxSec, 5 s by default) until the
// run has flushed its track before the machine sleeps; the inhibitor is let go as soon as the
// run has handled the signal and taken again on resume.
//
// Where there is no system bus or no logind, Watch() says why and nothing is heard; the run
// carries on without it.

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <functional>

#include "base/status.h"

namespace wakeline {

class SleepWatcher : public QObject {
    Q_OBJECT
  public:
    // `bus` is the system bus unless a test hands it a private one.
    explicit SleepWatcher(QDBusConnection bus = QDBusConnection::systemBus(),
                          QObject* parent = nullptr);

    // Starts watching; from now on `prepareForSleep` is called with true before a suspend and
    // with false after the resume. A failure to watch (no bus, logind not there) is returned;
    // failing only to take the inhibitor is not, as the signal still comes, only without the
    // wait.
    Status Watch(std::function<void(bool starting)> prepareForSleep);

  private Q_SLOTS:
    void OnPrepareForSleep(bool starting);

  private:
    void TakeInhibitor();

    QDBusConnection bus_;
    std::function<void(bool)> prepareForSleep_;
    QDBusUnixFileDescriptor inhibitor_;  // held while awake; invalid when none
};

}  // namespace wakeline
