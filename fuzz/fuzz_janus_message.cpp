// Whatever comes from a forwarding server, or from a member of a room on it: reading it must neither crash
// nor throw, and keeps to its bounds.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "engine/janus/FeedFacts.h"
#include "engine/janus/JanusMessage.h"
#include "engine/janus/RoomTexts.h"
#include "engine/peer/PeerDescription.h"

using namespace Corvanta::Engine;

namespace {

void Check(bool holds) {
    if (!holds) std::abort();
}

void CheckFeed(const JanusFeed& feed) {
    Check(!feed.id.empty() && feed.id.size() <= kLongestFeedId && feed.display.size() <= kLongestDisplay);
    const auto facts = ReadFeedFacts(feed.id, feed.display);
    if (!facts || !facts->isOurs) return;
    Check(ReadFeedFacts(feed.id, WriteFeedFacts(*facts)) == facts);
}

void ReadMessage(std::string_view text) {
    const auto message = ReadJanusMessage(text);
    if (!message) return;
    Check(message->reason.size() <= kLongestReason);
    if (message->description) {
        Check(message->description->sdp.size() <= kMaxDescriptionBytes);
        Check(WithServerBeginning(message->description->sdp).find("a=setup:actpass") == std::string::npos);
    }
    if (!message->room) return;
    Check(message->room->publishers.size() <= kMostFeeds && message->room->streams.size() <= kMostStreams);
    for (const JanusFeed& feed : message->room->publishers) CheckFeed(feed);
    if (!message->room->participants) return;
    Check(message->room->participants->size() <= kMostFeeds);
    for (const JanusFeed& feed : *message->room->participants) CheckFeed(feed);
}

// The input is lines; each of them is a text of the server's, and a message of a member's whose own line feed
// is the first '|'.
void Hear(RoomTexts& texts, std::string message, RoomTexts::Clock::time_point now) {
    const auto feed = message.find('|');
    if (feed != std::string::npos) message[feed] = '\n';
    texts.Take("ab", message, now);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::size_t said = 0;
    RoomTexts texts("cd", {.send =
                               [&](const std::string& message) {
                                   Check(message.size() <= kLongestPiece);
                                   return ++said % 5 != 0;
                               },
                           .text = [](const std::string&, const std::string&) {},
                           .channel = [](const std::string&, bool) {},
                           .tracks = [](const std::string&, const LocalTracks&) {},
                           .mute = [](const std::string&) {},
                           .begunAnew = [](const std::string&) {}});
    texts.OnOwnChannel(true);
    texts.OnEar("ab", "fuzzer", true);
    RoomTexts::Clock::time_point now;
    for (std::size_t place = 0; place < size;) {
        const std::size_t end = std::min(bytes.find('\n', place), size);
        const std::string_view line = bytes.substr(place, end - place);
        ReadMessage(line);
        Hear(texts, std::string(line), now);
        texts.Say(std::string(line));
        now += std::chrono::seconds(1);
        texts.Tick(now);
        place = end + 1;
    }
    return 0;
}
