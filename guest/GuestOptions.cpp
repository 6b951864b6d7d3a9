#include "guest/GuestOptions.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/Engine.h"
#include "engine/common/CommandLine.h"

namespace Corvanta::Guest {

namespace {

using Engine::CheckName;
using Engine::Failure;
using Engine::ParseNumber;
using Engine::Wants;
using Problem = std::optional<Failure>;

constexpr double kMaxSeconds = 86400.0;
constexpr int kMaxRate = 60;
constexpr std::string_view kNever = "never";
constexpr std::size_t kMostGuests = Engine::kMostGuests;
// Parts of the full size that have an even number of pixels on each side.
constexpr std::array kDivisors{1, 2, 4, 5, 8};

std::optional<std::chrono::milliseconds> ParseSeconds(std::string_view text) {
    const auto seconds = ParseNumber(text, 0.0, kMaxSeconds);
    if (!seconds) return std::nullopt;
    return std::chrono::milliseconds(std::llround(std::ceil(*seconds * 1000.0)));
}

Problem ReadRoom(GuestOptions& options, std::string_view value) {
    options.room = value;
    return CheckName("--room", value, Engine::kLongestRoomName);
}

Problem ReadName(GuestOptions& options, std::string_view value) {
    options.name = value;
    return CheckName("--name", value, Engine::kLongestPersonName);
}

Problem ReadServer(GuestOptions& options, std::string_view value) {
    options.server = value;
    return Engine::CheckServer("--server", value);
}

Problem ReadService(GuestOptions& options, std::string_view value) {
    options.service = value;
    return Engine::CheckService("--service", value);
}

Problem ReadAuthority(GuestOptions& options, std::string_view value) {
    if (value.empty()) return Wants("--ca", "a file");
    options.certificateAuthority = value;
    return std::nullopt;
}

Problem ReadSeed(GuestOptions& options, std::string_view value) {
    const auto seed = ParseNumber<std::uint32_t>(value, 0, UINT32_MAX);
    if (!seed) return Wants("--seed", "a number from 0 to 4294967295", value);
    options.role.seed = *seed;
    return std::nullopt;
}

Problem ReadIndex(GuestOptions& options, std::string_view value) {
    const auto index = ParseNumber<std::size_t>(value, 0, kMostGuests - 1);
    if (!index) return Wants("--index", "a number from 0 to 15", value);
    options.role.index = *index;
    return std::nullopt;
}

Problem ReadCount(GuestOptions& options, std::string_view value) {
    const auto count = ParseNumber<std::size_t>(value, 1, kMostGuests);
    if (!count) return Wants("--count", "a number from 1 to 16", value);
    options.role.count = *count;
    return std::nullopt;
}

Problem ReadSize(GuestOptions& options, std::string_view value) {
    for (const int divisor : kDivisors) {
        const int width = Engine::kClipWidth / divisor, height = Engine::kClipHeight / divisor;
        std::string size = std::to_string(width);
        size += 'x';
        size += std::to_string(height);
        if (value != size) continue;
        options.picture.width = width;
        options.picture.height = height;
        options.pictureIsAsked = true;
        return std::nullopt;
    }
    return Wants("--size", "1280x720, 640x360, 320x180, 256x144 or 160x90", value);
}

Problem ReadRate(GuestOptions& options, std::string_view value) {
    const auto rate = ParseNumber(value, 1, kMaxRate);
    if (!rate) return Wants("--rate", "a number of pictures a second from 1 to 60", value);
    options.picture.frameRate = *rate;
    options.pictureIsAsked = true;
    return std::nullopt;
}

Problem ReadDraw(GuestOptions& options, std::string_view value) {
    options.role.drawAfter = value == kNever ? std::nullopt : ParseSeconds(value);
    if (value != kNever && !options.role.drawAfter) {
        return Wants("--draw", "a number of seconds from 0 to 86400, or never", value);
    }
    return std::nullopt;
}

Problem ReadSource(GuestOptions& options, std::string_view value) {
    if (value.empty()) return Wants("--source", "clip, test, a video file or a URI");
    options.source = value;
    return std::nullopt;
}

Problem ReadFor(GuestOptions& options, std::string_view value) {
    options.runFor = ParseSeconds(value);
    if (options.runFor && options.runFor->count() > 0) return std::nullopt;
    return Wants("--for", "a number of seconds above 0 and up to 86400", value);
}

using ValueOption = Engine::ValueOption<GuestOptions>;

constexpr std::array kValueOptions{
    ValueOption{"--room", ReadRoom},     ValueOption{"--name", ReadName},
    ValueOption{"--server", ReadServer}, ValueOption{"--service", ReadService},
    ValueOption{"--ca", ReadAuthority},  ValueOption{"--seed", ReadSeed},
    ValueOption{"--index", ReadIndex},   ValueOption{"--count", ReadCount},
    ValueOption{"--size", ReadSize},     ValueOption{"--rate", ReadRate},
    ValueOption{"--draw", ReadDraw},     ValueOption{"--source", ReadSource},
    ValueOption{"--for", ReadFor},
};

Problem CheckTogether(const GuestOptions& options) {
    if (options.room.empty()) return Failure{"--room is missing, --help lists what there is"};
    if (options.name.empty()) return Failure{"--name is missing, --help lists what there is"};
    if (options.role.index >= options.role.count) {
        return Failure{"--index is the guest's place among --count, counted from 0"};
    }
    if (!options.certificateAuthority.empty() && options.server.empty() && options.service.empty()) {
        return Failure{"--ca is for --server and --service"};
    }
    return std::nullopt;
}

}  // namespace

std::variant<GuestOptions, Failure> ParseGuestOptions(std::span<const std::string_view> arguments,
                                                      std::string_view roomOfEnvironment) {
    GuestOptions options;
    if (!roomOfEnvironment.empty()) {
        if (auto problem = ReadRoom(options, roomOfEnvironment)) return *std::move(problem);
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help" || argument == "-h" || argument == "--version") {
            options.action =
                argument == "--version" ? GuestOptions::Action::ShowVersion : GuestOptions::Action::ShowHelp;
            return options;
        }
        if (auto problem = Engine::ReadValueOption<GuestOptions>(kValueOptions, arguments, i, options)) {
            return *std::move(problem);
        }
    }
    if (auto problem = CheckTogether(options)) return *std::move(problem);
    return options;
}

std::string_view GuestHelpText() {
    return R"(corvanta-guest: takes part in a room without a window, with pictures and sound of its own making

  --room ROOM           the room's name; it may stand in the environment variable
                        CORVANTA_ROOM_NAME instead, where no list of processes shows it
  --name NAME           what the others see of it
  --server URL          ws://HOST:PORT or wss://HOST:PORT of the server that carries the room;
                        without it the room is one of this user's on this machine
  --service URL         http://HOST:PORT or https://HOST:PORT of what keeps a named room's notes
                        and its connections' figures; without it this machine does
  --ca FILE             authorities (PEM) that vouch for the server's and the service's
                        certificates; the system's without it
  --seed S              what it does is made of this number (1)
  --index I, --count N  its place among the guests of the room, counted from 0 (0), and how many
                        they are (1)
  --source SOURCE       clip (a generated person who speaks in turns with the others), test (the
                        test picture), a video file or a URI (clip)
  --size WIDTHxHEIGHT   of its pictures: 1280x720, 640x360, 320x180, 256x144 or 160x90 (640x360)
  --rate F              pictures a second, 1 to 60 (30)
  --draw SECONDS        draws now and then from that moment on, or never (5)
  --for SECONDS         leaves after that time
  --help, --version

The environment variable CORVANTA_TOKEN holds what server and service ask for. It leaves when it
is asked to end (SIGTERM, Ctrl+C).
)";
}

}  // namespace Corvanta::Guest
