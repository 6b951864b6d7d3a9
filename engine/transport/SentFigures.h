// How the local user's own streams do on their ways to the others, where these ways carry nothing back. Any
// thread.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "engine/peer/PeerStatistics.h"
#include "engine/transport/ParticipantMedia.h"

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
    // `way` names the stream and whom it goes to.
    void Set(const std::string& way, const PeerStatistics& statistics) {
        const std::lock_guard lock(figuresMutex);
        figures[way] = FiguresFrom(statistics);
    }
    void Forget(const std::string& way) {
        const std::lock_guard lock(figuresMutex);
        figures.erase(way);
    }
    [[nodiscard]] std::vector<ParticipantFigures> All() const {
        const std::lock_guard lock(figuresMutex);
        std::vector<ParticipantFigures> all;
        for (const auto& [way, figure] : figures) all.push_back(figure);
        return all;
    }

private:
    mutable std::mutex figuresMutex;  // guards: figures
    std::map<std::string, ParticipantFigures> figures;
};

}  // namespace Corvanta::Engine
