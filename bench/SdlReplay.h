// The SDL calls of one tick, kept so that they can be made again bare: what a tick costs beyond them is the
// library's own. Linking SdlReplay.cpp puts its functions in the place of SDL's own in the program; each
// passes on to SDL, and while a recording runs it is also written down. One thread: the one that draws.
//
// Written down are the functions that a tick calls: SDL_PollEvent, SDL_GetWindowID, SDL_GetWindowFlags,
// SDL_GetWindowWMInfo, SDL_GetCurrentVideoDriver, SDL_GetRendererInfo, SDL_RenderGetScale,
// SDL_RenderSetScale, SDL_RenderSetViewport, SDL_RenderSetClipRect, SDL_SetRenderTarget,
// SDL_SetRenderDrawColor, SDL_SetRenderDrawBlendMode, SDL_RenderClear, SDL_RenderCopy, SDL_RenderFillRect,
// SDL_RenderDrawRect, SDL_RenderPresent, SDL_QueryTexture, SDL_UpdateTexture, SDL_UpdateYUVTexture,
// SDL_SetTextureColorMod, SDL_SetTextureAlphaMod, SDL_SetTextureBlendMode. A function that a tick comes to
// call is to be added here; what satellite libraries ask of SDL counts as the tick's. Making a texture or
// rasterising a text is only counted: no steady tick does it.
#pragma once

#include <SDL.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Corvanta::Bench {

class SdlReplay final {
public:
    // From here each call is written down, until Stop. A recording holds the textures and the renderer by
    // plain pointers: replay it only while they live.
    void Record();
    void Stop();

    // Makes the same calls again, in the same order and with the same arguments. Uploads read copies of the
    // pixels that were uploaded when the recording ran.
    void Run() const;

    // Writes those copies anew, as a decoder writes its next picture, so that a replay finds them in the same
    // caches as a tick does its frame. Any thread, not at the same time as Run.
    void RewritePixels();

    [[nodiscard]] size_t GetCallCount() const { return calls_.size(); }
    // One line a call: the function and the sizes that decide what it costs.
    [[nodiscard]] const std::vector<std::string>& GetDescriptions() const { return descriptions_; }

    // How many of the calls hand a texture new pixels.
    [[nodiscard]] size_t GetUploadCount() const { return pixelUploads_; }
    // What the recorded tick made, which a replay does not make again.
    [[nodiscard]] size_t GetTexturesMade() const { return texturesMade_; }
    [[nodiscard]] size_t GetTextsRasterised() const { return textsRasterised_; }

    // Used by the functions.
    void CountUpload() { ++pixelUploads_; }
    void CountTexture() { ++texturesMade_; }
    void CountText() { ++textsRasterised_; }
    void Add(std::string description, std::function<void()> call);
    // A copy of that many bytes, owned by the recording.
    [[nodiscard]] const uint8_t* Keep(const void* bytes, size_t size);

private:
    struct Pixels {
        std::vector<uint8_t> original;
        std::vector<uint8_t> copy;
    };

    std::vector<std::function<void()>> calls_;
    std::vector<std::string> descriptions_;
    std::vector<std::unique_ptr<Pixels>> pixels_;
    size_t pixelUploads_ = 0;
    size_t texturesMade_ = 0;
    size_t textsRasterised_ = 0;
};

}  // namespace Corvanta::Bench
