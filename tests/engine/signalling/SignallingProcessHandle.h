// A member of a room in a process of its own (see SignallingProcess.cpp). One thread.
#pragma once

#include <filesystem>
#include <string>

#include "tests/engine/LineProcess.h"
#include "tests/engine/signalling/RoomEvents.h"

namespace Corvanta::Engine {

class SignallingProcess final {
public:
    explicit SignallingProcess(const std::filesystem::path& product);

    void Command(const std::string& line) const { process.Say(line); }
    // Joins the room of the guests and waits for being in it.
    [[nodiscard]] bool Enters(const std::string& name) const;

    [[nodiscard]] pid_t Id() const { return process.Id(); }
    void Kill() { process.Kill(); }
    void Stop() const { process.Stop(); }
    void Continue() const { process.Continue(); }

    RoomEvents events;

private:
    void OnLine(const std::string& line);

    LineProcess process;
};

}  // namespace Corvanta::Engine
