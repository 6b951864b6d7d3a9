// A guest without a window: takes part in a room until it is asked to end.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "engine/Engine.h"
#include "engine/EngineSettings.h"
#include "engine/common/CommandLine.h"
#include "engine/common/EngineLoop.h"
#include "engine/common/NetworkTypes.h"
#include "engine/connections/TransportChoice.h"
#include "engine/logger/Logger.h"
#include "engine/roomservice/ServiceAddress.h"
#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/SourceCheck.h"
#include "guest/EndSignal.h"
#include "guest/Guest.h"
#include "guest/GuestOptions.h"
#include "platform/Logger.h"

namespace Corvanta::Guest {

namespace {

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

int Report(const std::string& line, int exitCode = kExitFailure) {
    std::fprintf(stderr, "corvanta-guest: %s\n", line.c_str());
    return exitCode;
}

Engine::EngineOptions EngineOptionsFrom(const GuestOptions& options) {
    Engine::EngineOptions engine;
    engine.room = options.room;
    engine.name = options.name;
    engine.server = options.server;
    engine.service = options.service;
    engine.certificateAuthority = options.certificateAuthority;
    if (const char* const token = std::getenv(Engine::kTokenVariable)) engine.serverToken = token;
    engine.camera.clear();
    return engine;
}

// What hinders it from taking part at all.
std::optional<std::string> Prepare(const GuestOptions& options) {
    Engine::ConfigureLog(kLogWarning, {});
    if (!Engine::EnsureGStreamer()) return "GStreamer cannot start";
    Engine::EnsureNetworkTypes();
    if (auto problem = Engine::CheckInstallation()) return problem;
    Engine::SetCurrentOptions(EngineOptionsFrom(options));
    if (auto problem = Engine::CheckTransport(EngineOptionsFrom(options))) return problem;
    if (auto problem = Engine::CheckService(EngineOptionsFrom(options))) return problem;
    return Engine::CheckSource({options.name, options.source});
}

// Takes part until the loop is asked to end. What has failed, if anything has.
std::optional<std::string> TakePart(const GuestOptions& options, Engine::EngineLoop& loop) {
    std::optional<std::string> problem;
    Guest guest(loop, options, Engine::ChooseTransport(EngineOptionsFrom(options), options.name),
                {.entered =
                     [&] {
                         if (options.runFor) loop.PostAfter(*options.runFor, [&] { loop.Quit(); });
                     },
                 .failed =
                     [&](const std::string& line) {
                         if (!problem) problem = line;
                         loop.Quit();
                     }});
    loop.Post([&] { guest.Enter(); });
    loop.Run();
    guest.Leave();
    return problem;
}

int Run(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const char* const room = std::getenv(Engine::kRoomVariable);
    auto parsed = ParseGuestOptions(arguments, room != nullptr ? room : "");
    if (const auto* const problem = std::get_if<Engine::Failure>(&parsed)) {
        return Report(problem->line, kExitUsage);
    }
    const GuestOptions options = std::get<GuestOptions>(std::move(parsed));
    if (options.action == GuestOptions::Action::ShowHelp) {
        std::fputs(std::string(GuestHelpText()).c_str(), stdout);
        return 0;
    }
    if (options.action == GuestOptions::Action::ShowVersion) {
        std::puts("corvanta-guest " CORVANTA_VERSION);
        return 0;
    }
    Engine::EngineLoop loop;
    // Before any other thread, so that all of them inherit the mask.
    const EndSignal endSignal(loop);
    if (const auto problem = Prepare(options)) return Report(*problem);
    std::optional<std::string> problem;
    loop.Start([&] { problem = TakePart(options, loop); });
    loop.Join();
    return problem ? Report(*problem) : 0;
}

}  // namespace

}  // namespace Corvanta::Guest

int main(int argc, char** argv) {
    return Corvanta::Guest::Run(argc, argv);
}
