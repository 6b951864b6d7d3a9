// A program of the tests in a process of its own that is told and tells lines: on its standard input and
// output. One thread, but for the lines.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace Corvanta::Engine {

class LineProcess final {
public:
    // The lines are handed over on a thread of its own, without their line feed.
    LineProcess(std::string program, std::vector<std::string> arguments,
                std::function<void(const std::string& line)> onLine);
    // Kills it; no line is handed over any more.
    ~LineProcess();
    LineProcess(const LineProcess&) = delete;
    LineProcess& operator=(const LineProcess&) = delete;

    void Say(const std::string& line) const;

    // On return it has gone.
    void Kill();
    // On return it does nothing.
    void Stop() const;
    void Continue() const;
    [[nodiscard]] pid_t Id() const { return process; }

private:
    void Read();

    const std::function<void(const std::string&)> told;
    pid_t process = -1;
    // Its standard input and output.
    int pipe = -1;
    std::thread reader;
};

}  // namespace Corvanta::Engine
