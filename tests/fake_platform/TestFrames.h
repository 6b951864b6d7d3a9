// Frames that own their samples, for tests. Each buffer ends with its last sample, so that a sanitizer sees a
// read beyond it. A frame may lie about itself in every way that FrameFaults names.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/ColorSpace.h"
#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Testing {

// Limited-range BT.709 with BT.709's transfer: what an ordinary camera sends.
inline constexpr ColorSpace kBt709Limited{LegacyColorSpace::BT709};
// BT.2020 under PQ, limited range.
inline constexpr ColorSpace kBt2020Pq{LegacyColorSpace::BT2020};
inline constexpr ColorSpace kBt2020Hlg{ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                                       ColorTransfer::ARIB_STD_B67};
// What an RGB picture on an SDR display is.
inline constexpr ColorSpace kSrgb{ColorMatrix::RGB, ColorRange::Full, ColorPrimaries::BT709,
                                  ColorTransfer::IEC61966_2_1};

struct FrameFaults {
    // Planes that are answered with null; of an RGB frame plane 0.
    bool nullPlane[3] = {false, false, false};
    // Answered instead of the true strides, in bytes.
    std::optional<int> stride[3] = {};
    // Answered instead of the truth; any number is possible.
    std::optional<SubsamplingMode> subsampling = {};
    std::optional<VideoFrameBufferType> type = {};
};

struct FrameSpec {
    int width = 64;
    int height = 48;
    VideoFrameBufferType type = VideoFrameBufferType::YUV420;
    ColorSpace colorSpace = kBt709Limited;
    // Fill: samples of the planes, or for RGB 0xAARRGGBB. Without a value the picture is a middle grey.
    std::optional<uint16_t> y = {};
    std::optional<uint16_t> u = {};
    std::optional<uint16_t> v = {};
    std::optional<uint32_t> argb = {};
    // Bytes by which each row of each plane is longer than its samples. Kept even for 16-bit samples.
    int padding = 0;
    FrameFaults faults = {};
};

// What all test frames can do beside being frames.
class TestFrame {
public:
    virtual ~TestFrame() = default;
    [[nodiscard]] int ClearCount() const { return clearCount_; }

protected:
    void CountClear() { ++clearCount_; }

private:
    std::atomic<int> clearCount_ = 0;
};

class RgbTestFrame final : public RGBFrameBuffer, public TestFrame {
public:
    explicit RgbTestFrame(const FrameSpec& options);

    void Clear() override;
    [[nodiscard]] VideoFrameBufferType GetType() const override;
    [[nodiscard]] const uint8_t* GetBuffer() const override;

    // 0xAARRGGBB.
    void SetPixel(int x, int y, uint32_t argb);

private:
    FrameFaults faults_;
    std::vector<uint8_t> bytes_;
};

// One plane of samples with its stride.
template <typename Sample>
class TestPlane final {
public:
    TestPlane(int width, int height, int padding, Sample fill);

    [[nodiscard]] const Sample* Data() const { return samples_.data(); }
    // Bytes.
    [[nodiscard]] int Stride() const { return stride_ * static_cast<int>(sizeof(Sample)); }
    [[nodiscard]] Sample& At(int x, int y) { return samples_.at(Index(x, y)); }
    void Fill(Sample value);

private:
    [[nodiscard]] size_t Index(int x, int y) const {
        return static_cast<size_t>(y) * static_cast<size_t>(stride_) + static_cast<size_t>(x);
    }

    // Samples.
    int stride_;
    std::vector<Sample> samples_;
};

// Planar frame of either depth: Base is YUVFrameBuffer or YUV16FrameBuffer.
template <typename Base, typename Sample>
class PlanarTestFrame final : public Base, public TestFrame {
public:
    explicit PlanarTestFrame(const FrameSpec& options);

    void Clear() override;
    [[nodiscard]] VideoFrameBufferType GetType() const override;
    [[nodiscard]] SubsamplingMode GetSubsamplingMode() const override;
    [[nodiscard]] int GetStrideY() const override { return StrideOf(0); }
    [[nodiscard]] int GetStrideU() const override { return StrideOf(1); }
    [[nodiscard]] int GetStrideV() const override { return StrideOf(2); }
    [[nodiscard]] const Sample* GetDataY() const override { return DataOf(0); }
    [[nodiscard]] const Sample* GetDataU() const override { return DataOf(1); }
    [[nodiscard]] const Sample* GetDataV() const override { return DataOf(2); }

    // Sets a sample of plane 0, 1 or 2; coordinates are the plane's own.
    void SetSample(int plane, int x, int y, Sample value) {
        planes_.at(static_cast<size_t>(plane)).At(x, y) = value;
    }
    // Sets the luma of a pixel and the chroma that lies under it.
    void SetPixel(int x, int y, Sample luma, Sample u, Sample v);

private:
    [[nodiscard]] int StrideOf(size_t plane) const;
    [[nodiscard]] const Sample* DataOf(size_t plane) const;

    FrameFaults faults_;
    VideoFrameBufferType type_;
    SubsamplingMode subsampling_;
    std::vector<TestPlane<Sample>> planes_;
};

using YuvTestFrame = PlanarTestFrame<YUVFrameBuffer, uint8_t>;
using Yuv16TestFrame = PlanarTestFrame<YUV16FrameBuffer, uint16_t>;

extern template class PlanarTestFrame<YUVFrameBuffer, uint8_t>;
extern template class PlanarTestFrame<YUV16FrameBuffer, uint16_t>;

// A frame of the class that the wanted type belongs to; types of 7 and up become a planar 8-bit 4:2:0
// frame that reports that type. A size below 1, or of more than 2^26 pixels, is reported but has one sample a
// plane behind it.
std::shared_ptr<VideoFrameBuffer> MakeFrame(const FrameSpec& options = {});
// The same where a test needs the class itself. The type asked for must fit.
std::shared_ptr<RgbTestFrame> MakeRgbFrame(FrameSpec options);
std::shared_ptr<YuvTestFrame> MakeYuvFrame(const FrameSpec& options);
std::shared_ptr<Yuv16TestFrame> MakeYuv16Frame(const FrameSpec& options);

// How often the frame was cleared.
int ClearCount(const std::shared_ptr<VideoFrameBuffer>& frame);

// The chroma subsampling that a planar type stands for.
SubsamplingMode SubsamplingOf(VideoFrameBufferType type);

// One frame of each kind of damage, with its name for a test's message.
struct BadFrame {
    const char* name;
    std::shared_ptr<VideoFrameBuffer> frame;
};
std::vector<BadFrame> MakeBadFrames();

}  // namespace Corvanta::Testing
