// What a forwarding server says, read out of its JSON texts: one object a text, as its WebSocket interface
// sends them. Values; any thread. Whatever comes is bounded: lists and names are cut, and what is too long
// for its purpose is refused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Corvanta::Engine {

// A text of the server's at most, and what of its parts is taken.
inline constexpr std::size_t kLongestServerText = std::size_t{1024} * 1024;
inline constexpr std::size_t kLongestFeedId = 128;
inline constexpr std::size_t kLongestDisplay = 2048;
inline constexpr std::size_t kLongestReason = 256;
inline constexpr std::size_t kMostFeeds = 256;
inline constexpr std::size_t kMostStreams = 32;

// One published feed of a room.
struct JanusFeed {
    std::string id;
    // What its publisher says of it; see FeedFacts.h.
    std::string display;

    bool operator==(const JanusFeed&) const = default;
};

// One part of what a subscription carries.
struct JanusStream {
    std::string mid;
    // "audio", "video", "data".
    std::string type;

    bool operator==(const JanusStream&) const = default;
};

// An offer or an answer.
struct JanusDescription {
    bool isOffer = true;
    std::string sdp;
};

struct JanusCandidate {
    std::uint32_t mediaLine = 0;
    std::string text;
};

// What the plugin for rooms says. Absent members are empty. An id may be a text or a number; "ok" stands for
// the very handle that hears it.
struct JanusRoomWords {
    // "joined", "event", "attached", "created", "success", "destroyed" and others.
    std::string kind;
    // 0: no error.
    int errorCode = 0;
    std::string error;
    // Of the one that hears it, where it has joined.
    std::string id;
    std::vector<JanusFeed> publishers;
    // All in the room who publish; there is a difference between nobody and not said.
    std::optional<std::vector<JanusFeed>> participants;
    std::string leaving;
    std::string unpublished;
    std::string kicked;
    std::string reason;
    std::vector<JanusStream> streams;
};

struct JanusMessage {
    enum class Kind {
        Success,
        // The request is being looked at; an event with its transaction follows.
        Ack,
        Error,
        Event,
        // The handle's connection is up, or has ended.
        WebRtcUp,
        Hangup,
        // The handle, or the session, is no more.
        Detached,
        Timeout,
        Trickle,
        Other,
    };

    Kind kind = Kind::Other;
    // Of the request that it answers; empty for none.
    std::string transaction;
    // The handle that it is about; 0 for none.
    std::uint64_t handle = 0;
    // The new session's or handle's.
    std::uint64_t id = 0;
    // Of an error.
    int errorCode = 0;
    // Of an error or a hangup.
    std::string reason;
    std::optional<JanusRoomWords> room;
    std::optional<JanusDescription> description;
    std::optional<JanusCandidate> candidate;
};

// Error codes, of the server and of its plugin for rooms.
namespace JanusErrors {
inline constexpr int kRefusedToken = 403;
inline constexpr int kNoSuchSession = 458;
inline constexpr int kNoSuchRoom = 426;
inline constexpr int kBadElement = 430;
inline constexpr int kRoomFull = 432;
inline constexpr int kNotPublished = 435;
inline constexpr int kIdTaken = 436;
}  // namespace JanusErrors

// Nothing for what is no message: too long, no JSON object, without a kind. What of its parts cannot be used
// is left out.
[[nodiscard]] std::optional<JanusMessage> ReadJanusMessage(std::string_view text);

// The server's offers leave it open who begins to shake hands, and then both may wait for a second. Has the
// server begin.
[[nodiscard]] std::string WithServerBeginning(std::string sdp);

}  // namespace Corvanta::Engine
