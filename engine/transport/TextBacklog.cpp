#include "engine/transport/TextBacklog.h"

#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

std::size_t Cost(const std::string& text) {
    return text.size() + TextBacklog::kBytesPerText;
}

}  // namespace

void TextBacklog::Send(std::string text, const Taker& take) {
    if (IsEmpty() && take(text)) return;
    Keep(std::move(text));
    Flush(take);
}

void TextBacklog::Keep(std::string text) {
    const std::size_t cost = Cost(text);
    if (cost > kMostBytes) {
        NoteDrop();
        return;
    }
    while (bytes + cost > kMostBytes) {
        bytes -= Cost(texts.front());
        texts.pop_front();
        NoteDrop();
    }
    bytes += cost;
    texts.push_back(std::move(text));
}

void TextBacklog::NoteDrop() {
    if (dropped++ > 0) return;
    LOG(kLogWarning, "\"%s\" cannot be reached, and more waits for it than is kept: the oldest texts go",
        receiver.c_str());
}

void TextBacklog::Flush(const Taker& take) {
    // Whoever takes one may send another, which then comes behind.
    if (isFlushing) return;
    isFlushing = true;
    while (!texts.empty()) {
        // Out of the queue meanwhile, so that a new one that needs room cannot take its place.
        std::string text = std::move(texts.front());
        texts.pop_front();
        bytes -= Cost(text);
        if (take(text)) continue;
        if (bytes + Cost(text) <= kMostBytes) {
            bytes += Cost(text);
            texts.push_front(std::move(text));
        } else {
            NoteDrop();
        }
        break;
    }
    isFlushing = false;
    if (!texts.empty() || dropped == 0) return;
    LOG(kLogWarning, "\"%s\" can be reached again; %zu texts for it are lost", receiver.c_str(), dropped);
    dropped = 0;
}

}  // namespace Corvanta::Engine
