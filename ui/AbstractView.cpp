#include "ui/AbstractView.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "platform/Configuration.h"
#include "platform/Logger.h"
#include "ui/HdrSdl.h"
#include "ui/NativeWindow.h"

namespace Corvanta::UI {
namespace {

constexpr const char* kVSyncKey = "EnableVSync";
constexpr const char* kSdrBrightnessKey = "SDRBrightnessBoost";
constexpr int kDefaultSdrBrightnessNits = 280;
// No display comes near it; it keeps a host's wild value within an int.
constexpr float kHighestBrightnessNits = 1.0e6F;
// Beyond any display too; layouts may add and multiply what lies within.
constexpr int kLongestSide = 1 << 20;
constexpr float kLargestScale = 64.0F;

int PlausibleSide(int side) {
    return std::clamp(side, -kLongestSide, kLongestSide);
}

float PlausibleScale(float scale) {
    return std::isnan(scale) ? scale : std::clamp(scale, -kLargestScale, kLargestScale);
}

int TruncateNits(float nits) {
    return std::isnan(nits)
               ? 0
               : static_cast<int>(std::clamp(nits, -kHighestBrightnessNits, kHighestBrightnessNits));
}

}  // namespace

AbstractView::~AbstractView() {
    CleanupWindow();
}

int AbstractView::Init(void* nativeHandle, int width, int height) {
    if (initialised_.load()) return 0;
    CleanupWindow();
    width_ = PlausibleSide(width);
    height_ = PlausibleSide(height);
    aspectRatio_ = static_cast<float>(width) / static_cast<float>(height);
    if (nativeHandle == nullptr) return -1;
    if (!IsNativeWindow(nativeHandle)) {
        LOG(4, "The room's window handle does not name a window");
        return -1;
    }
    // Without it, an OpenGL renderer would recreate the host's window and take its focus.
    SDL_SetHint(SDL_HINT_VIDEO_FOREIGN_WINDOW_OPENGL, "1");
    TolerateLostWindows();
    window_ = SDL_CreateWindowFrom(nativeHandle);
    if (window_ == nullptr) return -1;
    renderer_ = SelectRenderer();
    if (renderer_ == nullptr) return -1;
    SDL_RendererInfo info{};
    SDL_GetRendererInfo(renderer_, &info);
    LOG(2, "Selected renderer for this window is: %s", info.name != nullptr ? info.name : "");
    SDL_SetRenderDrawBlendMode(renderer_, SDL_BLENDMODE_BLEND);
    SDL_AddEventWatch(&AbstractView::WindowEventWatch, this);
    ApplySDRBrightness();
    initialised_.store(true);
    return 1;
}

void AbstractView::CleanupWindow() {
    // A view that has nothing left of SDL may be destroyed on any thread, and so leaves SDL alone.
    if (initialised_.load()) SDL_DelEventWatch(&AbstractView::WindowEventWatch, this);
    if (renderer_ != nullptr) HdrSdl::DestroyRenderer(renderer_);
    if (window_ != nullptr) DestroyNativeWindow(window_);
    renderer_ = nullptr;
    window_ = nullptr;
    initialised_.store(false);
}

bool AbstractView::CanDraw() const {
    return initialised_.load() && MayDrawOn(window_);
}

SDL_Renderer* AbstractView::SelectRenderer() const {
    int direct3dIndex = -1;
    for (int index = 0; index < SDL_GetNumRenderDrivers(); ++index) {
        SDL_RendererInfo info{};
        if (SDL_GetRenderDriverInfo(index, &info) == 0 && std::string_view(info.name) == "direct3d11") {
            direct3dIndex = index;
        }
    }
    bool vsync = false;
    if (!Configuration_GetPropertyBoolean(kVSyncKey, &vsync)) vsync = false;
    Uint32 flags = SDL_RENDERER_ACCELERATED | SDL_RENDERER_TARGETTEXTURE | HdrSdl::RendererFlag();
    if (vsync) flags |= SDL_RENDERER_PRESENTVSYNC;
    return SDL_CreateRenderer(window_, direct3dIndex, flags);
}

void AbstractView::ApplySDRBrightness() {
    if (renderer_ == nullptr) return;
    int nits = kDefaultSdrBrightnessNits;
    if (!Configuration_GetPropertyInt(kSdrBrightnessKey, &nits)) nits = kDefaultSdrBrightnessNits;
    HdrSdl::SetSdrBrightness(renderer_, static_cast<float>(nits));
}

void AbstractView::Resize(int width, int height) {
    if (window_ != nullptr) SDL_SetWindowSize(window_, width, height);
    dirty_.store(true);
    width_ = PlausibleSide(width);
    height_ = PlausibleSide(height);
    OnResized(width_, height_);
}

void AbstractView::SetViewport(int width, int height) {
    if (renderer_ == nullptr) return;
    const SDL_Rect viewport{0, 0, width, height};
    SDL_RenderSetViewport(renderer_, &viewport);
}

void AbstractView::SetContentScaleFactor(float factor) {
    // Nothing could be drawn at another one, and layouts divide by it.
    if (!std::isfinite(factor) || factor <= 0.0F) return;
    if (renderer_ != nullptr) SDL_RenderSetScale(renderer_, factor, factor);
}

void AbstractView::SetWindowScale(float scale) {
    if (PlausibleScale(scale) == scale_) return;
    scale_ = PlausibleScale(scale);
    OnContentScaleChanged(scale_);
    Resize(width_, height_);
}

float AbstractView::GetSDRBrightness() const {
    return renderer_ == nullptr ? 0.0F : HdrSdl::GetSdrBrightness(renderer_).value_or(0.0F);
}

void AbstractView::SetSDRBrightness(float nits) {
    if (renderer_ == nullptr) return;
    Configuration_SetPropertyInt(kSdrBrightnessKey, TruncateNits(nits));
    HdrSdl::SetSdrBrightness(renderer_, std::roundf(nits));
}

int AbstractView::GetSdlWindowId() const {
    return window_ == nullptr ? -1 : static_cast<int>(SDL_GetWindowID(window_));
}

int AbstractView::WindowEventWatch(void* data, SDL_Event* event) {
    auto* view = static_cast<AbstractView*>(data);
    if (event->type == SDL_WINDOWEVENT && event->window.event == SDL_WINDOWEVENT_RESIZED &&
        view->window_ != nullptr && event->window.windowID == SDL_GetWindowID(view->window_)) {
        view->Resize(event->window.data1, event->window.data2);
    } else if (event->type == kRenderColorSpaceChangedEvent) {
        view->OnRenderTargetChanged();
    }
    return 0;
}

}  // namespace Corvanta::UI
