// The functions that only the product's HDR build of SDL has, as recorders: link corvanta-fake-sdl-additions
// where the code under test is built for that SDL. Each call is written into Calls(). Any thread.
#pragma once

#include <SDL.h>

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/SDLAdditions.h"

namespace Corvanta::Testing {

class FakeSdlAdditions final {
public:
    // Back to an SDR output of format ARGB8888 with a brightness of 0, nothing failing.
    void Reset();

    // What the renderers report.
    void SetRenderColorSpace(int colorSpace);
    void SetRenderPixelFormat(Uint32 format);
    // The functions of this name return -1 and change nothing.
    void Fail(const std::string& name);

    [[nodiscard]] float Brightness() const;
    void SetBrightness(float nits);
    // Empty when none were set, or when they were removed.
    [[nodiscard]] std::optional<RenderHDRMetadata> Metadata() const;

    // What a texture was told last.
    struct TextureColor {
        std::optional<int> colorSpace;
        std::optional<int> fullRange;
    };
    [[nodiscard]] TextureColor ColorOf(SDL_Texture* texture) const;

    // Used by the functions: whether the call is to fail; if not, `change` is applied under the lock.
    template <typename Change>
    int Apply(const char* name, Change&& change) {
        const std::lock_guard lock(mutex_);
        if (failing_.contains(name)) {
            return SDL_SetError("The test lets %s fail", name);
        }
        change(state_);
        return 0;
    }

    struct State {
        int renderColorSpace = kColorSpaceSdr;
        Uint32 pixelFormat = SDL_PIXELFORMAT_ARGB8888;
        float brightness = 0.0F;
        std::optional<RenderHDRMetadata> metadata = {};
        std::map<SDL_Texture*, TextureColor> textures = {};
    };

private:
    mutable std::mutex mutex_;
    // Guards:
    State state_;
    std::set<std::string> failing_;
};

// The process's one set of additions.
FakeSdlAdditions& SdlAdditions();

}  // namespace Corvanta::Testing
