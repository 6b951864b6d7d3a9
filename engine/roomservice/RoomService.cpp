#include "engine/roomservice/RoomService.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// How often a process that is not first looks whether the first one has gone.
constexpr std::chrono::milliseconds kTakeOverInterval{1000};

}  // namespace

// The system lets go of it when the process ends, by whatever death.
class RoomService::Lock final {
public:
    explicit Lock(const std::filesystem::path& path)
        : file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
        isHeld = file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) == 0;
    }
    ~Lock() {
        if (file >= 0) ::close(file);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    [[nodiscard]] bool IsHeld() const { return isHeld; }

private:
    int file;
    bool isHeld;
};

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
    auto wanted = std::make_unique<Lock>(place.lock);
    if (!wanted->IsHeld()) {
        loop.PostAfter(kTakeOverInterval, [this] { TryToServe(); });
        return;
    }
    auto log = ConnectivityLog::Open(place.database);
    if (!log) return;
    server = RoomServer::Listen(place.socket, std::move(log));
    if (!server) return;
    lock = std::move(wanted);
    isServing = true;
    LOG(kLogDebug, "The room service listens on %s", place.socket.c_str());
}

}  // namespace Corvanta::Engine
