// What a room's hub and its clients say to each other: one JSON object a line, with its kind under "kind".
// Values; any thread.
//
// A client begins with hello and gets welcome or refused. Then it hears of who comes and goes, and has
// messages carried. Each pair of members is told of the other in one order: one finds the other in its
// welcome, the other hears joined.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Corvanta::Engine {

constexpr int kRoomVersion = 1;
// With its line feed.
constexpr std::size_t kLongestLine = std::size_t{512} * 1024;
constexpr std::size_t kLongestName = 256;
constexpr std::size_t kLongestId = 64;
constexpr std::size_t kMostAtHub = 64;

struct RoomMember {
    std::string id;
    std::string name;

    bool operator==(const RoomMember&) const = default;
};

namespace RoomMessages {

// Of another version than ours nothing but the version is read.
struct Hello {
    int version = kRoomVersion;
    std::string name;
    // Empty, or the id that the client had with the hub before.
    std::string id;
    // The client's own secret, from which its id is made.
    std::string key;
    // The members that it knows from the hub before.
    std::vector<std::string> known = {};
    bool operator==(const Hello&) const = default;
};

struct Welcome {
    std::string id;
    // The client is the one that it was; else it is new to all, whatever it was before.
    bool returned = false;
    // The others.
    std::vector<RoomMember> members;
    // Those of them who know the client and are known to it since the hub before. The rest are new to it,
    // even if it has met them.
    std::vector<std::string> known = {};
    bool operator==(const Welcome&) const = default;
};

struct Joined {
    RoomMember member;
    // It is the one that the receiver knew; else it is new, even if the receiver has met it.
    bool returned = false;
    bool operator==(const Joined&) const = default;
};

struct Left {
    std::string id;
    // It said so itself, and did not just go away.
    bool orderly = false;
    bool operator==(const Left&) const = default;
};

// A new hub waits no longer for those who knew the one before: these are all, the client itself among them.
struct Settled {
    std::vector<std::string> ids;
    bool operator==(const Settled&) const = default;
};

// A client's message for another one.
struct To {
    std::string member;
    std::string payload;
    bool operator==(const To&) const = default;
};

struct From {
    std::string member;
    std::string payload;
    bool operator==(const From&) const = default;
};

// A client's last word.
struct Leaving {
    bool operator==(const Leaving&) const = default;
};

// The hub's last word to a client.
struct Refused {
    std::string reason;
    bool operator==(const Refused&) const = default;
};

// Of a kind that is not known here; to be passed over.
struct Unknown {
    bool operator==(const Unknown&) const = default;
};

}  // namespace RoomMessages

using RoomMessage =
    std::variant<RoomMessages::Hello, RoomMessages::Welcome, RoomMessages::Joined, RoomMessages::Left,
                 RoomMessages::Settled, RoomMessages::To, RoomMessages::From, RoomMessages::Leaving,
                 RoomMessages::Refused, RoomMessages::Unknown>;

// Reads a line without its line feed. Nothing when it is malformed: no JSON object with a kind, a field of a
// known kind missing, of another type or beyond its bound. Names and reasons are cut instead.
[[nodiscard]] std::optional<RoomMessage> ReadRoomMessage(std::string_view line);

// The line with its line feed, which may be beyond kLongestLine. Bytes that are no UTF-8 are replaced, names
// and reasons cut. Unknown gives a line that every reader passes over.
[[nodiscard]] std::string WriteRoomMessage(const RoomMessage& message);

// 1 to kLongestId of the characters 0 to 9, a to f and the hyphen.
[[nodiscard]] bool IsMemberId(std::string_view text);

// At most kLongestName bytes of it, with no character cut through.
[[nodiscard]] std::string CutName(std::string_view name);

// The id that belongs to a client's key. The same in every hub, so that a member keeps it when the hub
// changes and nobody else can have it.
[[nodiscard]] std::string MemberIdOf(const std::string& key);

}  // namespace Corvanta::Engine
