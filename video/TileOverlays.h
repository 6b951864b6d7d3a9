// Everything that is drawn over a tile's picture: shade, name, avatar, signs, badges, buttons and menu. Held
// and locked by the tile; render thread, but for the badges.
#pragma once

#include <SDL.h>

#include <string>

#include "connectivity/ThumbnailConnectivityPanel.h"
#include "ui/Icon.h"
#include "ui/InitialsAvatar.h"
#include "ui/TextTexture.h"
#include "video/NamePlate.h"
#include "video/OverlayGradient.h"
#include "video/TileBadges.h"
#include "video/TileControls.h"

namespace Corvanta::Video {

// How the tile stands at the moment of a drawing.
struct TileState {
    SDL_Rect rect{0, 0, 0, 0};
    bool hovered = false;
    bool onMainVideo = false;
    bool dragging = false;
    bool muted = false;
    bool lostConnection = false;
    bool draggable = false;
};

class TileOverlays final {
public:
    TileOverlays();

    // Of plate and avatar. They ask for it as long as no letters are drawn.
    [[nodiscard]] bool NeedsName() const { return !namePlate_.HasText(); }
    void SetName(const std::string& name);
    void RefreshName() { namePlate_.ReleaseTextures(); }

    // Borrowed; null for none.
    void SetGradient(const OverlayGradient* gradient) { gradient_ = gradient; }
    void RenderGradient(SDL_Renderer* renderer, SDL_Point topLeft) const;
    // displayHeight: of the tile in its place on the wall.
    void RenderAvatar(SDL_Renderer* renderer, const SDL_Rect& rect, int displayHeight);
    // The rest, over the picture, from the panel to the lost connection.
    void Render(SDL_Renderer* renderer, const TileState& state,
                Connectivity::ThumbnailConnectivityPanel& panel);

    void OnHover(const SDL_Point& point);

    [[nodiscard]] TileControls& GetControls() { return controls_; }
    [[nodiscard]] const TileControls& GetControls() const { return controls_; }
    [[nodiscard]] TileBadges& GetBadges() { return badges_; }
    [[nodiscard]] const TileBadges& GetBadges() const { return badges_; }

    // Every raster goes, the pictures are looked up again, on whatever renderer.
    void ReleaseTextures();

private:
    void RenderName(SDL_Renderer* renderer, const SDL_Rect& rect);
    void RenderSign(SDL_Renderer* renderer, const TileState& state, int xOffset);
    void RenderResting(SDL_Renderer* renderer, const TileState& state);
    void RenderGrip(SDL_Renderer* renderer, const SDL_Rect& rect);
    void RenderLostConnection(SDL_Renderer* renderer, const SDL_Rect& rect);

    UI::Icon equalizerIcon_{"icons/equalizer.png"};
    UI::Icon muteIcon_{"icons/mute.png"};
    UI::Icon exclamationIcon_{"icons/exclamation.png"};
    UI::TextTexture lostConnectionText_;
    const OverlayGradient* gradient_ = nullptr;
    NamePlate namePlate_;
    UI::InitialsAvatar avatar_;
    UI::Icon dragIcon_{"icons/drag.png"};
    UI::TextTexture dragText_;
    TileControls controls_;
    TileBadges badges_;
};

}  // namespace Corvanta::Video
