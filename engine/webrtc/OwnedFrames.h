// Frames of the engine's own making: packed, 8-bit planar and 10-bit planar pictures in memory of their own.
// Who makes one writes its planes and then hands it on; from then on it is only read, on any thread. A pool
// is safe to use from several threads, and its frames may outlive it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Engine {

inline constexpr int kMaxFrameSide = 16384;

// A plane to write to. Stride and rowBytes in bytes; the bytes between them are the frame's own padding.
struct WritablePlane {
    uint8_t* data = nullptr;
    int stride = 0;
    int rowBytes = 0;
    int rows = 0;
};

// A frame and where its samples go. Planes are Y, U, V, or for packed pictures the first alone. They start on
// 64 bytes, as rows of planar pictures do; packed rows follow each other without padding. Samples are
// undefined until written.
struct NewFrame {
    std::shared_ptr<VideoFrameBuffer> frame;  // null where the frame could not be made
    std::array<WritablePlane, 3> planes;

    explicit operator bool() const { return frame != nullptr; }
};

[[nodiscard]] constexpr bool IsSixteenBit(VideoFrameBufferType type) {
    return type >= VideoFrameBufferType::YUV420_16 && type <= VideoFrameBufferType::YUV444_16;
}

[[nodiscard]] constexpr bool IsKnown(VideoFrameBufferType type) {
    return type >= VideoFrameBufferType::RGB && type <= VideoFrameBufferType::YUV444_16;
}

// Subsampling of a planar type; Mode444 for packed pictures.
[[nodiscard]] SubsamplingMode GetSubsampling(VideoFrameBufferType type);

// Black in the picture's own range and matrix; opaque where there is alpha.
void Blacken(VideoFrameBufferType type, const std::array<WritablePlane, 3>& planes,
             const ColorSpace& colorSpace);

// A frame whose memory is its own. No frame results for a side below 1 or above kMaxFrameSide, an unknown
// type, or where memory is short.
[[nodiscard]] NewFrame MakeFrame(VideoFrameBufferType type, int width, int height,
                                 const ColorSpace& colorSpace);

// Makes frames as MakeFrame does, from the memory of earlier ones that nobody holds any more. The pool keeps
// a handful of blocks of the size asked for last; destroying it frees them, and frames still held free theirs
// later.
class FramePool final {
public:
    FramePool();
    ~FramePool();
    FramePool(const FramePool&) = delete;
    FramePool& operator=(const FramePool&) = delete;

    [[nodiscard]] NewFrame MakeFrame(VideoFrameBufferType type, int width, int height,
                                     const ColorSpace& colorSpace);

    class Shelf;

private:
    std::shared_ptr<Shelf> shelf_;
};

}  // namespace Corvanta::Engine
