// The SDL build with the HDR additions: everything goes to SDL as it is.
#include "ui/HdrSdl.h"

namespace Corvanta::UI {

Uint32 HdrSdl::RendererFlag() {
    return kRendererHdrOutput;
}

void HdrSdl::DestroyRenderer(SDL_Renderer* renderer) {
    SDL_DestroyRenderer(renderer);
}

DisplayTraits HdrSdl::ReadTraits(SDL_Renderer* renderer) {
    DisplayTraits traits;
    SDL_GetRenderColorSpace(renderer, &traits.colorSpace);
    SDL_GetRenderPixelFormat(renderer, &traits.pixelFormat);
    traits.exactPlanes = true;
    return traits;
}

void HdrSdl::SetSdrBrightness(SDL_Renderer* renderer, float nits) {
    SDL_SetRenderSDRBrightness(renderer, nits);
}

std::optional<float> HdrSdl::GetSdrBrightness(SDL_Renderer* renderer) {
    float nits = 0.0F;
    if (SDL_GetRenderSDRBrightness(renderer, &nits) < 0) return std::nullopt;
    return nits;
}

void HdrSdl::SetHdrMetadata(SDL_Renderer* renderer, const RenderHDRMetadata& metadata) {
    SDL_SetRenderHDRMetadata(renderer, &metadata);
}

void HdrSdl::RemoveHdrMetadata(SDL_Renderer* renderer) {
    SDL_RemoveRenderHDRMetadata(renderer);
}

bool HdrSdl::ShowsPlanes(const DisplayTraits&, const PlaneLayout&) {
    return true;
}

void HdrSdl::SetTextureColorSpace(SDL_Texture* texture, int space) {
    SDL_SetTextureColorSpace(texture, space);
}

void HdrSdl::SetTextureColorSpaceRange(SDL_Texture* texture, int full) {
    SDL_SetTextureColorSpaceRange(texture, full);
}

int HdrSdl::UpdateYUVTexture16(SDL_Texture* texture, const Uint16* y, int strideY, const Uint16* u,
                               int strideU, const Uint16* v, int strideV) {
    return SDL_UpdateYUVTexture16(texture, nullptr, y, strideY, u, strideU, v, strideV);
}

}  // namespace Corvanta::UI
