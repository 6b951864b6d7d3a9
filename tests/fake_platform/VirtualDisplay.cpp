#include "tests/fake_platform/VirtualDisplay.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace Corvanta::Testing {

namespace {

// Xvfb needs well under a second; a loaded machine gets plenty.
constexpr int kStartTimeoutMs = 20000;

pid_t server = -1;

void EndServer() {
    if (server > 0) {
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
        server = -1;
    }
}

bool Answers() {
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        return false;
    }
    XCloseDisplay(display);
    return true;
}

// The line that Xvfb writes once it is ready: the number of its display. Empty when it ends without one.
std::string ReadDisplayNumber(int pipe) {
    std::string number;
    pollfd ready{pipe, POLLIN, 0};
    while (poll(&ready, 1, kStartTimeoutMs) > 0) {
        char character = 0;
        if (read(pipe, &character, 1) != 1) {
            return {};
        }
        if (character == '\n') {
            return number;
        }
        number += character;
    }
    return {};
}

bool StartServer() {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) {
        return false;
    }
    fcntl(pipe[0], F_SETFD, FD_CLOEXEC);
    const std::string descriptor = std::to_string(pipe[1]);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        // A test that crashes takes its display with it.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(1);
        }
        const int nowhere = open("/dev/null", O_RDWR);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        // Without -noreset it would start anew whenever its last client goes.
        execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "1920x1080x24", "-nolisten",
               "tcp", "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(pipe[1]);
    if (child < 0) {
        close(pipe[0]);
        return false;
    }
    server = child;
    const std::string number = ReadDisplayNumber(pipe[0]);
    close(pipe[0]);
    if (number.empty()) {
        EndServer();
        return false;
    }
    std::atexit(EndServer);
    setenv("DISPLAY", (':' + number).c_str(), 1);
    return true;
}

}  // namespace

bool EnsureDisplay() {
    static const bool isThere = [] {
        const char* const name = std::getenv("DISPLAY");
        if (name != nullptr && *name != '\0') {
            return Answers();
        }
        return StartServer() && Answers();
    }();
    return isThere;
}

}  // namespace Corvanta::Testing
