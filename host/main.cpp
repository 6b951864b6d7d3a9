// The desktop program: a window, a room in it, and the loop that ticks the room.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>
#include <vector>

#include <QApplication>
#include <QTimer>

#include "engine/Engine.h"
#include "engine/common/CommandLine.h"
#include "host/DarkLook.h"
#include "host/GeneratedParticipants.h"
#include "host/Guests.h"
#include "host/HeadlessEnd.h"
#include "host/HostWindow.h"
#include "host/Names.h"
#include "host/Options.h"
#include "host/PrivateDisplay.h"
#include "host/QuitOnSignal.h"
#include "host/RoomControls.h"
#include "host/RoomLoop.h"
#include "host/RoomSession.h"
#include "host/SdlEnvironment.h"
#include "host/Snapshot.h"
#include "host/SurfaceMetrics.h"
#include "host/WallControls.h"
#include "host/WallLayout.h"

namespace Corvanta::Host {
namespace {

namespace fs = std::filesystem;

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;
constexpr const char* kGuestProgram = "corvanta-guest";
constexpr int kSnapshotTries = 100;
constexpr std::chrono::milliseconds kSnapshotRetryAfter{20};

int Report(const Failure& failure, int exitCode = kExitFailure) {
    std::fprintf(stderr, "corvanta-room: %s\n", failure.line.c_str());
    return exitCode;
}

// Where this person meets the others. Without a room's name nobody else takes part.
void SetMeetingPlace(const Options& options, Engine::EngineOptions& engine) {
    engine.name = options.name;
    if (options.company == Company::OfThisProgram) return;
    engine.isPrivate = options.company == Company::OfOwnRoom;
    engine.room = engine.isPrivate ? MakeOwnRoomName() : options.roomName;
    engine.server = options.server;
    engine.service = options.service;
    engine.certificateAuthority = options.certificateAuthority;
    engine.serverToken = qgetenv(Engine::kTokenVariable).toStdString();
}

Engine::EngineOptions EngineOptionsFrom(const Options& options) {
    Engine::EngineOptions engine;
    SetMeetingPlace(options, engine);
    std::vector<ParticipantOption> participants = options.participants;
    if (options.generatedParticipants) {
        std::ranges::move(GenerateParticipants(*options.generatedParticipants, options.participants),
                          std::back_inserter(participants));
    }
    for (const ParticipantOption& participant : participants) {
        engine.participants.push_back({participant.name, participant.source});
    }
    engine.camera = options.camera;
    // What nobody watches, nobody listens to either.
    engine.soundOutput = options.headlessFor ? Engine::SoundOutput::Silent : Engine::SoundOutput::Device;
    return engine;
}

// The pixels of a private display: the side windows open beside the room's window and below it.
SurfaceMetrics DisplaySizeFor(const Options& options) {
    WindowSize size = options.size;
    if (options.detached) {
        const WallWindowSize wall = WallSizeOf(*options.detached);
        size = {size.width + wall.width, std::max(size.height, wall.height)};
    }
    if (options.preview) {
        size = {std::max(size.width, WallControls::kPreviewWidth),
                std::max(size.height, options.size.height + WallControls::kPreviewHeight)};
    }
    return MetricsOf(size.width, size.height, options.scale);
}

// The display to show the window on: null for the desktop's. A headless run always takes a private one, so
// that it looks the same everywhere.
std::variant<std::unique_ptr<PrivateDisplay>, Failure> ChooseDisplay(const Options& options) {
    const bool none = qEnvironmentVariableIsEmpty("DISPLAY");
    if (!options.headlessFor && !none) {
        if (!DisplayAnswers()) {
            return Failure{"the display '" + qgetenv("DISPLAY").toStdString() + "' does not answer"};
        }
        return std::unique_ptr<PrivateDisplay>();
    }
    const SurfaceMetrics size = DisplaySizeFor(options);
    auto display = PrivateDisplay::Start(size.physicalWidth, size.physicalHeight);
    if (const auto* const started = std::get_if<std::unique_ptr<PrivateDisplay>>(&display)) {
        qputenv("DISPLAY", (*started)->Name().c_str());
        if (!options.headlessFor) {
            std::fprintf(stderr, "corvanta-room: no display, so the window is on a private one, %s\n",
                         (*started)->Name().c_str());
        }
    }
    return display;
}

// Icons and fonts are found relative to the working directory, and they lie beside the program.
std::optional<Failure> MoveToOwnFolder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        fs::current_path(program.parent_path(), error);
    }
    if (error) {
        return Failure{"the program's own folder cannot be entered: " + error.message()};
    }
    return std::nullopt;
}

// While the main video passes from one speaker to the next the window can be empty for a moment. A run that
// nobody watches waits that moment out.
QImage LastPicture(const QWidget& window, bool mayWait) {
    QImage snapshot = TakeSnapshot(window);
    for (int tries = 0; mayWait && tries < kSnapshotTries && !ShowsSomething(snapshot); ++tries) {
        QTimer::singleShot(kSnapshotRetryAfter, [] { QCoreApplication::exit(0); });
        QCoreApplication::exec();
        snapshot = TakeSnapshot(window);
    }
    return snapshot;
}

std::optional<Failure> TakeSnapshots(const QWidget& window, const QWidget* wallWindow,
                                     const Options& options) {
    const bool mayWait = options.headlessFor.has_value();
    if (auto failure = WriteSnapshot(LastPicture(window, mayWait), options.snapshotPath)) return failure;
    if (wallWindow == nullptr) return std::nullopt;
    return WriteSnapshot(LastPicture(*wallWindow, mayWait), WallSnapshotPath(options.snapshotPath));
}

std::optional<Failure> OpenSideWindows(WallControls& wall, const Options& options) {
    if (options.detached && !wall.Detach(*options.detached)) {
        return Failure{"the wall's window cannot be drawn on, the log says why"};
    }
    if (options.preview && !wall.OpenPreview()) {
        return Failure{"the own camera's window cannot be drawn on, the log says why"};
    }
    return std::nullopt;
}

std::optional<Failure> StartSharing(const Options& options) {
    for (const SharedSource& shared : options.shared) {
        if (auto line = Engine::ShareStream(shared.type, shared.source)) return Failure{*std::move(line)};
    }
    return std::nullopt;
}

// Into the room, which must be entered already: so whoever comes later finds this program there.
std::variant<std::unique_ptr<Guests>, Failure> InviteGuests(const Options& options, const std::string& room) {
    const bool isNamed = options.company == Company::OfNamedRoom;
    return Guests::Start(fs::current_path() / kGuestProgram,
                         GuestArguments({.count = options.guests.value_or(0),
                                         .ownName = options.name,
                                         .server = options.server,
                                         // The person's own room is this machine's service's.
                                         .service = isNamed ? options.service : std::string(),
                                         .certificateAuthority = options.certificateAuthority,
                                         .drawings = options.drawings}),
                         {{Engine::kRoomVariable, room}});
}

// `room`: under which the others find it.
int ShowRoom(const Options& options, const std::string& room) {
    HostWindow window(QString::fromStdString(options.roomName + " - Corvanta"), options.size.width,
                      options.size.height);
    window.show();

    // Before the session, so that the library lets go of the side windows before they go.
    WallControls wall(window, options.roomName);
    RoomControls controls(window);
    // They say goodbye while the room closes.
    std::unique_ptr<Guests> guests;
    auto entered = RoomSession::Enter({.window = window,
                                       .wall = wall,
                                       .controls = controls,
                                       .roomName = options.roomName,
                                       .sessionName = room.empty() ? options.roomName : room});
    if (const auto* const failure = std::get_if<Failure>(&entered)) {
        return Report(*failure);
    }
    const auto session = std::get<std::unique_ptr<RoomSession>>(std::move(entered));
    auto invited = InviteGuests(options, room);
    if (const auto* const failure = std::get_if<Failure>(&invited)) {
        return Report(*failure);
    }
    guests = std::get<std::unique_ptr<Guests>>(std::move(invited));
    if (const std::optional<Failure> failure = OpenSideWindows(wall, options)) {
        return Report(*failure);
    }
    if (const std::optional<Failure> failure = StartSharing(options)) {
        return Report(*failure);
    }
    const auto loop = std::make_unique<RoomLoop>(*session, window);
    std::optional<HeadlessEnd> end;
    if (options.headlessFor) {
        end.emplace(*options.headlessFor, [&guests] { return guests->Count(); });
    }
    const int result = QCoreApplication::exec();
    end.reset();
    if (!options.snapshotPath.empty()) {
        if (const std::optional<Failure> failure = TakeSnapshots(window, wall.WallWindow(), options)) {
            return Report(*failure);
        }
    }
    guests->AskToEnd();
    return result;
}

int Run(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    auto parsed = ParseOptions(arguments);
    if (const auto* const failure = std::get_if<Failure>(&parsed)) {
        return Report(*failure, kExitUsage);
    }
    Options options = std::get<Options>(std::move(parsed));
    if (options.action == Options::Action::ShowHelp) {
        std::fputs(std::string(HelpText()).c_str(), stdout);
        return 0;
    }
    if (options.action == Options::Action::ShowVersion) {
        std::puts("corvanta-room " CORVANTA_VERSION);
        return 0;
    }
    if (const std::optional<Failure> failure = ResolvePaths(options, fs::current_path())) {
        return Report(*failure);
    }
    if (const std::optional<Failure> failure = MoveToOwnFolder()) {
        return Report(*failure);
    }

    QuitOnSignal quitOnSignal;
    auto display = ChooseDisplay(options);
    if (const auto* const failure = std::get_if<Failure>(&display)) {
        return Report(*failure);
    }
    const bool isPrivate = std::get<std::unique_ptr<PrivateDisplay>>(display) != nullptr;

    const Engine::EngineOptions engineOptions = EngineOptionsFrom(options);
    if (const std::optional<std::string> error = Engine::Configure(engineOptions)) {
        return Report({*error});
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    if (options.scale != 1.0) {
        qputenv("QT_SCALE_FACTOR", QByteArray::number(options.scale));
    }
    QApplication application(argc, argv);
    ApplyDarkLook();
    quitOnSignal.Watch();
    PrepareSdlEnvironment(isPrivate ? DisplayKind::Private : DisplayKind::OfTheDesktop);
    const int result = ShowRoom(options, engineOptions.room);
    Engine::Shutdown();
    return result;
}

}  // namespace
}  // namespace Corvanta::Host

int main(int argc, char** argv) {
    return Corvanta::Host::Run(argc, argv);
}
