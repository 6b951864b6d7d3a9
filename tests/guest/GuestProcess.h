// A guest in a process of its own, as a person or the host's program starts it. One thread.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace Corvanta::Guest {

class GuestProcess final {
public:
    // The rooms of this machine lie in `runtimeFolder`. Further variables of its environment as "NAME=VALUE".
    GuestProcess(const std::vector<std::string>& arguments, const std::string& runtimeFolder,
                 const std::vector<std::string>& variables = {});
    // Kills it.
    ~GuestProcess();
    GuestProcess(const GuestProcess&) = delete;
    GuestProcess& operator=(const GuestProcess&) = delete;

    void Signal(int signal) const;
    // Its exit code, 128 and the signal that ended it, or nothing when it does not end in time.
    [[nodiscard]] std::optional<int> End();
    [[nodiscard]] bool HasEnded();
    // What it has written to its standard error stream and output so far.
    [[nodiscard]] std::string Errors();
    [[nodiscard]] std::string Output();
    [[nodiscard]] pid_t Id() const { return process; }

private:
    struct Stream {
        int end = -1;
        std::string text;

        void Read();
    };

    pid_t process = -1;
    std::optional<int> code;
    Stream errors, output;
};

}  // namespace Corvanta::Guest
