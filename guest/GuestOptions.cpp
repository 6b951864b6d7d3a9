#include "guest/GuestOptions.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "engine/Engine.h"

namespace Corvanta::Guest {

namespace {

using Problem = std::optional<BadArguments>;

constexpr double kMaxSeconds = 86400.0;
constexpr int kMaxRate = 60;
constexpr std::string_view kNever = "never";
constexpr std::array<std::string_view, 2> kServerSchemes{"ws://", "wss://"};
constexpr std::array<std::string_view, 2> kServiceSchemes{"http://", "https://"};
// Parts of the full size that have an even number of pixels on each side.
constexpr std::array kDivisors{1, 2, 4, 5, 8};

std::string Quoted(std::string_view text) {
    std::string quoted(1, '\'');
    quoted += text;
    quoted += '\'';
    return quoted;
}

BadArguments Wants(std::string_view option, std::string_view what) {
    std::string line(option);
    line += " wants ";
    line += what;
    return {std::move(line)};
}

BadArguments Wants(std::string_view option, std::string_view what, std::string_view value) {
    BadArguments problem = Wants(option, what);
    problem.line += ", not ";
    problem.line += Quoted(value);
    return problem;
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, Number least, Number most) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || !(number >= least) || number > most) return std::nullopt;
    return number;
}

std::optional<std::chrono::milliseconds> ParseSeconds(std::string_view text) {
    const auto seconds = ParseNumber(text, 0.0, kMaxSeconds);
    if (!seconds) return std::nullopt;
    return std::chrono::milliseconds(std::llround(std::ceil(*seconds * 1000.0)));
}

// Words for people: UTF-8 on one line. The value itself is not repeated, since it may be anything.
Problem CheckWords(std::string_view option, std::string_view value, std::size_t longest) {
    if (value.empty()) return Wants(option, "a name");
    if (value.size() > longest) {
        return Wants(option, "a name of at most " + std::to_string(longest) + " bytes");
    }
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    if (g_utf8_validate(value.data(), static_cast<gssize>(value.size()), nullptr) == FALSE ||
        std::ranges::any_of(value, isControl)) {
        return Wants(option, "a name in UTF-8 on one line");
    }
    return std::nullopt;
}

Problem ReadRoom(GuestOptions& options, std::string_view value) {
    options.room = value;
    return CheckWords("--room", value, Engine::kLongestRoomName);
}

Problem ReadName(GuestOptions& options, std::string_view value) {
    options.name = value;
    return CheckWords("--name", value, kLongestName);
}

bool IsAddress(std::string_view value, const std::array<std::string_view, 2>& schemes) {
    const auto isOf = [&](std::string_view scheme) {
        return value.starts_with(scheme) && value.size() > scheme.size();
    };
    return std::ranges::any_of(schemes, isOf) && value.find_first_of(" \t\r\n") == value.npos;
}

Problem ReadServer(GuestOptions& options, std::string_view value) {
    if (!IsAddress(value, kServerSchemes))
        return Wants("--server", "ws://HOST:PORT or wss://HOST:PORT", value);
    options.server = value;
    return std::nullopt;
}

Problem ReadService(GuestOptions& options, std::string_view value) {
    if (!IsAddress(value, kServiceSchemes)) {
        return Wants("--service", "http://HOST:PORT or https://HOST:PORT", value);
    }
    options.service = value;
    return std::nullopt;
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

struct ValueOption {
    std::string_view name;
    Problem (*read)(GuestOptions&, std::string_view);
};

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
    if (options.room.empty()) return BadArguments{"--room is missing, --help lists what there is"};
    if (options.name.empty()) return BadArguments{"--name is missing, --help lists what there is"};
    if (options.role.index >= options.role.count) {
        return BadArguments{"--index is the guest's place among --count, counted from 0"};
    }
    if (!options.certificateAuthority.empty() && options.server.empty() && options.service.empty()) {
        return BadArguments{"--ca is for --server and --service"};
    }
    return std::nullopt;
}

}  // namespace

std::variant<GuestOptions, BadArguments> ParseGuestOptions(std::span<const std::string_view> arguments) {
    GuestOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help" || argument == "-h" || argument == "--version") {
            options.action =
                argument == "--version" ? GuestOptions::Action::ShowVersion : GuestOptions::Action::ShowHelp;
            return options;
        }
        const std::size_t equals = argument.find('=');
        const auto* const option =
            std::ranges::find(kValueOptions, argument.substr(0, equals), &ValueOption::name);
        if (option == kValueOptions.end()) {
            return BadArguments{"unknown argument " + Quoted(argument) + ", --help lists what there is"};
        }
        std::string_view value;
        if (equals != std::string_view::npos) {
            value = argument.substr(equals + 1);
        } else if (i + 1 < arguments.size()) {
            value = arguments[++i];
        } else {
            return Wants(option->name, "a value");
        }
        if (auto problem = option->read(options, value)) return *std::move(problem);
    }
    if (auto problem = CheckTogether(options)) return *std::move(problem);
    return options;
}

std::string_view GuestHelpText() {
    return R"(corvanta-guest: takes part in a room without a window, with pictures and sound of its own making

  --room ROOM           the room's name
  --name NAME           what the others see of it
  --server URL          ws://HOST:PORT or wss://HOST:PORT of the server that carries the room;
                        without it the room is one of this user's on this machine
  --service URL         http://HOST:PORT or https://HOST:PORT of what keeps the figures of its
                        connections for the others; without it this machine does
  --ca FILE             certificates (PEM) of those whom theirs may come from
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
