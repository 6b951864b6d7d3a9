#include "engine/Engine.h"

#include <mutex>
#include <thread>
#include <utility>

#include "engine/EngineSettings.h"
#include "engine/configuration/ConfigurationStore.h"
#include "engine/connections/Room.h"
#include "engine/connections/TransportChoice.h"
#include "engine/logger/Logger.h"
#include "engine/roomservice/ServiceAddress.h"
#include "engine/signalling/RoomFolder.h"
#include "engine/webrtc/CameraChoice.h"
#include "engine/webrtc/DeviceList.h"
#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/SourceCheck.h"
#include "platform/Common.h"
#include "platform/Configuration.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr std::chrono::milliseconds kPollInterval{10};

struct Settings {
    static Settings& Get() {
        static Settings settings;
        return settings;
    }

    std::mutex optionsMutex;  // guards: all below
    EngineOptions options;
    std::string entryProblem;
};

}  // namespace

EngineOptions CurrentOptions() {
    Settings& settings = Settings::Get();
    const std::lock_guard lock(settings.optionsMutex);
    return settings.options;
}

std::optional<std::string> Configure(const EngineOptions& options) {
    ConfigureLog(options.logLevel, options.logFile);
    if (!EnsureGStreamer()) return "GStreamer cannot start";
    if (auto problem = CheckInstallation()) return problem;
    if (auto problem = CheckTransport(options)) return problem;
    if (auto problem = CheckService(options)) return problem;
    for (const Participant& participant : options.participants) {
        if (auto problem = CheckSource(participant)) return problem;
    }
    if (!options.camera.empty() && options.camera != kDefaultCamera) {
        if (auto problem = CheckSource({"own camera", options.camera})) return problem;
    }
    if (const auto warning = WarnOfBareToken(options)) LOG(kLogWarning, "%s", warning->c_str());
    ConfigurationStore::Get().Open(options.configurationFolder);
    SetCurrentOptions(options);
    return std::nullopt;
}

void SetCurrentOptions(const EngineOptions& options) {
    Settings& settings = Settings::Get();
    const std::lock_guard lock(settings.optionsMutex);
    settings.options = options;
}

void SetEntryProblem(const std::string& problem) {
    Settings& settings = Settings::Get();
    const std::lock_guard lock(settings.optionsMutex);
    settings.entryProblem = problem;
}

std::string EntryProblem() {
    Settings& settings = Settings::Get();
    const std::lock_guard lock(settings.optionsMutex);
    return settings.entryProblem;
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

std::vector<std::string> ListDevices(DeviceKind kind) {
    std::vector<std::string> names = DeviceList::Get().Names(kind);
    if (kind == DeviceKind::Camera) names.emplace_back(kTestPicture);
    if (kind == DeviceKind::Microphone) names.emplace_back(kTestTone);
    return names;
}

void SetDevicesChangedListener(std::function<void()> listener) {
    DeviceList::Get().SetListener(std::move(listener));
}

std::vector<ParticipantInfo> ListParticipants() {
    const auto room = Room::Current();
    return room ? room->Participants() : std::vector<ParticipantInfo>();
}

void RemoveParticipant(const std::string& streamId) {
    const auto room = Room::Current();
    const auto participant = room ? room->Find(streamId) : nullptr;
    if (participant) room->Remove(participant);
}

std::string ReadSetting(const std::string& key) {
    const auto value = ConfigurationStore::Get().Find(key);
    return value ? ToText(*value) : std::string();
}

void WriteSetting(const std::string& key, const std::string& value) {
    Configuration_SetPropertyString(key.c_str(), value.c_str());
}

void Shutdown() {
    Room::CloseCurrent();
    const EngineOptions options = CurrentOptions();
    if (options.isPrivate && !options.room.empty()) RemoveRoomFolder(UserRoomFolder(options.room));
    DeviceList::Get().Stop();
    ForgetCaptures();
    Integrations::ProcessMonitor::GetInstance()->StopMonitoring();
    ConfigurationStore::Get().Flush();
}

}  // namespace Corvanta::Engine
