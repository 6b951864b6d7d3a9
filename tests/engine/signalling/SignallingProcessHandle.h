// A member of a room in a process of its own (see SignallingProcess.cpp). One thread.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <thread>

#include "tests/engine/signalling/RoomEvents.h"

namespace Corvanta::Engine {

class SignallingProcess final {
public:
    explicit SignallingProcess(const std::filesystem::path& product);
    // Kills it.
    ~SignallingProcess();
    SignallingProcess(const SignallingProcess&) = delete;
    SignallingProcess& operator=(const SignallingProcess&) = delete;

    void Command(const std::string& line) const;
    // Joins the room of the guests and waits for being in it.
    [[nodiscard]] bool Enters(const std::string& name) const;

    // On return it has gone.
    void Kill();
    // On return it does nothing.
    void Stop() const;
    void Continue() const;

    RoomEvents events;

private:
    void Read();

    pid_t process = -1;
    // Its standard input and output.
    int pipe = -1;
    std::thread reader;
};

}  // namespace Corvanta::Engine
