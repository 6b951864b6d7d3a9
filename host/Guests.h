// The guests of a room: programs without a window that this one starts beside its own. They end with it,
// however it ends. Main thread only.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/Failure.h"

namespace Corvanta::Host {

// What they take part in.
struct GuestPlan {
    int count = 0;
    // Of the person in whose program they are; none of them has it.
    std::string ownName = {};
    // Empty: the room is one of this user's on this machine.
    std::string server = {};
    std::string service = {};
    // Of those whom the server's certificates may come from.
    std::filesystem::path certificateAuthority = {};
    bool drawings = true;
};

// The arguments of each of them, without their room. The same plan gives the same guests.
[[nodiscard]] std::vector<std::vector<std::string>> GuestArguments(const GuestPlan& plan);

class Guests final {
public:
    // How long one may take to say goodbye before it is ended by force.
    static constexpr std::chrono::milliseconds kLongestGoodbye{3000};

    // A variable of the environment and its value.
    using Variable = std::pair<std::string, std::string>;

    // Starts the program once with each list of arguments, in the environment of this one with those
    // variables: what stands there no list of processes shows to others. Where it cannot be started there are
    // no guests. The thread that calls this must live as long as they are to.
    [[nodiscard]] static std::variant<std::unique_ptr<Guests>, Failure> Start(
        const std::filesystem::path& program, const std::vector<std::vector<std::string>>& arguments,
        const std::vector<Variable>& variables = {});

    // On return none of them is left. Asks those who were not asked yet.
    ~Guests();
    Guests(const Guests&) = delete;
    Guests& operator=(const Guests&) = delete;

    // Returns at once.
    void AskToEnd();

    // How many are still there. One that has ended is not started again.
    [[nodiscard]] std::size_t Count();

private:
    Guests() = default;

    std::vector<pid_t> processes_;
};

}  // namespace Corvanta::Host
