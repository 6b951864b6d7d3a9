#include "tests/engine/signalling/SignallingProcessHandle.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace Corvanta::Engine {

SignallingProcess::SignallingProcess(const std::filesystem::path& product) {
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        ADD_FAILURE() << "no socket";
        return;
    }
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::string program = CORVANTA_SIGNALLING_PROCESS;
    std::string argument = product.string();
    const std::array<char*, 3> arguments{program.data(), argument.data(), nullptr};
    if (::posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ) != 0) {
        ADD_FAILURE() << "no process";
        process = -1;
    }
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    pipe = ends[0];
    reader = std::thread([this] { Read(); });
}

SignallingProcess::~SignallingProcess() {
    Kill();
    if (reader.joinable()) reader.join();
    if (pipe >= 0) ::close(pipe);
}

void SignallingProcess::Command(const std::string& line) const {
    std::string bytes = line;
    bytes += '\n';
    EXPECT_EQ(::send(pipe, bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
}

bool SignallingProcess::Enters(const std::string& name) const {
    std::string line = "join room ";
    line += name;
    Command(line);
    return events.Hears("entered");
}

void SignallingProcess::Kill() {
    if (process < 0) return;
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    process = -1;
}

void SignallingProcess::Stop() const {
    ::kill(process, SIGSTOP);
    ::waitpid(process, nullptr, WUNTRACED);
}

void SignallingProcess::Continue() const {
    ::kill(process, SIGCONT);
}

void SignallingProcess::Read() {
    std::string held;
    std::array<char, 4096> block;
    while (true) {
        const ssize_t count = ::recv(pipe, block.data(), block.size(), 0);
        if (count <= 0) return;
        held.append(block.data(), static_cast<std::size_t>(count));
        for (auto end = held.find('\n'); end != std::string::npos; end = held.find('\n')) {
            const std::string line = held.substr(0, end);
            held.erase(0, end + 1);
            const auto first = line.find('\t');
            const auto second = line.find('\t', first + 1);
            if (second == std::string::npos) continue;
            events.Add(
                {line.substr(0, first), line.substr(first + 1, second - first - 1), line.substr(second + 1)});
        }
    }
}

}  // namespace Corvanta::Engine
