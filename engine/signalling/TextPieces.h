// Long texts over a data channel, which loses messages of 64 KiB and more without a word: the sender cuts
// them into pieces, the receiver joins them again. One thread.
//
// A piece is a line of decimal numbers and then a part of the text's bytes:
//
//   t1 SEQUENCE OFFSET TOTAL\n...
//
// SEQUENCE tells the texts of one channel apart and rises from text to text, OFFSET is the place of the bytes
// in the text, TOTAL the text's length. Pieces of different texts may alternate.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Corvanta::Engine {

// On the wire, with the line of numbers.
constexpr std::size_t kLongestPiece = std::size_t{16} * 1024;
// What a receiver joins.
constexpr std::size_t kLongestText = std::size_t{64} * 1024 * 1024;

// The pieces of a text, in the order in which they are to be sent; at least one. Cuts between characters
// where the text is UTF-8. A text beyond kLongestText is cut as any other, and no receiver takes it.
[[nodiscard]] std::vector<std::string> SplitText(std::string_view text, std::uint64_t sequence);

struct TextPiece {
    std::uint64_t sequence = 0;
    std::uint64_t offset = 0;
    std::uint64_t total = 0;
    // Of the text that was read.
    std::string_view bytes;
};

// Whether the message is meant as a piece: something else may go over the same channel.
[[nodiscard]] bool IsTextPiece(std::string_view message);

// Nothing where it makes no sense, or is beyond kLongestPiece.
[[nodiscard]] std::optional<TextPiece> ReadTextPiece(std::string_view message);

// Joins what one sender sends over one channel, in order. A piece that is garbage or came already is passed
// over. A text of which a piece is missing or contradicts the others, that is too long, or whose first piece
// came too long ago is dropped whole, and never mixed with another. The first of such troubles is logged,
// then one in kSilence at most.
class TextJoiner final {
public:
    using Clock = std::chrono::steady_clock;

    // Texts that are begun at a time; one more, and the oldest goes.
    static constexpr std::size_t kMostUnfinished = 8;
    // What is kept of all that are begun; beyond, the oldest goes.
    static constexpr std::size_t kMostBytes = kLongestText;
    static constexpr std::chrono::seconds kLongestWait{30};
    static constexpr std::chrono::seconds kSilence{10};

    // `sender` is for the log.
    explicit TextJoiner(std::string sender);

    // The text that this piece completes. `now` never goes back.
    [[nodiscard]] std::optional<std::string> Take(std::string_view piece, Clock::time_point now);
    // The SEQUENCE of the last text that Take has returned; 0 before.
    [[nodiscard]] std::uint64_t LastSequence() const { return lastSequence; }
    // Drops what is too old. Take does it as well.
    void Expire(Clock::time_point now);

    [[nodiscard]] std::size_t UnfinishedTexts() const { return unfinished.size(); }
    [[nodiscard]] std::size_t UnfinishedBytes() const { return unfinishedBytes; }

private:
    struct Unfinished {
        std::size_t total = 0;
        std::string bytes;
        Clock::time_point begun;
    };
    // By sequence, and thus by age.
    using Texts = std::map<std::uint64_t, Unfinished>;

    void Begin(std::uint64_t sequence, std::size_t total, Clock::time_point now);
    void Drop(Texts::iterator text, const char* reason, Clock::time_point now);
    void Complain(const char* reason, Clock::time_point now);

    const std::string sender;
    Texts unfinished;
    std::size_t unfinishedBytes = 0;
    // Beginnings up to this one have been here.
    std::optional<std::uint64_t> newest;
    std::uint64_t lastSequence = 0;
    std::optional<Clock::time_point> complained;
};

}  // namespace Corvanta::Engine
