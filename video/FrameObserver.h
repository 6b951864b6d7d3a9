// Something that looks at every frame of a tile before it is shown. Owned by the tile, called on its worker
// thread.
#pragma once

#include <SDL.h>

#include <memory>

#include "platform/VideoFrameBuffer.h"
#include "platform/VideoSourceData.h"

namespace Corvanta::Video {

class FrameObserver {
public:
    virtual ~FrameObserver() = default;

    // The frame as it came, the output that it will be shown on (renderColorSpace, renderPixelFormat: as read
    // from the renderer; mainVideoRect in output pixels), always 0, and the stream's description; its frame
    // rate is -1 when there is none. The tile is locked: the call must be short and must not reach back into
    // the tile.
    virtual void OnFrame(const std::shared_ptr<VideoFrameBuffer>& frame, int renderColorSpace,
                         Uint32 renderPixelFormat, const SDL_Rect& mainVideoRect, int reserved,
                         const VideoSourceData& sourceData) = 0;
};

}  // namespace Corvanta::Video
