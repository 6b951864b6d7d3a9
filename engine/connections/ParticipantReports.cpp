#include "engine/connections/ParticipantReports.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <utility>

#include "engine/connections/OwnConnection.h"
#include "engine/webrtc/ConnectionStatsFeed.h"
#include "platform/Diagnostics.h"
#include "platform/RESTfulAPI.h"

namespace Corvanta::Engine {

namespace {

constexpr std::chrono::seconds kMeasureInterval{1};
constexpr double kBitsPerByte = 8.0;
// There is no network between them and us.
constexpr const char* kConnectionType = "Embedded";

}  // namespace

ParticipantReports::ParticipantReports(std::string sessionName, const ParticipantList& participants,
                                       OwnStreamsSource ownStreams)
    : session(std::move(sessionName)), list(participants), own(std::move(ownStreams)) {}

void ParticipantReports::Start() {
    thread = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

void ParticipantReports::Stop() {
    thread.request_stop();
    if (thread.joinable()) thread.join();
}

void ParticipantReports::Run(const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any stopped;
    while (!stop.stop_requested()) {
        Follow();
        for (Reporter& reporter : reporters) {
            if (stop.stop_requested()) return;
            if (reporter.secondsToReport-- > 0) continue;
            reporter.secondsToReport = kSecondsPerReport - 1;
            if (!reporter.participant->reportsItself) Send(reporter);
        }
        std::unique_lock lock(mutex);
        stopped.wait_for(lock, stop, kMeasureInterval, [] { return false; });
        if (stop.stop_requested()) return;
        Measure();
        const std::vector<OwnStreamFigures> sent = own.figures();
        std::vector<ParticipantFigures> ways;
        ways.reserve(sent.size() + reporters.size());
        for (const OwnStreamFigures& way : sent) ways.push_back(way.figures);
        for (const Reporter& reporter : reporters) ways.push_back(reporter.figures);
        const LocalConnectionFigures connection = FiguresOfAll(ways);
        FeedConnectionStats(connection);
        if (--secondsToOwnReport > 0) continue;
        secondsToOwnReport = kSecondsPerReport;
        SendOwn(connection, sent);
    }
}

void ParticipantReports::SendOwn(const LocalConnectionFigures& connection,
                                 const std::vector<OwnStreamFigures>& ways) const {
    const std::string camera = own.idOf(StreamType::Camera);
    if (camera.empty()) return;
    ReportOwnConnection(session, camera, connection);
    for (const StreamType type : own.shared()) {
        std::vector<ParticipantFigures> ofStream;
        for (const OwnStreamFigures& way : ways) {
            if (way.type == type) ofStream.push_back(way.figures);
        }
        ReportOwnConnection(session, own.idOf(type), FiguresOfAll(ofStream));
    }
}

void ParticipantReports::Follow() {
    const ParticipantList::Snapshot all = list.Get();
    const auto isOf = [](const auto& participant) {
        return [&](const Reporter& reporter) { return reporter.participant == participant; };
    };
    std::erase_if(reporters, [&](const Reporter& reporter) {
        return std::ranges::find(*all, reporter.participant) == all->end();
    });
    for (const auto& participant : *all) {
        if (std::ranges::none_of(reporters, isOf(participant))) reporters.push_back({participant});
    }
}

void ParticipantReports::Measure() {
    for (Reporter& reporter : reporters) reporter.figures = reporter.participant->media->Figures();
}

double ParticipantReports::TotalUpload() const {
    double total = 0;
    for (const Reporter& reporter : reporters) total += reporter.figures.receivedRate / kBitsPerByte;
    return total;
}

void ParticipantReports::Send(Reporter& reporter) const {
    const ParticipantFigures& figures = reporter.figures;
    const double upload = figures.receivedRate / kBitsPerByte;
    const auto roundTrip =
        figures.roundTripMs ? static_cast<int32_t>(std::lround(*figures.roundTripMs)) : reporter.serviceMs;
    const auto jitter =
        figures.jitterMs ? static_cast<int32_t>(std::lround(*figures.jitterMs)) : reporter.serviceJitterMs;
    const auto start = std::chrono::steady_clock::now();
    RESTApi_SendConnectivityLog(session, ReportTime(), TotalUpload() - upload, reporter.participant->id,
                                roundTrip, upload, jitter, kConnectionType, Diagnostics_GetCPUType(),
                                Diagnostics_GetCPUAppUsage(), Diagnostics_GetCPUSystemUsage(),
                                Diagnostics_GetPlatformVersion(), Diagnostics_GetOperatingSystem(),
                                reporter.participant->id);
    const auto took = static_cast<int32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
            .count());
    reporter.serviceJitterMs = std::abs(took - std::exchange(reporter.serviceMs, took));
}

}  // namespace Corvanta::Engine
