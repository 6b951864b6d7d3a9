// Published SDL2: no HDR output, and textures of 4:2:2, 4:4:4 and 16-bit planes are refused by every driver.
#include <map>
#include <string_view>

#include "ui/HdrSdl.h"

namespace Corvanta::UI {
namespace {

// Kept here because the renderer does not keep it: a host's slider reads back what it set.
std::map<SDL_Renderer*, float>& SdrBrightnessOf() {
    static std::map<SDL_Renderer*, float> brightness;
    return brightness;
}

}  // namespace

Uint32 HdrSdl::RendererFlag() {
    return 0;
}

void HdrSdl::DestroyRenderer(SDL_Renderer* renderer) {
    SdrBrightnessOf().erase(renderer);
    SDL_DestroyRenderer(renderer);
}

DisplayTraits HdrSdl::ReadTraits(SDL_Renderer* renderer) {
    DisplayTraits traits;
    SDL_RendererInfo info;
    if (SDL_GetRendererInfo(renderer, &info) != 0) return traits;
    if (info.num_texture_formats > 0) traits.pixelFormat = info.texture_formats[0];
    // The software driver's own conversion is up to 2/255 off and wraps around out of gamut.
    traits.exactPlanes = std::string_view(info.name) != "software";
    return traits;
}

void HdrSdl::SetSdrBrightness(SDL_Renderer* renderer, float nits) {
    SdrBrightnessOf()[renderer] = nits;
}

std::optional<float> HdrSdl::GetSdrBrightness(SDL_Renderer* renderer) {
    const auto found = SdrBrightnessOf().find(renderer);
    if (found == SdrBrightnessOf().end()) return std::nullopt;
    return found->second;
}

void HdrSdl::SetHdrMetadata(SDL_Renderer*, const RenderHDRMetadata&) {}

void HdrSdl::RemoveHdrMetadata(SDL_Renderer*) {}

bool HdrSdl::ShowsPlanes(const DisplayTraits& traits, const PlaneLayout& layout) {
    const bool bt709 = layout.matrix == ColorMatrix::BT709 || layout.matrix == ColorMatrix::Unspecified;
    return traits.exactPlanes && !layout.wide && layout.subsampling == SubsamplingMode::Mode420 && bt709 &&
           layout.range != ColorRange::Full;
}

void HdrSdl::SetTextureColorSpace(SDL_Texture*, int) {}

void HdrSdl::SetTextureColorSpaceRange(SDL_Texture*, int) {}

int HdrSdl::UpdateYUVTexture16(SDL_Texture*, const Uint16*, int, const Uint16*, int, const Uint16*, int) {
    return SDL_Unsupported();
}

}  // namespace Corvanta::UI
