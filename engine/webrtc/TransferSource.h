// A frame as plain pointers, after a look at whether they can be followed, and copies of it in another size.
// Borrows from the frame; any thread that may read the frame.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "engine/webrtc/OwnedFrames.h"
#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Engine {

// Planes are Y, U, V, or for packed pictures (bytes blue, green, red, alpha) the first alone. Strides in
// bytes.
struct SourcePicture {
    VideoFrameBufferType type = VideoFrameBufferType::RGB;  // by depth and true subsampling
    int width = 0;
    int height = 0;
    std::array<const uint8_t*, 3> data{};
    std::array<int, 3> stride{};

    [[nodiscard]] bool IsPacked() const { return type == VideoFrameBufferType::RGB; }
};

// Empty for a frame that cannot be read safely: `defect` then says why, for one log line. An unknown
// subsampling mode is read as 4:2:0.
[[nodiscard]] std::optional<SourcePicture> ReadFrame(const VideoFrameBuffer* frame, const char*& defect);

// The planes of a frame that MakeFrame made.
[[nodiscard]] SourcePicture ReadNewFrame(const NewFrame& made);

// The picture in another size: triangle filter, as wide as a target pixel where the picture shrinks. No frame
// results where memory is short.
[[nodiscard]] NewFrame ScalePicture(const SourcePicture& source, int width, int height,
                                    const ColorSpace& colorSpace, FramePool& pool);

}  // namespace Corvanta::Engine
