// What a guest does and when: a mark drawn, one taken back, a line of the chat, its turns to speak. Plain
// values: the same role gives the same acts. One thread at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>

#include "engine/webrtc/ClipScene.h"

namespace Corvanta::Guest {

// One among the guests of a room, who do not all do the same at the same time.
struct GuestRole {
    std::uint32_t seed = 1;
    std::size_t index = 0;
    std::size_t count = 1;
    // When the first of them begins to draw; the others follow it. Empty: never.
    std::optional<std::chrono::milliseconds> drawAfter = std::chrono::seconds(5);
};

struct GuestAct {
    enum class Kind { Draw, TakeBack, Chat };

    Kind kind = Kind::Draw;
    // Since the guest has entered; never earlier than that of the act before.
    std::chrono::milliseconds at{0};
    // Draw: a number that chooses one of the others' streams, however many there are. Nothing: its own.
    std::optional<std::uint32_t> othersStream = {};
    // Chat: what it writes.
    std::string line = {};

    bool operator==(const GuestAct&) const = default;
};

class GuestScript final {
public:
    // The most marks of one guest that stand at a time.
    static constexpr std::size_t kMostMarks = 2;
    // From one act to the next, over all guests of the room: marks, and lines of the chat.
    static constexpr std::chrono::milliseconds kShortestDrawWait{6000}, kLongestDrawWait{10000};
    static constexpr std::chrono::milliseconds kShortestChatWait{20000}, kLongestChatWait{40000};

    explicit GuestScript(const GuestRole& guestRole);

    // When it speaks: in turns with the others.
    [[nodiscard]] Engine::SpeakingTurn Turn() const { return {.index = role.index, .count = role.count}; }

    // The next act; there is always one more.
    [[nodiscard]] GuestAct Next();

private:
    using Milliseconds = std::chrono::milliseconds;

    [[nodiscard]] Milliseconds Wait(Milliseconds shortest, Milliseconds longest);
    [[nodiscard]] GuestAct NextMark();
    [[nodiscard]] GuestAct NextLine();

    const GuestRole role;
    std::mt19937 random;
    std::optional<Milliseconds> markAt;
    Milliseconds lineAt;
    std::size_t standing = 0;
    // Counted on from one act to the next.
    std::size_t marks, lines;
};

// Where a guest's clip stands at that moment, so that guests of several programs and machines take their
// turns by one clock. Below an hour.
[[nodiscard]] std::chrono::nanoseconds ClipTimeAt(std::chrono::system_clock::time_point now,
                                                  const Engine::SpeakingTurn& turn);

}  // namespace Corvanta::Guest
