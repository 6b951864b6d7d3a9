// A decoded picture in GStreamer's own memory, mapped for reading and shared by the frame objects that were
// made of it. Never changes; any thread.
#pragma once

#include <gst/video/video.h>

#include <memory>

#include "engine/webrtc/GstSupport.h"
#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Engine {

class MappedPicture final {
public:
    // Keeps the buffer and maps it. Null when it cannot be mapped, or when its layout is none of those that
    // frame objects can show (see below).
    [[nodiscard]] static std::shared_ptr<const MappedPicture> Make(GstBuffer* buffer,
                                                                   const GstVideoInfo& info,
                                                                   const ColorSpace& colorSpace);
    ~MappedPicture();
    MappedPicture(const MappedPicture&) = delete;
    MappedPicture& operator=(const MappedPicture&) = delete;

    [[nodiscard]] VideoFrameBufferType Type() const { return type; }
    [[nodiscard]] int Width() const { return GST_VIDEO_FRAME_WIDTH(&frame); }
    [[nodiscard]] int Height() const { return GST_VIDEO_FRAME_HEIGHT(&frame); }
    [[nodiscard]] const ColorSpace& Color() const { return color; }
    [[nodiscard]] const uint8_t* Plane(int index) const {
        return static_cast<const uint8_t*>(frame.data[index]);
    }
    // Bytes.
    [[nodiscard]] int Stride(int index) const { return frame.info.stride[index]; }

private:
    MappedPicture(const GstVideoFrame& mapped, VideoFrameBufferType bufferType, const ColorSpace& colorSpace)
        : frame(mapped), type(bufferType), color(colorSpace) {}

    GstVideoFrame frame;
    VideoFrameBufferType type;
    ColorSpace color;
};

// The formats that frame objects can show without a conversion, as the "format" field of caps.
inline constexpr const char* kPlanarFormats = "{ I420, Y42B, Y444, I420_10LE, I422_10LE, Y444_10LE }";
inline constexpr const char* kPackedFormats = "{ BGRA }";

// A new frame object over the picture. It copies nothing, unless a packed picture has padded rows; its Clear
// leaves the picture and other frame objects as they are.
[[nodiscard]] std::shared_ptr<VideoFrameBuffer> MakeFrame(std::shared_ptr<const MappedPicture> picture);

}  // namespace Corvanta::Engine
