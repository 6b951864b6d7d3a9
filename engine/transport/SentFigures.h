// How the local user's own streams do on their ways to the others, where these ways carry nothing back. Any
// thread.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "engine/peer/PeerStatistics.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

// What a participant's panel shows of a connection.
[[nodiscard]] inline ParticipantFigures FiguresFrom(const PeerStatistics& statistics) {
    return {.receivedRate = statistics.downloadRate,
            .sentRate = statistics.uploadRate,
            .jitterMs = statistics.jitterMs,
            .roundTripMs = statistics.roundTripMs,
            .lossShare = statistics.lossShare,
            .frameRate = statistics.frameRate,
            .width = statistics.width,
            .height = statistics.height,
            .codec = statistics.videoCodec};
}

class SentFigures final {
public:
    // Of a stream on its way to a receiver, which is any name.
    void Set(const std::string& receiver, StreamType type, const PeerStatistics& statistics) {
        const std::lock_guard lock(figuresMutex);
        figures[{receiver, type}] = FiguresFrom(statistics);
    }
    void Forget(const std::string& receiver, StreamType type) {
        const std::lock_guard lock(figuresMutex);
        figures.erase({receiver, type});
    }
    [[nodiscard]] std::vector<OwnStreamFigures> All() const {
        const std::lock_guard lock(figuresMutex);
        std::vector<OwnStreamFigures> all;
        for (const auto& [way, figure] : figures) all.push_back({way.second, figure});
        return all;
    }

private:
    mutable std::mutex figuresMutex;  // guards: figures
    std::map<std::pair<std::string, StreamType>, ParticipantFigures> figures;
};

}  // namespace Corvanta::Engine
