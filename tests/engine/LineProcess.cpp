#include "tests/engine/LineProcess.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace Corvanta::Engine {

LineProcess::LineProcess(std::string program, std::vector<std::string> arguments,
                         std::function<void(const std::string& line)> onLine)
    : told(std::move(onLine)) {
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        ADD_FAILURE() << "no socket";
        return;
    }
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::vector<char*> words{program.data()};
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    if (::posix_spawn(&process, program.c_str(), &actions, nullptr, words.data(), environ) != 0) {
        ADD_FAILURE() << "no process";
        process = -1;
    }
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    pipe = ends[0];
    reader = std::thread([this] { Read(); });
}

LineProcess::~LineProcess() {
    Kill();
    if (reader.joinable()) reader.join();
    if (pipe >= 0) ::close(pipe);
}

void LineProcess::Say(const std::string& line) const {
    std::string bytes = line;
    bytes += '\n';
    EXPECT_EQ(::send(pipe, bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
}

void LineProcess::Kill() {
    if (process < 0) return;
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    process = -1;
}

void LineProcess::Stop() const {
    ::kill(process, SIGSTOP);
    ::waitpid(process, nullptr, WUNTRACED);
}

void LineProcess::Continue() const {
    ::kill(process, SIGCONT);
}

void LineProcess::Read() {
    std::string held;
    std::array<char, 4096> block;
    while (true) {
        const ssize_t count = ::recv(pipe, block.data(), block.size(), 0);
        if (count <= 0) return;
        held.append(block.data(), static_cast<std::size_t>(count));
        for (auto end = held.find('\n'); end != std::string::npos; end = held.find('\n')) {
            told(held.substr(0, end));
            held.erase(0, end + 1);
        }
    }
}

}  // namespace Corvanta::Engine
