#include "connectivity/ConnectivityExchange.h"

#include <chrono>
#include <exception>
#include <system_error>
#include <utility>

#include "connectivity/ConnectionStats.h"
#include "connectivity/ConnectivityText.h"
#include "platform/Diagnostics.h"
#include "platform/Logger.h"

namespace Corvanta::Connectivity {
namespace {

template <typename Value>
[[nodiscard]] bool IsReady(const std::future<Value>& future) {
    return future.wait_for(std::chrono::seconds::zero()) == std::future_status::ready;
}

// Empty, so that the caller goes on without it, when the process can have no further thread.
template <typename Task>
[[nodiscard]] auto StartTask(Task task) -> std::future<decltype(task())> {
    try {
        return std::async(std::launch::async, std::move(task));
    } catch (const std::system_error& error) {
        LOG(kLogWarning, "No thread for the connectivity log: %s", error.what());
        return {};
    }
}

void SendReport(const ConnectivityExchange::Identity& identity, const ConnectionStats& stats) {
    const std::string operatingSystem = Diagnostics_GetOperatingSystem();
    const std::string platformVersion = Diagnostics_GetPlatformVersion();
    const std::string cpuSystemUsage = Diagnostics_GetCPUSystemUsage();
    const std::string cpuAppUsage = Diagnostics_GetCPUAppUsage();
    const std::string cpuType = Diagnostics_GetCPUType();
    const std::string connectionType = Diagnostics_GetConnectionType();
    const std::string timestamp =
        FormatTimestamp(std::chrono::floor<ReportTime::duration>(std::chrono::system_clock::now()));
    const ConnectionFigures figures = stats.Get();
    RESTApi_SendConnectivityLog(identity.sessionName, timestamp, figures.downloadBytes, identity.profileId,
                                figures.roundTripMs, figures.uploadBytes, figures.jitterMs, connectionType,
                                cpuType, cpuAppUsage, cpuSystemUsage, platformVersion, operatingSystem,
                                identity.streamId);
}

}  // namespace

ConnectivityExchange::ConnectivityExchange(Identity identity, std::shared_ptr<const ConnectionStats> stats)
    : identity_(std::make_shared<const Identity>(std::move(identity))), stats_(std::move(stats)) {}

void ConnectivityExchange::Send() {
    // Assigning over a running task would wait for it.
    if (sending_.valid() && !IsReady(sending_)) return;
    sending_ = StartTask([identity = identity_, stats = stats_] { SendReport(*identity, *stats); });
}

ConnectivityExchange::Answer ConnectivityExchange::Receive(Model::API::ConnectivityLogResponse& report) {
    if (!receiving_.valid()) {
        Ask();
        return receiving_.valid() ? Answer::None : Answer::Failed;
    }
    if (!IsReady(receiving_)) return Answer::None;
    Report received;
    try {
        received = receiving_.get();
    } catch (const std::exception& error) {
        LOG(kLogWarning, "A request of the connectivity log failed: %s", error.what());
    } catch (...) {
        LOG(kLogWarning, "A request of the connectivity log failed");
    }
    Ask();
    if (!received.has_value()) return Answer::Failed;
    report = std::move(*received);
    return Answer::Report;
}

bool ConnectivityExchange::IsBusy() const {
    return (sending_.valid() && !IsReady(sending_)) || (receiving_.valid() && !IsReady(receiving_));
}

void ConnectivityExchange::Ask() {
    receiving_ = StartTask([identity = identity_]() -> Report {
        // Copied at once: the response lives only until somebody asks again for this stream.
        const auto* const response =
            RESTApi_ReceiveParticipantsConnectivityLog(identity->sessionName, identity->streamId);
        if (response == nullptr || RESTApi_ResponseGetStatus(response) != Model::API::kResponseSuccess) {
            return std::nullopt;
        }
        return *response;
    });
}

}  // namespace Corvanta::Connectivity
