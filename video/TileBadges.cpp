#include "video/TileBadges.h"

#include <algorithm>

#include "ui/Button.h"
#include "ui/TextureCache.h"
#include "video/TileMetrics.h"

namespace Corvanta::Video {

void TileBadges::Remove(const std::string& path) {
    const auto found = std::find_if(icons_.begin(), icons_.end(),
                                    [&](const UI::Icon& icon) { return icon.GetPath() == path; });
    if (found != icons_.end()) icons_.erase(found);
}

bool TileBadges::Has(const std::string& path) const {
    return std::any_of(icons_.begin(), icons_.end(),
                       [&](const UI::Icon& icon) { return icon.GetPath() == path; });
}

void TileBadges::Render(SDL_Renderer* renderer, const SDL_Rect& tile) {
    BadgeRow row(tile);
    for (auto icon = icons_.rbegin(); icon != icons_.rend(); ++icon) {
        // The place depends on the picture's shape, so it is looked up before it is drawn.
        if (icon->GetTexture() == nullptr) icon->SetTexture(UI::LoadCachedTexture(renderer, icon->GetPath()));
        const SDL_Rect place = row.Next(UI::TextureSize(icon->GetTexture()));
        icon->SetWidth(place.w);
        icon->SetHeight(place.h);
        icon->Render(renderer, {place.x, place.y});
    }
}

void TileBadges::ResetTextures() {
    for (UI::Icon& icon : icons_) icon.SetTexture(nullptr);
}

}  // namespace Corvanta::Video
