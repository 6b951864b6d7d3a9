// A program in a process of its own, which ends with the object. One thread.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace Corvanta::Engine {

class ServiceProcess final {
public:
    // The first word is the program. Its standard output can be read where that is wanted.
    explicit ServiceProcess(std::vector<std::string> words, bool isHeard = false) {
        int ends[2] = {-1, -1};
        if (isHeard && ::pipe2(ends, O_CLOEXEC) != 0) ADD_FAILURE() << "no pipe";
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        if (isHeard) {
            ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
            ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
        }
        if (::posix_spawn(&process, words[0].c_str(), &actions, nullptr, arguments.data(), environ) != 0) {
            ADD_FAILURE() << words[0] << " does not start";
            process = -1;
        }
        ::posix_spawn_file_actions_destroy(&actions);
        if (ends[1] >= 0) ::close(ends[1]);
        output = ends[0];
    }
    ~ServiceProcess() {
        Kill();
        if (output >= 0) ::close(output);
    }
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    [[nodiscard]] pid_t Id() const { return process; }

    // On return it has gone.
    void Kill() {
        if (process < 0) return;
        ::kill(process, SIGKILL);
        static_cast<void>(Wait());
    }
    void Signal(int number) const { ::kill(process, number); }
    // Its exit status, once it has ended by itself; -1 when a signal has ended it.
    [[nodiscard]] int Wait() {
        int status = 0;
        ::waitpid(process, &status, 0);
        process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // One line without its line feed; what is there when it ends.
    [[nodiscard]] std::string ReadLine() const {
        std::string line;
        char letter = 0;
        while (::read(output, &letter, 1) == 1 && letter != '\n') line += letter;
        return line;
    }
    // All that is still said until it ends.
    [[nodiscard]] std::string ReadAll() const {
        std::string text;
        char letter = 0;
        while (::read(output, &letter, 1) == 1) text += letter;
        return text;
    }

private:
    pid_t process = -1;
    int output = -1;
};

}  // namespace Corvanta::Engine
