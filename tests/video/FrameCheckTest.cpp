#include "video/FrameCheck.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace Corvanta::Video {
namespace {

struct Shape {
    VideoFrameBufferType type = VideoFrameBufferType::YUV420;
    int width = 16;
    int height = 8;
    int strideY = 16;
    int strideU = 8;
    int strideV = 8;
    SubsamplingMode mode = SubsamplingMode::Mode420;
    int missingPlane = -1;
};

// One byte serves every plane: a check must not look at samples.
template <typename Base, typename Sample>
class PlanarFrame final : public Base {
public:
    explicit PlanarFrame(const Shape& shape) : Base(shape.width, shape.height, ColorSpace()), shape_(shape) {}
    void Clear() override {}
    VideoFrameBufferType GetType() const override { return shape_.type; }
    SubsamplingMode GetSubsamplingMode() const override { return shape_.mode; }
    int GetStrideY() const override { return shape_.strideY; }
    int GetStrideU() const override { return shape_.strideU; }
    int GetStrideV() const override { return shape_.strideV; }
    const Sample* GetDataY() const override { return shape_.missingPlane == 0 ? nullptr : &sample_; }
    const Sample* GetDataU() const override { return shape_.missingPlane == 1 ? nullptr : &sample_; }
    const Sample* GetDataV() const override { return shape_.missingPlane == 2 ? nullptr : &sample_; }

private:
    Shape shape_;
    Sample sample_ = 0;
};
using NarrowFrame = PlanarFrame<YUVFrameBuffer, uint8_t>;
using WideFrame = PlanarFrame<YUV16FrameBuffer, uint16_t>;

class PackedFrame final : public RGBFrameBuffer {
public:
    PackedFrame(VideoFrameBufferType type, int width, int height, const uint8_t* buffer)
        : RGBFrameBuffer(width, height, ColorSpace()), type_(type), buffer_(buffer) {}
    void Clear() override {}
    VideoFrameBufferType GetType() const override { return type_; }
    const uint8_t* GetBuffer() const override { return buffer_; }

private:
    VideoFrameBufferType type_;
    const uint8_t* buffer_;
};

TEST(FrameCheck, PassesWhatCanBeRead) {
    const uint8_t byte = 0;
    EXPECT_EQ(CheckFrame(NarrowFrame({})), FrameDefect::None);
    EXPECT_EQ(CheckFrame(WideFrame(
                  {.type = VideoFrameBufferType::YUV420_16, .strideY = 32, .strideU = 16, .strideV = 16})),
              FrameDefect::None);
    EXPECT_EQ(CheckFrame(PackedFrame(VideoFrameBufferType::RGB, 4, 4, &byte)), FrameDefect::None);
    EXPECT_FALSE(IsUnsafeToRead(FrameDefect::None));
}

TEST(FrameCheck, CountsRowsOfSixteenBitPlanesInBytes) {
    const Shape shape{.type = VideoFrameBufferType::YUV420_16, .strideY = 31, .strideU = 16, .strideV = 16};
    EXPECT_EQ(CheckFrame(WideFrame(shape)), FrameDefect::ShortStride);
}

TEST(FrameCheck, RefusesAShortStrideOfEachPlane) {
    EXPECT_EQ(CheckFrame(NarrowFrame({.strideY = 15})), FrameDefect::ShortStride);
    EXPECT_EQ(CheckFrame(NarrowFrame({.strideU = 7})), FrameDefect::ShortStride);
    EXPECT_EQ(CheckFrame(NarrowFrame({.strideV = 7})), FrameDefect::ShortStride);
    EXPECT_EQ(CheckFrame(NarrowFrame({.strideY = -16})), FrameDefect::ShortStride);
    EXPECT_TRUE(IsUnsafeToRead(FrameDefect::ShortStride));
}

TEST(FrameCheck, RoundsTheChromaWidthOfAnOddPictureUp) {
    EXPECT_EQ(CheckFrame(NarrowFrame({.width = 15, .strideY = 15, .strideU = 7})), FrameDefect::ShortStride);
    EXPECT_EQ(CheckFrame(NarrowFrame({.width = 15, .strideY = 15, .strideU = 8})), FrameDefect::None);
}

TEST(FrameCheck, DemandsChromaRowsOfTheSubsamplingMode) {
    Shape shape{.mode = SubsamplingMode::Mode444};
    EXPECT_EQ(CheckFrame(NarrowFrame(shape)), FrameDefect::ShortStride);
    shape.mode = SubsamplingMode::Mode422;
    EXPECT_EQ(CheckFrame(NarrowFrame(shape)), FrameDefect::None);
}

TEST(FrameCheck, TakesAnUnknownSubsamplingModeAs420) {
    EXPECT_EQ(CheckFrame(NarrowFrame({.mode = static_cast<SubsamplingMode>(9)})), FrameDefect::None);
}

TEST(FrameCheck, RefusesEachMissingPlane) {
    for (const int plane : {0, 1, 2}) {
        EXPECT_EQ(CheckFrame(NarrowFrame({.missingPlane = plane})), FrameDefect::NullPlane);
    }
    EXPECT_EQ(CheckFrame(PackedFrame(VideoFrameBufferType::RGB, 4, 4, nullptr)), FrameDefect::NullPlane);
    EXPECT_TRUE(IsUnsafeToRead(FrameDefect::NullPlane));
}

TEST(FrameCheck, TellsEmptyFromHuge) {
    const uint8_t byte = 0;
    for (const int size : {0, -1, -2147483647}) {
        EXPECT_EQ(CheckFrame(NarrowFrame({.width = size})), FrameDefect::EmptySize);
        EXPECT_EQ(CheckFrame(NarrowFrame({.height = size})), FrameDefect::EmptySize);
        EXPECT_EQ(CheckFrame(PackedFrame(VideoFrameBufferType::RGB, size, 4, &byte)), FrameDefect::EmptySize);
    }
    for (const int size : {16385, 2147483647}) {
        EXPECT_EQ(CheckFrame(NarrowFrame({.width = size, .strideY = 2147483647})), FrameDefect::HugeSize);
        EXPECT_EQ(CheckFrame(NarrowFrame({.height = size})), FrameDefect::HugeSize);
    }
    EXPECT_EQ(CheckFrame(NarrowFrame({.height = 16384})), FrameDefect::None);
    EXPECT_TRUE(IsUnsafeToRead(FrameDefect::HugeSize));
    EXPECT_FALSE(IsUnsafeToRead(FrameDefect::EmptySize));
}

TEST(FrameCheck, ReportsTypesThatNoClassStandsFor) {
    for (const int type : {7, 8, 1000, -1}) {
        EXPECT_EQ(CheckFrame(NarrowFrame({.type = static_cast<VideoFrameBufferType>(type)})),
                  FrameDefect::UnknownType);
    }
    EXPECT_FALSE(IsUnsafeToRead(FrameDefect::UnknownType));
}

TEST(FrameCheck, RefusesAClassThatDoesNotMatchTheType) {
    const uint8_t byte = 0;
    EXPECT_EQ(CheckFrame(NarrowFrame({.type = VideoFrameBufferType::YUV420_16})), FrameDefect::WrongClass);
    EXPECT_EQ(CheckFrame(WideFrame({.type = VideoFrameBufferType::YUV444})), FrameDefect::WrongClass);
    EXPECT_EQ(CheckFrame(WideFrame({.type = VideoFrameBufferType::RGB})), FrameDefect::WrongClass);
    EXPECT_EQ(CheckFrame(PackedFrame(VideoFrameBufferType::YUV422, 4, 4, &byte)), FrameDefect::WrongClass);
    EXPECT_FALSE(IsUnsafeToRead(FrameDefect::WrongClass));
}

TEST(FrameCheck, HasATextForEveryDefect) {
    for (const FrameDefect defect :
         {FrameDefect::UnknownType, FrameDefect::WrongClass, FrameDefect::EmptySize, FrameDefect::HugeSize,
          FrameDefect::NullPlane, FrameDefect::ShortStride}) {
        EXPECT_GT(std::strlen(Describe(defect)), 5U);
    }
    EXPECT_STREQ(Describe(FrameDefect::None), "");
}

}  // namespace
}  // namespace Corvanta::Video
