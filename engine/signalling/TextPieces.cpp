#include "engine/signalling/TextPieces.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr std::string_view kMark = "t1";
// The mark, three numbers of at most 20 digits, and what stands between them.
constexpr std::size_t kLongestHead = kMark.size() + std::size_t{3} * 21 + 1;
constexpr std::size_t kMostBytesOfPiece = kLongestPiece - kLongestHead;
// No character of UTF-8 has more bytes that continue it.
constexpr std::size_t kMostContinued = 3;

std::string HeadOf(std::uint64_t sequence, std::size_t offset, std::size_t total) {
    std::string head(kMark);
    for (const std::uint64_t number : {sequence, std::uint64_t{offset}, std::uint64_t{total}}) {
        head += ' ';
        head += std::to_string(number);
    }
    head += '\n';
    return head;
}

// A space and a number, taken off the front.
bool TakeNumber(std::string_view& text, std::uint64_t& number) {
    if (text.empty() || text.front() != ' ') return false;
    text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool Continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// Where the piece that begins at `offset` ends.
std::size_t EndOfPiece(std::string_view text, std::size_t offset) {
    if (text.size() - offset <= kMostBytesOfPiece) return text.size();
    const std::size_t end = offset + kMostBytesOfPiece;
    std::size_t continued = 0;
    while (continued <= kMostContinued && Continues(text[end - continued])) ++continued;
    return continued <= kMostContinued ? end - continued : end;
}

}  // namespace

bool IsTextPiece(std::string_view message) {
    return message.starts_with(kMark);
}

std::optional<TextPiece> ReadTextPiece(std::string_view message) {
    std::string_view text = message;
    if (text.size() > kLongestPiece || !text.starts_with(kMark)) return std::nullopt;
    text.remove_prefix(kMark.size());
    TextPiece piece;
    if (!TakeNumber(text, piece.sequence) || !TakeNumber(text, piece.offset) ||
        !TakeNumber(text, piece.total) || text.empty() || text.front() != '\n')
        return std::nullopt;
    piece.bytes = text.substr(1);
    // Only an empty text has an empty piece.
    const bool isEmpty = piece.bytes.empty() && (piece.total != 0 || piece.offset != 0);
    const bool isBeyond = piece.offset > piece.total || piece.bytes.size() > piece.total - piece.offset;
    if (isEmpty || isBeyond) return std::nullopt;
    return piece;
}

std::vector<std::string> SplitText(std::string_view text, std::uint64_t sequence) {
    std::vector<std::string> pieces;
    std::size_t offset = 0;
    do {
        const std::size_t end = EndOfPiece(text, offset);
        std::string piece = HeadOf(sequence, offset, text.size());
        piece += text.substr(offset, end - offset);
        pieces.push_back(std::move(piece));
        offset = end;
    } while (offset < text.size());
    return pieces;
}

TextJoiner::TextJoiner(std::string senderName) : sender(std::move(senderName)) {}

std::optional<std::string> TextJoiner::Take(std::string_view message, Clock::time_point now) {
    Expire(now);
    const std::optional<TextPiece> piece = ReadTextPiece(message);
    if (!piece) {
        Complain("a piece that makes no sense", now);
        return std::nullopt;
    }
    const bool isNew = piece->offset == 0 && (!newest || piece->sequence > *newest);
    if (isNew) {
        newest = piece->sequence;
        if (piece->total > kLongestText) {
            Complain("a text that is too long", now);
            return std::nullopt;
        }
        if (piece->bytes.size() == piece->total) {
            lastSequence = piece->sequence;
            return std::string(piece->bytes);
        }
        Begin(piece->sequence, static_cast<std::size_t>(piece->total), now);
    }
    const auto place = unfinished.find(piece->sequence);
    // Of a text that was dropped or is complete.
    if (place == unfinished.end()) return std::nullopt;
    const Unfinished& text = place->second;
    if (piece->total == text.total && piece->offset < text.bytes.size() &&
        std::string_view(text.bytes).substr(piece->offset, piece->bytes.size()) == piece->bytes)
        return std::nullopt;
    if (piece->total != text.total || piece->offset != text.bytes.size()) {
        Drop(place, "a text whose pieces do not fit", now);
        return std::nullopt;
    }
    while (unfinishedBytes + piece->bytes.size() > kMostBytes)
        Drop(unfinished.begin() != place ? unfinished.begin() : std::next(place), "too many texts at a time",
             now);
    place->second.bytes += piece->bytes;
    unfinishedBytes += piece->bytes.size();
    if (place->second.bytes.size() < place->second.total) return std::nullopt;
    unfinishedBytes -= place->second.bytes.size();
    std::string whole = std::move(place->second.bytes);
    unfinished.erase(place);
    lastSequence = piece->sequence;
    return whole;
}

void TextJoiner::Expire(Clock::time_point now) {
    while (!unfinished.empty() && now - unfinished.begin()->second.begun > kLongestWait)
        Drop(unfinished.begin(), "a text without an end", now);
}

void TextJoiner::Begin(std::uint64_t sequence, std::size_t total, Clock::time_point now) {
    if (unfinished.size() == kMostUnfinished) Drop(unfinished.begin(), "too many texts at a time", now);
    // Grows with what really comes, whatever was announced.
    unfinished.emplace_hint(unfinished.end(), sequence, Unfinished{total, {}, now});
}

void TextJoiner::Drop(Texts::iterator text, const char* reason, Clock::time_point now) {
    unfinishedBytes -= text->second.bytes.size();
    unfinished.erase(text);
    Complain(reason, now);
}

void TextJoiner::Complain(const char* reason, Clock::time_point now) {
    if (complained && now - *complained < kSilence) return;
    complained = now;
    LOG(kLogWarning, "What \"%s\" sends is dropped: %s", sender.c_str(), reason);
}

}  // namespace Corvanta::Engine
