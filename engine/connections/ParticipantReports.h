// What the room's connectivity panels show: participants without a program of their own have their figures
// reported to the room service as clients would, and the local user's go to the library and, in a room with
// other programs, to the service too, those of each shared stream under the stream's own id. Runs on a thread
// of its own between Start and Stop, which may be called on any other.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engine/connections/ParticipantList.h"
#include "engine/webrtc/ConnectionStatsFeed.h"

namespace Corvanta::Engine {

class ParticipantReports final {
public:
    // How the reports learn of the local user's streams, on their own thread.
    struct OwnStreamsSource {
        // Under which id the others look for the figures of a stream; empty where nobody does.
        std::function<std::string(StreamType type)> idOf;
        // The kinds that are shared beside the camera.
        std::function<std::vector<StreamType>()> shared;
        // Of the ways that carry the local user's streams alone.
        std::function<std::vector<OwnStreamFigures>()> figures;
    };

    // The list outlives the reports.
    ParticipantReports(std::string sessionName, const ParticipantList& participants,
                       OwnStreamsSource ownStreams);

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
    // The camera's bear the figures of the whole connection.
    void SendOwn(const LocalConnectionFigures& connection, const std::vector<OwnStreamFigures>& ways) const;
    // Bytes a second.
    [[nodiscard]] double TotalUpload() const;

    const std::string session;
    const ParticipantList& list;
    const OwnStreamsSource own;
    // The first one soon, since the others' panels may be open.
    int secondsToOwnReport = 1;
    std::vector<Reporter> reporters;
    std::jthread thread;
};

}  // namespace Corvanta::Engine
