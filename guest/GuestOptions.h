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

#include "engine/webrtc/PictureShape.h"
#include "guest/GuestScript.h"

namespace Corvanta::Guest {

// What is wrong with the arguments, as the one line that the person reads.
struct BadArguments {
    std::string line;
};

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

// Bytes of a name at most.
inline constexpr std::size_t kLongestName = 256;
inline constexpr std::size_t kMostGuests = 16;

// Reads the arguments after the program's name. An option's value is the next argument or stands behind '='.
// The first bad one is what is returned.
[[nodiscard]] std::variant<GuestOptions, BadArguments> ParseGuestOptions(
    std::span<const std::string_view> arguments);

// The text of --help, lines of at most 100 columns.
[[nodiscard]] std::string_view GuestHelpText();

}  // namespace Corvanta::Guest
