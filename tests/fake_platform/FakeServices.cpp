// The smaller sibling libraries as recorders: logger, GraphQL client, REST client, diagnostics, process
// monitor and the adaptive manager.

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "platform/Common.h"
#include "platform/Diagnostics.h"
#include "platform/GraphQLClient.h"
#include "platform/Logger.h"
#include "platform/RESTfulAPI.h"
#include "platform/VideoFrameAdaptation.h"
#include "tests/fake_platform/FakePlatform.h"

using Corvanta::Testing::Calls;
using Corvanta::Testing::Fake;
using Corvanta::Testing::FakeResults;
using Corvanta::Testing::UncountedScope;

namespace Corvanta {

namespace {

class FakeAdaptiveManager final : public AdaptiveVideoSourceManagerInterface {
public:
    void OnDataChannelMessage(const DataChannelMessage& message) override {
        Calls().Record("AdaptiveVideoSourceManager_OnDataChannelMessage", message.senderId, message.text);
    }

    void OnRemoteStreamRemoved(const std::string& streamId) override {
        Calls().Record("AdaptiveVideoSourceManager_OnRemoteStreamRemoved", streamId);
    }

    void SetMainStream(const std::string& streamId) override {
        Calls().Record("AdaptiveVideoSourceManager_SetMainStream", streamId);
    }

    [[nodiscard]] VideoFrameAdaptation GetAdaptation() override {
        Calls().Record("AdaptiveVideoSourceManager_GetAdaptation");
        return Fake().Get([](const FakeResults& results) { return results.adaptation; });
    }
};

}  // namespace

std::shared_ptr<AdaptiveVideoSourceManagerInterface> AdaptiveVideoSourceManagerInterface::Create(
    const std::string& streamId, const VideoFrameAdaptation& adaptation, bool enabled) {
    const UncountedScope uncounted;
    Calls().Record("AdaptiveVideoSourceManager_Create", streamId, adaptation.scaleDown,
                   adaptation.minimumHeight, adaptation.bitrate, enabled);
    auto manager = std::make_shared<FakeAdaptiveManager>();
    Fake().SetAdaptiveManager(manager);
    return manager;
}

namespace Integrations {

// The listeners are the fake's.
struct ProcessMonitor::State {};

ProcessMonitor::ProcessMonitor() = default;
ProcessMonitor::~ProcessMonitor() = default;

ProcessMonitor* ProcessMonitor::GetInstance() {
    static ProcessMonitor instance;
    return &instance;
}

bool ProcessMonitor::Subscribe(std::shared_ptr<ProcessMonitorListenerInterface> listener) {
    Calls().Record("ProcessMonitor_Subscribe", listener.get());
    return Fake().AddListener(std::move(listener));
}

bool ProcessMonitor::Unsubscribe(uint64_t key) {
    Calls().Record("ProcessMonitor_Unsubscribe", key);
    return Fake().RemoveProcessListener(key);
}

void ProcessMonitor::StopMonitoring() {
    Calls().Record("ProcessMonitor_StopMonitoring");
    Fake().RemoveProcessListeners();
}

}  // namespace Integrations
}  // namespace Corvanta

extern "C" {

void Logger_Log(int level, const char* format, ...) {
    const UncountedScope uncounted;
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(static_cast<size_t>(std::max(length, 0)), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    Fake().AddLog(level, std::move(text));
}

std::string GraphQLClient_GetStoredToken() {
    const UncountedScope uncounted;
    Calls().Record("GraphQLClient_GetStoredToken");
    return Fake().Get([](const FakeResults& results) { return results.storedToken; });
}

Corvanta::GraphQLClientString* GraphQLClient_GetProfileId() {
    const UncountedScope uncounted;
    Calls().Record("GraphQLClient_GetProfileId");
    return Fake().MakeString(Fake().Get([](const FakeResults& results) { return results.profileId; }));
}

Corvanta::GraphQLClientString* GraphQLClient_GetEmail() {
    const UncountedScope uncounted;
    Calls().Record("GraphQLClient_GetEmail");
    return Fake().MakeString(Fake().Get([](const FakeResults& results) { return results.email; }));
}

Corvanta::GraphQLClientString* GraphQLClient_GetDisplayName() {
    const UncountedScope uncounted;
    Calls().Record("GraphQLClient_GetDisplayName");
    return Fake().MakeString(Fake().Get([](const FakeResults& results) { return results.displayName; }));
}

void GraphQLClient_CStringDealloc(Corvanta::GraphQLClientString* string) {
    Calls().Record("GraphQLClient_CStringDealloc", string);
    Fake().ReleaseString(string);
}

void GraphQLClient_CreateSessionMutation(const char* roomId, const char* sessionName, const char* profileId,
                                         bool flag, const char* startTime, const char* recordingId) {
    Calls().Record("GraphQLClient_CreateSessionMutation", roomId, sessionName, profileId, flag, startTime,
                   recordingId);
}

void GraphQLClient_StopCurrentRecordingMutation(const char* roomId) {
    Calls().Record("GraphQLClient_StopCurrentRecordingMutation", roomId);
}

bool RESTApi_SendConnectivityLog(const std::string& sessionName, const std::string& timestamp,
                                 double download, const std::string& profileId, int32_t roundTrip,
                                 double upload, int32_t jitter, const std::string& connectionType,
                                 const std::string& cpuType, const std::string& cpuAppUsage,
                                 const std::string& cpuSystemUsage, const std::string& platformVersion,
                                 const std::string& operatingSystem, const std::string& streamId) {
    Calls().Record("RESTApi_SendConnectivityLog", sessionName, timestamp, download, profileId, roundTrip,
                   upload, jitter, connectionType, cpuType, cpuAppUsage, cpuSystemUsage, platformVersion,
                   operatingSystem, streamId);
    return Fake().Get([](const FakeResults& results) { return results.connectivityLogAccepted; });
}

Model::API::ConnectivityLogResponse* RESTApi_ReceiveParticipantsConnectivityLog(
    const std::string& sessionName, const std::string& streamId) {
    const UncountedScope uncounted;
    Calls().Record("RESTApi_ReceiveParticipantsConnectivityLog", sessionName, streamId);
    if (Fake().Get([](const FakeResults& results) { return results.connectivityResponseMissing; }))
        return nullptr;
    return Fake().MakeConnectivityResponse();
}

int32_t RESTApi_ResponseGetStatus(const Model::API::ConnectivityLogResponse* response) {
    Calls().Record("RESTApi_ResponseGetStatus", response);
    return Fake().Get([](const FakeResults& results) { return results.connectivityStatus; });
}

std::string Diagnostics_GetOperatingSystem() {
    const UncountedScope uncounted;
    Calls().Record("Diagnostics_GetOperatingSystem");
    return Fake().Get([](const FakeResults& results) { return results.operatingSystem; });
}

std::string Diagnostics_GetPlatformVersion() {
    const UncountedScope uncounted;
    Calls().Record("Diagnostics_GetPlatformVersion");
    return Fake().Get([](const FakeResults& results) { return results.platformVersion; });
}

std::string Diagnostics_GetCPUType() {
    const UncountedScope uncounted;
    Calls().Record("Diagnostics_GetCPUType");
    return Fake().Get([](const FakeResults& results) { return results.cpuType; });
}

std::string Diagnostics_GetCPUSystemUsage() {
    const UncountedScope uncounted;
    Calls().Record("Diagnostics_GetCPUSystemUsage");
    return Fake().Get([](const FakeResults& results) { return results.cpuSystemUsage; });
}

std::string Diagnostics_GetCPUAppUsage() {
    const UncountedScope uncounted;
    Calls().Record("Diagnostics_GetCPUAppUsage");
    return Fake().Get([](const FakeResults& results) { return results.cpuAppUsage; });
}

std::string Diagnostics_GetConnectionType() {
    const UncountedScope uncounted;
    Calls().Record("Diagnostics_GetConnectionType");
    return Fake().Get([](const FakeResults& results) { return results.connectionType; });
}

void Diagnostics_Report(int32_t code) {
    Calls().Record("Diagnostics_Report", code);
}
}
