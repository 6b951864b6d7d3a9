// Which texture shows a frame's buffer as it is. Plain values, any thread.
#pragma once

#include <SDL.h>

#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Video {

// The SDL pixel format for a buffer type and subsampling; an unknown subsampling falls back to IYUV. Unknown
// for the types that no texture can show.
[[nodiscard]] Uint32 TextureFormatFor(VideoFrameBufferType type, SubsamplingMode subsampling);

}  // namespace Corvanta::Video
