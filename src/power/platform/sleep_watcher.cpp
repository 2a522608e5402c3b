#include "power/platform/sleep_watcher.h"

#include <QDBusInterface>
#include <QDBusReply>
#include <utility>

namespace wakeline {
namespace {

const QString kService = QStringLiteral("org.freedesktop.login1");
const QString kPath = QStringLiteral("/org/freedesktop/login1");
const QString kManager = QStringLiteral("org.freedesktop.login1.Manager");
constexpr int kCallTimeoutMs = 500;

}  // namespace

SleepWatcher::SleepWatcher(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {}

Status SleepWatcher::Watch(std::function<void(bool starting)> prepareForSleep) {
    const std::string what = "watch for suspend through";
    if (!bus_.isConnected()) {
        return Status::Failure(what, "the system bus", bus_.lastError().message().toStdString());
    }
    prepareForSleep_ = std::move(prepareForSleep);
    if (!bus_.connect(kService, kPath, kManager, QStringLiteral("PrepareForSleep"), this,
                      SLOT(OnPrepareForSleep(bool)))) {
        return Status::Failure(what, kService.toStdString(),
                               bus_.lastError().message().toStdString());
    }
    TakeInhibitor();
    return {};
}

void SleepWatcher::TakeInhibitor() {
    QDBusInterface manager(kService, kPath, kManager, bus_);
    manager.setTimeout(kCallTimeoutMs);
    const QDBusReply<QDBusUnixFileDescriptor> reply = manager.call(
        QStringLiteral("Inhibit"), QStringLiteral("sleep"), QStringLiteral("Wakeline"),
        QStringLiteral("Writing the track before the system sleeps"), QStringLiteral("delay"));
    inhibitor_ = reply.isValid() ? reply.value() : QDBusUnixFileDescriptor();
}

void SleepWatcher::OnPrepareForSleep(bool starting) {
    if (prepareForSleep_) {
        prepareForSleep_(starting);
    }
    if (starting) {
        // Closing our copy of the descriptor lets logind go on with the suspend.
        inhibitor_ = QDBusUnixFileDescriptor();
    } else {
        TakeInhibitor();
    }
}

}  // namespace wakeline
