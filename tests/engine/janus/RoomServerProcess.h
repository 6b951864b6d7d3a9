// The command for the room server as a process of the test's own, on a port of its own. One thread.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Corvanta::Engine {

struct RoomServerOptions {
    // On which it listens; empty for the own one.
    std::string address = {};
    // 0: a free one.
    int port = 0;
    // Handed over by the environment; empty for none.
    std::string token = {};
    // Where it keeps what it needs; empty for the usual place.
    std::string temporaryFolder = {};
    // Further arguments of the command.
    std::vector<std::string> arguments = {};
};

class RoomServerProcess final {
public:
    // Returns when it is ready, or has ended.
    explicit RoomServerProcess(RoomServerOptions serverOptions = {});
    // Ends it.
    ~RoomServerProcess();
    RoomServerProcess(const RoomServerProcess&) = delete;
    RoomServerProcess& operator=(const RoomServerProcess&) = delete;

    [[nodiscard]] bool IsReady() const { return isReady; }
    // What it has said up to being ready, or to its end.
    [[nodiscard]] const std::string& Words() const { return words; }
    [[nodiscard]] int Port() const { return options.port; }
    // What EngineOptions take.
    [[nodiscard]] std::string Address(const std::string& scheme = "ws") const;

    [[nodiscard]] pid_t Command() const { return process; }
    // The server itself, a child of the command; -1 for none.
    [[nodiscard]] pid_t Server() const;
    // Kills the server itself, without a word. On return both have gone.
    void KillServer();
    // Kills the command, which cannot say anything to the server.
    void KillCommand();
    // Asks the command to end, and waits. The exit status.
    int End();

private:
    int Wait();

    RoomServerOptions options;
    pid_t process = -1;
    bool isReady = false;
    std::string words;
};

}  // namespace Corvanta::Engine
