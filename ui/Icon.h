// A picture from the icon cache, drawn with its top-left corner at the position. Render thread only.
#pragma once

#include <string>

#include "ui/GraphicElementInterface.h"

namespace Corvanta::UI {

class Icon : public GraphicElementInterface {
public:
    // path: the image's name relative to the working directory. The size is set later by its parent.
    explicit Icon(std::string path);

    // Never writes rect, so an icon is never hovered. A picture that cannot be loaded is tried again in the
    // next drawing and draws nothing meanwhile.
    void Render(SDL_Renderer* renderer, SDL_Point position) override;
    bool OnClick() override { return false; }

    // The cache owns the texture; null makes the next Render look it up again.
    [[nodiscard]] SDL_Texture* GetTexture() const { return texture_; }
    void SetTexture(SDL_Texture* texture) { texture_ = texture; }
    [[nodiscard]] const std::string& GetPath() const { return path_; }

private:
    SDL_Texture* texture_ = nullptr;
    std::string path_;
};

}  // namespace Corvanta::UI
