// Decoded pictures of the media engine. A frame is shared by std::shared_ptr, may be read on any thread, and
// is never written after it was handed to a sink, but for Clear. The engine derives its own storage from
// these classes; the library only reads through them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/ColorSpace.h"

namespace Corvanta {

// 16-bit types hold samples of 10 significant bits in the low bits of each word, native byte order.
enum class VideoFrameBufferType : int32_t {
    RGB = 0,
    YUV420 = 1,
    YUV422 = 2,
    YUV444 = 3,
    YUV420_16 = 4,
    YUV422_16 = 5,
    YUV444_16 = 6,
};

// Chroma planes: Mode420 halves width and height (rounded up), Mode422 halves the width, Mode444 neither.
enum class SubsamplingMode : int32_t { Mode420 = 0, Mode422 = 1, Mode444 = 2 };

class VideoFrameBuffer {
public:
    virtual ~VideoFrameBuffer() = default;

    // Blackens this frame object's picture. Each sink gets a frame object of its own, so no other sink's
    // picture changes. The caller excludes other readers of the same object.
    virtual void Clear() = 0;
    [[nodiscard]] virtual VideoFrameBufferType GetType() const = 0;

    // Pixels.
    [[nodiscard]] int GetWidth() const { return width_; }
    [[nodiscard]] int GetHeight() const { return height_; }
    [[nodiscard]] const ColorSpace& GetColorSpace() const { return colorSpace_; }

    VideoFrameBuffer(const VideoFrameBuffer&) = delete;
    VideoFrameBuffer& operator=(const VideoFrameBuffer&) = delete;

protected:
    VideoFrameBuffer(int width, int height, const ColorSpace& colorSpace)
        : width_(width), height_(height), colorSpace_(colorSpace) {}

private:
    int width_;
    int height_;
    ColorSpace colorSpace_;
};

// Packed picture of 4 bytes a pixel, rows of exactly 4 * width bytes. Bytes in memory: blue, green, red,
// alpha (SDL's ARGB8888 on a little-endian machine).
class RGBFrameBuffer : public VideoFrameBuffer {
public:
    [[nodiscard]] virtual const uint8_t* GetBuffer() const = 0;

protected:
    using VideoFrameBuffer::VideoFrameBuffer;
};

// Three planes. Strides are in bytes, also for 16-bit samples, and at least a row of the plane.
class PlanarYUVFrameBuffer : public VideoFrameBuffer {
public:
    [[nodiscard]] virtual SubsamplingMode GetSubsamplingMode() const = 0;
    [[nodiscard]] virtual int GetStrideY() const = 0;
    [[nodiscard]] virtual int GetStrideU() const = 0;
    [[nodiscard]] virtual int GetStrideV() const = 0;

protected:
    using VideoFrameBuffer::VideoFrameBuffer;
};

class YUVFrameBuffer : public PlanarYUVFrameBuffer {
public:
    [[nodiscard]] virtual const uint8_t* GetDataY() const = 0;
    [[nodiscard]] virtual const uint8_t* GetDataU() const = 0;
    [[nodiscard]] virtual const uint8_t* GetDataV() const = 0;

protected:
    using PlanarYUVFrameBuffer::PlanarYUVFrameBuffer;
};

class YUV16FrameBuffer : public PlanarYUVFrameBuffer {
public:
    [[nodiscard]] virtual const uint16_t* GetDataY() const = 0;
    [[nodiscard]] virtual const uint16_t* GetDataU() const = 0;
    [[nodiscard]] virtual const uint16_t* GetDataV() const = 0;

protected:
    using PlanarYUVFrameBuffer::PlanarYUVFrameBuffer;
};

// Takes one frame of a stream. Called on the capture or decode thread that made the frame.
using FrameCallback = std::function<void(const std::shared_ptr<VideoFrameBuffer>&)>;

}  // namespace Corvanta
