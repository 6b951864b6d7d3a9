// Paints what stands in a picture's place when there is none: a person's initials on a disc. Render thread
// only.
#pragma once

#include <SDL.h>

#include <string>

#include "ui/Icon.h"
#include "ui/TextTexture.h"

namespace Corvanta::UI {

class InitialsAvatar final {
public:
    InitialsAvatar();

    void SetName(const std::string& displayName);
    [[nodiscard]] const std::string& GetInitials() const { return initials_; }
    // Fills the area. scale: pixels of the area to those of the design, whose disc is 79 wide.
    void Render(SDL_Renderer* renderer, const SDL_Rect* area, double scale);
    void ReleaseTextures();

private:
    TextTexture text_;
    Icon background_;
    std::string initials_;
};

}  // namespace Corvanta::UI
