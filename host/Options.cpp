#include "host/Options.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <system_error>

#include <unistd.h>

#include "engine/Engine.h"
#include "engine/common/CommandLine.h"

namespace Corvanta::Host {
namespace {

namespace fs = std::filesystem;
using Engine::CheckName;
using Engine::ParseNumber;
using Engine::Quoted;
using Engine::Wants;

constexpr int kMinSide = 160;
constexpr int kMaxSide = 8192;
constexpr double kMinScale = 0.5;
constexpr double kMaxScale = 4.0;
constexpr int kMaxGeneratedParticipants = 100;
constexpr double kMaxSeconds = 86400.0;
// Sources that the engine makes itself. A file of such a name is reached as ./test.
constexpr std::array<std::string_view, 2> kGeneratedSources{"test", "clip"};
constexpr std::string_view kNoCamera = "none";
constexpr int kGuestsOfOwnRoom = 3;

std::optional<Failure> ReadParticipant(Options& options, std::string_view value) {
    const std::size_t equals = value.find('=');
    if (equals == std::string_view::npos || equals == 0 || equals + 1 == value.size()) {
        return Wants("--participant", "NAME=SOURCE", value);
    }
    ParticipantOption participant{std::string(value.substr(0, equals)),
                                  std::string(value.substr(equals + 1))};
    const auto sameName = [&](const ParticipantOption& other) { return other.name == participant.name; };
    if (std::ranges::any_of(options.participants, sameName)) {
        return Failure{"two participants are called " + Quoted(participant.name)};
    }
    options.participants.push_back(std::move(participant));
    return std::nullopt;
}

std::optional<Failure> ReadParticipants(Options& options, std::string_view value) {
    options.generatedParticipants = ParseNumber(value, 0, kMaxGeneratedParticipants);
    if (!options.generatedParticipants) return Wants("--participants", "a number from 0 to 100", value);
    return std::nullopt;
}

std::optional<Failure> ReadHeadless(Options& options, std::string_view value) {
    const std::optional<double> seconds = ParseNumber(value, 0.0, kMaxSeconds);
    if (!seconds || *seconds == 0.0) {
        return Wants("--headless", "a number of seconds above 0 and up to 86400", value);
    }
    options.headlessFor = std::chrono::milliseconds(std::llround(std::ceil(*seconds * 1000.0)));
    return std::nullopt;
}

std::optional<Failure> ReadSnapshot(Options& options, std::string_view value) {
    fs::path path(value);
    if (path.extension() != ".png") {
        return Wants("--snapshot", "a file name that ends in .png", value);
    }
    options.snapshotPath = std::move(path);
    return std::nullopt;
}

std::optional<Failure> ReadSize(Options& options, std::string_view value) {
    const std::size_t cross = value.find('x');
    if (cross != std::string_view::npos) {
        const std::optional<int> width = ParseNumber(value.substr(0, cross), kMinSide, kMaxSide);
        const std::optional<int> height = ParseNumber(value.substr(cross + 1), kMinSide, kMaxSide);
        if (width && height) {
            options.size = {*width, *height};
            return std::nullopt;
        }
    }
    return Wants("--size", "WIDTHxHEIGHT, each from 160 to 8192", value);
}

std::optional<Failure> ReadScale(Options& options, std::string_view value) {
    const std::optional<double> scale = ParseNumber(value, kMinScale, kMaxScale);
    if (!scale) return Wants("--scale", "a factor from 0.5 to 4", value);
    options.scale = *scale;
    return std::nullopt;
}

std::optional<Failure> ReadRoomName(Options& options, std::string_view value) {
    options.roomName = value;
    options.company = Company::OfNamedRoom;
    return CheckName("--room", value, Engine::kLongestRoomName);
}

std::optional<Failure> ReadName(Options& options, std::string_view value) {
    options.name = value;
    return CheckName("--name", value, Engine::kLongestPersonName);
}

std::optional<Failure> ReadServer(Options& options, std::string_view value) {
    options.server = value;
    return Engine::CheckServer("--server", value);
}

std::optional<Failure> ReadService(Options& options, std::string_view value) {
    options.service = value;
    return Engine::CheckService("--service", value);
}

std::optional<Failure> ReadDetached(Options& options, std::string_view value) {
    options.detached = WallLayoutOf(value);
    if (!options.detached) {
        return Wants("--detached", "strip, column or grid", value);
    }
    return std::nullopt;
}

std::optional<Failure> ReadCamera(Options& options, std::string_view value) {
    if (value.empty()) {
        return Wants("--camera", "test, clip, none, a video file or a URI");
    }
    options.camera = value == kNoCamera ? std::string_view() : value;
    return std::nullopt;
}

std::optional<Failure> ReadShare(Options& options, std::string_view value) {
    auto parsed = ParseSharedSource(value);
    if (auto* const failure = std::get_if<Failure>(&parsed)) return std::move(*failure);
    options.shared.push_back(std::get<SharedSource>(std::move(parsed)));
    return std::nullopt;
}

std::optional<Failure> ReadAuthority(Options& options, std::string_view value) {
    if (value.empty()) {
        return Wants("--ca", "a file");
    }
    options.certificateAuthority = value;
    return std::nullopt;
}

std::optional<Failure> ReadGuests(Options& options, std::string_view value) {
    options.guests = ParseNumber(value, 0, Engine::kMostGuests);
    if (!options.guests) return Wants("--guests", "a number from 0 to 16", value);
    return std::nullopt;
}

using ValueOption = Engine::ValueOption<Options>;

constexpr std::array kValueOptions{
    ValueOption{"--participant", ReadParticipant},
    ValueOption{"--participants", ReadParticipants},
    ValueOption{"--headless", ReadHeadless},
    ValueOption{"--snapshot", ReadSnapshot},
    ValueOption{"--size", ReadSize},
    ValueOption{"--scale", ReadScale},
    ValueOption{"--room", ReadRoomName},
    ValueOption{"--name", ReadName},
    ValueOption{"--guests", ReadGuests},
    ValueOption{"--server", ReadServer},
    ValueOption{"--service", ReadService},
    ValueOption{"--ca", ReadAuthority},
    ValueOption{"--detached", ReadDetached},
    ValueOption{"--camera", ReadCamera},
    ValueOption{"--share", ReadShare},
};

bool IsUri(std::string_view source) {
    const std::size_t colon = source.find("://");
    if (colon == std::string_view::npos || colon == 0) {
        return false;
    }
    const auto schemeLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' ||
               c == '-' || c == '.';
    };
    return std::ranges::all_of(source.substr(0, colon), schemeLetter);
}

std::optional<Failure> ResolveFile(std::string& source, const fs::path& baseFolder) {
    const fs::path path = (baseFolder / source).lexically_normal();
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) {
        return Failure{"no such file: " + path.string()};
    }
    if (fs::is_directory(status)) {
        return Failure{"this is a folder, not a file: " + path.string()};
    }
    if (::access(path.c_str(), R_OK) != 0) {
        return Failure{"this file cannot be read: " + path.string()};
    }
    source = path.string();
    return std::nullopt;
}

std::optional<Failure> ResolveSource(std::string& source, const fs::path& baseFolder) {
    if (std::ranges::count(kGeneratedSources, source) > 0 || IsUri(source)) {
        return std::nullopt;
    }
    return ResolveFile(source, baseFolder);
}

// Participants of this process see nobody but this person, so no room that others enter has them.
std::optional<Failure> SettleCompany(Options& options) {
    const bool hasParticipants = !options.participants.empty() || options.generatedParticipants;
    if (hasParticipants) {
        const std::string_view own = options.participants.empty() ? "--participants" : "--participant";
        const std::string_view others = options.company == Company::OfNamedRoom ? "--room"
                                        : options.guests                        ? "--guests"
                                        : !options.server.empty()               ? "--server"
                                        : !options.service.empty()              ? "--service"
                                                                                : "";
        if (!others.empty()) {
            std::string line(own);
            line += " and ";
            line += others;
            line += " do not go together: participants are of this program alone";
            return Failure{std::move(line)};
        }
        options.company = Company::OfThisProgram;
    }
    if (!options.certificateAuthority.empty() && options.server.empty() && options.service.empty()) {
        return Failure{"--ca is for --server and --service"};
    }
    if (!options.guests) options.guests = options.company == Company::OfOwnRoom ? kGuestsOfOwnRoom : 0;
    return std::nullopt;
}

}  // namespace

std::variant<Options, Failure> ParseOptions(std::span<const std::string_view> arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            options.action = Options::Action::ShowHelp;
            return options;
        }
        if (argument == "--version") {
            options.action = Options::Action::ShowVersion;
            return options;
        }
        if (argument == "--preview") {
            options.preview = true;
            continue;
        }
        if (argument == "--no-drawings") {
            options.drawings = false;
            continue;
        }
        if (auto failure = Engine::ReadValueOption<Options>(kValueOptions, arguments, i, options)) {
            return *std::move(failure);
        }
    }
    if (std::optional<Failure> failure = SettleCompany(options)) {
        return *std::move(failure);
    }
    return options;
}

std::optional<Failure> ResolvePaths(Options& options, const fs::path& baseFolder) {
    for (ParticipantOption& participant : options.participants) {
        if (std::optional<Failure> failure = ResolveSource(participant.source, baseFolder)) {
            return failure;
        }
    }
    if (!options.camera.empty()) {
        if (std::optional<Failure> failure = ResolveSource(options.camera, baseFolder)) {
            return failure;
        }
    }
    for (SharedSource& shared : options.shared) {
        if (shared.type != StreamType::File) continue;
        if (std::optional<Failure> failure = ResolveFile(shared.source, baseFolder)) {
            return failure;
        }
    }
    if (!options.certificateAuthority.empty()) {
        std::string file = options.certificateAuthority.string();
        if (std::optional<Failure> failure = ResolveFile(file, baseFolder)) {
            return failure;
        }
        options.certificateAuthority = file;
    }
    if (options.snapshotPath.empty()) {
        return std::nullopt;
    }
    options.snapshotPath = (baseFolder / options.snapshotPath).lexically_normal();
    const fs::path folder = options.snapshotPath.parent_path();
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        return Failure{"no such folder for the snapshot: " + folder.string()};
    }
    if (fs::is_directory(options.snapshotPath, error)) {
        return Failure{"the snapshot's path is a folder: " + options.snapshotPath.string()};
    }
    if (::access(folder.c_str(), W_OK) != 0) {
        return Failure{"the snapshot's folder cannot be written: " + folder.string()};
    }
    return std::nullopt;
}

std::string_view HelpText() {
    return R"(corvanta-room: opens a window with a room full of moving pictures

  --room NAME                enters the room of that name, where whoever else names it is met;
                             without it the room is this person's own, with three guests
  --name NAME                what the others see of this person
  --guests N                 programs without a window that take part: N of them, 0 to 16 (none in
                             a named room)
  --server URL               ws://HOST:PORT or wss://HOST:PORT of the server that carries the room;
                             without it the room is one of this user's on this machine
  --service URL              http://HOST:PORT or https://HOST:PORT of what keeps a named room's
                             notes and its connections' figures; without it this machine does
  --ca FILE                  authorities (PEM) that vouch for the server's and the service's
                             certificates; the system's without it
  --participant NAME=SOURCE  instead of all these a participant that this program plays itself;
                             SOURCE is test (a moving test picture), clip (a generated person), a
                             video file or a URI; may be given several times
  --participants N           N more with generated clips, 0 to 100
  --camera SOURCE            what stands for the own camera: test (the test picture, without this
                             option too), clip, a video file, a URI, or none
  --headless SECONDS         needs no display: runs that long, then ends
  --snapshot FILE.png        writes what the window shows when the program ends; FILE-wall.png too
                             when the wall has a window of its own
  --size WIDTHxHEIGHT        size of the window (1280x720)
  --scale FACTOR             size of everything in the window (1)
  --detached LAYOUT          starts with the wall in a window of its own: strip, column or grid
  --share TYPE=SOURCE        streams from the start: screen, file=FILE, url=URI or device=NAME; may
                             be given several times
  --preview                  starts with the own camera in a window of its own
  --no-drawings              the guests, who draw now and then, do not
  --help, --version

The environment variable CORVANTA_TOKEN holds what server and service ask for.

In the windows: F7 slides the strip of participants out and in, F8 puts it into a window of its own
and back, F9 changes that window's layout (there also 1 to 3, or its menu on the right button), F10
opens and closes the own camera's window. F2 opens and closes the panel of chat, notes and people,
F3 the audio mixer, F4 the drawing tools, Ctrl+comma the settings. While the drawing tools are
there, Ctrl+Z takes the last mark back and Ctrl+Shift+Z brings it again. F11 full screen, Esc back
from it, Ctrl+Q ends.
)";
}

}  // namespace Corvanta::Host
