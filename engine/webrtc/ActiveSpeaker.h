// Decides who speaks, from the loudness of everybody's sound. Somebody takes the picture by a second of
// speech: pauses as between syllables count as part of it, shorter noises never suffice. Who has the picture
// keeps it until another does the same and is the loudest of those who speak, by a margin. Reports come on
// the engine's thread, questions on any; both answer from memory.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

namespace Corvanta::Engine {

class ActiveSpeaker final {
public:
    using Time = std::chrono::steady_clock::time_point;

    // Participants are told apart by numbers, which grow in the order in which they join.
    using Number = std::uint64_t;

    // Whoever has not joined, or has gone, is not listened to. A number never joins twice.
    void ReportJoined(Number participant);
    void ReportGone(Number participant);

    // Mean square of a participant's sound since the report before, 1.0 for a full-scale square wave; 0 for
    // one who is muted. Some ten reports a second are wanted of everybody.
    void ReportLoudness(Number participant, double meanSquare, Time now);
    // A participant has delivered a picture.
    void ReportPicture(Number participant);

    // Who spoke last, or speaks now. Until anybody has spoken: of those who have a picture, the one who
    // joined first. Nothing when there is none.
    [[nodiscard]] std::optional<Number> Get() const;
    // Whether it is that one's turn and it is heard, but for the pauses of speech.
    [[nodiscard]] bool IsSpeaking(Number participant, Time now) const;

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
    };

    static void Note(Voice& voice, double meanSquare, Time now);
    // Whether the voice speaks at that moment, and whether its last speech lasted that long.
    [[nodiscard]] static bool Speaks(const Voice& voice, Time now);
    [[nodiscard]] static bool HasSpoken(const Voice& voice, std::chrono::milliseconds duration);
    // Of the speech in the window; what is neither pause nor a loud click in between.
    [[nodiscard]] static double Loudness(const Voice& voice);

    mutable std::mutex voicesMutex;  // guards: everything below
    std::map<Number, Voice> voices;
    std::optional<Number> speaker;
};

}  // namespace Corvanta::Engine
