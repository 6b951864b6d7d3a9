// What a guest is asked for on its command line, as plain values. Pure functions: no files opened, usable
// from any thread.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "engine/common/CommandLine.h"
#include "engine/webrtc/PictureShape.h"
#include "guest/GuestScript.h"

namespace Corvanta::Guest {

struct GuestOptions {
    enum class Action { Run, ShowHelp, ShowVersion };

    Action action = Action::Run;
    std::string room = {};
    std::string name = {};
    // Empty: the room is one of this machine.
    std::string server = {};
    // What keeps the connections' figures. Empty: this machine does.
    std::string service = {};
    std::filesystem::path certificateAuthority = {};
    GuestRole role = {};
    // "clip", "test", a path or a URI.
    std::string source = "clip";
    // A size of ClipFormat for a generated person.
    Engine::PictureShape picture{.width = 640, .height = 360, .frameRate = 30};
    // Whether the size or the rate was asked for; files play as they are without it.
    bool pictureIsAsked = false;
    // Empty: until it is asked to end.
    std::optional<std::chrono::milliseconds> runFor = {};
};

// Reads the arguments after the program's name. An option's value is the next argument or stands behind '='.
// The room may be named by the environment instead. The first bad one is what is returned.
[[nodiscard]] std::variant<GuestOptions, Engine::Failure> ParseGuestOptions(
    std::span<const std::string_view> arguments, std::string_view roomOfEnvironment = {});

// The text of --help, lines of at most 100 columns.
[[nodiscard]] std::string_view GuestHelpText();

}  // namespace Corvanta::Guest
