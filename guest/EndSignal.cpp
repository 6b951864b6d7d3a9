#include "guest/EndSignal.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace Corvanta::Guest {

namespace {

int TakeSignals() {
    sigset_t taken;
    sigemptyset(&taken);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&taken, signal);
    ::pthread_sigmask(SIG_BLOCK, &taken, nullptr);
    // Whoever started this program may have had no use for it.
    sigset_t alarm;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    std::signal(SIGALRM, SIG_DFL);
    ::pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
    return ::signalfd(-1, &taken, SFD_CLOEXEC | SFD_NONBLOCK);
}

}  // namespace

EndSignal::EndSignal(Engine::EngineLoop& loop)
    : signals(TakeSignals()), goodbye(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    waiting = std::thread([this, &loop] {
        std::array<pollfd, 2> ways{pollfd{.fd = signals, .events = POLLIN, .revents = 0},
                                   pollfd{.fd = goodbye, .events = POLLIN, .revents = 0}};
        while (::poll(ways.data(), ways.size(), -1) < 0 && errno == EINTR) {
        }
        if (ways[0].revents == 0) return;
        ::alarm(kLongestGoodbyeSeconds);
        loop.Quit();
    });
}

EndSignal::~EndSignal() {
    ::eventfd_write(goodbye, 1);
    waiting.join();
    ::close(goodbye);
    ::close(signals);
}

}  // namespace Corvanta::Guest
