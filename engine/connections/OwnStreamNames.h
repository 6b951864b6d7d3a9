// How the local user's streams are called: the id under which each kind is published, and the word for its
// sources in the media manager. Plain functions of values.
#pragma once

#include <optional>
#include <string>

#include "platform/Connections.h"

namespace Corvanta::Engine {

// "camera", "screen" and so on; empty for an unknown kind.
[[nodiscard]] std::string StreamWord(StreamType type);

// "local-camera" and so on.
[[nodiscard]] std::string OwnStreamId(StreamType type);

// The kind that is published under that id; nothing for ids of others.
[[nodiscard]] std::optional<StreamType> TypeOfOwnStream(const std::string& streamId);

}  // namespace Corvanta::Engine
