#include "engine/connections/OwnConnection.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <utility>

#include "platform/Diagnostics.h"
#include "platform/GraphQLClient.h"
#include "platform/RESTfulAPI.h"

namespace Corvanta::Engine {

namespace {

constexpr double kBitsPerByte = 8.0;

std::string ProfileId() {
    GraphQLClientString* const id = GraphQLClient_GetProfileId();
    std::string copy = id->c_str();
    GraphQLClient_CStringDealloc(id);
    return copy;
}

}  // namespace

std::string ReportTime() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 64> text{};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S.0000000 UTC", &parts);
    return {text.data(), length};
}

LocalConnectionFigures FiguresOfAll(const std::vector<ParticipantFigures>& ways) {
    LocalConnectionFigures all;
    double measured = 0;
    for (const ParticipantFigures& way : ways) {
        all.uploadRate += way.sentRate;
        all.downloadRate += way.receivedRate;
        if (!way.roundTripMs) continue;
        ++measured;
        all.roundTripMs += *way.roundTripMs;
        all.jitterMs += way.jitterMs.value_or(0.0);
    }
    if (measured > 0) {
        all.roundTripMs /= measured;
        all.jitterMs /= measured;
    }
    return all;
}

bool ReportOwnConnection(const std::string& session, const std::string& streamId,
                         const LocalConnectionFigures& figures) {
    return RESTApi_SendConnectivityLog(
        session, ReportTime(), figures.downloadRate / kBitsPerByte, ProfileId(),
        static_cast<std::int32_t>(std::lround(figures.roundTripMs)), figures.uploadRate / kBitsPerByte,
        static_cast<std::int32_t>(std::lround(figures.jitterMs)), Diagnostics_GetConnectionType(),
        Diagnostics_GetCPUType(), Diagnostics_GetCPUAppUsage(), Diagnostics_GetCPUSystemUsage(),
        Diagnostics_GetPlatformVersion(), Diagnostics_GetOperatingSystem(), streamId);
}

OwnConnectionReports::OwnConnectionReports(std::string sessionName, std::string ownStreamId)
    : session(std::move(sessionName)), streamId(std::move(ownStreamId)) {
    thread = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

OwnConnectionReports::~OwnConnectionReports() {
    thread.request_stop();
    thread.join();
}

void OwnConnectionReports::Report(const LocalConnectionFigures& figures) {
    {
        const std::lock_guard lock(mutex);
        waiting = figures;
    }
    hasWork.notify_one();
}

void OwnConnectionReports::Run(const std::stop_token& stop) {
    while (true) {
        LocalConnectionFigures figures;
        {
            std::unique_lock lock(mutex);
            if (!hasWork.wait(lock, stop, [this] { return waiting.has_value(); })) return;
            figures = *std::exchange(waiting, std::nullopt);
        }
        ReportOwnConnection(session, streamId, figures);
    }
}

}  // namespace Corvanta::Engine
