// The gallery's sheet in a window, driven by the same tick and the same injected input as a room. Host
// thread.
#pragma once

#include <memory>

#include "room/VideoRoomView.h"
#include "tools/gallery/GallerySheet.h"

namespace Corvanta::Gallery {

// Scales that the keys 1 to 4 choose.
inline constexpr float kScales[] = {1.0F, 1.25F, 1.5F, 2.0F};

class GalleryView final : public Room::VideoRoomView {
public:
    GalleryView();
    ~GalleryView() override;

    // After Init: makes the controls on the view's renderer.
    void MakeSheet();
    // Pixels of the window to one logical pixel of the sheet.
    void SetSheetScale(float scale);

    void Render() override;
    void ProcessInput() override;
    void Shutdown() override;

private:
    void HandleEvent(const SDL_Event& event);
    void HandleKey(SDL_Keycode key);
    void Scroll(int pixels);
    [[nodiscard]] SDL_Point ToSheet(SDL_Point windowPoint) const;

    static constexpr SDL_Point kOutside{-1, -1};

    std::unique_ptr<GallerySheet> sheet_;
    float sheetScale_ = 1.0F;
    int scroll_ = 0;
    // In pixels of the window, so that it stays right when the sheet is scrolled or scaled under it.
    SDL_Point pointer_{kOutside};
};

}  // namespace Corvanta::Gallery
