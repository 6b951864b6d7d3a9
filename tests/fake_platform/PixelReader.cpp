#include "tests/fake_platform/PixelReader.h"

#include <cstddef>
#include <cstdio>
#include <stdexcept>

#include "tests/fake_platform/ReferenceColor.h"

namespace Corvanta::Testing {

namespace {

std::string Hex(uint32_t argb) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08X", argb);
    return text;
}

}  // namespace

uint32_t Picture::At(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) {
        throw std::out_of_range("The pixel lies outside the picture");
    }
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
}

bool Picture::Save(const std::string& path) const {
    std::vector<uint32_t> copy = pixels;
    SDL_Surface* const surface = SDL_CreateRGBSurfaceWithFormatFrom(copy.data(), width, height, 32, width * 4,
                                                                    SDL_PIXELFORMAT_ARGB8888);
    const bool saved = surface != nullptr && SDL_SaveBMP(surface, path.c_str()) == 0;
    SDL_FreeSurface(surface);
    return saved;
}

PixelReader::PixelReader(int width, int height) {
    surface_ = SDL_CreateRGBSurfaceWithFormat(0, width, height, 32, SDL_PIXELFORMAT_ARGB8888);
    renderer_ = surface_ != nullptr ? SDL_CreateSoftwareRenderer(surface_) : nullptr;
    if (renderer_ == nullptr) {
        SDL_FreeSurface(surface_);
        throw std::runtime_error(SDL_GetError());
    }
    SDL_FillRect(surface_, nullptr, 0xFF000000);
}

PixelReader::~PixelReader() {
    SDL_DestroyRenderer(renderer_);
    SDL_FreeSurface(surface_);
}

Picture PixelReader::Read() const {
    // The surface has everything once the renderer's queue is empty.
    SDL_RenderFlush(renderer_);
    Picture picture{surface_->w, surface_->h, {}};
    picture.pixels.reserve(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y) {
        const auto* const row = reinterpret_cast<const uint32_t*>(
            static_cast<const uint8_t*>(surface_->pixels) + static_cast<ptrdiff_t>(y) * surface_->pitch);
        picture.pixels.insert(picture.pixels.end(), row, row + picture.width);
    }
    return picture;
}

void PixelReader::Fill(uint32_t argb) {
    SDL_RenderFlush(renderer_);
    SDL_FillRect(surface_, nullptr, argb);
    SDL_SetRenderDrawColor(renderer_, 0, 0, 0, 0);
}

Picture ReadPicture(SDL_Renderer* renderer) {
    Picture picture;
    SDL_GetRendererOutputSize(renderer, &picture.width, &picture.height);
    picture.pixels.resize(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    // The rectangle counts from the viewport, which must not cut anything off.
    SDL_Rect viewport{};
    float scaleX = 1.0F;
    float scaleY = 1.0F;
    SDL_RenderGetViewport(renderer, &viewport);
    SDL_RenderGetScale(renderer, &scaleX, &scaleY);
    SDL_RenderSetScale(renderer, 1.0F, 1.0F);
    SDL_RenderSetViewport(renderer, nullptr);
    const int result = SDL_RenderReadPixels(renderer, nullptr, SDL_PIXELFORMAT_ARGB8888,
                                            picture.pixels.data(), picture.width * 4);
    SDL_RenderSetScale(renderer, scaleX, scaleY);
    SDL_RenderSetViewport(renderer, &viewport);
    if (result != 0) {
        throw std::runtime_error(SDL_GetError());
    }
    return picture;
}

::testing::AssertionResult PixelIs(const Picture& picture, int x, int y, uint32_t argb, int tolerance) {
    const uint32_t pixel = picture.At(x, y);
    if (MaxDifference(pixel, argb) <= tolerance) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "pixel (" << x << ", " << y << ") is " << Hex(pixel) << ", not "
                                         << Hex(argb) << " within " << tolerance;
}

::testing::AssertionResult AreaIs(const Picture& picture, const SDL_Rect& area, uint32_t argb,
                                  int tolerance) {
    for (int y = area.y; y < area.y + area.h; ++y) {
        for (int x = area.x; x < area.x + area.w; ++x) {
            if (auto result = PixelIs(picture, x, y, argb, tolerance); !result) {
                return result;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult SamePicture(const Picture& left, const Picture& right, int tolerance) {
    if (left.width != right.width || left.height != right.height) {
        return ::testing::AssertionFailure() << "the sizes differ: " << left.width << "x" << left.height
                                             << " and " << right.width << "x" << right.height;
    }
    for (int y = 0; y < left.height; ++y) {
        for (int x = 0; x < left.width; ++x) {
            if (auto result = PixelIs(left, x, y, right.At(x, y), tolerance); !result) {
                return result;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace Corvanta::Testing
