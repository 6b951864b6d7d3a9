#include "engine/webrtc/MappedPicture.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace Corvanta::Engine {

namespace {

std::optional<VideoFrameBufferType> TypeOf(GstVideoFormat format) {
    switch (format) {
        case GST_VIDEO_FORMAT_BGRA: return VideoFrameBufferType::RGB;
        case GST_VIDEO_FORMAT_I420: return VideoFrameBufferType::YUV420;
        case GST_VIDEO_FORMAT_Y42B: return VideoFrameBufferType::YUV422;
        case GST_VIDEO_FORMAT_Y444: return VideoFrameBufferType::YUV444;
        case GST_VIDEO_FORMAT_I420_10LE: return VideoFrameBufferType::YUV420_16;
        case GST_VIDEO_FORMAT_I422_10LE: return VideoFrameBufferType::YUV422_16;
        case GST_VIDEO_FORMAT_Y444_10LE: return VideoFrameBufferType::YUV444_16;
        default: return std::nullopt;
    }
}

SubsamplingMode SubsamplingOf(VideoFrameBufferType type) {
    switch (type) {
        case VideoFrameBufferType::YUV422:
        case VideoFrameBufferType::YUV422_16: return SubsamplingMode::Mode422;
        case VideoFrameBufferType::YUV444:
        case VideoFrameBufferType::YUV444_16: return SubsamplingMode::Mode444;
        default: return SubsamplingMode::Mode420;
    }
}

// What the two depths of planar frames share: pointers into the picture, or into black planes of its own
// after Clear.
template <class Base, class Sample, int kBits>
class PlanarFrame final : public Base {
public:
    explicit PlanarFrame(std::shared_ptr<const MappedPicture> source)
        : Base(source->Width(), source->Height(), source->Color()), picture(std::move(source)) {
        for (int plane = 0; plane < 3; ++plane) {
            const auto index = static_cast<std::size_t>(plane);
            planes[index] = reinterpret_cast<const Sample*>(picture->Plane(plane));
            strides[index] = picture->Stride(plane);
        }
    }

    void Clear() override {
        const SubsamplingMode mode = GetSubsamplingMode();
        const auto width = static_cast<std::size_t>(this->GetWidth());
        const auto height = static_cast<std::size_t>(this->GetHeight());
        const std::size_t chromaWidth = mode == SubsamplingMode::Mode444 ? width : (width + 1) / 2;
        const std::size_t chromaHeight = mode == SubsamplingMode::Mode420 ? (height + 1) / 2 : height;
        const bool isFull = this->GetColorSpace().GetRange() == ColorRange::Full;
        const Sample lumaBlack = isFull ? Sample{0} : static_cast<Sample>(1 << (kBits - 4));
        const auto chromaNeutral = static_cast<Sample>(1 << (kBits - 1));

        black.assign(width * height, lumaBlack);
        black.resize(width * height + 2 * chromaWidth * chromaHeight, chromaNeutral);
        planes = {black.data(), black.data() + width * height,
                  black.data() + width * height + chromaWidth * chromaHeight};
        const auto chromaStride = static_cast<int>(chromaWidth * sizeof(Sample));
        strides = {static_cast<int>(width * sizeof(Sample)), chromaStride, chromaStride};
    }

    [[nodiscard]] VideoFrameBufferType GetType() const override { return picture->Type(); }
    [[nodiscard]] SubsamplingMode GetSubsamplingMode() const override {
        return SubsamplingOf(picture->Type());
    }
    [[nodiscard]] int GetStrideY() const override { return strides[0]; }
    [[nodiscard]] int GetStrideU() const override { return strides[1]; }
    [[nodiscard]] int GetStrideV() const override { return strides[2]; }
    [[nodiscard]] const Sample* GetDataY() const override { return planes[0]; }
    [[nodiscard]] const Sample* GetDataU() const override { return planes[1]; }
    [[nodiscard]] const Sample* GetDataV() const override { return planes[2]; }

private:
    std::shared_ptr<const MappedPicture> picture;
    std::array<const Sample*, 3> planes;
    std::array<int, 3> strides;
    std::vector<Sample> black;
};

class PackedFrame final : public RGBFrameBuffer {
public:
    explicit PackedFrame(std::shared_ptr<const MappedPicture> source)
        : RGBFrameBuffer(source->Width(), source->Height(), source->Color()),
          picture(std::move(source)),
          pixels(picture->Plane(0)) {
        const auto row = static_cast<std::size_t>(GetWidth()) * kPixelBytes;
        const auto stride = static_cast<std::size_t>(picture->Stride(0));
        if (stride == row) return;
        own.resize(row * static_cast<std::size_t>(GetHeight()));
        for (std::size_t line = 0; line < static_cast<std::size_t>(GetHeight()); ++line) {
            std::memcpy(own.data() + line * row, pixels + line * stride, row);
        }
        pixels = own.data();
    }

    void Clear() override {
        own.assign(static_cast<std::size_t>(GetWidth()) * static_cast<std::size_t>(GetHeight()) * kPixelBytes,
                   0);
        for (std::size_t alpha = kPixelBytes - 1; alpha < own.size(); alpha += kPixelBytes) own[alpha] = 255;
        pixels = own.data();
    }

    [[nodiscard]] VideoFrameBufferType GetType() const override { return VideoFrameBufferType::RGB; }
    [[nodiscard]] const uint8_t* GetBuffer() const override { return pixels; }

private:
    static constexpr std::size_t kPixelBytes = 4;

    std::shared_ptr<const MappedPicture> picture;
    const uint8_t* pixels;
    std::vector<uint8_t> own;
};

}  // namespace

std::shared_ptr<const MappedPicture> MappedPicture::Make(GstBuffer* buffer, const GstVideoInfo& info,
                                                         const ColorSpace& colorSpace) {
    const auto type = TypeOf(GST_VIDEO_INFO_FORMAT(&info));
    if (!type) return nullptr;
    GstVideoFrame frame;
    // The video meta of the buffer, where it has one, gives the true strides and offsets.
    if (gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ) == FALSE) return nullptr;
    return std::shared_ptr<const MappedPicture>(new MappedPicture(frame, *type, colorSpace));
}

MappedPicture::~MappedPicture() {
    gst_video_frame_unmap(&frame);
}

std::shared_ptr<VideoFrameBuffer> MakeFrame(std::shared_ptr<const MappedPicture> picture) {
    switch (picture->Type()) {
        case VideoFrameBufferType::RGB: return std::make_shared<PackedFrame>(std::move(picture));
        case VideoFrameBufferType::YUV420:
        case VideoFrameBufferType::YUV422:
        case VideoFrameBufferType::YUV444:
            return std::make_shared<PlanarFrame<YUVFrameBuffer, uint8_t, 8>>(std::move(picture));
        default: return std::make_shared<PlanarFrame<YUV16FrameBuffer, uint16_t, 10>>(std::move(picture));
    }
}

}  // namespace Corvanta::Engine
