// What a VP8 frame's first bytes say (RFC 6386, 9.1). Plain functions of values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "engine/peer/EncoderSettings.h"

namespace Corvanta::Engine {

// Pixels of a picture that is decoded at most.
inline constexpr std::int64_t kMostDecodedPixels = std::int64_t{4096} * 4096;

// The size that a key frame announces; nothing for every other frame.
[[nodiscard]] inline std::optional<PictureSize> ReadKeyFrameSize(std::span<const std::uint8_t> frame) {
    constexpr std::size_t kHeaderBytes = 10;
    if (frame.size() < kHeaderBytes || (frame[0] & 1U) != 0) return std::nullopt;
    if (frame[3] != 0x9D || frame[4] != 0x01 || frame[5] != 0x2A) return std::nullopt;
    const auto side = [&](std::size_t place) {
        // Two further bits tell how it is to be scaled.
        return (static_cast<int>(frame[place]) | static_cast<int>(frame[place + 1]) << 8) & 0x3FFF;
    };
    return PictureSize{side(6), side(8)};
}

}  // namespace Corvanta::Engine
