#include "video/TextureFormat.h"

#include "platform/SDLAdditions.h"

namespace Corvanta::Video {

Uint32 TextureFormatFor(VideoFrameBufferType type, SubsamplingMode subsampling) {
    switch (type) {
        case VideoFrameBufferType::RGB: return SDL_PIXELFORMAT_ARGB8888;
        case VideoFrameBufferType::YUV420:
        case VideoFrameBufferType::YUV422:
        case VideoFrameBufferType::YUV444:
            if (subsampling == SubsamplingMode::Mode422) return kPixelFormatI422;
            if (subsampling == SubsamplingMode::Mode444) return kPixelFormatI444;
            return SDL_PIXELFORMAT_IYUV;
        case VideoFrameBufferType::YUV420_16:
        case VideoFrameBufferType::YUV422_16:
        case VideoFrameBufferType::YUV444_16:
            if (subsampling == SubsamplingMode::Mode420) return kPixelFormatI010;
            if (subsampling == SubsamplingMode::Mode422) return kPixelFormatI210;
            if (subsampling == SubsamplingMode::Mode444) return kPixelFormatI410;
            return SDL_PIXELFORMAT_IYUV;
    }
    return SDL_PIXELFORMAT_UNKNOWN;
}

}  // namespace Corvanta::Video
