#include "ui/InitialsAvatar.h"

#include "ui/Arithmetic.h"
#include "ui/ControlColors.h"
#include "ui/FontManager.h"
#include "ui/Initials.h"

namespace Corvanta::UI {
namespace {

constexpr SDL_Color kGround{46, 46, 46, 255};
constexpr SDL_Color kLetters{196, 196, 196, 0};
constexpr int kStartFontSize = 50;
constexpr int kDesignDisc = 79;
constexpr int kDesignFontSize = 23;

}  // namespace

InitialsAvatar::InitialsAvatar() : background_("icons/noCamBackground.png") {
    text_.SetColor(kLetters);
    text_.SetFontSize(kStartFontSize);
    text_.SetFontName(FontBolder);
}

void InitialsAvatar::SetName(const std::string& displayName) {
    initials_ = InitialsOf(displayName);
    text_.SetText(initials_);
    if (initials_.empty()) text_.ReleaseTexture();
}

void InitialsAvatar::Render(SDL_Renderer* renderer, const SDL_Rect* area, double scale) {
    FillRect(renderer, *area, kGround);
    const int side = Truncate(scale * kDesignDisc);
    background_.SetHeight(side);
    background_.SetWidth(side);
    background_.Render(renderer, {(area->w - side) / 2 + area->x, (area->h - side) / 2 + area->y});
    text_.SetFontSize(Truncate(scale * kDesignFontSize));
    text_.SetFontName(FontBolder);
    const SDL_Point size = text_.MeasureText();
    text_.RenderAt(renderer, {area->w / 2 - size.x / 2 + area->x, area->h / 2 - size.y / 2 + area->y});
    ClearDrawColor(renderer);
}

void InitialsAvatar::ReleaseTextures() {
    text_.ReleaseTexture();
    background_.SetTexture(nullptr);
}

}  // namespace Corvanta::UI
