#include "tests/engine/janus/RoomServerProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <fstream>
#include <utility>

#include "tests/engine/Eventually.h"
#include "tests/engine/janus/OwnNetwork.h"

namespace Corvanta::Engine {

RoomServerProcess::RoomServerProcess(RoomServerOptions serverOptions) : options(std::move(serverOptions)) {
    if (options.address.empty()) options.address = OwnAddress();
    if (options.port == 0) options.port = FreePort(options.address);
    std::vector<std::string> command{CORVANTA_ROOM_SERVER, "--port", std::to_string(options.port),
                                     "--address", options.address};
    command.insert(command.end(), options.arguments.begin(), options.arguments.end());
    std::vector<char*> arguments;
    for (std::string& word : command) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0) return;
    process = fork();
    if (process == 0) {
        dup2(pipe[1], STDOUT_FILENO);
        dup2(pipe[1], STDERR_FILENO);
        if (!options.token.empty()) setenv("CORVANTA_TOKEN", options.token.c_str(), 1);
        if (!options.temporaryFolder.empty()) setenv("TMPDIR", options.temporaryFolder.c_str(), 1);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    close(pipe[1]);
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    std::array<char, 4096> bytes{};
    while (!isReady && std::chrono::steady_clock::now() < deadline) {
        pollfd waited{pipe[0], POLLIN, 0};
        if (poll(&waited, 1, 100) == 0) continue;
        const ssize_t count = read(pipe[0], bytes.data(), bytes.size());
        if (count <= 0) break;
        words.append(bytes.data(), static_cast<std::size_t>(count));
        isReady = words.find("ready; ") != std::string::npos && words.ends_with('\n');
    }
    close(pipe[0]);
}

RoomServerProcess::~RoomServerProcess() {
    End();
}

std::string RoomServerProcess::Address(const std::string& scheme) const {
    return scheme + "://" + options.address + ':' + std::to_string(options.port);
}

pid_t RoomServerProcess::Server() const {
    if (process < 0) return -1;
    const std::string folder = "/proc/" + std::to_string(process) + "/task/" + std::to_string(process);
    std::ifstream children(folder + "/children");
    pid_t child = -1;
    while (children >> child) {
        std::string name;
        std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm") >> std::ws, name);
        if (name == "janus") return child;
    }
    return -1;
}

int RoomServerProcess::Wait() {
    if (process < 0) return -1;
    int status = 0;
    const bool hasEnded = Eventually([&] { return waitpid(process, &status, WNOHANG) == process; });
    if (!hasEnded) {
        kill(process, SIGKILL);
        waitpid(process, &status, 0);
    }
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void RoomServerProcess::KillServer() {
    if (const pid_t server = Server(); server > 0) kill(server, SIGKILL);
    Wait();
}

void RoomServerProcess::KillCommand() {
    if (process > 0) kill(process, SIGKILL);
    Wait();
}

int RoomServerProcess::End() {
    if (process > 0) kill(process, SIGTERM);
    return Wait();
}

}  // namespace Corvanta::Engine
