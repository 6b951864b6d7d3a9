#include "video/FrameCheck.h"

#include <array>

namespace Corvanta::Video {

namespace {

struct Plane {
    const void* data;
    int stride;
    int rowBytes;
};

FrameDefect CheckSize(const VideoFrameBuffer& frame) {
    if (frame.GetWidth() <= 0 || frame.GetHeight() <= 0) return FrameDefect::EmptySize;
    if (frame.GetWidth() > kMaxFrameSide || frame.GetHeight() > kMaxFrameSide) return FrameDefect::HugeSize;
    return FrameDefect::None;
}

template <typename Frame>
FrameDefect CheckPlanes(const Frame& frame) {
    if (const FrameDefect defect = CheckSize(frame); defect != FrameDefect::None) return defect;
    const int sampleBytes = static_cast<int>(sizeof(*frame.GetDataY()));
    const bool fullWidthChroma = frame.GetSubsamplingMode() == SubsamplingMode::Mode444;
    const int width = frame.GetWidth();
    const int chromaWidth = fullWidthChroma ? width : (width + 1) / 2;
    const std::array<Plane, 3> planes{{{frame.GetDataY(), frame.GetStrideY(), width * sampleBytes},
                                       {frame.GetDataU(), frame.GetStrideU(), chromaWidth * sampleBytes},
                                       {frame.GetDataV(), frame.GetStrideV(), chromaWidth * sampleBytes}}};
    for (const Plane& plane : planes) {
        if (plane.data == nullptr) return FrameDefect::NullPlane;
    }
    for (const Plane& plane : planes) {
        if (plane.stride < plane.rowBytes) return FrameDefect::ShortStride;
    }
    return FrameDefect::None;
}

}  // namespace

FrameDefect CheckFrame(const VideoFrameBuffer& frame) {
    switch (frame.GetType()) {
        case VideoFrameBufferType::RGB: {
            const auto* rgb = dynamic_cast<const RGBFrameBuffer*>(&frame);
            if (rgb == nullptr) return FrameDefect::WrongClass;
            if (const FrameDefect defect = CheckSize(frame); defect != FrameDefect::None) return defect;
            return rgb->GetBuffer() == nullptr ? FrameDefect::NullPlane : FrameDefect::None;
        }
        case VideoFrameBufferType::YUV420:
        case VideoFrameBufferType::YUV422:
        case VideoFrameBufferType::YUV444: {
            const auto* yuv = dynamic_cast<const YUVFrameBuffer*>(&frame);
            return yuv == nullptr ? FrameDefect::WrongClass : CheckPlanes(*yuv);
        }
        case VideoFrameBufferType::YUV420_16:
        case VideoFrameBufferType::YUV422_16:
        case VideoFrameBufferType::YUV444_16: {
            const auto* yuv = dynamic_cast<const YUV16FrameBuffer*>(&frame);
            return yuv == nullptr ? FrameDefect::WrongClass : CheckPlanes(*yuv);
        }
        default: return FrameDefect::UnknownType;
    }
}

const char* Describe(FrameDefect defect) {
    switch (defect) {
        case FrameDefect::None: return "";
        case FrameDefect::UnknownType: return "unknown buffer type";
        case FrameDefect::WrongClass: return "buffer class does not match its type";
        case FrameDefect::EmptySize: return "no pixels";
        case FrameDefect::HugeSize: return "larger than 16384 pixels on a side";
        case FrameDefect::NullPlane: return "a plane is missing";
        case FrameDefect::ShortStride: return "a stride is shorter than its row";
    }
    return "unknown defect";
}

}  // namespace Corvanta::Video
