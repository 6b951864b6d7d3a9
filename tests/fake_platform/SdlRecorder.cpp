#include "tests/fake_platform/SdlRecorder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/SDLAdditions.h"
#include "tests/fake_platform/UncountedScope.h"

namespace Corvanta::Testing {

namespace {

constexpr std::array kPlanarHdrFormats{kPixelFormatI422, kPixelFormatI444, kPixelFormatI010, kPixelFormatI210,
                                       kPixelFormatI410};

}  // namespace

SdlRecorder& Sdl() {
    static SdlRecorder* const recorder = [] {
        const UncountedScope uncounted;
        return new SdlRecorder;
    }();
    return *recorder;
}

void SdlRecorder::Reset() {
    const std::lock_guard lock(mutex_);
    failures_.clear();
    planarHdrTextures_ = false;
    hdrRendererFlag_ = false;
    renderDrivers_.clear();
    textureSideLimit_ = 0;
    nameOfRenderers_ = nullptr;
    replacesForeignWindows_ = false;
}

void SdlRecorder::Fail(const std::string& name, int times) {
    const std::lock_guard lock(mutex_);
    failures_[name] = times;
}

void SdlRecorder::FailAlways(const std::string& name) {
    Fail(name, -1);
}

bool SdlRecorder::TakeFailure(const char* name) {
    {
        const std::lock_guard lock(mutex_);
        const auto found = failures_.find(name);
        if (found == failures_.end() || found->second == 0) {
            return false;
        }
        if (found->second > 0) {
            --found->second;
        }
    }
    SDL_SetError("The test lets %s fail", name);
    return true;
}

void SdlRecorder::AllowPlanarHdrTextures(bool allowed) {
    const std::lock_guard lock(mutex_);
    planarHdrTextures_ = allowed;
}

Uint32 SdlRecorder::FormatToMake(Uint32 asked) const {
    const std::lock_guard lock(mutex_);
    const bool isPlanarHdr =
        std::find(kPlanarHdrFormats.begin(), kPlanarHdrFormats.end(), asked) != kPlanarHdrFormats.end();
    return planarHdrTextures_ && isPlanarHdr ? static_cast<Uint32>(SDL_PIXELFORMAT_IYUV) : asked;
}

void SdlRecorder::AllowHdrRendererFlag(bool allowed) {
    const std::lock_guard lock(mutex_);
    hdrRendererFlag_ = allowed;
}

Uint32 SdlRecorder::FlagsToPass(Uint32 asked) const {
    const std::lock_guard lock(mutex_);
    return hdrRendererFlag_ ? asked & ~kRendererHdrOutput : asked;
}

void SdlRecorder::SetRenderDrivers(std::vector<std::string> names) {
    const std::lock_guard lock(mutex_);
    renderDrivers_ = std::move(names);
}

std::optional<std::vector<std::string>> SdlRecorder::RenderDrivers() const {
    const std::lock_guard lock(mutex_);
    return renderDrivers_.empty() ? std::nullopt : std::optional(renderDrivers_);
}

void SdlRecorder::LimitTextureSides(int limit) {
    const std::lock_guard lock(mutex_);
    textureSideLimit_ = limit;
}

int SdlRecorder::TextureSideLimit() const {
    const std::lock_guard lock(mutex_);
    return textureSideLimit_;
}

void SdlRecorder::NameRenderers(const char* driver) {
    const std::lock_guard lock(mutex_);
    nameOfRenderers_ = driver;
}

const char* SdlRecorder::NameOfRenderers() const {
    const std::lock_guard lock(mutex_);
    return nameOfRenderers_;
}

void SdlRecorder::ReplaceForeignWindows(bool replace) {
    const std::lock_guard lock(mutex_);
    replacesForeignWindows_ = replace;
}

bool SdlRecorder::ReplacesForeignWindows() const {
    const std::lock_guard lock(mutex_);
    return replacesForeignWindows_;
}

void SdlRecorder::AddTexture(SDL_Renderer* renderer, SDL_Texture* texture, Uint32 askedFormat) {
    if (texture != nullptr) {
        const std::lock_guard lock(mutex_);
        textures_[texture] = {renderer, askedFormat};
    }
}

void SdlRecorder::RemoveTexture(SDL_Texture* texture) {
    const std::lock_guard lock(mutex_);
    textures_.erase(texture);
}

std::optional<Uint32> SdlRecorder::AskedFormat(SDL_Texture* texture) const {
    const std::lock_guard lock(mutex_);
    const auto found = textures_.find(texture);
    return found == textures_.end() ? std::nullopt : std::optional(found->second.askedFormat);
}

void SdlRecorder::AddRenderer(SDL_Renderer* renderer) {
    if (renderer != nullptr) {
        const std::lock_guard lock(mutex_);
        renderers_.push_back(renderer);
    }
}

void SdlRecorder::RemoveRenderer(SDL_Renderer* renderer) {
    const std::lock_guard lock(mutex_);
    std::erase(renderers_, renderer);
    std::erase_if(textures_, [&](const auto& entry) { return entry.second.renderer == renderer; });
}

void SdlRecorder::AddWindow(SDL_Window* window) {
    if (window != nullptr) {
        const std::lock_guard lock(mutex_);
        windows_.push_back(window);
    }
}

void SdlRecorder::RemoveWindow(SDL_Window* window) {
    const std::lock_guard lock(mutex_);
    std::erase(windows_, window);
}

size_t SdlRecorder::LiveTextures() const {
    const std::lock_guard lock(mutex_);
    return textures_.size();
}

size_t SdlRecorder::LiveRenderers() const {
    const std::lock_guard lock(mutex_);
    return renderers_.size();
}

size_t SdlRecorder::LiveWindows() const {
    const std::lock_guard lock(mutex_);
    return windows_.size();
}

}  // namespace Corvanta::Testing
