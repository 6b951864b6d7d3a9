// What the product's SDL build with HDR support has beyond published SDL2. The functions exist only in that
// build and are called on the renderer's own thread; results are as in SDL: 0, or negative with SDL_GetError
// set. The names of the constants are ours, since published headers have none for these values.
#pragma once

#include <SDL.h>

namespace Corvanta {

// Planar textures: 8-bit 4:2:2 and 4:4:4, then 4:2:0, 4:2:2 and 4:4:4 of 10 bits in 16-bit words.
inline constexpr Uint32 kPixelFormatI422 = SDL_DEFINE_PIXELFOURCC('I', '4', '2', '2');
inline constexpr Uint32 kPixelFormatI444 = SDL_DEFINE_PIXELFOURCC('I', '4', '4', '4');
inline constexpr Uint32 kPixelFormatI010 = SDL_DEFINE_PIXELFOURCC('I', '0', '1', '0');
inline constexpr Uint32 kPixelFormatI210 = SDL_DEFINE_PIXELFOURCC('I', '2', '1', '0');
inline constexpr Uint32 kPixelFormatI410 = SDL_DEFINE_PIXELFOURCC('I', '4', '1', '0');

// Flag of SDL_CreateRenderer that asks for HDR output. Published SDL2 finds no driver for it.
inline constexpr Uint32 kRendererHdrOutput = 0x10;

// Type of the event that reports a change of the output's colour space.
inline constexpr Uint32 kRenderColorSpaceChangedEvent = 0x2002;

// Values of SDL_GetRenderColorSpace and of SDL_SetTextureColorSpace. Of the first, any other value is SDR
// too.
inline constexpr int kColorSpaceSdr = 0;
inline constexpr int kColorSpaceBt2020 = 1;

// Static HDR metadata as the build takes them. The luminances stand before the light levels.
struct RenderHDRMetadata {
    float redX, redY;
    float greenX, greenY;
    float blueX, blueY;
    float whiteX, whiteY;
    float maxMasteringLuminanceNits;
    float minMasteringLuminanceNits;
    float maxContentLightLevelNits;
    float maxFrameAverageLightLevelNits;
};
static_assert(sizeof(RenderHDRMetadata) == 12 * sizeof(float));

}  // namespace Corvanta

extern "C" {

// Primaries of a texture's content: kColorSpaceSdr or kColorSpaceBt2020.
DECLSPEC int SDLCALL SDL_SetTextureColorSpace(SDL_Texture* texture, int colorSpace);
// Range of a planar texture's samples: not 0 for full range.
DECLSPEC int SDLCALL SDL_SetTextureColorSpaceRange(SDL_Texture* texture, int fullRange);
// As SDL_UpdateYUVTexture, for planes of 16-bit samples. Strides in bytes; a null rectangle is the whole
// texture.
DECLSPEC int SDLCALL SDL_UpdateYUVTexture16(SDL_Texture* texture, const SDL_Rect* rect, const Uint16* planeY,
                                            int strideY, const Uint16* planeU, int strideU,
                                            const Uint16* planeV, int strideV);
// Colour space of the output: kColorSpaceBt2020 when it is HDR.
DECLSPEC int SDLCALL SDL_GetRenderColorSpace(SDL_Renderer* renderer, int* colorSpace);
// Format of the back buffer.
DECLSPEC int SDLCALL SDL_GetRenderPixelFormat(SDL_Renderer* renderer, Uint32* format);
// The record is copied.
DECLSPEC int SDLCALL SDL_SetRenderHDRMetadata(SDL_Renderer* renderer,
                                              const Corvanta::RenderHDRMetadata* metadata);
DECLSPEC int SDLCALL SDL_RemoveRenderHDRMetadata(SDL_Renderer* renderer);
// White level of SDR content on an HDR output, in cd/m2.
DECLSPEC int SDLCALL SDL_SetRenderSDRBrightness(SDL_Renderer* renderer, float nits);
DECLSPEC int SDLCALL SDL_GetRenderSDRBrightness(SDL_Renderer* renderer, float* nits);
}
