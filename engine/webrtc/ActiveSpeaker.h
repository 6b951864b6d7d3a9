// Decides who speaks, from the loudness of everybody's sound. Somebody takes the picture by a second of
// speech: pauses as between syllables count as part of it, shorter noises never suffice. Who has the picture
// keeps it until another does the same and is the loudest of those who speak, by a margin. Reports come on
// the engine's thread, questions on any; both answer from memory.
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

    // Mean square of a participant's sound since the report before, 1.0 for a full-scale square wave; 0 for
    // one who is muted. Some ten reports a second are wanted of everybody.
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
        // Since speech began, but no longer than the window.
        std::deque<Report> reports;
        // Of this run's reports that are loud enough for speech: the first, the last but one, the last.
        Time first, certain, latest;
        bool isSpeaking = false;
        bool hasPicture = false;
        bool isGone = false;
    };

    static void Note(Voice& voice, double meanSquare, Time now);
    // Whether the voice speaks at that moment, and whether its last speech lasted that long.
    [[nodiscard]] static bool Speaks(const Voice& voice, Time now);
    [[nodiscard]] static bool HasSpoken(const Voice& voice, std::chrono::milliseconds duration);
    // Of the speech in the window; what is neither pause nor a loud click in between.
    [[nodiscard]] static double Loudness(const Voice& voice);

    mutable std::mutex voicesMutex;  // guards: everything below
    std::vector<Voice> voices;
    std::optional<std::size_t> speaker;
};

}  // namespace Corvanta::Engine
