#include "engine/webrtc/MappedPicture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

namespace Corvanta::Engine {
namespace {

const ColorSpace kLimited(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709,
                          ColorTransfer::BT709);
const ColorSpace kFull(ColorMatrix::BT709, ColorRange::Full, ColorPrimaries::BT709, ColorTransfer::BT709);

// A picture whose bytes count up, with rows 64 bytes longer than they need to be.
GstBuffer* MakePaddedBuffer(GstVideoFormat format, int width, int height, GstVideoInfo& info) {
    EXPECT_TRUE(EnsureGStreamer());
    gst_video_info_set_format(&info, format, static_cast<guint>(width), static_cast<guint>(height));
    gsize offsets[GST_VIDEO_MAX_PLANES] = {};
    gint strides[GST_VIDEO_MAX_PLANES] = {};
    gsize size = 0;
    for (guint plane = 0; plane < GST_VIDEO_INFO_N_PLANES(&info); ++plane) {
        offsets[plane] = size;
        strides[plane] = info.stride[plane] + 64;
        const auto rows = GST_VIDEO_FORMAT_INFO_SCALE_HEIGHT(info.finfo, plane, height);
        size += static_cast<gsize>(strides[plane]) * static_cast<gsize>(rows);
    }
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, size, nullptr);
    GstMapInfo map;
    EXPECT_NE(gst_buffer_map(buffer, &map, GST_MAP_WRITE), FALSE);
    for (gsize index = 0; index < map.size; ++index) map.data[index] = static_cast<guint8>(index * 7);
    gst_buffer_unmap(buffer, &map);
    gst_buffer_add_video_meta_full(buffer, GST_VIDEO_FRAME_FLAG_NONE, format, static_cast<guint>(width),
                                   static_cast<guint>(height), GST_VIDEO_INFO_N_PLANES(&info), offsets,
                                   strides);
    return buffer;
}

std::shared_ptr<const MappedPicture> MakePicture(GstVideoFormat format, int width, int height,
                                                 const ColorSpace& color = kLimited) {
    GstVideoInfo info;
    const GstOwned<GstBuffer> buffer(MakePaddedBuffer(format, width, height, info));
    return MappedPicture::Make(buffer.get(), info, color);
}

TEST(MappedPicture, ShowsThePlanesOfTheBufferWithoutACopy) {
    const auto picture = MakePicture(GST_VIDEO_FORMAT_I420, 64, 32);
    ASSERT_NE(picture, nullptr);
    const auto frame = MakeFrame(picture);
    const auto* yuv = dynamic_cast<const YUVFrameBuffer*>(frame.get());
    ASSERT_NE(yuv, nullptr);
    EXPECT_EQ(yuv->GetType(), VideoFrameBufferType::YUV420);
    EXPECT_EQ(yuv->GetSubsamplingMode(), SubsamplingMode::Mode420);
    EXPECT_EQ(yuv->GetWidth(), 64);
    EXPECT_EQ(yuv->GetHeight(), 32);
    EXPECT_EQ(yuv->GetColorSpace(), kLimited);
    EXPECT_EQ(yuv->GetStrideY(), 128);
    EXPECT_EQ(yuv->GetStrideU(), 96);
    EXPECT_EQ(yuv->GetStrideV(), 96);
    EXPECT_EQ(yuv->GetDataY(), picture->Plane(0));
    EXPECT_EQ(yuv->GetDataU(), picture->Plane(1));
    EXPECT_EQ(yuv->GetDataV(), picture->Plane(2));
    EXPECT_EQ(yuv->GetDataY()[130], static_cast<uint8_t>(130 * 7));
}

struct Layout {
    GstVideoFormat format;
    VideoFrameBufferType type;
    SubsamplingMode mode;
};

class PlanarLayout : public testing::TestWithParam<Layout> {};

TEST_P(PlanarLayout, HasItsTypeAndSubsampling) {
    const auto frame = MakeFrame(MakePicture(GetParam().format, 33, 17));
    EXPECT_EQ(frame->GetType(), GetParam().type);
    const auto* planar = dynamic_cast<const PlanarYUVFrameBuffer*>(frame.get());
    ASSERT_NE(planar, nullptr);
    EXPECT_EQ(planar->GetSubsamplingMode(), GetParam().mode);
    const bool isDeep = GetParam().type >= VideoFrameBufferType::YUV420_16;
    EXPECT_EQ(dynamic_cast<const YUV16FrameBuffer*>(planar) != nullptr, isDeep);
    EXPECT_EQ(dynamic_cast<const YUVFrameBuffer*>(planar) != nullptr, !isDeep);
}

INSTANTIATE_TEST_SUITE_P(
    MappedPicture, PlanarLayout,
    testing::Values(
        Layout{GST_VIDEO_FORMAT_I420, VideoFrameBufferType::YUV420, SubsamplingMode::Mode420},
        Layout{GST_VIDEO_FORMAT_Y42B, VideoFrameBufferType::YUV422, SubsamplingMode::Mode422},
        Layout{GST_VIDEO_FORMAT_Y444, VideoFrameBufferType::YUV444, SubsamplingMode::Mode444},
        Layout{GST_VIDEO_FORMAT_I420_10LE, VideoFrameBufferType::YUV420_16, SubsamplingMode::Mode420},
        Layout{GST_VIDEO_FORMAT_I422_10LE, VideoFrameBufferType::YUV422_16, SubsamplingMode::Mode422},
        Layout{GST_VIDEO_FORMAT_Y444_10LE, VideoFrameBufferType::YUV444_16, SubsamplingMode::Mode444}));

TEST(MappedPicture, BlackensOneFrameObjectAndNoOther) {
    const auto picture = MakePicture(GST_VIDEO_FORMAT_I420, 5, 3);
    const auto cleared = MakeFrame(picture);
    const auto other = MakeFrame(picture);
    const uint8_t before = picture->Plane(0)[0];
    cleared->Clear();
    const auto* black = dynamic_cast<const YUVFrameBuffer*>(cleared.get());
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 5; ++column) {
            EXPECT_EQ(black->GetDataY()[row * black->GetStrideY() + column], 16);
        }
    }
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 3; ++column) {
            EXPECT_EQ(black->GetDataU()[row * black->GetStrideU() + column], 128);
            EXPECT_EQ(black->GetDataV()[row * black->GetStrideV() + column], 128);
        }
    }
    EXPECT_EQ(dynamic_cast<const YUVFrameBuffer*>(other.get())->GetDataY()[0], before);
    EXPECT_EQ(picture->Plane(0)[0], before);
}

TEST(MappedPicture, BlackensDeepAndFullRangePicturesWithTheirOwnBlack) {
    const auto deep = MakeFrame(MakePicture(GST_VIDEO_FORMAT_Y444_10LE, 4, 4));
    deep->Clear();
    const auto* black = dynamic_cast<const YUV16FrameBuffer*>(deep.get());
    EXPECT_EQ(black->GetDataY()[15], 64);
    EXPECT_EQ(black->GetDataU()[15], 512);
    EXPECT_EQ(black->GetDataV()[15], 512);
    const auto full = MakeFrame(MakePicture(GST_VIDEO_FORMAT_Y42B, 4, 4, kFull));
    full->Clear();
    EXPECT_EQ(dynamic_cast<const YUVFrameBuffer*>(full.get())->GetDataY()[0], 0);
}

TEST(MappedPicture, GivesPackedPicturesRowsWithoutPadding) {
    const auto picture = MakePicture(GST_VIDEO_FORMAT_BGRA, 4, 3);
    const auto frame = MakeFrame(picture);
    const auto* packed = dynamic_cast<const RGBFrameBuffer*>(frame.get());
    ASSERT_NE(packed, nullptr);
    EXPECT_EQ(packed->GetType(), VideoFrameBufferType::RGB);
    for (int row = 0; row < 3; ++row) {
        for (int byte = 0; byte < 16; ++byte) {
            EXPECT_EQ(packed->GetBuffer()[row * 16 + byte],
                      picture->Plane(0)[row * picture->Stride(0) + byte]);
        }
    }
    frame->Clear();
    EXPECT_EQ(packed->GetBuffer()[0], 0);
    EXPECT_EQ(packed->GetBuffer()[47], 255) << "black is opaque";
}

TEST(MappedPicture, RefusesLayoutsThatFramesCannotShowAndBuffersThatAreTooSmall) {
    EXPECT_EQ(MakePicture(GST_VIDEO_FORMAT_NV12, 16, 16), nullptr);
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, 64, 64);
    const GstOwned<GstBuffer> small(gst_buffer_new_allocate(nullptr, 100, nullptr));
    EXPECT_EQ(MappedPicture::Make(small.get(), info, kLimited), nullptr);
}

TEST(MappedPicture, OutlivesThePipelineThatMadeIt) {
    std::shared_ptr<VideoFrameBuffer> frame;
    {
        GstVideoInfo info;
        const GstOwned<GstBuffer> buffer(MakePaddedBuffer(GST_VIDEO_FORMAT_I420, 16, 16, info));
        frame = MakeFrame(MappedPicture::Make(buffer.get(), info, kLimited));
    }
    EXPECT_EQ(dynamic_cast<const YUVFrameBuffer*>(frame.get())->GetDataY()[1], 7);
}

}  // namespace
}  // namespace Corvanta::Engine
