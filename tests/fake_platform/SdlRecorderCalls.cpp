// The functions that SdlRecorder puts in the place of SDL's.

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_ttf.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/SdlRecorder.h"

using Corvanta::Testing::Calls;
using Corvanta::Testing::Sdl;
using Corvanta::Testing::UncountedScope;

namespace {

// The library's own function of that name. The pointer only tells the type.
template <typename Function>
Function* Next(Function*, const char* name) {
    void* const symbol = dlsym(RTLD_NEXT, name);
    if (symbol == nullptr) {
        std::fprintf(stderr, "No library has %s\n", name);
        std::abort();
    }
    return reinterpret_cast<Function*>(symbol);
}

// Set while a satellite library calls SDL for itself.
thread_local bool isInsideSatellite = false;

template <typename... Arguments>
void Record(const char* name, const Arguments&... arguments) {
    if (!isInsideSatellite) {
        Calls().Record(name, arguments...);
    }
}

bool TakesFailure(const char* name) {
    const UncountedScope uncounted;
    return !isInsideSatellite && Sdl().TakeFailure(name);
}

std::string Text(const SDL_Rect* rect) {
    const UncountedScope uncounted;
    if (rect == nullptr) {
        return "null";
    }
    return std::to_string(rect->x) + ' ' + std::to_string(rect->y) + ' ' + std::to_string(rect->w) + ' ' +
           std::to_string(rect->h);
}

const char* Presence(bool isThere) {
    return isThere ? "set" : "null";
}

}  // namespace

extern "C" {

// Process

int SDL_Init(Uint32 flags) {
    static const auto real = Next(&SDL_Init, "SDL_Init");
    Record("SDL_Init", flags);
    return TakesFailure("SDL_Init") ? -1 : real(flags);
}

int SDL_InitSubSystem(Uint32 flags) {
    static const auto real = Next(&SDL_InitSubSystem, "SDL_InitSubSystem");
    Record("SDL_InitSubSystem", flags);
    return TakesFailure("SDL_InitSubSystem") ? -1 : real(flags);
}

void SDL_Quit() {
    static const auto real = Next(&SDL_Quit, "SDL_Quit");
    Record("SDL_Quit");
    real();
}

void SDL_QuitSubSystem(Uint32 flags) {
    static const auto real = Next(&SDL_QuitSubSystem, "SDL_QuitSubSystem");
    Record("SDL_QuitSubSystem", flags);
    real(flags);
}

void SDL_AudioQuit() {
    static const auto real = Next(&SDL_AudioQuit, "SDL_AudioQuit");
    Record("SDL_AudioQuit");
    real();
}

SDL_bool SDL_SetHint(const char* name, const char* value) {
    static const auto real = Next(&SDL_SetHint, "SDL_SetHint");
    Record("SDL_SetHint", name, value);
    return TakesFailure("SDL_SetHint") ? SDL_FALSE : real(name, value);
}

void SDL_LogSetAllPriority(SDL_LogPriority priority) {
    static const auto real = Next(&SDL_LogSetAllPriority, "SDL_LogSetAllPriority");
    Record("SDL_LogSetAllPriority", priority);
    real(priority);
}

void SDL_LogSetOutputFunction(SDL_LogOutputFunction callback, void* userdata) {
    static const auto real = Next(&SDL_LogSetOutputFunction, "SDL_LogSetOutputFunction");
    Record("SDL_LogSetOutputFunction", Presence(callback != nullptr), userdata);
    real(callback, userdata);
}

void SDL_StartTextInput() {
    static const auto real = Next(&SDL_StartTextInput, "SDL_StartTextInput");
    Record("SDL_StartTextInput");
    real();
}

void SDL_StopTextInput() {
    static const auto real = Next(&SDL_StopTextInput, "SDL_StopTextInput");
    Record("SDL_StopTextInput");
    real();
}

Uint8 SDL_EventState(Uint32 type, int state) {
    static const auto real = Next(&SDL_EventState, "SDL_EventState");
    Record("SDL_EventState", type, state);
    return real(type, state);
}

void SDL_SetEventFilter(SDL_EventFilter filter, void* userdata) {
    static const auto real = Next(&SDL_SetEventFilter, "SDL_SetEventFilter");
    Record("SDL_SetEventFilter", Presence(filter != nullptr), userdata);
    real(filter, userdata);
}

void SDL_AddEventWatch(SDL_EventFilter filter, void* userdata) {
    static const auto real = Next(&SDL_AddEventWatch, "SDL_AddEventWatch");
    Record("SDL_AddEventWatch", Presence(filter != nullptr), userdata);
    real(filter, userdata);
}

void SDL_DelEventWatch(SDL_EventFilter filter, void* userdata) {
    static const auto real = Next(&SDL_DelEventWatch, "SDL_DelEventWatch");
    Record("SDL_DelEventWatch", Presence(filter != nullptr), userdata);
    real(filter, userdata);
}

// Windows and renderers

SDL_Window* SDL_CreateWindowFrom(const void* data) {
    static const auto real = Next(&SDL_CreateWindowFrom, "SDL_CreateWindowFrom");
    Record("SDL_CreateWindowFrom", data);
    if (TakesFailure("SDL_CreateWindowFrom")) {
        return nullptr;
    }
    SDL_Window* const window =
        Sdl().ReplacesForeignWindows() ? SDL_CreateWindow("", 0, 0, 640, 480, SDL_WINDOW_HIDDEN) : real(data);
    const UncountedScope uncounted;
    Sdl().AddWindow(window);
    return window;
}

void SDL_DestroyWindow(SDL_Window* window) {
    static const auto real = Next(&SDL_DestroyWindow, "SDL_DestroyWindow");
    Record("SDL_DestroyWindow", window);
    Sdl().RemoveWindow(window);
    real(window);
}

void SDL_SetWindowSize(SDL_Window* window, int width, int height) {
    static const auto real = Next(&SDL_SetWindowSize, "SDL_SetWindowSize");
    Record("SDL_SetWindowSize", window, width, height);
    real(window, width, height);
}

int SDL_GetNumRenderDrivers() {
    static const auto real = Next(&SDL_GetNumRenderDrivers, "SDL_GetNumRenderDrivers");
    const UncountedScope uncounted;
    const auto drivers = Sdl().RenderDrivers();
    return drivers ? static_cast<int>(drivers->size()) : real();
}

int SDL_GetRenderDriverInfo(int index, SDL_RendererInfo* info) {
    static const auto real = Next(&SDL_GetRenderDriverInfo, "SDL_GetRenderDriverInfo");
    const UncountedScope uncounted;
    const auto drivers = Sdl().RenderDrivers();
    if (!drivers) {
        return real(index, info);
    }
    if (index < 0 || index >= static_cast<int>(drivers->size())) {
        return SDL_SetError("index must be in the range of the render drivers");
    }
    // The name must outlive the call, whatever becomes of the list.
    static thread_local std::string name;
    name = (*drivers)[static_cast<size_t>(index)];
    *info = {};
    info->name = name.c_str();
    return 0;
}

int SDL_GetRendererInfo(SDL_Renderer* renderer, SDL_RendererInfo* info) {
    static const auto real = Next(&SDL_GetRendererInfo, "SDL_GetRendererInfo");
    const int result = real(renderer, info);
    const int limit = Sdl().TextureSideLimit();
    if (result == 0 && limit > 0) {
        info->max_texture_width = limit;
        info->max_texture_height = limit;
    }
    const char* const name = Sdl().NameOfRenderers();
    if (result == 0 && name != nullptr) info->name = name;
    return result;
}

SDL_Renderer* SDL_CreateRenderer(SDL_Window* window, int index, Uint32 flags) {
    static const auto real = Next(&SDL_CreateRenderer, "SDL_CreateRenderer");
    Record("SDL_CreateRenderer", window, index, flags);
    if (TakesFailure("SDL_CreateRenderer")) {
        return nullptr;
    }
    const UncountedScope uncounted;
    SDL_Renderer* const renderer = Sdl().RenderDrivers() ? real(window, -1, SDL_RENDERER_TARGETTEXTURE)
                                                         : real(window, index, Sdl().FlagsToPass(flags));
    Sdl().AddRenderer(renderer);
    return renderer;
}

void SDL_DestroyRenderer(SDL_Renderer* renderer) {
    static const auto real = Next(&SDL_DestroyRenderer, "SDL_DestroyRenderer");
    Record("SDL_DestroyRenderer", renderer);
    Sdl().RemoveRenderer(renderer);
    real(renderer);
}

int SDL_RenderSetScale(SDL_Renderer* renderer, float scaleX, float scaleY) {
    static const auto real = Next(&SDL_RenderSetScale, "SDL_RenderSetScale");
    Record("SDL_RenderSetScale", renderer, scaleX, scaleY);
    return TakesFailure("SDL_RenderSetScale") ? -1 : real(renderer, scaleX, scaleY);
}

int SDL_RenderSetViewport(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto real = Next(&SDL_RenderSetViewport, "SDL_RenderSetViewport");
    Record("SDL_RenderSetViewport", renderer, Text(rect));
    return TakesFailure("SDL_RenderSetViewport") ? -1 : real(renderer, rect);
}

int SDL_RenderSetClipRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto real = Next(&SDL_RenderSetClipRect, "SDL_RenderSetClipRect");
    Record("SDL_RenderSetClipRect", renderer, Text(rect));
    return TakesFailure("SDL_RenderSetClipRect") ? -1 : real(renderer, rect);
}

int SDL_SetRenderTarget(SDL_Renderer* renderer, SDL_Texture* texture) {
    static const auto real = Next(&SDL_SetRenderTarget, "SDL_SetRenderTarget");
    Record("SDL_SetRenderTarget", renderer, texture);
    return TakesFailure("SDL_SetRenderTarget") ? -1 : real(renderer, texture);
}

int SDL_SetRenderDrawBlendMode(SDL_Renderer* renderer, SDL_BlendMode mode) {
    static const auto real = Next(&SDL_SetRenderDrawBlendMode, "SDL_SetRenderDrawBlendMode");
    Record("SDL_SetRenderDrawBlendMode", renderer, mode);
    return TakesFailure("SDL_SetRenderDrawBlendMode") ? -1 : real(renderer, mode);
}

int SDL_SetRenderDrawColor(SDL_Renderer* renderer, Uint8 red, Uint8 green, Uint8 blue, Uint8 alpha) {
    static const auto real = Next(&SDL_SetRenderDrawColor, "SDL_SetRenderDrawColor");
    Record("SDL_SetRenderDrawColor", renderer, red, green, blue, alpha);
    return TakesFailure("SDL_SetRenderDrawColor") ? -1 : real(renderer, red, green, blue, alpha);
}

int SDL_RenderClear(SDL_Renderer* renderer) {
    static const auto real = Next(&SDL_RenderClear, "SDL_RenderClear");
    Record("SDL_RenderClear", renderer);
    return TakesFailure("SDL_RenderClear") ? -1 : real(renderer);
}

void SDL_RenderPresent(SDL_Renderer* renderer) {
    static const auto real = Next(&SDL_RenderPresent, "SDL_RenderPresent");
    Record("SDL_RenderPresent", renderer);
    real(renderer);
}

int SDL_RenderCopy(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* source,
                   const SDL_Rect* destination) {
    static const auto real = Next(&SDL_RenderCopy, "SDL_RenderCopy");
    Record("SDL_RenderCopy", renderer, texture, Text(source), Text(destination));
    return TakesFailure("SDL_RenderCopy") ? -1 : real(renderer, texture, source, destination);
}

int SDL_RenderCopyEx(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* source,
                     const SDL_Rect* destination, const double angle, const SDL_Point* center,
                     const SDL_RendererFlip flip) {
    static const auto real = Next(&SDL_RenderCopyEx, "SDL_RenderCopyEx");
    Record("SDL_RenderCopyEx", renderer, texture, Text(source), Text(destination), angle,
           Presence(center != nullptr), flip);
    return TakesFailure("SDL_RenderCopyEx")
               ? -1
               : real(renderer, texture, source, destination, angle, center, flip);
}

int SDL_RenderFillRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto real = Next(&SDL_RenderFillRect, "SDL_RenderFillRect");
    Record("SDL_RenderFillRect", renderer, Text(rect));
    return TakesFailure("SDL_RenderFillRect") ? -1 : real(renderer, rect);
}

int SDL_RenderFillRects(SDL_Renderer* renderer, const SDL_Rect* rects, int count) {
    static const auto real = Next(&SDL_RenderFillRects, "SDL_RenderFillRects");
    Record("SDL_RenderFillRects", renderer, count);
    return TakesFailure("SDL_RenderFillRects") ? -1 : real(renderer, rects, count);
}

int SDL_RenderDrawLine(SDL_Renderer* renderer, int x1, int y1, int x2, int y2) {
    static const auto real = Next(&SDL_RenderDrawLine, "SDL_RenderDrawLine");
    Record("SDL_RenderDrawLine", renderer, x1, y1, x2, y2);
    return TakesFailure("SDL_RenderDrawLine") ? -1 : real(renderer, x1, y1, x2, y2);
}

int SDL_RenderDrawRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto real = Next(&SDL_RenderDrawRect, "SDL_RenderDrawRect");
    Record("SDL_RenderDrawRect", renderer, Text(rect));
    return TakesFailure("SDL_RenderDrawRect") ? -1 : real(renderer, rect);
}

// Textures

SDL_Texture* SDL_CreateTexture(SDL_Renderer* renderer, Uint32 format, int access, int width, int height) {
    static const auto real = Next(&SDL_CreateTexture, "SDL_CreateTexture");
    Record("SDL_CreateTexture", renderer, SDL_GetPixelFormatName(format), format, access, width, height);
    if (TakesFailure("SDL_CreateTexture")) {
        return nullptr;
    }
    SDL_Texture* const texture = real(renderer, Sdl().FormatToMake(format), access, width, height);
    const UncountedScope uncounted;
    Sdl().AddTexture(renderer, texture, format);
    return texture;
}

SDL_Texture* SDL_CreateTextureFromSurface(SDL_Renderer* renderer, SDL_Surface* surface) {
    static const auto real = Next(&SDL_CreateTextureFromSurface, "SDL_CreateTextureFromSurface");
    Record("SDL_CreateTextureFromSurface", renderer, surface);
    if (TakesFailure("SDL_CreateTextureFromSurface")) {
        return nullptr;
    }
    SDL_Texture* const texture = real(renderer, surface);
    if (texture != nullptr) {
        const UncountedScope uncounted;
        Uint32 format = 0;
        SDL_QueryTexture(texture, &format, nullptr, nullptr, nullptr);
        Sdl().AddTexture(renderer, texture, format);
    }
    return texture;
}

void SDL_DestroyTexture(SDL_Texture* texture) {
    static const auto real = Next(&SDL_DestroyTexture, "SDL_DestroyTexture");
    Record("SDL_DestroyTexture", texture);
    Sdl().RemoveTexture(texture);
    real(texture);
}

int SDL_QueryTexture(SDL_Texture* texture, Uint32* format, int* access, int* width, int* height) {
    static const auto real = Next(&SDL_QueryTexture, "SDL_QueryTexture");
    const int result = real(texture, format, access, width, height);
    const auto asked = Sdl().AskedFormat(texture);
    if (result == 0 && format != nullptr && asked) {
        *format = *asked;
    }
    return result;
}

int SDL_UpdateTexture(SDL_Texture* texture, const SDL_Rect* rect, const void* pixels, int pitch) {
    static const auto real = Next(&SDL_UpdateTexture, "SDL_UpdateTexture");
    Record("SDL_UpdateTexture", texture, Text(rect), pixels, pitch);
    return TakesFailure("SDL_UpdateTexture") ? -1 : real(texture, rect, pixels, pitch);
}

int SDL_UpdateYUVTexture(SDL_Texture* texture, const SDL_Rect* rect, const Uint8* planeY, int strideY,
                         const Uint8* planeU, int strideU, const Uint8* planeV, int strideV) {
    static const auto real = Next(&SDL_UpdateYUVTexture, "SDL_UpdateYUVTexture");
    Record("SDL_UpdateYUVTexture", texture, Text(rect), static_cast<const void*>(planeY), strideY,
           static_cast<const void*>(planeU), strideU, static_cast<const void*>(planeV), strideV);
    return TakesFailure("SDL_UpdateYUVTexture")
               ? -1
               : real(texture, rect, planeY, strideY, planeU, strideU, planeV, strideV);
}

int SDL_SetTextureColorMod(SDL_Texture* texture, Uint8 red, Uint8 green, Uint8 blue) {
    static const auto real = Next(&SDL_SetTextureColorMod, "SDL_SetTextureColorMod");
    Record("SDL_SetTextureColorMod", texture, red, green, blue);
    return TakesFailure("SDL_SetTextureColorMod") ? -1 : real(texture, red, green, blue);
}

int SDL_SetTextureAlphaMod(SDL_Texture* texture, Uint8 alpha) {
    static const auto real = Next(&SDL_SetTextureAlphaMod, "SDL_SetTextureAlphaMod");
    Record("SDL_SetTextureAlphaMod", texture, alpha);
    return TakesFailure("SDL_SetTextureAlphaMod") ? -1 : real(texture, alpha);
}

int SDL_SetTextureBlendMode(SDL_Texture* texture, SDL_BlendMode mode) {
    static const auto real = Next(&SDL_SetTextureBlendMode, "SDL_SetTextureBlendMode");
    Record("SDL_SetTextureBlendMode", texture, mode);
    return TakesFailure("SDL_SetTextureBlendMode") ? -1 : real(texture, mode);
}

void SDL_SetYUVConversionMode(SDL_YUV_CONVERSION_MODE mode) {
    static const auto real = Next(&SDL_SetYUVConversionMode, "SDL_SetYUVConversionMode");
    Record("SDL_SetYUVConversionMode", mode);
    real(mode);
}

// Satellites

int TTF_Init() {
    static const auto real = Next(&TTF_Init, "TTF_Init");
    Record("TTF_Init");
    return TakesFailure("TTF_Init") ? -1 : real();
}

void TTF_Quit() {
    static const auto real = Next(&TTF_Quit, "TTF_Quit");
    Record("TTF_Quit");
    real();
}

TTF_Font* TTF_OpenFont(const char* file, int size) {
    static const auto real = Next(&TTF_OpenFont, "TTF_OpenFont");
    Record("TTF_OpenFont", file, size);
    return TakesFailure("TTF_OpenFont") ? nullptr : real(file, size);
}

void TTF_CloseFont(TTF_Font* font) {
    static const auto real = Next(&TTF_CloseFont, "TTF_CloseFont");
    Record("TTF_CloseFont", font);
    real(font);
}

int IMG_Init(int flags) {
    static const auto real = Next(&IMG_Init, "IMG_Init");
    Record("IMG_Init", flags);
    return TakesFailure("IMG_Init") ? 0 : real(flags);
}

void IMG_Quit() {
    static const auto real = Next(&IMG_Quit, "IMG_Quit");
    Record("IMG_Quit");
    real();
}

SDL_Texture* IMG_LoadTexture(SDL_Renderer* renderer, const char* file) {
    static const auto real = Next(&IMG_LoadTexture, "IMG_LoadTexture");
    Record("IMG_LoadTexture", renderer, file);
    if (TakesFailure("IMG_LoadTexture")) {
        return nullptr;
    }
    isInsideSatellite = true;
    SDL_Texture* const texture = real(renderer, file);
    isInsideSatellite = false;
    return texture;
}
}
