#include "engine/janus/JanusMessage.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <utility>

#include "engine/peer/PeerDescription.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;
using Kind = JanusMessage::Kind;

// No message of the server's is nested deeper.
constexpr int kDeepest = 12;
constexpr std::size_t kLongestWord = 64;

constexpr std::array kKinds{
    std::pair{"success", Kind::Success},   std::pair{"ack", Kind::Ack},
    std::pair{"error", Kind::Error},       std::pair{"event", Kind::Event},
    std::pair{"webrtcup", Kind::WebRtcUp}, std::pair{"hangup", Kind::Hangup},
    std::pair{"detached", Kind::Detached}, std::pair{"timeout", Kind::Timeout},
    std::pair{"trickle", Kind::Trickle},
};

const json* Find(const json& object, const char* key) {
    if (!object.is_object()) return nullptr;
    const auto place = object.find(key);
    return place == object.end() ? nullptr : &*place;
}

// At most that many bytes; no character is cut through.
std::string Cut(const std::string& text, std::size_t longest) {
    if (text.size() <= longest) return text;
    std::size_t end = longest;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return text.substr(0, end);
}

std::string TextOf(const json& object, const char* key, std::size_t longest) {
    const json* value = Find(object, key);
    if (value == nullptr || !value->is_string()) return {};
    return Cut(value->get_ref<const std::string&>(), longest);
}

// One that is too long is none: it would be another one when it is cut.
std::string IdOf(const json& object, const char* key) {
    const json* value = Find(object, key);
    if (value == nullptr) return {};
    if (value->is_number_unsigned()) return std::to_string(value->get<std::uint64_t>());
    if (!value->is_string()) return {};
    const auto& text = value->get_ref<const std::string&>();
    return text.size() <= kLongestFeedId ? text : std::string();
}

std::uint64_t NumberOf(const json& object, const char* key) {
    const json* value = Find(object, key);
    return value != nullptr && value->is_number_unsigned() ? value->get<std::uint64_t>() : 0;
}

int CodeOf(const json& object, const char* key) {
    const std::uint64_t code = NumberOf(object, key);
    return code <= 9999 ? static_cast<int>(code) : 9999;
}

// Those of the list that have an id; with `onlyPublishers`, those that publish something.
std::vector<JanusFeed> FeedsOf(const json& list, bool onlyPublishers) {
    std::vector<JanusFeed> feeds;
    if (!list.is_array()) return feeds;
    for (const json& entry : list) {
        if (feeds.size() >= kMostFeeds) break;
        if (onlyPublishers) {
            const json* publishes = Find(entry, "publisher");
            if (publishes == nullptr || !publishes->is_boolean() || !publishes->get<bool>()) continue;
        }
        JanusFeed feed{IdOf(entry, "id"), TextOf(entry, "display", kLongestDisplay)};
        if (!feed.id.empty()) feeds.push_back(std::move(feed));
    }
    return feeds;
}

std::vector<JanusStream> StreamsOf(const json& list) {
    std::vector<JanusStream> streams;
    if (!list.is_array()) return streams;
    for (const json& entry : list) {
        if (streams.size() >= kMostStreams) break;
        JanusStream stream{TextOf(entry, "mid", kLongestWord), TextOf(entry, "type", kLongestWord)};
        if (!stream.mid.empty()) streams.push_back(std::move(stream));
    }
    return streams;
}

JanusRoomWords RoomWordsOf(const json& data) {
    JanusRoomWords words;
    words.kind = TextOf(data, "videoroom", kLongestWord);
    words.errorCode = CodeOf(data, "error_code");
    words.error = TextOf(data, "error", kLongestReason);
    words.id = IdOf(data, "id");
    words.leaving = IdOf(data, "leaving");
    words.unpublished = IdOf(data, "unpublished");
    words.kicked = IdOf(data, "kicked");
    words.reason = TextOf(data, "reason", kLongestReason);
    if (const json* publishers = Find(data, "publishers")) words.publishers = FeedsOf(*publishers, false);
    if (const json* all = Find(data, "participants")) words.participants = FeedsOf(*all, true);
    if (const json* streams = Find(data, "streams")) words.streams = StreamsOf(*streams);
    return words;
}

std::optional<JanusDescription> DescriptionOf(const json& jsep) {
    const std::string type = TextOf(jsep, "type", kLongestWord);
    const json* sdp = Find(jsep, "sdp");
    if ((type != "offer" && type != "answer") || sdp == nullptr || !sdp->is_string()) return std::nullopt;
    const auto& text = sdp->get_ref<const std::string&>();
    if (text.size() > kMaxDescriptionBytes) return std::nullopt;
    return JanusDescription{type == "offer", text};
}

std::optional<JanusCandidate> CandidateOf(const json& object) {
    JanusCandidate candidate;
    candidate.text = TextOf(object, "candidate", kMaxCandidateBytes);
    const std::uint64_t line = NumberOf(object, "sdpMLineIndex");
    if (candidate.text.empty() || line >= kMaxMediaLines) return std::nullopt;
    candidate.mediaLine = static_cast<std::uint32_t>(line);
    return candidate;
}

}  // namespace

std::optional<JanusMessage> ReadJanusMessage(std::string_view text) {
    if (text.size() > kLongestServerText) return std::nullopt;
    // What is nested deeper is left out, so that no text makes a deep tree.
    const json object = json::parse(
        text, [](int depth, json::parse_event_t, json&) { return depth <= kDeepest; }, false);
    const std::string word = TextOf(object, "janus", kLongestWord);
    if (word.empty()) return std::nullopt;

    JanusMessage message;
    for (const auto& [known, kind] : kKinds) {
        if (word == known) message.kind = kind;
    }
    message.transaction = TextOf(object, "transaction", kLongestWord);
    message.handle = NumberOf(object, "sender");
    message.reason = TextOf(object, "reason", kLongestReason);
    if (const json* data = Find(object, "data")) message.id = NumberOf(*data, "id");
    if (const json* error = Find(object, "error")) {
        message.errorCode = CodeOf(*error, "code");
        message.reason = TextOf(*error, "reason", kLongestReason);
    }
    if (const json* plugin = Find(object, "plugindata")) {
        if (const json* data = Find(*plugin, "data")) message.room = RoomWordsOf(*data);
    }
    if (const json* jsep = Find(object, "jsep")) message.description = DescriptionOf(*jsep);
    if (const json* candidate = Find(object, "candidate")) message.candidate = CandidateOf(*candidate);
    return message;
}

std::string WithServerBeginning(std::string sdp) {
    constexpr std::string_view kOpen = "a=setup:actpass";
    constexpr std::string_view kBegins = "a=setup:active";
    for (auto place = sdp.find(kOpen); place != std::string::npos; place = sdp.find(kOpen, place)) {
        sdp.replace(place, kOpen.size(), kBegins);
        place += kBegins.size();
    }
    return sdp;
}

}  // namespace Corvanta::Engine
