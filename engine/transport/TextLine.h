// Texts between two participants over channels that come and go: each arrives once and in order, whichever
// channel it takes, as long as both sides stay. A channel may lose what is on its way when it ends, so a text
// is kept until the other side has confirmed it. The engine's thread alone.
//
// On the channel go the pieces of TextPieces, in order, and between them lines of the form
//
//   r1 SEQUENCE
//
// which confirm all texts up to that one: the first message of each side on every channel, then soon after
// texts have come. No piece is sent before the other side's first confirmation. If that one confirms what was
// never sent, the other side has had another line before this one, whose numbers this one continues.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "engine/common/EngineLoop.h"
#include "engine/signalling/RateLimit.h"
#include "engine/signalling/TextPieces.h"

namespace Corvanta::Engine {

class TextLine final : public std::enable_shared_from_this<TextLine> {
public:
    // What is kept for the other side at most, apart from the newest text and one that is just being sent;
    // beyond, the oldest go. Each text counts with what it takes to keep it.
    static constexpr std::size_t kMostKept = std::size_t{8} * 1024 * 1024;
    static constexpr std::size_t kBytesPerText = 64;
    // Texts that are under way at a time without being confirmed. Who sends twice as many, or twice as much
    // as a line keeps, is not read.
    static constexpr std::size_t kMostUnconfirmed = 256;
    // Of texts, in the long run: whoever sends more has them confirmed later. The longest text has its turn.
    static constexpr double kBytesPerSecond = 8.0 * 1024 * 1024;
    // How long a confirmation may wait for more texts to confirm.
    static constexpr std::chrono::milliseconds kConfirmAfter{50};

    struct Events {
        // Sends one message over the channel that is open; false when it takes nothing more at the moment.
        std::function<bool(const std::string& message)> send;
        // The other side's text. May call the line, and let go of it.
        std::function<void(std::string text)> text;
    };

    // `peerName` is for the log.
    TextLine(EngineLoop& engineLoop, std::string peerName, Events lineEvents);
    TextLine(const TextLine&) = delete;
    TextLine& operator=(const TextLine&) = delete;

    // A new channel is open. What was not confirmed is sent over it.
    void Open();
    // It is gone, or the line has come to its end.
    void Close();
    // The channel takes messages again after it has refused one.
    void OnDrained();

    // Keeps the text until it is confirmed. One beyond kLongestText is let go of.
    void Send(std::string text);
    // A message of the other side's, which may be anything.
    void Take(const std::string& message);

    [[nodiscard]] std::size_t Unconfirmed() const { return kept.size(); }

private:
    struct Kept {
        std::uint64_t sequence = 0;
        std::string text;
    };

    void Pump();
    // False when the channel takes nothing more.
    bool SendNext();
    void Confirm();
    void ConfirmAfter(std::chrono::milliseconds wait);
    void TakeConfirmation(std::string_view number);
    void ContinueFrom(std::uint64_t sequence);
    void Drop(std::size_t index);
    void NoteDrop();

    EngineLoop& loop;
    const std::string name;
    const Events events;

    // Ours: what is not confirmed, the first `sent` of them sent whole over this channel, and the pieces of
    // the next one that are still to be sent.
    std::deque<Kept> kept;
    std::size_t keptBytes = 0;
    std::size_t sent = 0;
    std::deque<std::string> pieces;
    std::uint64_t lastSequence = 0;
    std::size_t dropped = 0;

    // Theirs.
    std::optional<TextJoiner> joiner;
    std::uint64_t received = 0;
    std::size_t unconfirmed = 0;
    std::size_t unconfirmedBytes = 0;
    RateLimit rate;
    RateLimit byteRate;
    bool excessWasLogged = false;

    bool isOpen = false;
    // The other side has said what it has.
    bool isReady = false;
    bool isConfirming = false;
    // A confirmation was refused.
    bool confirmsWhenDrained = false;
    // Tells the timers of one channel from those of another.
    std::uint64_t channel = 0;
};

}  // namespace Corvanta::Engine
