#include "host/QuitOnSignal.h"

#include <csignal>

#include <QCoreApplication>
#include <QSocketNotifier>

#include <sys/signalfd.h>
#include <unistd.h>

namespace Corvanta::Host {
namespace {

sigset_t EndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

}  // namespace

QuitOnSignal::QuitOnSignal() {
    const sigset_t signals = EndSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

QuitOnSignal::~QuitOnSignal() {
    notifier_.reset();
    ::close(descriptor_);
}

void QuitOnSignal::Watch() {
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [] { QCoreApplication::exit(0); });
}

}  // namespace Corvanta::Host
