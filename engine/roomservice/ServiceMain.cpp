// The room service as a program of its own, for rooms whose members are on several machines. One thread,
// which serves until it is asked to end.
#include <glib-unix.h>
#include <glib.h>
#include <signal.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>
#include <vector>

#include "engine/configuration/ConfigurationFile.h"
#include "engine/roomservice/RoomServer.h"
#include "engine/roomservice/ServiceDatabase.h"
#include "engine/roomservice/ServiceOptions.h"

namespace Corvanta::Engine {
namespace {

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;
// Of one address. Several people may sit behind one.
constexpr ClientRates::Limits kRates{.requestsPerSecond = 50, .burst = 200};

int Report(std::string_view line, int exitCode = kExitFailure) {
    std::fprintf(stderr, "corvanta-room-service: %s\n", std::string(line).c_str());
    return exitCode;
}

// Makes its folder where it is missing.
std::variant<std::filesystem::path, Failure> DatabaseOf(const ServiceOptions& options) {
    std::filesystem::path file = options.database;
    if (file.empty()) {
        const std::filesystem::path folder = UserConfigurationFolder();
        if (folder.empty()) return Failure{"there is no configuration folder: give --database"};
        file = folder / "shared-rooms.sqlite";
    }
    std::error_code error;
    if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), error);
    // What it is cannot be told before it is tried.
    if (ServiceDatabase::Open(file) == nullptr) return Failure{"the database cannot be used"};
    return file;
}

gboolean OnSignal(gpointer loop) {
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_CONTINUE;
}

void Serve() {
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    g_unix_signal_add(SIGTERM, OnSignal, loop);
    g_unix_signal_add(SIGINT, OnSignal, loop);
    g_main_loop_run(loop);
    g_main_loop_unref(loop);
}

// What to type on the other machines.
void Tell(const ServiceOptions& options, std::uint16_t port) {
    const bool isIpv6 = options.address.find(':') != std::string::npos;
    const char* const scheme = options.certificate.empty() ? "http" : "https";
    std::printf(
        "corvanta-room-service: listens on %s://%s%s%s:%d; on the other machines (with the token in "
        "CORVANTA_TOKEN): ./run --service %s://HOST:%d --room NAME\n",
        scheme, isIpv6 ? "[" : "", options.address.c_str(), isIpv6 ? "]" : "", port, scheme, port);
    std::fflush(stdout);
}

int Run(const std::vector<std::string_view>& arguments) {
    const auto parsed = ParseServiceOptions(arguments);
    if (const auto* const problem = std::get_if<Failure>(&parsed)) return Report(problem->line, kExitUsage);
    const auto& options = std::get<ServiceOptions>(parsed);
    if (options.showHelp) {
        std::fputs(std::string(ServiceHelp()).c_str(), stdout);
        return 0;
    }
    const auto token = ReadToken(options.tokenFile);
    if (const auto* const problem = std::get_if<Failure>(&token)) return Report(problem->line, kExitUsage);
    const auto database = DatabaseOf(options);
    if (const auto* const problem = std::get_if<Failure>(&database)) return Report(problem->line);
    std::string problem;
    const auto server = RoomServer::Listen({.address = options.address,
                                            .port = options.port,
                                            .token = std::get<std::string>(token),
                                            .certificate = options.certificate,
                                            .key = options.key,
                                            .database = std::get<std::filesystem::path>(database),
                                            .rates = kRates},
                                           problem);
    if (server == nullptr) return Report(problem);
    Tell(options, server->Port());
    Serve();
    return 0;
}

}  // namespace
}  // namespace Corvanta::Engine

int main(int count, char** arguments) {
    return Corvanta::Engine::Run({arguments + 1, arguments + count});
}
