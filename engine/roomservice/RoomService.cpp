#include "engine/roomservice/RoomService.h"

#include <chrono>
#include <future>
#include <string>
#include <system_error>
#include <utility>

#include "engine/roomservice/ServiceDatabase.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// How often a process that is not first looks whether the first one has gone.
constexpr std::chrono::milliseconds kTakeOverInterval{1000};

// Has the database where it belongs, with all that it held in its former place. Where it is to be used: the
// former place when it cannot be taken over, so that it is tried again by the next one who serves.
std::filesystem::path TakeOverDatabase(const RoomServicePlace& place) {
    std::error_code error;
    std::filesystem::create_directories(place.database.parent_path(), error);
    if (place.formerDatabase.empty() || std::filesystem::exists(place.database, error) ||
        !std::filesystem::exists(place.formerDatabase, error))
        return place.database;
    if (!ServiceDatabase::Copy(place.formerDatabase, place.database)) return place.formerDatabase;
    for (const char* const suffix : {"", "-wal", "-shm"}) {
        std::filesystem::path old = place.formerDatabase;
        old += suffix;
        std::filesystem::remove(old, error);
    }
    return place.database;
}

}  // namespace

RoomService::RoomService(RoomServicePlace servicePlace) : place(std::move(servicePlace)) {}

RoomService::~RoomService() {
    Stop();
}

void RoomService::Start() {
    if (std::exchange(isStarted, true) || !PrepareFolder(place)) return;
    std::promise<void> tried;
    const auto ready = tried.get_future();
    loop.Start([this, &tried] {
        TryToServe();
        tried.set_value();
        Run();
    });
    ready.wait();
}

void RoomService::Run() {
    loop.Run();
    isServing = false;
    server.reset();
    // What a closed server has left to do, before its context goes.
    while (g_main_context_iteration(loop.Context(), FALSE) != FALSE) {
    }
    lock.reset();
}

void RoomService::Stop() {
    loop.Quit();
    loop.Join();
}

void RoomService::TryToServe() {
    auto wanted = std::make_unique<HubLock>(place.lock);
    if (!wanted->IsHeld()) {
        loop.PostAfter(kTakeOverInterval, [this] { TryToServe(); });
        return;
    }
    std::string problem;
    server = RoomServer::Listen({.socket = place.socket, .database = TakeOverDatabase(place)}, problem);
    if (!server) {
        if (!std::exchange(isTroubleTold, true))
            LOG(kLogWarning, "No room service: %s cannot be listened to (%s); it is tried again",
                place.socket.c_str(), problem.c_str());
        loop.PostAfter(kTakeOverInterval, [this] { TryToServe(); });
        return;
    }
    lock = std::move(wanted);
    isServing = true;
    LOG(kLogDebug, "The room service listens on %s", place.socket.c_str());
}

}  // namespace Corvanta::Engine
