#include "tests/fake_platform/FakeSdlAdditions.h"

#include "tests/fake_platform/CallLog.h"

namespace Corvanta::Testing {

using State = FakeSdlAdditions::State;

FakeSdlAdditions& SdlAdditions() {
    static FakeSdlAdditions* const additions = new FakeSdlAdditions;
    return *additions;
}

void FakeSdlAdditions::Reset() {
    const std::lock_guard lock(mutex_);
    state_ = {};
    failing_.clear();
}

void FakeSdlAdditions::SetRenderColorSpace(int colorSpace) {
    const std::lock_guard lock(mutex_);
    state_.renderColorSpace = colorSpace;
}

void FakeSdlAdditions::SetRenderPixelFormat(Uint32 format) {
    const std::lock_guard lock(mutex_);
    state_.pixelFormat = format;
}

void FakeSdlAdditions::Fail(const std::string& name) {
    const std::lock_guard lock(mutex_);
    failing_.insert(name);
}

float FakeSdlAdditions::Brightness() const {
    const std::lock_guard lock(mutex_);
    return state_.brightness;
}

void FakeSdlAdditions::SetBrightness(float nits) {
    const std::lock_guard lock(mutex_);
    state_.brightness = nits;
}

std::optional<RenderHDRMetadata> FakeSdlAdditions::Metadata() const {
    const std::lock_guard lock(mutex_);
    return state_.metadata;
}

FakeSdlAdditions::TextureColor FakeSdlAdditions::ColorOf(SDL_Texture* texture) const {
    const std::lock_guard lock(mutex_);
    const auto found = state_.textures.find(texture);
    return found == state_.textures.end() ? TextureColor{} : found->second;
}

}  // namespace Corvanta::Testing

using Corvanta::Testing::Calls;
using Corvanta::Testing::SdlAdditions;
using Corvanta::Testing::State;
using Corvanta::Testing::UncountedScope;

extern "C" {

int SDLCALL SDL_SetTextureColorSpace(SDL_Texture* texture, int colorSpace) {
    const UncountedScope uncounted;
    Calls().Record("SDL_SetTextureColorSpace", texture, colorSpace);
    return SdlAdditions().Apply("SDL_SetTextureColorSpace",
                                [&](State& state) { state.textures[texture].colorSpace = colorSpace; });
}

int SDLCALL SDL_SetTextureColorSpaceRange(SDL_Texture* texture, int fullRange) {
    const UncountedScope uncounted;
    Calls().Record("SDL_SetTextureColorSpaceRange", texture, fullRange);
    return SdlAdditions().Apply("SDL_SetTextureColorSpaceRange",
                                [&](State& state) { state.textures[texture].fullRange = fullRange; });
}

int SDLCALL SDL_UpdateYUVTexture16(SDL_Texture* texture, const SDL_Rect* rect, const Uint16* planeY,
                                   int strideY, const Uint16* planeU, int strideU, const Uint16* planeV,
                                   int strideV) {
    const UncountedScope uncounted;
    Calls().Record("SDL_UpdateYUVTexture16", texture, rect != nullptr ? "rectangle" : "whole", planeY,
                   strideY, planeU, strideU, planeV, strideV);
    return SdlAdditions().Apply("SDL_UpdateYUVTexture16", [](State&) {});
}

int SDLCALL SDL_GetRenderColorSpace(SDL_Renderer* renderer, int* colorSpace) {
    const UncountedScope uncounted;
    Calls().Record("SDL_GetRenderColorSpace", renderer);
    return SdlAdditions().Apply("SDL_GetRenderColorSpace",
                                [&](State& state) { *colorSpace = state.renderColorSpace; });
}

int SDLCALL SDL_GetRenderPixelFormat(SDL_Renderer* renderer, Uint32* format) {
    const UncountedScope uncounted;
    Calls().Record("SDL_GetRenderPixelFormat", renderer);
    return SdlAdditions().Apply("SDL_GetRenderPixelFormat",
                                [&](State& state) { *format = state.pixelFormat; });
}

int SDLCALL SDL_SetRenderHDRMetadata(SDL_Renderer* renderer, const Corvanta::RenderHDRMetadata* metadata) {
    const UncountedScope uncounted;
    Calls().Record("SDL_SetRenderHDRMetadata", renderer, metadata->redX, metadata->redY, metadata->greenX,
                   metadata->greenY, metadata->blueX, metadata->blueY, metadata->whiteX, metadata->whiteY,
                   metadata->maxMasteringLuminanceNits, metadata->minMasteringLuminanceNits,
                   metadata->maxContentLightLevelNits, metadata->maxFrameAverageLightLevelNits);
    return SdlAdditions().Apply("SDL_SetRenderHDRMetadata",
                                [&](State& state) { state.metadata = *metadata; });
}

int SDLCALL SDL_RemoveRenderHDRMetadata(SDL_Renderer* renderer) {
    const UncountedScope uncounted;
    Calls().Record("SDL_RemoveRenderHDRMetadata", renderer);
    return SdlAdditions().Apply("SDL_RemoveRenderHDRMetadata", [](State& state) { state.metadata.reset(); });
}

int SDLCALL SDL_SetRenderSDRBrightness(SDL_Renderer* renderer, float nits) {
    const UncountedScope uncounted;
    Calls().Record("SDL_SetRenderSDRBrightness", renderer, nits);
    return SdlAdditions().Apply("SDL_SetRenderSDRBrightness", [&](State& state) { state.brightness = nits; });
}

int SDLCALL SDL_GetRenderSDRBrightness(SDL_Renderer* renderer, float* nits) {
    const UncountedScope uncounted;
    Calls().Record("SDL_GetRenderSDRBrightness", renderer);
    return SdlAdditions().Apply("SDL_GetRenderSDRBrightness",
                                [&](State& state) { *nits = state.brightness; });
}
}
