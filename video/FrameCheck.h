// Whether a frame from the media engine is safe to read. Asked once per frame, before anything touches its
// planes. Stateless, any thread that may read the frame.
#pragma once

#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Video {

inline constexpr int kMaxFrameSide = 16384;

enum class FrameDefect {
    None,
    UnknownType,  // a buffer type that no class stands for
    WrongClass,   // the object is not of the class that its type promises
    EmptySize,    // a side of zero or less
    HugeSize,     // a side above kMaxFrameSide
    NullPlane,
    ShortStride,  // rows of a plane would overlap
};

// The first defect in the order above. An unknown subsampling mode is none: such planes are read as 4:2:0.
[[nodiscard]] FrameDefect CheckFrame(const VideoFrameBuffer& frame);

// Whether such a frame must be dropped before anybody looks at its planes. The others have none to look at:
// no texture is made for them.
[[nodiscard]] constexpr bool IsUnsafeToRead(FrameDefect defect) {
    return defect == FrameDefect::HugeSize || defect == FrameDefect::NullPlane ||
           defect == FrameDefect::ShortStride;
}

// For one log line; empty for None.
[[nodiscard]] const char* Describe(FrameDefect defect);

}  // namespace Corvanta::Video
