#include "guest/EndSignal.h"

#include <glib-unix.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace Corvanta::Guest {

EndSignal::EndSignal(Engine::EngineLoop& loop) {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);

    source.reset(g_unix_fd_source_new(descriptor, G_IO_IN));
    const GUnixFDSourceFunc onSignal = [](gint, GIOCondition, gpointer data) -> gboolean {
        ::alarm(kLongestGoodbyeSeconds);
        static_cast<Engine::EngineLoop*>(data)->Quit();
        return G_SOURCE_REMOVE;
    };
    g_source_set_callback(source.get(), G_SOURCE_FUNC(onSignal), &loop, nullptr);
    g_source_attach(source.get(), loop.Context());
}

EndSignal::~EndSignal() {
    g_source_destroy(source.get());
    ::close(descriptor);
}

}  // namespace Corvanta::Guest
