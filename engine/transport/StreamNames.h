// How a member's streams are called: the id under which each kind is published, and the word for the local
// user's sources in the media manager. Plain functions of values.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Connections.h"

namespace Corvanta::Engine {

// "camera", "screen" and so on; empty for an unknown kind.
[[nodiscard]] std::string StreamWord(StreamType type);
// Nothing for an unknown word.
[[nodiscard]] std::optional<StreamType> StreamOfWord(std::string_view word);

// Id of the local user in a room that needs nobody else, and before there is a room.
inline constexpr const char* kEmbeddedOwnId = "local";

// "local-camera" and so on, with the member's id in front; empty for an empty id.
[[nodiscard]] std::string StreamIdOf(const std::string& memberId, StreamType type);

// The kind that the member publishes under that id; nothing for ids of others.
[[nodiscard]] std::optional<StreamType> TypeOfStream(const std::string& memberId,
                                                     const std::string& streamId);

}  // namespace Corvanta::Engine
