// Tells an HDR output what the main video was graded for. One per view; render thread.
#pragma once

#include <SDL.h>

#include <optional>

#include "platform/ColorSpace.h"
#include "platform/SDLAdditions.h"

namespace Corvanta::Video {

// The record as SDL takes it: the luminances stand before the light levels.
[[nodiscard]] RenderHDRMetadata ToRenderMetadata(const HDRMetadata& metadata);

class HdrMetadataSender final {
public:
    // colorSpace: of the main tile's last upload. Metadata go out with every drawing, since the output may
    // have dropped them; without any, what was sent before is taken back once.
    void Apply(SDL_Renderer* renderer, const ColorSpace& colorSpace);

private:
    std::optional<HDRMetadata> cachedHdrMetadata_;
};

}  // namespace Corvanta::Video
