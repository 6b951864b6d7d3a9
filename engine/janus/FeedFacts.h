// What the publisher of a feed says of it to the others in a room: the name, and what it shows. Values; any
// thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Connections.h"

namespace Corvanta::Engine {

struct FeedFacts {
    // Of the publisher, UTF-8, cut to kLongestName bytes (RoomMessage.h).
    std::string name;
    // The member whose feed it is, and its kind there.
    std::string memberId;
    StreamType type = StreamType::Camera;
    // Its publisher is one of our programs, which all speak of what they hear (RoomTexts.h).
    bool isOurs = false;

    bool operator==(const FeedFacts&) const = default;
};

// The text that goes with the feed of that member.
[[nodiscard]] std::string WriteFeedFacts(const FeedFacts& facts);

// Of the feed with that id and text, whoever wrote it: a foreign program's text is its name. Nothing where
// the id is not the one that the member's feed of that kind has.
[[nodiscard]] std::optional<FeedFacts> ReadFeedFacts(const std::string& feedId, std::string_view text);

}  // namespace Corvanta::Engine
