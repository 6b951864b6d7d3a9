// The picture on the gallery's tiles: a person in a room, drawn from numbers, so that it is the same on every
// machine. Any thread.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Gallery {

inline constexpr int kPictureWidth = 640;
inline constexpr int kPictureHeight = 360;

// A frame of its own for each caller.
[[nodiscard]] std::shared_ptr<VideoFrameBuffer> MakeTestPicture();

}  // namespace Corvanta::Gallery
