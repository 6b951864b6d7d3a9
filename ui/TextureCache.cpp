#include "ui/TextureCache.h"

#include <SDL_image.h>

#include <algorithm>
#include <utility>

namespace Corvanta::UI {

TextureCache& TextureCache::Instance() {
    static TextureCache cache;
    return cache;
}

SDL_Texture* TextureCache::Load(SDL_Renderer* renderer, const std::string& name) {
    if (renderer == nullptr) return nullptr;
    std::map<std::string, SDL_Texture*>& textures = texturesOfRenderer_[renderer];
    if (const auto found = textures.find(name); found != textures.end()) return found->second;
    SDL_Texture* texture = IMG_LoadTexture(renderer, ShippedFilePath("./", name).c_str());
    if (texture == nullptr) return nullptr;
    textures.emplace(name, texture);
    return texture;
}

void TextureCache::Release(SDL_Renderer* renderer) {
    const auto found = texturesOfRenderer_.find(renderer);
    if (found == texturesOfRenderer_.end()) return;
    for (const auto& [name, texture] : found->second) SDL_DestroyTexture(texture);
    texturesOfRenderer_.erase(found);
}

SDL_Texture* LoadCachedTexture(SDL_Renderer* renderer, const std::string& name) {
    return TextureCache::Instance().Load(renderer, name);
}

void ReleaseRendererTextures(SDL_Renderer* renderer) {
    TextureCache::Instance().Release(renderer);
}

std::string ShippedFilePath(std::string base, const std::string& name) {
    std::replace(base.begin(), base.end(), '\\', '/');
    return std::move(base) + "/" + name;
}

}  // namespace Corvanta::UI
