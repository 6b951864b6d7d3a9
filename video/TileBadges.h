// The small pictures at the bottom right of a tile that tell what is switched off, pinned or mixed. The
// tile's lock guards them; drawn on the render thread.
#pragma once

#include <SDL.h>

#include <string>
#include <vector>

#include "ui/Icon.h"

namespace Corvanta::Video {

class TileBadges final {
public:
    // The path is the key.
    void Add(const std::string& path) { icons_.emplace_back(path); }
    // The first of that path.
    void Remove(const std::string& path);
    [[nodiscard]] bool Has(const std::string& path) const;

    // The newest stands at the right.
    void Render(SDL_Renderer* renderer, const SDL_Rect& tile);
    // The pictures are looked up again, on whatever renderer.
    void ResetTextures();

private:
    std::vector<UI::Icon> icons_;
};

}  // namespace Corvanta::Video
