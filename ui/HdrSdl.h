// The one place that knows which SDL the library is built with. With the SDL build that has the HDR
// additions, planes of every layout go up as they are and the renderer speaks about its output's colour.
// Published SDL2 shows only some pictures exactly, and everything else must be turned into packed ARGB before
// it is uploaded. Two sources implement this header; the build links one. Render thread, but for ShowsPlanes.
#pragma once

#include <SDL.h>

#include <optional>

#include "platform/SDLAdditions.h"
#include "platform/VideoFrameBuffer.h"

namespace Corvanta::UI {

// What a renderer's output is, as read in one drawing.
struct DisplayTraits {
    // kColorSpaceBt2020 means that the output is HDR, any other value SDR.
    int colorSpace = kColorSpaceSdr;
    Uint32 pixelFormat = SDL_PIXELFORMAT_RGBA8888;
    // The driver turns limited-range BT.709 planes into colours exactly.
    bool exactPlanes = false;

    bool operator==(const DisplayTraits&) const = default;
};

// What decides whether planes can go up as they are.
struct PlaneLayout {
    bool wide = false;  // 16-bit words of 10 significant bits
    SubsamplingMode subsampling = SubsamplingMode::Mode420;
    ColorMatrix matrix = ColorMatrix::BT709;
    ColorRange range = ColorRange::Limited;
};

class HdrSdl final {
public:
    HdrSdl() = delete;

    // Renderer flag with which a renderer can drive an HDR output; 0 where SDL has none.
    [[nodiscard]] static Uint32 RendererFlag();
    // Forgets what is kept of the renderer, then destroys it.
    static void DestroyRenderer(SDL_Renderer* renderer);

    [[nodiscard]] static DisplayTraits ReadTraits(SDL_Renderer* renderer);

    // White of SDR content in nits. Get is empty where the renderer does not know it.
    static void SetSdrBrightness(SDL_Renderer* renderer, float nits);
    [[nodiscard]] static std::optional<float> GetSdrBrightness(SDL_Renderer* renderer);

    static void SetHdrMetadata(SDL_Renderer* renderer, const RenderHDRMetadata& metadata);
    static void RemoveHdrMetadata(SDL_Renderer* renderer);

    // Whether a texture of these planes is shown right (at most 1/255 off). Any thread.
    [[nodiscard]] static bool ShowsPlanes(const DisplayTraits& traits, const PlaneLayout& layout);

    // space: kColorSpaceSdr or kColorSpaceBt2020; full: not 0 for full range. Without effect on a texture
    // whose picture was converted.
    static void SetTextureColorSpace(SDL_Texture* texture, int space);
    static void SetTextureColorSpaceRange(SDL_Texture* texture, int full);

    // Uploads whole planes of 16-bit samples; strides in bytes.
    static int UpdateYUVTexture16(SDL_Texture* texture, const Uint16* y, int strideY, const Uint16* u,
                                  int strideU, const Uint16* v, int strideV);
};

}  // namespace Corvanta::UI
