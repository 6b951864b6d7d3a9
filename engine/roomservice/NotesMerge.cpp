// MergeNotes of the engine's public header.
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "engine/Engine.h"

namespace Corvanta::Engine {

namespace {

// What stands in the place of base[begin, end).
struct Change {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string_view text;
};

bool IsInsideLetter(std::string_view text, std::size_t place) {
    return place < text.size() && (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U;
}

// All that differs, as one change from letter to letter.
Change ChangeOf(std::string_view base, std::string_view text) {
    const std::size_t shorter = std::min(base.size(), text.size());
    std::size_t head = 0;
    while (head < shorter && base[head] == text[head]) ++head;
    while (head > 0 && (IsInsideLetter(base, head) || IsInsideLetter(text, head))) --head;
    std::size_t tail = 0;
    while (tail < shorter - head && base[base.size() - tail - 1] == text[text.size() - tail - 1]) ++tail;
    while (tail > 0 && IsInsideLetter(base, base.size() - tail)) --tail;
    return {head, base.size() - tail, text.substr(head, text.size() - tail - head)};
}

void Append(std::string& text, std::string_view more) {
    text.append(more);
}

// Both changes, of which the first ends before the second begins.
std::string Apply(std::string_view base, const Change& first, const Change& second) {
    std::string text(base.substr(0, first.begin));
    Append(text, first.text);
    Append(text, base.substr(first.end, second.begin - first.end));
    Append(text, second.text);
    Append(text, base.substr(second.end));
    return text;
}

// What the change makes of base[begin, end), which it lies in.
std::string VersionOf(std::string_view base, const Change& change, std::size_t begin, std::size_t end) {
    std::string text(base.substr(begin, change.begin - begin));
    Append(text, change.text);
    Append(text, base.substr(change.end, end - change.end));
    return text;
}

}  // namespace

std::string MergeNotes(const std::string& base, const std::string& mine, const std::string& theirs) {
    if (mine == theirs || theirs == base) return mine;
    if (mine == base) return theirs;
    const Change own = ChangeOf(base, mine);
    const Change other = ChangeOf(base, theirs);
    if (own.end < other.begin) return Apply(base, own, other);
    if (other.end < own.begin) return Apply(base, other, own);
    // They meet: whole lines, both versions of them.
    const std::size_t first = std::min(own.begin, other.begin);
    const std::size_t last = std::max(own.end, other.end);
    const std::size_t feedBefore = first > 0 ? base.rfind('\n', first - 1) : std::string::npos;
    const std::size_t begin = feedBefore != std::string::npos ? feedBefore + 1 : 0;
    const std::size_t end = std::min(base.find('\n', last), base.size());
    const std::string ownLines = VersionOf(base, own, begin, end);
    std::string lines = VersionOf(base, other, begin, end);
    if (ownLines.find(lines) != std::string::npos) {
        lines = ownLines;
    } else if (lines.find(ownLines) == std::string::npos) {
        if (!lines.ends_with('\n')) lines += '\n';
        lines += ownLines;
    }
    std::string text = base.substr(0, begin);
    text += lines;
    text += base.substr(end);
    return text;
}

}  // namespace Corvanta::Engine
