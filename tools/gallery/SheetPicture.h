// The sheet as a picture, drawn by the software renderer without a display. Any thread that may use SDL.
#pragma once

#include <SDL.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/gallery/GallerySheet.h"

namespace Corvanta::Gallery {

struct SurfaceDeleter {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, SurfaceDeleter>;

// A picture of the whole sheet, and where each cell is in it.
struct SheetPicture {
    Surface surface;
    std::vector<std::pair<std::string, SDL_Rect>> cells;
};

// At that many pixels to a logical one. The clock stands still in each drawing, after every slide has ended.
// Starts and stops nothing: SDL_ttf must be up. An empty surface when SDL cannot make one.
[[nodiscard]] SheetPicture DrawSheet(float scale);

// The file that keeps a cell's picture at a scale, such as "button-idle@1.25.png".
[[nodiscard]] std::string CropFileName(const std::string& cell, float scale);
// A copy of the cell's part of the picture.
[[nodiscard]] Surface Crop(const SheetPicture& picture, const SDL_Rect& area);
// Writes every cell's picture into the folder, which is made if need be. Returns what went wrong, else
// nothing.
[[nodiscard]] std::string WriteCrops(const SheetPicture& picture, float scale,
                                     const std::filesystem::path& folder);

}  // namespace Corvanta::Gallery
