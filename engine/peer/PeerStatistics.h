// What WebRTC's own reports say of one connection, as numbers. Plain functions of values.
#pragma once

#include <gst/gst.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace Corvanta::Engine {

// Counters since the connection was made, and figures of the last moment, as they are read.
struct PeerReport {
    std::uint64_t bytesSent = 0, bytesReceived = 0;
    std::uint64_t packetsReceived = 0;
    // May fall: what came late is taken back.
    std::int64_t packetsLost = 0;
    // Milliseconds.
    double jitterMs = 0;
    std::optional<double> roundTripMs;
    // What the peer says of this side's packets: the share lost since its last report, 0 to 1.
    std::optional<double> remoteLossShare;
    // Empty where none is known.
    std::string videoCodec;
    // Of the pictures that the peer's decoder gave.
    std::uint64_t pictures = 0;
    int width = 0, height = 0;
};

// Adds up all streams of the structure that "get-stats" answers with.
[[nodiscard]] PeerReport ReadReport(const GstStructure* stats);

struct PeerStatistics {
    // Bits a second since the report before.
    double uploadRate = 0, downloadRate = 0;
    // Share of the packets of the peer that were lost since the report before, 0 to 1.
    double lossShare = 0;
    std::optional<double> remoteLossShare;
    double jitterMs = 0;
    // The last that was told; nothing where none ever was, as on a way that only receives.
    std::optional<double> roundTripMs;
    // Pictures a second that were decoded, and their size.
    double frameRate = 0;
    int width = 0, height = 0;
    // Empty where none is known.
    std::string videoCodec;
};

// Makes rates of successive reports.
class StatisticsRates final {
public:
    using Clock = std::chrono::steady_clock;

    // The first report has no rates. Nor has one whose counters are below those of the one before: then the
    // connection is another one.
    [[nodiscard]] PeerStatistics Add(const PeerReport& report, Clock::time_point now);

private:
    std::optional<PeerReport> last;
    Clock::time_point lastTime;
    std::optional<double> lastRoundTripMs;
};

}  // namespace Corvanta::Engine
