// The data-channel message that describes a stream's source. Any thread.
#pragma once

#include <optional>
#include <string>

#include "platform/VideoSourceData.h"

namespace Corvanta::Room {

// The description in a "video-metadata-message"; nothing for another type of message and for a malformed one.
[[nodiscard]] std::optional<VideoSourceData> ParseVideoMetadataMessage(const std::string& text);

}  // namespace Corvanta::Room
