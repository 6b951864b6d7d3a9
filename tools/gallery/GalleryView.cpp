#include "tools/gallery/GalleryView.h"

#include <algorithm>
#include <cstdint>

namespace Corvanta::Gallery {
namespace {

constexpr int kKeyScroll = 48;
// A notch of the host's wheel is twelve steps.
constexpr int kStepScroll = 4;
// More than any sheet is long, and far from the limits of an int.
constexpr int64_t kMostSteps = 1000;

// The direction that the wheel turned more in; sideways turns scroll too.
[[nodiscard]] int StepsOf(const SDL_MouseWheelEvent& wheel) {
    const auto size = [](int64_t steps) { return steps < 0 ? -steps : steps; };
    const int64_t steps = size(wheel.x) > size(wheel.y) ? wheel.x : wheel.y;
    return static_cast<int>(std::clamp(steps, -kMostSteps, kMostSteps));
}

}  // namespace

GalleryView::GalleryView() : VideoRoomView(0, HostCallbacks{}) {}

GalleryView::~GalleryView() {
    sheet_.reset();
}

void GalleryView::MakeSheet() {
    sheet_ = std::make_unique<GallerySheet>(GetRenderer());
}

void GalleryView::Shutdown() {
    sheet_.reset();
    VideoRoomView::Shutdown();
}

void GalleryView::SetSheetScale(float scale) {
    sheetScale_ = scale;
    scroll_ = 0;
    if (sheet_ != nullptr) sheet_->ReleaseTextures();
}

void GalleryView::Render() {
    SDL_Renderer* renderer = GetRenderer();
    if (renderer == nullptr || sheet_ == nullptr) return;
    SDL_RenderSetScale(renderer, sheetScale_, sheetScale_);
    const SDL_Point size = sheet_->GetSize();
    const SDL_Rect viewport{0, -scroll_, size.x, size.y};
    SDL_RenderSetViewport(renderer, &viewport);
    sheet_->Render(renderer);
    SDL_RenderPresent(renderer);
}

SDL_Point GalleryView::ToSheet(SDL_Point point) const {
    if (point.x == kOutside.x && point.y == kOutside.y) return kOutside;
    return {static_cast<int>(static_cast<float>(point.x) / sheetScale_),
            static_cast<int>(static_cast<float>(point.y) / sheetScale_) + scroll_};
}

void GalleryView::ProcessInput() {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
        if (static_cast<int>(event.window.windowID) == GetSdlWindowId()) HandleEvent(event);
    }
    sheet_->OnHover(ToSheet(pointer_));
}

void GalleryView::HandleEvent(const SDL_Event& event) {
    switch (event.type) {
        case SDL_MOUSEMOTION: pointer_ = {event.motion.x, event.motion.y}; break;
        case SDL_MOUSEBUTTONDOWN: sheet_->OnPress(); break;
        case SDL_MOUSEBUTTONUP: sheet_->OnRelease(); break;
        case SDL_MOUSEWHEEL:
            if (const int steps = StepsOf(event.wheel); !sheet_->OnWheel(steps)) Scroll(steps * kStepScroll);
            break;
        case SDL_KEYDOWN: HandleKey(event.key.keysym.sym); break;
        default: break;
    }
}

void GalleryView::HandleKey(SDL_Keycode key) {
    if (key >= SDLK_1 && key <= SDLK_4) SetSheetScale(kScales[key - SDLK_1]);
    if (key == SDLK_DOWN) Scroll(kKeyScroll);
    if (key == SDLK_UP) Scroll(-kKeyScroll);
}

void GalleryView::Scroll(int pixels) {
    const int visible = static_cast<int>(static_cast<float>(GetHeight()) / sheetScale_);
    scroll_ = std::clamp(scroll_ + pixels, 0, std::max(0, sheet_->GetSize().y - visible));
}

}  // namespace Corvanta::Gallery
