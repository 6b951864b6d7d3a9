#include "tools/gallery/SheetPicture.h"

#include <SDL_image.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <thread>

#include "ui/Clock.h"
#include "ui/TextureCache.h"

namespace Corvanta::Gallery {
namespace {

constexpr int64_t kOneHourNs = 3'600'000'000'000;
// Metrics and rasters that one drawing measures serve the next, which shows also what the one before asked
// for.
constexpr int kDrawings = 3;
constexpr std::chrono::seconds kLongestWait{20};
constexpr std::chrono::milliseconds kPause{1};

int64_t gNow = kOneHourNs;

int64_t StoppedClock() {
    return gNow;
}

void WaitFor(const GallerySheet& sheet) {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    while (sheet.IsBusy() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(kPause);
}

[[nodiscard]] SDL_Rect Scaled(const SDL_Rect& area, float scale) {
    const auto by = [scale](int value) { return static_cast<int>(static_cast<float>(value) * scale); };
    return {by(area.x), by(area.y), by(area.w), by(area.h)};
}

}  // namespace

SheetPicture DrawSheet(float scale) {
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "best");
    UI::SetClock(&StoppedClock);
    SheetPicture picture;
    // The sheet's size is known once it is there, so it is measured on a renderer of one pixel.
    const Surface pixel(SDL_CreateRGBSurfaceWithFormat(0, 1, 1, 32, SDL_PIXELFORMAT_ARGB8888));
    SDL_Renderer* measuring = SDL_CreateSoftwareRenderer(pixel.get());
    const SDL_Point size = GallerySheet(measuring).GetSize();
    UI::ReleaseRendererTextures(measuring);
    SDL_DestroyRenderer(measuring);

    const SDL_Rect whole = Scaled({0, 0, size.x, size.y}, scale);
    picture.surface.reset(SDL_CreateRGBSurfaceWithFormat(0, whole.w, whole.h, 32, SDL_PIXELFORMAT_ARGB8888));
    SDL_Renderer* renderer = SDL_CreateSoftwareRenderer(picture.surface.get());
    if (renderer != nullptr) {
        SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_BLEND);
        SDL_RenderSetScale(renderer, scale, scale);
        {
            GallerySheet sheet(renderer);
            for (int drawing = 0; drawing < kDrawings; ++drawing) {
                WaitFor(sheet);
                gNow += kOneHourNs;
                sheet.Render(renderer);
            }
            for (const Cell& cell : sheet.GetCells())
                picture.cells.emplace_back(cell.name, Scaled(cell.area, scale));
            sheet.ReleaseTextures();
        }
        UI::ReleaseRendererTextures(renderer);
        SDL_DestroyRenderer(renderer);
    }
    UI::SetClock(nullptr);
    return picture;
}

std::string CropFileName(const std::string& cell, float scale) {
    std::string name;
    for (const char character : cell) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0) {
            name += static_cast<char>(std::tolower(byte));
        } else if (!name.empty() && name.back() != '-') {
            name += '-';
        }
    }
    char scaleText[32];
    std::snprintf(scaleText, sizeof scaleText, "@%g.png", static_cast<double>(scale));
    return name + scaleText;
}

Surface Crop(const SheetPicture& picture, const SDL_Rect& area) {
    Surface crop(SDL_CreateRGBSurfaceWithFormat(0, area.w, area.h, 32, SDL_PIXELFORMAT_ARGB8888));
    if (crop == nullptr) return crop;
    SDL_Rect source = area;
    SDL_SetSurfaceBlendMode(picture.surface.get(), SDL_BLENDMODE_NONE);
    SDL_BlitSurface(picture.surface.get(), &source, crop.get(), nullptr);
    return crop;
}

std::string WriteCrops(const SheetPicture& picture, float scale, const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (const auto& [name, area] : picture.cells) {
        const std::filesystem::path file = folder / CropFileName(name, scale);
        const Surface crop = Crop(picture, area);
        if (crop == nullptr || IMG_SavePNG(crop.get(), file.string().c_str()) != 0) {
            return "a picture cannot be written: " + file.string();
        }
    }
    return {};
}

}  // namespace Corvanta::Gallery
