// Texts that wait, in order, until somebody can take them again: what was said to a member whose channel is
// not open, or is lost. Bounded; the oldest go first. One thread at a time.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <utility>

namespace Corvanta::Engine {

class TextBacklog final {
public:
    // Bytes that wait at most. Each text counts with what it takes to keep it.
    static constexpr std::size_t kMostBytes = std::size_t{8} * 1024 * 1024;
    static constexpr std::size_t kBytesPerText = 64;

    // Takes a text, or says that it cannot: then the text stays the first. It may call the backlog.
    using Taker = std::function<bool(const std::string& text)>;

    // `receiverName` is for the log.
    explicit TextBacklog(std::string receiverName) : receiver(std::move(receiverName)) {}

    // Offers the text to `take`, behind what waits; keeps it where it is not taken. A text that is too long
    // to be kept at all is let go of, and the others stay.
    void Send(std::string text, const Taker& take);
    // Offers what waits, in order, until nothing is left or one is not taken.
    void Flush(const Taker& take);

    [[nodiscard]] bool IsEmpty() const { return texts.empty() && !isFlushing; }
    [[nodiscard]] std::size_t Bytes() const { return bytes; }

private:
    void Keep(std::string text);
    void NoteDrop();

    const std::string receiver;
    std::deque<std::string> texts;
    std::size_t bytes = 0;
    // Since everything was taken last.
    std::size_t dropped = 0;
    bool isFlushing = false;
};

}  // namespace Corvanta::Engine
