// What this program tells the room service of its own connection, so that the others' panels can show it.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "engine/transport/ParticipantMedia.h"
#include "engine/webrtc/ConnectionStatsFeed.h"

namespace Corvanta::Engine {

// As often as a client with a panel reports.
inline constexpr int kSecondsPerReport = 5;

// To whole seconds, with zeros for what is finer: as the service's reports bear their times.
[[nodiscard]] std::string ReportTime();

// Of the ways to all others: their rates together, and the mean of what was measured on each.
[[nodiscard]] LocalConnectionFigures FiguresOfAll(const std::vector<ParticipantFigures>& ways);

// Under the stream's id, with this machine's and this process's figures and the user's profile. Any thread
// that may wait for the service. False when the service does not take it.
bool ReportOwnConnection(const std::string& session, const std::string& streamId,
                         const LocalConnectionFigures& figures);

// Reports on a thread of its own, for those who may not wait.
class OwnConnectionReports final {
public:
    OwnConnectionReports(std::string sessionName, std::string ownStreamId);
    // Waits for a report that is under way.
    ~OwnConnectionReports();
    OwnConnectionReports(const OwnConnectionReports&) = delete;
    OwnConnectionReports& operator=(const OwnConnectionReports&) = delete;

    // Any thread. Where one still waits, the newer one takes its place.
    void Report(const LocalConnectionFigures& figures);

private:
    void Run(const std::stop_token& stop);

    const std::string session;
    const std::string streamId;
    std::mutex mutex;  // guards: waiting
    std::condition_variable_any hasWork;
    std::optional<LocalConnectionFigures> waiting;
    std::jthread thread;
};

}  // namespace Corvanta::Engine
