#include "engine/Engine.h"

#include <mutex>
#include <thread>

#include "engine/EngineSettings.h"
#include "engine/configuration/ConfigurationStore.h"
#include "engine/connections/Room.h"
#include "engine/logger/Logger.h"
#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/SourceCheck.h"
#include "platform/Common.h"

namespace Corvanta::Engine {

namespace {

constexpr std::chrono::milliseconds kPollInterval{10};

struct Settings {
    static Settings& Get() {
        static Settings settings;
        return settings;
    }

    std::mutex optionsMutex;  // guards: options
    EngineOptions options;
};

std::vector<Participant> DefaultParticipants() {
    return {{"Alva", "clip"}, {"Bruno", "clip"}, {"Chiyo", "clip"}, {"Dario", "clip"}};
}

}  // namespace

EngineOptions CurrentOptions() {
    Settings& settings = Settings::Get();
    const std::lock_guard lock(settings.optionsMutex);
    EngineOptions options = settings.options;
    if (options.participants.empty() && options.whenEmpty == EmptyRoom::DefaultParticipants) {
        options.participants = DefaultParticipants();
    }
    return options;
}

std::optional<std::string> Configure(const EngineOptions& options) {
    ConfigureLog(options.logLevel, options.logFile);
    if (!EnsureGStreamer()) return "GStreamer cannot start";
    if (auto problem = CheckInstallation()) return problem;
    for (const Participant& participant : options.participants) {
        if (auto problem = CheckSource(participant)) return problem;
    }
    if (!options.camera.empty()) {
        if (auto problem = CheckSource({"own camera", options.camera})) return problem;
    }
    ConfigurationStore::Get().Open(options.configurationFolder);
    Settings& settings = Settings::Get();
    const std::lock_guard lock(settings.optionsMutex);
    settings.options = options;
    return std::nullopt;
}

RoomStatus GetRoomStatus() {
    const auto room = Room::Current();
    return room ? room->Status() : RoomStatus{};
}

bool WaitForPictures(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (true) {
        const RoomStatus status = GetRoomStatus();
        if (!status.connected) return false;
        if (status.showing + status.withoutPicture == status.participants) return true;
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(kPollInterval);
    }
}

void Shutdown() {
    Room::CloseCurrent();
    Integrations::ProcessMonitor::GetInstance()->StopMonitoring();
    ConfigurationStore::Get().Flush();
}

}  // namespace Corvanta::Engine
