// What the person asked for on the command line, as plain values. Pure functions: no window, no files opened,
// usable from any thread.
#pragma once

#include <chrono>
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

struct Options {
    enum class Action { Run, ShowHelp, ShowVersion };

    Action action = Action::Run;
    std::vector<ParticipantOption> participants;
    // Participants with generated clips, besides those above. Without both the engine brings its own.
    std::optional<int> generatedParticipants;
    std::optional<std::chrono::milliseconds> headlessFor;
    std::filesystem::path snapshotPath;  // empty: none is taken
    WindowSize size;
    double scale = 1.0;
    std::string roomName = "Room";
    std::optional<WallLayout> detached;  // the wall starts in a window of its own
    std::string camera = "test";         // as a participant's source; empty: none
    std::vector<SharedSource> shared;    // what is streamed from the start
    bool preview = false;                // the own camera's window is open from the start
    bool drawings = true;                // the engine's own participants draw now and then
};

// Reads the arguments after the program's name. An option's value is the next argument or stands behind '='.
// The first bad argument is the failure.
[[nodiscard]] std::variant<Options, Failure> ParseOptions(std::span<const std::string_view> arguments);

// Makes file sources and the snapshot's path absolute against `baseFolder`, the folder that the person is in,
// because the program moves to its own folder afterwards. A file that is not there, or cannot be read, and a
// snapshot folder that does not exist are failures. Sources that are generated or URIs stay as they are.
[[nodiscard]] std::optional<Failure> ResolvePaths(Options& options, const std::filesystem::path& baseFolder);

// The text of --help, lines of at most 100 columns.
[[nodiscard]] std::string_view HelpText();

}  // namespace Corvanta::Host
