#include "engine/connections/ParticipantReports.h"

#include <array>
#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <utility>

#include "engine/webrtc/ConnectionStatsFeed.h"
#include "platform/Diagnostics.h"
#include "platform/RESTfulAPI.h"

namespace Corvanta::Engine {

namespace {

constexpr std::chrono::seconds kMeasureInterval{1};
// As often as a client with a panel reports.
constexpr int kMeasuresPerReport = 5;
// A picture of 1280x720 at a tenth of a bit a pixel, as video calls have it.
constexpr double kBytesPerPicture = 1280.0 * 720.0 * 0.1 / 8.0;
// There is no network between them and us.
constexpr const char* kConnectionType = "Embedded";

// To whole seconds, with zeros for what is finer.
std::string Now() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 64> text{};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S.0000000 UTC", &parts);
    return {text.data(), length};
}

}  // namespace

double NominalRate(std::size_t pictures, std::chrono::duration<double> span) {
    return span.count() > 0 ? static_cast<double>(pictures) * kBytesPerPicture / span.count() : 0.0;
}

ParticipantReports::ParticipantReports(std::string sessionName,
                                       const std::vector<std::shared_ptr<RoomParticipant>>& participants)
    : session(std::move(sessionName)) {
    for (const auto& participant : participants) reporters.push_back({.participant = participant});
}

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
    auto last = std::chrono::steady_clock::now();
    for (int measure = 0; !stop.stop_requested(); ++measure) {
        if (measure % kMeasuresPerReport == 0) {
            for (Reporter& reporter : reporters) {
                if (stop.stop_requested()) return;
                if (!reporter.participant->hasLeft) Send(reporter);
            }
        }
        std::unique_lock lock(mutex);
        stopped.wait_for(lock, stop, kMeasureInterval, [] { return false; });
        const auto now = std::chrono::steady_clock::now();
        Measure(now - std::exchange(last, now));
        if (!stop.stop_requested()) FeedLocalUser();
    }
}

void ParticipantReports::Measure(std::chrono::duration<double> span) {
    for (Reporter& reporter : reporters) {
        const std::size_t pictures = reporter.participant->pictures;
        reporter.upload = NominalRate(pictures - std::exchange(reporter.countedPictures, pictures), span);
    }
}

double ParticipantReports::TotalUpload() const {
    double total = 0;
    for (const Reporter& reporter : reporters) total += reporter.upload;
    return total;
}

void ParticipantReports::FeedLocalUser() const {
    // Nobody in the embedded room receives what the own camera shows, so nothing is sent.
    constexpr double kBitsPerByte = 8.0;
    FeedConnectionStats({.downloadRate = TotalUpload() * kBitsPerByte});
}

void ParticipantReports::Send(Reporter& reporter) const {
    const auto start = std::chrono::steady_clock::now();
    RESTApi_SendConnectivityLog(session, Now(), TotalUpload() - reporter.upload, reporter.participant->id,
                                reporter.roundTripMs, reporter.upload, reporter.jitterMs, kConnectionType,
                                Diagnostics_GetCPUType(), Diagnostics_GetCPUAppUsage(),
                                Diagnostics_GetCPUSystemUsage(), Diagnostics_GetPlatformVersion(),
                                Diagnostics_GetOperatingSystem(), reporter.participant->id);
    const auto took = static_cast<int32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
            .count());
    reporter.jitterMs = std::abs(took - std::exchange(reporter.roundTripMs, took));
}

}  // namespace Corvanta::Engine
