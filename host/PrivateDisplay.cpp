#include "host/PrivateDisplay.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kStartLimit{15000};
constexpr int kExitNotFound = 127;

[[noreturn]] void BecomeServer(int numberPipe, const std::string& screen) {
    // In a process group of its own: a Ctrl+C in the terminal goes to the room, which ends first.
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    const int null = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        ::dup2(null, stream);
    }
    ::fcntl(numberPipe, F_SETFD, 0);
    const std::string number = std::to_string(numberPipe);
    ::execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", screen.c_str(), "-nolisten", "tcp",
             "-noreset", static_cast<char*>(nullptr));
    ::_exit(kExitNotFound);
}

// The display number, which the server writes with a line break once it takes connections; empty on failure.
std::string ReadNumber(int pipe) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point limit = Clock::now() + kStartLimit;
    std::string text;
    while (Clock::now() < limit) {
        pollfd waiting{pipe, POLLIN, 0};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now());
        if (::poll(&waiting, 1, static_cast<int>(left.count())) < 0 && errno != EINTR) {
            return {};
        }
        char letter = 0;
        const ssize_t got = (waiting.revents != 0) ? ::read(pipe, &letter, 1) : -1;
        if (got == 0) {
            return {};
        }
        if (got == 1 && letter == '\n') {
            return text;
        }
        if (got == 1) {
            text += letter;
        }
    }
    return {};
}

int EndServer(pid_t server) {
    ::kill(server, SIGTERM);
    int status = 0;
    while (::waitpid(server, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

}  // namespace

std::variant<std::unique_ptr<PrivateDisplay>, Failure> PrivateDisplay::Start(int width, int height) {
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0) {
        return Failure{"no pipe for the private display"};
    }
    const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
    const pid_t server = ::fork();
    if (server == 0) {
        BecomeServer(pipe[1], screen);
    }
    ::close(pipe[1]);
    const std::string number = (server > 0) ? ReadNumber(pipe[0]) : std::string();
    ::close(pipe[0]);
    if (server < 0) {
        return Failure{"no process for the private display"};
    }
    if (number.empty()) {
        const int status = EndServer(server);
        if (WIFEXITED(status) && WEXITSTATUS(status) == kExitNotFound) {
            return Failure{"there is no display, and Xvfb, which stands in for one, is not installed"};
        }
        return Failure{"there is no display, and Xvfb did not start with a screen of " + screen};
    }
    return std::unique_ptr<PrivateDisplay>(new PrivateDisplay(server, ":" + number));
}

PrivateDisplay::PrivateDisplay(pid_t server, std::string name) : server_(server), name_(std::move(name)) {}

PrivateDisplay::~PrivateDisplay() {
    EndServer(server_);
}

bool DisplayAnswers() {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

}  // namespace Corvanta::Host
