#include "tests/guest/GuestProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string_view>

#include "tests/engine/Eventually.h"

namespace Corvanta::Guest {

namespace {

// A null-terminated list for a system call; the texts must outlive it.
std::vector<char*> PointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> EnvironmentWith(const std::vector<std::string>& variables) {
    std::vector<std::string> all = variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view name =
            std::string_view(*variable).substr(0, std::string_view(*variable).find('=') + 1);
        bool isReplaced = false;
        for (const std::string& own : variables) isReplaced = isReplaced || own.starts_with(name);
        if (!isReplaced) all.emplace_back(*variable);
    }
    return all;
}

}  // namespace

GuestProcess::GuestProcess(const std::vector<std::string>& arguments, const std::string& runtimeFolder,
                           const std::vector<std::string>& variables) {
    std::array<int, 2> errorPipe{-1, -1}, outputPipe{-1, -1};
    if (::pipe2(errorPipe.data(), O_CLOEXEC) != 0 || ::pipe2(outputPipe.data(), O_CLOEXEC) != 0) {
        ADD_FAILURE() << "no pipe";
        return;
    }
    std::vector<std::string> words{CORVANTA_GUEST};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> own = variables;
    own.push_back("XDG_RUNTIME_DIR=" + runtimeFolder);
    auto environment = EnvironmentWith(own);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, errorPipe[1], STDERR_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, outputPipe[1], STDOUT_FILENO);
    if (::posix_spawn(&process, words.front().c_str(), &actions, nullptr, PointersTo(words).data(),
                      PointersTo(environment).data()) != 0) {
        ADD_FAILURE() << "no process";
        process = -1;
    }
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(errorPipe[1]);
    ::close(outputPipe[1]);
    errors.end = errorPipe[0];
    output.end = outputPipe[0];
    for (const int end : {errors.end, output.end}) ::fcntl(end, F_SETFL, O_NONBLOCK);
}

GuestProcess::~GuestProcess() {
    if (process > 0 && !HasEnded()) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    for (const int end : {errors.end, output.end}) {
        if (end >= 0) ::close(end);
    }
}

void GuestProcess::Signal(int signal) const {
    ASSERT_GT(process, 0);
    ::kill(process, signal);
}

bool GuestProcess::HasEnded() {
    int status = 0;
    if (!code && process > 0 && ::waitpid(process, &status, WNOHANG) == process) {
        code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return code.has_value();
}

std::optional<int> GuestProcess::End() {
    static_cast<void>(Engine::Eventually([this] { return HasEnded(); }));
    return code;
}

std::string GuestProcess::Errors() {
    errors.Read();
    return errors.text;
}

std::string GuestProcess::Output() {
    output.Read();
    return output.text;
}

void GuestProcess::Stream::Read() {
    std::array<char, 4096> block;
    while (true) {
        const ssize_t count = ::read(end, block.data(), block.size());
        if (count <= 0) return;
        text.append(block.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace Corvanta::Guest
