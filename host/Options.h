// What the person asked for on the command line, as plain values. Pure functions: no window, no files opened,
// usable from any thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/Failure.h"
#include "host/StreamChoice.h"
#include "host/WallLayout.h"

namespace Corvanta::Host {

struct ParticipantOption {
    std::string name;
    std::string source;  // "test", "clip", a file path or a URI
};

// The window's size in the desktop's own units; a scaled display has more pixels than this.
struct WindowSize {
    int width = 1280;
    int height = 720;
};

// Who else is in the room.
enum class Company {
    // Participants of this process alone.
    OfThisProgram,
    // Whoever else enters the room of that name, and guests where they are asked for.
    OfNamedRoom,
    // Guests, in a room that nobody else knows.
    OfOwnRoom,
};

struct Options {
    enum class Action { Run, ShowHelp, ShowVersion };

    Action action = Action::Run;
    Company company = Company::OfOwnRoom;
    std::vector<ParticipantOption> participants;
    // Participants with generated clips, besides those above.
    std::optional<int> generatedParticipants;
    // How many programs without a window take part. Always there once the arguments were read.
    std::optional<int> guests;
    std::optional<std::chrono::milliseconds> headlessFor;
    std::filesystem::path snapshotPath;  // empty: none is taken
    WindowSize size;
    double scale = 1.0;
    std::string roomName = "Room";  // as it is shown; a named room is found by it
    std::string name;               // under which the others see this person; empty: the profile's
    std::string server;             // that carries the room; empty: one of this user's on this machine
    std::string service;            // that keeps a named room's notes; empty: this machine's
    std::filesystem::path certificateAuthority;
    std::optional<WallLayout> detached;  // the wall starts in a window of its own
    std::string camera = "test";         // as a participant's source; empty: none
    std::vector<SharedSource> shared;    // what is streamed from the start
    bool preview = false;                // the own camera's window is open from the start
    bool drawings = true;                // guests draw now and then
};

// Reads the arguments after the program's name. An option's value is the next argument or stands behind '='.
// The first bad argument is the failure.
[[nodiscard]] std::variant<Options, Failure> ParseOptions(std::span<const std::string_view> arguments);

// Makes file sources, certificates and the snapshot's path absolute against `baseFolder`, the folder that the
// person is in, because the program moves to its own folder afterwards. A file that is not there, or cannot
// be read, and a snapshot folder that does not exist are failures. Sources that are generated or URIs stay as
// they are.
[[nodiscard]] std::optional<Failure> ResolvePaths(Options& options, const std::filesystem::path& baseFolder);

// The text of --help, lines of at most 100 columns.
[[nodiscard]] std::string_view HelpText();

}  // namespace Corvanta::Host
