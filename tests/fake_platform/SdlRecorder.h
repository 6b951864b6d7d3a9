// Stands between a test program and SDL: it defines SDL's functions in the program itself, writes each call
// into Calls() and passes it on to the library. Link corvanta-sdl-recorder and name Sdl() somewhere in the
// test. What the satellite libraries call while they load a picture is not written down. Any thread.
//
// Recorded: SDL_Init, SDL_InitSubSystem, SDL_Quit, SDL_QuitSubSystem, SDL_AudioQuit, SDL_SetHint,
// SDL_LogSetAllPriority, SDL_LogSetOutputFunction, SDL_StartTextInput, SDL_StopTextInput, SDL_EventState,
// SDL_SetEventFilter, SDL_AddEventWatch, SDL_DelEventWatch, SDL_CreateWindowFrom, SDL_DestroyWindow,
// SDL_SetWindowSize, SDL_CreateRenderer, SDL_DestroyRenderer, SDL_RenderSetScale, SDL_RenderSetViewport,
// SDL_RenderSetClipRect, SDL_SetRenderTarget, SDL_SetRenderDrawBlendMode, SDL_SetRenderDrawColor,
// SDL_RenderClear, SDL_RenderPresent, SDL_RenderCopy, SDL_RenderCopyEx, SDL_RenderFillRect,
// SDL_RenderFillRects, SDL_RenderDrawLine, SDL_RenderDrawRect, SDL_CreateTexture,
// SDL_CreateTextureFromSurface, SDL_DestroyTexture, SDL_UpdateTexture, SDL_UpdateYUVTexture,
// SDL_SetTextureColorMod, SDL_SetTextureAlphaMod, SDL_SetTextureBlendMode, SDL_SetYUVConversionMode,
// TTF_Init, TTF_Quit, TTF_OpenFont, TTF_CloseFont, IMG_Init, IMG_Quit, IMG_LoadTexture.
#pragma once

#include <SDL.h>

#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Corvanta::Testing {

class SdlRecorder final {
public:
    // Back to passing everything on. What lives in SDL stays.
    void Reset();

    // The next calls of that name do nothing and return SDL's failure: null, -1 or false.
    void Fail(const std::string& name, int times = 1);
    void FailAlways(const std::string& name);

    // Lets the planar textures of the HDR build succeed: an IYUV texture of that size is made in their stead,
    // and SDL_QueryTexture answers with the format asked for.
    void AllowPlanarHdrTextures(bool allowed);
    // Lets renderers be made with the flag of the HDR build, which is left out on the way to SDL.
    void AllowHdrRendererFlag(bool allowed);
    // Names of the render drivers that SDL is to have. Renderers are then made by any driver. Empty: the true
    // ones.
    void SetRenderDrivers(std::vector<std::string> names);
    // Renderers say that the sides of their textures are at most that long. 0: what they say themselves.
    void LimitTextureSides(int limit);
    // Renderers give that driver's name instead of their own, which null brings back. The name is not copied.
    void NameRenderers(const char* driver);
    // SDL_CreateWindowFrom makes a hidden window of its own instead of asking for the host's: with the video
    // driver "dummy" a view can then be opened without any display.
    void ReplaceForeignWindows(bool replace);

    // Made and not yet destroyed. The textures of a destroyed renderer count as destroyed.
    [[nodiscard]] size_t LiveTextures() const;
    [[nodiscard]] size_t LiveRenderers() const;
    [[nodiscard]] size_t LiveWindows() const;

    // Used by the functions.
    [[nodiscard]] bool TakeFailure(const char* name);
    [[nodiscard]] Uint32 FormatToMake(Uint32 asked) const;
    [[nodiscard]] Uint32 FlagsToPass(Uint32 asked) const;
    [[nodiscard]] std::optional<std::vector<std::string>> RenderDrivers() const;
    [[nodiscard]] int TextureSideLimit() const;
    [[nodiscard]] const char* NameOfRenderers() const;
    [[nodiscard]] bool ReplacesForeignWindows() const;
    void AddTexture(SDL_Renderer* renderer, SDL_Texture* texture, Uint32 askedFormat);
    void RemoveTexture(SDL_Texture* texture);
    [[nodiscard]] std::optional<Uint32> AskedFormat(SDL_Texture* texture) const;
    void AddRenderer(SDL_Renderer* renderer);
    void RemoveRenderer(SDL_Renderer* renderer);
    void AddWindow(SDL_Window* window);
    void RemoveWindow(SDL_Window* window);

private:
    struct TextureRecord {
        SDL_Renderer* renderer = nullptr;
        Uint32 askedFormat = 0;
    };

    mutable std::mutex mutex_;
    // Guards: all below. A negative number of failures never ends.
    std::map<std::string, int, std::less<>> failures_;
    bool planarHdrTextures_ = false;
    bool hdrRendererFlag_ = false;
    std::vector<std::string> renderDrivers_;
    int textureSideLimit_ = 0;
    const char* nameOfRenderers_ = nullptr;
    bool replacesForeignWindows_ = false;
    std::map<SDL_Texture*, TextureRecord> textures_;
    std::vector<SDL_Renderer*> renderers_;
    std::vector<SDL_Window*> windows_;
};

// The process's one recorder.
SdlRecorder& Sdl();

}  // namespace Corvanta::Testing
