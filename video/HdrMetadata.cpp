#include "video/HdrMetadata.h"

#include "ui/HdrSdl.h"

namespace Corvanta::Video {

RenderHDRMetadata ToRenderMetadata(const HDRMetadata& metadata) {
    return {.redX = static_cast<float>(metadata.redX),
            .redY = static_cast<float>(metadata.redY),
            .greenX = static_cast<float>(metadata.greenX),
            .greenY = static_cast<float>(metadata.greenY),
            .blueX = static_cast<float>(metadata.blueX),
            .blueY = static_cast<float>(metadata.blueY),
            .whiteX = static_cast<float>(metadata.whiteX),
            .whiteY = static_cast<float>(metadata.whiteY),
            .maxMasteringLuminanceNits = metadata.maxMasteringLuminanceNits,
            .minMasteringLuminanceNits = metadata.minMasteringLuminanceNits,
            .maxContentLightLevelNits = metadata.maxContentLightLevelNits,
            .maxFrameAverageLightLevelNits = metadata.maxFrameAverageLightLevelNits};
}

void HdrMetadataSender::Apply(SDL_Renderer* renderer, const ColorSpace& colorSpace) {
    const std::optional<HDRMetadata>& metadata = colorSpace.GetHDRMetadata();
    if (!metadata.has_value()) {
        if (cachedHdrMetadata_.has_value()) UI::HdrSdl::RemoveHdrMetadata(renderer);
        cachedHdrMetadata_.reset();
        return;
    }
    cachedHdrMetadata_ = metadata;
    UI::HdrSdl::SetHdrMetadata(renderer, ToRenderMetadata(*cachedHdrMetadata_));
}

}  // namespace Corvanta::Video
