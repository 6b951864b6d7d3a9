#include "engine/webrtc/OwnedFrames.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace Corvanta::Engine {
namespace {

constexpr std::array kTypes{VideoFrameBufferType::RGB,       VideoFrameBufferType::YUV420,
                            VideoFrameBufferType::YUV422,    VideoFrameBufferType::YUV444,
                            VideoFrameBufferType::YUV420_16, VideoFrameBufferType::YUV422_16,
                            VideoFrameBufferType::YUV444_16};
const ColorSpace kSpace(LegacyColorSpace::BT709);

TEST(OwnedFrames, AreOfTheClassAndLayoutOfTheirType) {
    for (const VideoFrameBufferType type : kTypes) {
        const NewFrame made = MakeFrame(type, 33, 7, kSpace);
        ASSERT_TRUE(made);
        EXPECT_EQ(made.frame->GetType(), type);
        EXPECT_EQ(made.frame->GetWidth(), 33);
        EXPECT_EQ(made.frame->GetHeight(), 7);
        EXPECT_EQ(made.frame->GetColorSpace(), kSpace);
        if (type == VideoFrameBufferType::RGB) {
            const auto* rgb = dynamic_cast<const RGBFrameBuffer*>(made.frame.get());
            ASSERT_NE(rgb, nullptr);
            EXPECT_EQ(rgb->GetBuffer(), made.planes[0].data);
            EXPECT_EQ(made.planes[0].stride, 4 * 33);
            continue;
        }
        const auto* planar = dynamic_cast<const PlanarYUVFrameBuffer*>(made.frame.get());
        ASSERT_NE(planar, nullptr);
        EXPECT_EQ(IsSixteenBit(type), dynamic_cast<const YUV16FrameBuffer*>(planar) != nullptr);
        EXPECT_EQ(!IsSixteenBit(type), dynamic_cast<const YUVFrameBuffer*>(planar) != nullptr);
        const SubsamplingMode mode = GetSubsampling(type);
        EXPECT_EQ(planar->GetSubsamplingMode(), mode);
        const int sampleBytes = IsSixteenBit(type) ? 2 : 1;
        EXPECT_EQ(made.planes[1].rowBytes, (mode == SubsamplingMode::Mode444 ? 33 : 17) * sampleBytes);
        EXPECT_EQ(made.planes[2].rows, mode == SubsamplingMode::Mode420 ? 4 : 7);
        EXPECT_GE(planar->GetStrideU(), made.planes[1].rowBytes);
        EXPECT_EQ(planar->GetStrideV(), made.planes[2].stride);
    }
}

TEST(OwnedFrames, RefuseWhatCannotBeAFrame) {
    EXPECT_FALSE(MakeFrame(VideoFrameBufferType::YUV420, 0, 4, kSpace));
    EXPECT_FALSE(MakeFrame(VideoFrameBufferType::YUV420, 4, -1, kSpace));
    EXPECT_FALSE(MakeFrame(VideoFrameBufferType::YUV420, 16385, 4, kSpace));
    EXPECT_FALSE(MakeFrame(static_cast<VideoFrameBufferType>(7), 4, 4, kSpace));
    EXPECT_FALSE(MakeFrame(static_cast<VideoFrameBufferType>(-1), 4, 4, kSpace));
}

TEST(OwnedFrames, BlackenInTheirOwnRangeAndMatrix) {
    struct Case {
        VideoFrameBufferType type;
        ColorMatrix matrix;
        ColorRange range;
        int luma;
        int chroma;
    };
    for (const Case& expected :
         {Case{VideoFrameBufferType::YUV420, ColorMatrix::BT709, ColorRange::Limited, 16, 128},
          Case{VideoFrameBufferType::YUV444, ColorMatrix::BT709, ColorRange::Full, 0, 128},
          Case{VideoFrameBufferType::YUV422_16, ColorMatrix::BT2020NCL, ColorRange::Unspecified, 64, 512},
          Case{VideoFrameBufferType::YUV444_16, ColorMatrix::RGB, ColorRange::Limited, 64, 64},
          Case{VideoFrameBufferType::YUV444, ColorMatrix::RGB, ColorRange::Full, 0, 0}}) {
        const NewFrame made = MakeFrame(
            expected.type, 5, 3,
            ColorSpace(expected.matrix, expected.range, ColorPrimaries::BT709, ColorTransfer::BT709));
        made.frame->Clear();
        for (size_t plane = 0; plane < 3; ++plane) {
            for (int row = 0; row < made.planes[plane].rows; ++row) {
                const uint8_t* line =
                    made.planes[plane].data + static_cast<ptrdiff_t>(made.planes[plane].stride) * row;
                const int step = IsSixteenBit(expected.type) ? 2 : 1;
                for (int at = 0; at < made.planes[plane].rowBytes; at += step) {
                    int sample = line[at];
                    if (step == 2) sample |= line[at + 1] << 8;
                    ASSERT_EQ(sample, plane == 0 ? expected.luma : expected.chroma);
                }
            }
        }
    }
}

TEST(OwnedFrames, BlackenPackedPicturesOpaque) {
    const NewFrame made = MakeFrame(VideoFrameBufferType::RGB, 3, 2, kSpace);
    std::memset(made.planes[0].data, 77, 24);
    made.frame->Clear();
    for (int i = 0; i < 24; ++i) EXPECT_EQ(made.planes[0].data[i], i % 4 == 3 ? 255 : 0);
}

TEST(FramePool, UsesTheMemoryOfAFrameThatNobodyHolds) {
    FramePool pool;
    NewFrame first = pool.MakeFrame(VideoFrameBufferType::YUV420, 64, 64, kSpace);
    const uint8_t* memory = first.planes[0].data;
    const NewFrame second = pool.MakeFrame(VideoFrameBufferType::YUV420, 64, 64, kSpace);
    EXPECT_NE(second.planes[0].data, memory);
    first.frame.reset();
    EXPECT_EQ(pool.MakeFrame(VideoFrameBufferType::YUV420, 64, 64, kSpace).planes[0].data, memory);
}

TEST(FramePool, IsOutlivedByItsFrames) {
    std::optional<FramePool> pool(std::in_place);
    NewFrame made = pool->MakeFrame(VideoFrameBufferType::RGB, 64, 64, kSpace);
    NewFrame returned = pool->MakeFrame(VideoFrameBufferType::RGB, 64, 64, kSpace);
    returned.frame.reset();
    pool.reset();
    std::memset(made.planes[0].data, 1, size_t{4} * 64 * 64);
    made.frame->Clear();
    EXPECT_EQ(made.planes[0].data[0], 0);
}

TEST(FramePool, ServesChangingSizesAndThreads) {
    FramePool pool;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&pool, thread] {
            std::shared_ptr<VideoFrameBuffer> held;
            for (int i = 0; i < 200; ++i) {
                const int side = 8 + (i / 20 + thread) % 3;
                const NewFrame made = pool.MakeFrame(VideoFrameBufferType::YUV444, side, side, kSpace);
                made.frame->Clear();
                held = made.frame;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace Corvanta::Engine
