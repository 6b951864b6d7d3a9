// What the room's connectivity panels show: participants without a program of their own have their figures
// reported to the room service as clients would, and the local user's go to the library and, in a room with
// other programs, to the service too. Runs on a thread of its own between Start and Stop, which may be called
// on any other.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engine/connections/ParticipantList.h"

namespace Corvanta::Engine {

class ParticipantReports final {
public:
    // The list outlives the reports. `ownStreamId` tells under which id the others look for the local user's
    // figures, empty where nobody does; `ownFigures` of the ways that carry the local user's streams alone.
    // Both are called on the thread of the reports.
    ParticipantReports(std::string sessionName, const ParticipantList& participants,
                       std::function<std::string()> ownStreamId,
                       std::function<std::vector<ParticipantFigures>()> ownFigures);

    void Start();
    // Waits for a request that is under way.
    void Stop();

private:
    struct Reporter {
        std::shared_ptr<RoomParticipant> participant;
        ParticipantFigures figures = {};
        int secondsToReport = 0;
        // Where no connection is measured: how long the service took for the last report.
        int32_t serviceMs = 0;
        int32_t serviceJitterMs = 0;
    };

    void Run(const std::stop_token& stop);
    // Brings the reporters to where the list is.
    void Follow();
    void Measure();
    void Send(Reporter& reporter) const;
    // Bytes a second.
    [[nodiscard]] double TotalUpload() const;

    const std::string session;
    const ParticipantList& list;
    const std::function<std::string()> ownStream;
    const std::function<std::vector<ParticipantFigures>()> sentFigures;
    // The first one soon, since the others' panels may be open.
    int secondsToOwnReport = 1;
    std::vector<Reporter> reporters;
    std::jthread thread;
};

}  // namespace Corvanta::Engine
