#include "shell/platform/signal_watcher.h"

#include <fcntl.h>
#include <sys/signalfd.h>
#include <unistd.h>
#include <QSocketNotifier>
#include <csignal>

namespace wakeline {
namespace {

sigset_t TerminationSignals() {
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGINT);
    sigaddset(&mask, SIGTERM);
    sigaddset(&mask, SIGHUP);
    return mask;
}

}  // namespace

void KeepStandardStreamsHarmless() {
    ::signal(SIGPIPE, SIG_IGN);
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (::fcntl(fd, F_GETFD) == -1) {
            // The lowest free number is this one, as the ones below it are open.
            ::open("/dev/null", fd == STDIN_FILENO ? O_RDONLY : O_WRONLY);
        }
    }
}

void BlockTerminationSignals() {
    const sigset_t mask = TerminationSignals();
    pthread_sigmask(SIG_BLOCK, &mask, nullptr);
}

SignalWatcher::SignalWatcher(QObject* parent) : QObject(parent) {
    const sigset_t mask = TerminationSignals();
    pthread_sigmask(SIG_BLOCK, &mask, nullptr);
    fd_ = ::signalfd(-1, &mask, SFD_NONBLOCK | SFD_CLOEXEC);
    if (fd_ < 0) {
        // Without the descriptor the default action (ending the process) is better than none.
        pthread_sigmask(SIG_UNBLOCK, &mask, nullptr);
        return;
    }
    notifier_ = new QSocketNotifier(fd_, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] {
        signalfd_siginfo info{};
        while (::read(fd_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
            Q_EMIT terminationRequested(static_cast<int>(info.ssi_signo));
        }
    });
}

SignalWatcher::~SignalWatcher() {
    if (fd_ >= 0) {
        ::close(fd_);
    }
}

}  // namespace wakeline
