#include "engine/transport/TextLine.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr std::string_view kConfirmation = "r1 ";

// Before the next confirmation; a decent other side has at most half of it under way.
constexpr std::size_t kMostUnconfirmedBytes = 2 * (TextLine::kMostKept + 2 * kLongestText);
// Counting from further on would come to the end of the numbers.
constexpr std::uint64_t kLastSequence = std::numeric_limits<std::uint64_t>::max() / 2;

std::size_t Cost(const std::string& text) {
    return text.size() + TextLine::kBytesPerText;
}

}  // namespace

TextLine::TextLine(EngineLoop& engineLoop, std::string peerName, Events lineEvents)
    : loop(engineLoop),
      name(std::move(peerName)),
      events(std::move(lineEvents)),
      rate(kMessagesPerSecond, kMessagesPerSecond),
      byteRate(kBytesPerSecond, static_cast<double>(kLongestText)) {}

void TextLine::Open() {
    Close();
    isOpen = true;
    joiner.emplace(name);
    Confirm();
}

void TextLine::Close() {
    isOpen = isReady = isConfirming = confirmsWhenDrained = false;
    ++channel;
    sent = 0;
    pieces.clear();
    joiner.reset();
    unconfirmed = unconfirmedBytes = 0;
}

void TextLine::Send(std::string text) {
    if (text.size() > kLongestText) {
        LOG(kLogWarning, "A text of %zu bytes for \"%s\" is too long to be sent", text.size(), name.c_str());
        return;
    }
    // One of which the other side has the beginning is brought to its end.
    const std::size_t spared = pieces.empty() ? 0 : Cost(kept[sent].text);
    while (keptBytes - spared + Cost(text) > kMostKept) {
        const std::size_t oldest = spared > 0 && sent == 0 ? 1 : 0;
        if (oldest >= kept.size()) break;
        Drop(oldest);
    }
    keptBytes += Cost(text);
    kept.push_back({++lastSequence, std::move(text)});
    Pump();
}

void TextLine::Drop(std::size_t index) {
    const auto place = kept.begin() + static_cast<std::ptrdiff_t>(index);
    keptBytes -= Cost(place->text);
    if (index < sent) --sent;
    kept.erase(place);
    NoteDrop();
}

void TextLine::NoteDrop() {
    if (dropped++ > 0) return;
    LOG(kLogWarning, "\"%s\" cannot be reached, and more waits for it than is kept: the oldest texts go",
        name.c_str());
}

void TextLine::Pump() {
    if (!isOpen || !isReady) return;
    while (sent < kept.size() && sent < kMostUnconfirmed && SendNext()) {
    }
}

void TextLine::OnDrained() {
    if (std::exchange(confirmsWhenDrained, false)) Confirm();
    Pump();
}

bool TextLine::SendNext() {
    if (pieces.empty()) {
        const Kept& next = kept[sent];
        auto split = SplitText(next.text, next.sequence);
        pieces.assign(std::make_move_iterator(split.begin()), std::make_move_iterator(split.end()));
    }
    while (!pieces.empty()) {
        if (!events.send(pieces.front())) return false;
        pieces.pop_front();
    }
    ++sent;
    return true;
}

void TextLine::Take(const std::string& message) {
    if (!joiner) return;
    if (message.starts_with(kConfirmation)) {
        TakeConfirmation(std::string_view(message).substr(kConfirmation.size()));
        return;
    }
    const auto now = TextJoiner::Clock::now();
    auto text = joiner->Take(message, now);
    // What is not the last piece of a text costs too, but a long text may come as fast as it can.
    if (!text) return;
    const std::uint64_t sequence = joiner->LastSequence();
    // Came over an earlier channel, whose end kept the confirmation from arriving.
    if (sequence <= received) return;
    unconfirmedBytes += text->size();
    if (++unconfirmed > 2 * kMostUnconfirmed || unconfirmedBytes > kMostUnconfirmedBytes) {
        if (!std::exchange(excessWasLogged, true))
            LOG(kLogWarning, "\"%s\" sends more than can be read, and not all of it is", name.c_str());
        return;
    }
    received = sequence;
    const auto rest =
        std::max(rate.Charge(now, 1.0), byteRate.Charge(now, static_cast<double>(text->size())));
    ConfirmAfter(std::max(kConfirmAfter, rest));
    events.text(std::move(*text));
}

void TextLine::ConfirmAfter(std::chrono::milliseconds wait) {
    if (std::exchange(isConfirming, true)) return;
    loop.PostAfter(wait, [weak = weak_from_this(), asked = channel] {
        const auto self = weak.lock();
        if (self && self->channel == asked) self->Confirm();
    });
}

void TextLine::Confirm() {
    std::string message(kConfirmation);
    message += std::to_string(received);
    isConfirming = false;
    if (events.send(message)) {
        unconfirmed = unconfirmedBytes = 0;
    } else {
        confirmsWhenDrained = true;
    }
}

void TextLine::TakeConfirmation(std::string_view number) {
    std::uint64_t sequence = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), sequence);
    if (error != std::errc() || end != number.data() + number.size()) return;
    if (sequence > lastSequence) {
        if (isReady || sequence > kLastSequence) return;
        ContinueFrom(sequence);
    }
    while (!kept.empty() && kept.front().sequence <= sequence) {
        // It may confirm only what it was sent, so nothing that is being sent goes here.
        if (isReady && sent == 0) break;
        keptBytes -= Cost(kept.front().text);
        kept.pop_front();
        if (sent > 0) --sent;
    }
    isReady = true;
    if (kept.empty() && dropped > 0) {
        LOG(kLogWarning, "\"%s\" can be reached again; %zu texts for it are lost", name.c_str(), dropped);
        dropped = 0;
    }
    Pump();
}

void TextLine::ContinueFrom(std::uint64_t sequence) {
    // Nothing of them is on this channel yet.
    for (Kept& text : kept) text.sequence = ++sequence;
    lastSequence = sequence;
}

}  // namespace Corvanta::Engine
