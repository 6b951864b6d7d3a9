#include "ui/FontManager.h"

#include "ui/TextureCache.h"

namespace Corvanta::UI {
namespace {

std::unique_ptr<FontManager>& Holder() {
    static std::unique_ptr<FontManager> manager;
    return manager;
}

}  // namespace

FontManager& FontManager::Instance() {
    if (Holder() == nullptr) Holder().reset(new FontManager);
    return *Holder();
}

void FontManager::Clear() {
    Holder().reset();
}

FontManager::~FontManager() {
    for (const auto& [key, font] : fonts_) TTF_CloseFont(font);
}

void FontManager::Init() {
    TTF_Init();
}

TTF_Font* FontManager::GetFont(const std::string& name, int size) {
    const auto key = std::make_pair(name, size);
    if (const auto found = fonts_.find(key); found != fonts_.end()) return found->second;
    TTF_Font* font = TTF_OpenFont(ShippedFilePath("./", "fonts/" + name + ".ttf").c_str(), size);
    if (font != nullptr) fonts_.emplace(key, font);
    return font;
}

}  // namespace Corvanta::UI
