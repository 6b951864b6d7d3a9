// What makes the embedded room's connectivity panels show something: its participants report figures to the
// room service as clients of their own would, and the local user's go to the library. Runs on a thread of its
// own between Start and Stop, which may be called on any other.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engine/connections/RoomParticipant.h"

namespace Corvanta::Engine {

// What a participant's pictures would take on a wire, in bytes a second.
[[nodiscard]] double NominalRate(std::size_t pictures, std::chrono::duration<double> span);

class ParticipantReports final {
public:
    ParticipantReports(std::string sessionName,
                       const std::vector<std::shared_ptr<RoomParticipant>>& participants);

    void Start();
    // Waits for a request that is under way.
    void Stop();

private:
    struct Reporter {
        std::shared_ptr<RoomParticipant> participant;
        std::size_t countedPictures = 0;
        double upload = 0;
        // Of its last report: how long the service took.
        int32_t roundTripMs = 0;
        int32_t jitterMs = 0;
    };

    void Run(const std::stop_token& stop);
    void Measure(std::chrono::duration<double> span);
    void FeedLocalUser() const;
    void Send(Reporter& reporter) const;
    [[nodiscard]] double TotalUpload() const;

    const std::string session;
    std::vector<Reporter> reporters;
    std::jthread thread;
};

}  // namespace Corvanta::Engine
