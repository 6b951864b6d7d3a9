#include "video/TileOverlays.h"

#include "ui/ControlColors.h"
#include "ui/FontManager.h"
#include "video/TileMetrics.h"

namespace Corvanta::Video {
namespace {

constexpr SDL_Color kMainVideoBorder{33, 150, 243, 255};
constexpr SDL_Color kHoverShade{0, 0, 0, 64};
// On a tile of the design's height.
constexpr int kPanelFontSize = 9;
constexpr int kNameFontSize = 11;
constexpr int kNameCapWidth = 11;
constexpr int kNamePlateHeight = 21;
constexpr int kNameMargin = 8;
constexpr int kNameTextOffset = 11;
constexpr int kDragFontSize = 11;
constexpr int kLostFontSize = 14;

void RenderIcon(SDL_Renderer* renderer, UI::Icon& icon, const SDL_Rect& place) {
    icon.SetWidth(place.w);
    icon.SetHeight(place.h);
    icon.Render(renderer, {place.x, place.y});
}

void RenderBorder(SDL_Renderer* renderer, const SDL_Rect& rect) {
    UI::OutlineRect(renderer, rect, kMainVideoBorder);
    UI::OutlineRect(renderer, {rect.x + 1, rect.y + 1, rect.w - 2, rect.h - 2}, kMainVideoBorder);
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, SDL_ALPHA_OPAQUE);
}

}  // namespace

TileOverlays::TileOverlays() {
    lostConnectionText_.SetText("Lost connection");
    lostConnectionText_.SetColor(UI::kWhite);
    lostConnectionText_.SetFontSize(kLostFontSize);
    lostConnectionText_.SetFontName(UI::FontRegular);
    dragText_.SetText("Drag");
    dragText_.SetColor(UI::kWhite);
    dragText_.SetFontSize(kDragFontSize);
    dragText_.SetFontName(UI::FontMono);
}

void TileOverlays::SetName(const std::string& name) {
    namePlate_.SetName(name);
    avatar_.SetName(name);
}

void TileOverlays::RenderGradient(SDL_Renderer* renderer, SDL_Point topLeft) const {
    if (gradient_ != nullptr) gradient_->Render(renderer, topLeft);
}

void TileOverlays::RenderAvatar(SDL_Renderer* renderer, const SDL_Rect& rect, int displayHeight) {
    avatar_.Render(renderer, &rect, AvatarScale(displayHeight));
}

void TileOverlays::Render(SDL_Renderer* renderer, const TileState& state,
                          Connectivity::ThumbnailConnectivityPanel& panel) {
    panel.Update(renderer, &state.rect, Scaled(state.rect.h, kPanelFontSize));
    if (panel.visible) {
        RenderName(renderer, state.rect);
        return;
    }
    const int xOffset = controls_.RenderConnectionButton(renderer, state.rect);
    if (state.onMainVideo) RenderBorder(renderer, state.rect);
    RenderSign(renderer, state, xOffset);
    if (!state.dragging) RenderResting(renderer, state);
    if (state.lostConnection) RenderLostConnection(renderer, state.rect);
}

void TileOverlays::RenderSign(SDL_Renderer* renderer, const TileState& state, int xOffset) {
    if (!state.onMainVideo && !state.muted) return;
    RenderIcon(renderer, state.onMainVideo ? equalizerIcon_ : muteIcon_, SignPlace(state.rect, xOffset));
}

void TileOverlays::RenderResting(SDL_Renderer* renderer, const TileState& state) {
    badges_.Render(renderer, state.rect);
    if (state.hovered) UI::FillRect(renderer, state.rect, kHoverShade);
    RenderName(renderer, state.rect);
    UI::VideoScrollbar& menuScrollbar = controls_.GetMenu().GetScrollbar();
    if (state.hovered) {
        if (state.draggable && !state.lostConnection) RenderGrip(renderer, state.rect);
    } else if (!menuScrollbar.IsDragging()) {
        menuScrollbar.ScrollToStart();
        return;
    }
    controls_.RenderColumn(renderer, state.rect);
}

void TileOverlays::RenderName(SDL_Renderer* renderer, const SDL_Rect& rect) {
    namePlate_.SetMetrics(Scaled(rect.h, kNameCapWidth), Scaled(rect.h, kNamePlateHeight));
    namePlate_.Render(renderer, {.tile = rect,
                                 .fontSize = Scaled(rect.h, kNameFontSize),
                                 .margin = Scaled(rect.h, kNameMargin),
                                 .textOffset = Scaled(rect.h, kNameTextOffset),
                                 .maxWidth = NameWidth(rect)});
}

void TileOverlays::RenderGrip(SDL_Renderer* renderer, const SDL_Rect& rect) {
    RenderIcon(renderer, dragIcon_, GripPlace(rect));
    dragText_.SetFontSize(Scaled(rect.h, kDragFontSize));
    const SDL_Rect place = Centred(rect, dragText_.MeasureText());
    dragText_.RenderAt(renderer, {place.x, place.y});
}

void TileOverlays::RenderLostConnection(SDL_Renderer* renderer, const SDL_Rect& rect) {
    RenderIcon(renderer, exclamationIcon_, LostConnectionIconPlace(rect));
    lostConnectionText_.SetFontSize(Scaled(rect.h, kLostFontSize));
    lostConnectionText_.RenderAt(renderer,
                                 LostConnectionTextPlace(rect, lostConnectionText_.MeasureText().x));
}

void TileOverlays::OnHover(const SDL_Point& point) {
    controls_.OnHover(point);
    namePlate_.UpdateHover(point);
}

void TileOverlays::ReleaseTextures() {
    namePlate_.ReleaseTextures();
    lostConnectionText_.ReleaseTexture();
    dragText_.ReleaseTexture();
    avatar_.ReleaseTextures();
    for (UI::Icon* icon : {&equalizerIcon_, &muteIcon_, &exclamationIcon_, &dragIcon_}) {
        icon->SetTexture(nullptr);
    }
    controls_.ReleaseTextures();
    badges_.ResetTextures();
}

}  // namespace Corvanta::Video
