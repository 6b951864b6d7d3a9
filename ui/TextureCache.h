// The process-wide cache of icon textures, one set per renderer. It owns the textures; elements hold copies
// of the pointers and never destroy them. Render thread only: there is no lock.
#pragma once

#include <SDL.h>

#include <map>
#include <string>

namespace Corvanta::UI {

class TextureCache final {
public:
    [[nodiscard]] static TextureCache& Instance();

    [[nodiscard]] SDL_Texture* Load(SDL_Renderer* renderer, const std::string& name);
    void Release(SDL_Renderer* renderer);

private:
    std::map<SDL_Renderer*, std::map<std::string, SDL_Texture*>> texturesOfRenderer_;
};

// The texture of the image "./" + "/" + name (relative to the working directory; the name is not normalised),
// loaded on first use. Null on a null renderer and on a file that cannot be loaded, which is tried again by
// the next call.
[[nodiscard]] SDL_Texture* LoadCachedTexture(SDL_Renderer* renderer, const std::string& name);

// Destroys all textures of that renderer and forgets it. Elements must have dropped their copies.
void ReleaseRendererTextures(SDL_Renderer* renderer);

// The path of a file that ships beside the program: base (backslashes turned into slashes) + "/" + name.
[[nodiscard]] std::string ShippedFilePath(std::string base, const std::string& name);

}  // namespace Corvanta::UI
