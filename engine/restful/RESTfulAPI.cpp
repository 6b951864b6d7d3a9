// The functions of platform/RESTfulAPI.h over the room service.
#include "platform/RESTfulAPI.h"

#include <optional>
#include <utility>

#include "engine/EngineSettings.h"
#include "engine/restful/HttpClient.h"
#include "engine/restful/ResponseStore.h"
#include "engine/roomservice/ConnectivityReport.h"
#include "engine/roomservice/ServiceAddress.h"

namespace {

using Corvanta::Engine::ConnectivityReport;
using Corvanta::Engine::Escape;
using Corvanta::Engine::HttpAnswer;
using Corvanta::Engine::StoredResponse;

constexpr int32_t kResponseFailure = 0;

std::optional<HttpAnswer> Ask(const std::string& method, const std::string& target, const std::string& body) {
    using namespace Corvanta::Engine;
    return SendRequest(ServiceOf(CurrentOptions()), {method, target, body});
}

}  // namespace

bool RESTApi_SendConnectivityLog(const std::string& sessionName, const std::string& timestamp,
                                 double download, const std::string& profileId, int32_t roundTrip,
                                 double upload, int32_t jitter, const std::string& connectionType,
                                 const std::string& cpuType, const std::string& cpuAppUsage,
                                 const std::string& cpuSystemUsage, const std::string& platformVersion,
                                 const std::string& operatingSystem, const std::string& streamId) {
    const ConnectivityReport report{.sessionName = sessionName,
                                    .figures = {.timestamp = timestamp,
                                                .download = download,
                                                .profileId = profileId,
                                                .roundTrip = roundTrip,
                                                .upload = upload,
                                                .jitter = jitter,
                                                .connectionType = connectionType,
                                                .cpuType = cpuType,
                                                .cpuAppUsage = cpuAppUsage,
                                                .cpuSystemUsage = cpuSystemUsage,
                                                .platformVersion = platformVersion,
                                                .operatingSystem = operatingSystem,
                                                .streamId = streamId}};
    const auto answer = Ask("POST", "/connectivity", ToJson(report));
    return answer && answer->status / 100 == 2;
}

Model::API::ConnectivityLogResponse* RESTApi_ReceiveParticipantsConnectivityLog(
    const std::string& sessionName, const std::string& streamId) {
    StoredResponse response;
    response.status = kResponseFailure;
    const auto answer =
        Ask("GET", "/connectivity?session=" + Escape(sessionName) + "&stream=" + Escape(streamId), {});
    if (answer && answer->status == 200) {
        if (auto report = Corvanta::Engine::ParseReport(answer->body)) {
            static_cast<Model::API::ConnectivityLogResponse&>(response) = std::move(report->figures);
            response.status = Model::API::kResponseSuccess;
        }
    }
    return Corvanta::Engine::ResponseStore::Get().Add(sessionName, streamId, std::move(response));
}

int32_t RESTApi_ResponseGetStatus(const Model::API::ConnectivityLogResponse* response) {
    // There are no others than ours.
    return response != nullptr ? static_cast<const StoredResponse*>(response)->status : kResponseFailure;
}
