#include "engine/webrtc/TransferSource.h"

namespace Corvanta::Engine {

namespace {

template <typename Frame>
SourcePicture ReadPlanar(const Frame& frame, bool sixteenBit) {
    SourcePicture picture;
    switch (frame.GetSubsamplingMode()) {
        case SubsamplingMode::Mode422:
            picture.type = sixteenBit ? VideoFrameBufferType::YUV422_16 : VideoFrameBufferType::YUV422;
            break;
        case SubsamplingMode::Mode444:
            picture.type = sixteenBit ? VideoFrameBufferType::YUV444_16 : VideoFrameBufferType::YUV444;
            break;
        default:
            picture.type = sixteenBit ? VideoFrameBufferType::YUV420_16 : VideoFrameBufferType::YUV420;
            break;
    }
    picture.data = {reinterpret_cast<const uint8_t*>(frame.GetDataY()),
                    reinterpret_cast<const uint8_t*>(frame.GetDataU()),
                    reinterpret_cast<const uint8_t*>(frame.GetDataV())};
    picture.stride = {frame.GetStrideY(), frame.GetStrideU(), frame.GetStrideV()};
    return picture;
}

std::optional<SourcePicture> ReadPointers(const VideoFrameBuffer& frame) {
    const VideoFrameBufferType type = frame.GetType();
    if (type == VideoFrameBufferType::RGB) {
        const auto* rgb = dynamic_cast<const RGBFrameBuffer*>(&frame);
        if (rgb == nullptr) return std::nullopt;
        return SourcePicture{.type = type, .data = {rgb->GetBuffer()}, .stride = {4 * frame.GetWidth()}};
    }
    if (IsSixteenBit(type)) {
        const auto* wide = dynamic_cast<const YUV16FrameBuffer*>(&frame);
        if (wide == nullptr) return std::nullopt;
        return ReadPlanar(*wide, true);
    }
    const auto* narrow = dynamic_cast<const YUVFrameBuffer*>(&frame);
    if (narrow == nullptr) return std::nullopt;
    return ReadPlanar(*narrow, false);
}

}  // namespace

std::optional<SourcePicture> ReadFrame(const VideoFrameBuffer* frame, const char*& defect) {
    const auto refuse = [&defect](const char* text) {
        defect = text;
        return std::nullopt;
    };
    if (frame == nullptr) return refuse("there is none");
    if (!IsKnown(frame->GetType())) return refuse("unknown buffer type");
    const int width = frame->GetWidth();
    const int height = frame->GetHeight();
    if (width < 1 || height < 1) return refuse("no pixels");
    if (width > kMaxFrameSide || height > kMaxFrameSide) return refuse("larger than 16384 pixels on a side");
    std::optional<SourcePicture> picture = ReadPointers(*frame);
    if (!picture) return refuse("buffer class does not match its type");
    picture->width = width;
    picture->height = height;
    const int planes = picture->IsPacked() ? 1 : 3;
    const bool halfWidth = GetSubsampling(picture->type) != SubsamplingMode::Mode444;
    for (int i = 0; i < planes; ++i) {
        const auto plane = static_cast<size_t>(i);
        const int samples = i > 0 && halfWidth ? (width + 1) / 2 : width;
        const int sampleBytes = picture->IsPacked() ? 4 : IsSixteenBit(picture->type) ? 2 : 1;
        if (picture->data[plane] == nullptr) return refuse("a plane is missing");
        if (picture->stride[plane] < samples * sampleBytes) return refuse("a stride is shorter than its row");
    }
    return picture;
}

SourcePicture ReadNewFrame(const NewFrame& made) {
    SourcePicture picture{
        .type = made.frame->GetType(), .width = made.frame->GetWidth(), .height = made.frame->GetHeight()};
    for (size_t i = 0; i < 3; ++i) {
        picture.data[i] = made.planes[i].data;
        picture.stride[i] = made.planes[i].stride;
    }
    return picture;
}

}  // namespace Corvanta::Engine
