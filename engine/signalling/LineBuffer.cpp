#include "engine/signalling/LineBuffer.h"

namespace Corvanta::Engine {

LineBuffer::LineBuffer(std::size_t longestLine) : limit(longestLine) {}

void LineBuffer::Add(std::string_view bytes) {
    if (isTooLong) return;
    held.erase(0, begin);
    searched -= begin;
    begin = 0;
    held += bytes;
}

std::optional<std::string> LineBuffer::Next() {
    if (isTooLong) return std::nullopt;
    const std::size_t end = held.find('\n', searched);
    const bool isWhole = end != std::string::npos;
    searched = isWhole ? end + 1 : held.size();
    if (searched - begin > limit || (!isWhole && searched - begin == limit)) {
        isTooLong = true;
        std::string().swap(held);
        return std::nullopt;
    }
    if (!isWhole) {
        // A long line leaves no memory behind.
        if (begin == held.size()) {
            std::string().swap(held);
            begin = searched = 0;
        }
        return std::nullopt;
    }
    std::string line = held.substr(begin, end - begin);
    begin = searched;
    return line;
}

}  // namespace Corvanta::Engine
