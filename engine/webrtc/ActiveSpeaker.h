// Decides who speaks, from the loudness of everybody's sound. Reports come on the engine's thread, questions
// on any; both answer from memory.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

namespace Corvanta::Engine {

class ActiveSpeaker final {
public:
    using Time = std::chrono::steady_clock::time_point;

    // Participants are numbered in the order of the room's list.
    explicit ActiveSpeaker(std::size_t participants);

    // Mean square of a piece of a participant's sound, 1.0 for a full-scale square wave.
    void ReportLoudness(std::size_t participant, double meanSquare, Time now);
    // A participant has delivered a picture, or has left.
    void ReportPicture(std::size_t participant);
    void ReportGone(std::size_t participant);

    // Who spoke last, or speaks now. Until anybody has spoken: the first of the list who has a picture.
    // Nothing when there is none.
    [[nodiscard]] std::optional<std::size_t> Get() const;

private:
    struct Report {
        Time time;
        double meanSquare = 0;
    };
    struct Voice {
        std::deque<Report> reports;
        bool hasPicture = false;
        bool isGone = false;
    };

    [[nodiscard]] static double Loudness(const Voice& voice);

    mutable std::mutex voicesMutex;  // guards: everything below
    std::vector<Voice> voices;
    std::optional<std::size_t> speaker;
};

}  // namespace Corvanta::Engine
