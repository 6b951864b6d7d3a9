#include "bench/SdlReplay.h"

#include <SDL_syswm.h>
#include <SDL_ttf.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <tuple>
#include <utility>

namespace Corvanta::Bench {
namespace {

// The recording that runs, if one does.
SdlReplay* gRecording = nullptr;

}  // namespace

void SdlReplay::Record() {
    calls_.clear();
    descriptions_.clear();
    pixels_.clear();
    pixelUploads_ = 0;
    texturesMade_ = 0;
    textsRasterised_ = 0;
    gRecording = this;
}

void SdlReplay::Stop() {
    gRecording = nullptr;
}

void SdlReplay::Run() const {
    for (const auto& call : calls_) call();
}

void SdlReplay::RewritePixels() {
    for (const auto& pixels : pixels_) {
        std::memcpy(pixels->copy.data(), pixels->original.data(), pixels->copy.size());
    }
}

void SdlReplay::Add(std::string description, std::function<void()> call) {
    descriptions_.push_back(std::move(description));
    calls_.push_back(std::move(call));
}

const uint8_t* SdlReplay::Keep(const void* bytes, size_t size) {
    const auto* first = static_cast<const uint8_t*>(bytes);
    std::vector<uint8_t> original(first, first + size);
    auto copy = original;
    return pixels_.emplace_back(new Pixels{std::move(original), std::move(copy)})->copy.data();
}

namespace {

// SDL's own function of that name. The pointer only tells the type.
template <typename Function>
Function* Next(Function*, const char* name) {
    void* const symbol = dlsym(RTLD_NEXT, name);
    if (symbol == nullptr) {
        std::fprintf(stderr, "No library has %s\n", name);
        std::abort();
    }
    return reinterpret_cast<Function*>(symbol);
}

// An argument as a recording keeps it. What SDL writes goes to a place of the recording's own, what it reads
// through a pointer is copied; everything else is kept as it is.
template <typename T>
struct Kept {
    explicit Kept(T given) : value(given) {}
    [[nodiscard]] T Get() const { return value; }
    T value;
};

template <>
struct Kept<const SDL_Rect*> {
    explicit Kept(const SDL_Rect* given) : value(given != nullptr ? std::optional(*given) : std::nullopt) {}
    [[nodiscard]] const SDL_Rect* Get() const { return value.has_value() ? &*value : nullptr; }
    std::optional<SDL_Rect> value;
};

template <typename T>
struct Written {
    explicit Written(const T* given) : isWanted(given != nullptr) {}
    [[nodiscard]] T* Get() const { return isWanted ? &place : nullptr; }
    mutable T place{};
    bool isWanted;
};
template <>
struct Kept<int*> : Written<int> {
    using Written::Written;
};
template <>
struct Kept<float*> : Written<float> {
    using Written::Written;
};
template <>
struct Kept<Uint32*> : Written<Uint32> {
    using Written::Written;
};
template <>
struct Kept<SDL_Event*> : Written<SDL_Event> {
    using Written::Written;
};
template <>
struct Kept<SDL_RendererInfo*> : Written<SDL_RendererInfo> {
    using Written::Written;
};

// SDL reads the version out of what it fills.
template <>
struct Kept<SDL_SysWMinfo*> {
    explicit Kept(const SDL_SysWMinfo* given) : place(*given) {}
    [[nodiscard]] SDL_SysWMinfo* Get() const { return &place; }
    mutable SDL_SysWMinfo place;
};

// What an upload or a copy works on.
struct Area {
    Uint32 format = 0;
    int width = 0;
    int height = 0;
};

// Asks SDL itself, so that the question does not count as the tick's.
Area AreaOf(SDL_Texture* texture, const SDL_Rect* rect) {
    static const auto next = Next(&SDL_QueryTexture, "SDL_QueryTexture");
    Area area;
    next(texture, &area.format, nullptr, &area.width, &area.height);
    if (rect != nullptr) {
        area.width = rect->w;
        area.height = rect->h;
    }
    return area;
}

std::string Describe(const char* name, const Area& area, const std::string& detail = "") {
    return std::string(name) + " " + SDL_GetPixelFormatName(area.format) + " " + std::to_string(area.width) +
           "x" + std::to_string(area.height) + detail;
}

// Makes the call, and writes it down if a recording runs.
template <typename Result, typename... Arguments>
Result Pass(const char* name, Result (*next)(Arguments...), std::type_identity_t<Arguments>... arguments) {
    if (gRecording != nullptr) {
        gRecording->Add(name, [next, kept = std::tuple<Kept<Arguments>...>(arguments...)] {
            std::apply([next](const auto&... argument) { next(argument.Get()...); }, kept);
        });
    }
    return next(arguments...);
}

// Rows of a plane, the last one not padded.
size_t PlaneBytes(int pitch, int rowBytes, int rows) {
    return static_cast<size_t>(pitch) * static_cast<size_t>(rows - 1) + static_cast<size_t>(rowBytes);
}

}  // namespace
}  // namespace Corvanta::Bench

using namespace Corvanta::Bench;

extern "C" {

// Input and queries

int SDL_PollEvent(SDL_Event* event) {
    static const auto next = Next(&SDL_PollEvent, "SDL_PollEvent");
    return Pass("SDL_PollEvent", next, event);
}

Uint32 SDL_GetWindowID(SDL_Window* window) {
    static const auto next = Next(&SDL_GetWindowID, "SDL_GetWindowID");
    return Pass("SDL_GetWindowID", next, window);
}

Uint32 SDL_GetWindowFlags(SDL_Window* window) {
    static const auto next = Next(&SDL_GetWindowFlags, "SDL_GetWindowFlags");
    return Pass("SDL_GetWindowFlags", next, window);
}

SDL_bool SDL_GetWindowWMInfo(SDL_Window* window, SDL_SysWMinfo* info) {
    static const auto next = Next(&SDL_GetWindowWMInfo, "SDL_GetWindowWMInfo");
    return Pass("SDL_GetWindowWMInfo", next, window, info);
}

const char* SDL_GetCurrentVideoDriver() {
    static const auto next = Next(&SDL_GetCurrentVideoDriver, "SDL_GetCurrentVideoDriver");
    return Pass("SDL_GetCurrentVideoDriver", next);
}

int SDL_GetRendererInfo(SDL_Renderer* renderer, SDL_RendererInfo* info) {
    static const auto next = Next(&SDL_GetRendererInfo, "SDL_GetRendererInfo");
    return Pass("SDL_GetRendererInfo", next, renderer, info);
}

void SDL_RenderGetScale(SDL_Renderer* renderer, float* scaleX, float* scaleY) {
    static const auto next = Next(&SDL_RenderGetScale, "SDL_RenderGetScale");
    Pass("SDL_RenderGetScale", next, renderer, scaleX, scaleY);
}

int SDL_QueryTexture(SDL_Texture* texture, Uint32* format, int* access, int* width, int* height) {
    static const auto next = Next(&SDL_QueryTexture, "SDL_QueryTexture");
    return Pass("SDL_QueryTexture", next, texture, format, access, width, height);
}

// State of the renderer

int SDL_RenderSetScale(SDL_Renderer* renderer, float scaleX, float scaleY) {
    static const auto next = Next(&SDL_RenderSetScale, "SDL_RenderSetScale");
    return Pass("SDL_RenderSetScale", next, renderer, scaleX, scaleY);
}

int SDL_RenderSetViewport(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto next = Next(&SDL_RenderSetViewport, "SDL_RenderSetViewport");
    return Pass("SDL_RenderSetViewport", next, renderer, rect);
}

int SDL_RenderSetClipRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto next = Next(&SDL_RenderSetClipRect, "SDL_RenderSetClipRect");
    return Pass("SDL_RenderSetClipRect", next, renderer, rect);
}

int SDL_SetRenderTarget(SDL_Renderer* renderer, SDL_Texture* texture) {
    static const auto next = Next(&SDL_SetRenderTarget, "SDL_SetRenderTarget");
    return Pass("SDL_SetRenderTarget", next, renderer, texture);
}

int SDL_SetRenderDrawColor(SDL_Renderer* renderer, Uint8 red, Uint8 green, Uint8 blue, Uint8 alpha) {
    static const auto next = Next(&SDL_SetRenderDrawColor, "SDL_SetRenderDrawColor");
    return Pass("SDL_SetRenderDrawColor", next, renderer, red, green, blue, alpha);
}

int SDL_SetRenderDrawBlendMode(SDL_Renderer* renderer, SDL_BlendMode mode) {
    static const auto next = Next(&SDL_SetRenderDrawBlendMode, "SDL_SetRenderDrawBlendMode");
    return Pass("SDL_SetRenderDrawBlendMode", next, renderer, mode);
}

// Drawing

int SDL_RenderClear(SDL_Renderer* renderer) {
    static const auto next = Next(&SDL_RenderClear, "SDL_RenderClear");
    return Pass("SDL_RenderClear", next, renderer);
}

int SDL_RenderCopy(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* source,
                   const SDL_Rect* target) {
    static const auto next = Next(&SDL_RenderCopy, "SDL_RenderCopy");
    if (gRecording == nullptr) return next(renderer, texture, source, target);
    const std::string to =
        target == nullptr ? " to all" : " to " + std::to_string(target->w) + "x" + std::to_string(target->h);
    const std::string name = Describe("SDL_RenderCopy", AreaOf(texture, source), to);
    return Pass(name.c_str(), next, renderer, texture, source, target);
}

int SDL_RenderFillRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto next = Next(&SDL_RenderFillRect, "SDL_RenderFillRect");
    return Pass("SDL_RenderFillRect", next, renderer, rect);
}

int SDL_RenderDrawRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    static const auto next = Next(&SDL_RenderDrawRect, "SDL_RenderDrawRect");
    return Pass("SDL_RenderDrawRect", next, renderer, rect);
}

void SDL_RenderPresent(SDL_Renderer* renderer) {
    static const auto next = Next(&SDL_RenderPresent, "SDL_RenderPresent");
    Pass("SDL_RenderPresent", next, renderer);
}

// Textures

int SDL_UpdateTexture(SDL_Texture* texture, const SDL_Rect* rect, const void* pixels, int pitch) {
    static const auto next = Next(&SDL_UpdateTexture, "SDL_UpdateTexture");
    if (gRecording != nullptr) {
        gRecording->CountUpload();
        const Area area = AreaOf(texture, rect);
        const int rowBytes = area.width * static_cast<int>(SDL_BYTESPERPIXEL(area.format));
        const uint8_t* kept = gRecording->Keep(pixels, PlaneBytes(pitch, rowBytes, area.height));
        gRecording->Add(Describe("SDL_UpdateTexture", area),
                        [=, part = Kept<const SDL_Rect*>(rect)] { next(texture, part.Get(), kept, pitch); });
    }
    return next(texture, rect, pixels, pitch);
}

int SDL_UpdateYUVTexture(SDL_Texture* texture, const SDL_Rect* rect, const Uint8* y, int strideY,
                         const Uint8* u, int strideU, const Uint8* v, int strideV) {
    static const auto next = Next(&SDL_UpdateYUVTexture, "SDL_UpdateYUVTexture");
    if (gRecording != nullptr) {
        gRecording->CountUpload();
        const Area area = AreaOf(texture, rect);
        const int chromaWidth = (area.width + 1) / 2;
        const int chromaHeight = (area.height + 1) / 2;
        const uint8_t* keptY = gRecording->Keep(y, PlaneBytes(strideY, area.width, area.height));
        const uint8_t* keptU = gRecording->Keep(u, PlaneBytes(strideU, chromaWidth, chromaHeight));
        const uint8_t* keptV = gRecording->Keep(v, PlaneBytes(strideV, chromaWidth, chromaHeight));
        gRecording->Add(Describe("SDL_UpdateYUVTexture", area), [=, part = Kept<const SDL_Rect*>(rect)] {
            next(texture, part.Get(), keptY, strideY, keptU, strideU, keptV, strideV);
        });
    }
    return next(texture, rect, y, strideY, u, strideU, v, strideV);
}

int SDL_SetTextureColorMod(SDL_Texture* texture, Uint8 red, Uint8 green, Uint8 blue) {
    static const auto next = Next(&SDL_SetTextureColorMod, "SDL_SetTextureColorMod");
    return Pass("SDL_SetTextureColorMod", next, texture, red, green, blue);
}

int SDL_SetTextureAlphaMod(SDL_Texture* texture, Uint8 alpha) {
    static const auto next = Next(&SDL_SetTextureAlphaMod, "SDL_SetTextureAlphaMod");
    return Pass("SDL_SetTextureAlphaMod", next, texture, alpha);
}

int SDL_SetTextureBlendMode(SDL_Texture* texture, SDL_BlendMode mode) {
    static const auto next = Next(&SDL_SetTextureBlendMode, "SDL_SetTextureBlendMode");
    return Pass("SDL_SetTextureBlendMode", next, texture, mode);
}

// What a steady tick leaves alone

SDL_Texture* SDL_CreateTexture(SDL_Renderer* renderer, Uint32 format, int access, int width, int height) {
    static const auto next = Next(&SDL_CreateTexture, "SDL_CreateTexture");
    if (gRecording != nullptr) gRecording->CountTexture();
    return next(renderer, format, access, width, height);
}

SDL_Texture* SDL_CreateTextureFromSurface(SDL_Renderer* renderer, SDL_Surface* surface) {
    static const auto next = Next(&SDL_CreateTextureFromSurface, "SDL_CreateTextureFromSurface");
    if (gRecording != nullptr) gRecording->CountTexture();
    return next(renderer, surface);
}

SDL_Surface* TTF_RenderUTF8_Blended(TTF_Font* font, const char* text, SDL_Color color) {
    static const auto next = Next(&TTF_RenderUTF8_Blended, "TTF_RenderUTF8_Blended");
    if (gRecording != nullptr) gRecording->CountText();
    return next(font, text, color);
}

SDL_Surface* TTF_RenderUTF8_Blended_Wrapped(TTF_Font* font, const char* text, SDL_Color color,
                                            Uint32 wrapLength) {
    static const auto next = Next(&TTF_RenderUTF8_Blended_Wrapped, "TTF_RenderUTF8_Blended_Wrapped");
    if (gRecording != nullptr) gRecording->CountText();
    return next(font, text, color, wrapLength);
}

}  // extern "C"
