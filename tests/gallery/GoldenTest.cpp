// The look of every control and of a tile in every state at every scale, pixel by pixel. tools/renew_goldens
// writes the pictures anew after a change that is meant; look at what changed before it is committed.
#include <SDL_image.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "tests/fake_platform/FakePlatform.h"
#include "tools/gallery/FixedReport.h"
#include "tools/gallery/SheetPicture.h"

namespace Corvanta::Gallery {
namespace {

namespace fs = std::filesystem;

const fs::path kGoldens = CORVANTA_GOLDENS;
const fs::path kDifferences = CORVANTA_DIFFERENCES;

[[nodiscard]] Surface Load(const fs::path& file) {
    const Surface raw(IMG_Load(file.string().c_str()));
    if (raw == nullptr) return nullptr;
    return Surface(SDL_ConvertSurfaceFormat(raw.get(), SDL_PIXELFORMAT_ARGB8888, 0));
}

[[nodiscard]] uint32_t& PixelOf(SDL_Surface& surface, int x, int y) {
    auto* row = static_cast<uint8_t*>(surface.pixels) + static_cast<ptrdiff_t>(y) * surface.pitch;
    return reinterpret_cast<uint32_t*>(row)[x];
}

// Counts the pixels that differ and paints them red over a dimmed copy of what was drawn.
[[nodiscard]] int Compare(SDL_Surface& drawn, SDL_Surface& golden, SDL_Surface& difference) {
    int different = 0;
    for (int y = 0; y < drawn.h; ++y) {
        for (int x = 0; x < drawn.w; ++x) {
            const uint32_t pixel = PixelOf(drawn, x, y);
            const bool same = pixel == PixelOf(golden, x, y);
            PixelOf(difference, x, y) = same ? (0xFF000000U | ((pixel >> 1U) & 0x007F7F7FU)) : 0xFFFF0000U;
            if (!same) ++different;
        }
    }
    return different;
}

class GoldenPictures : public ::testing::TestWithParam<float> {
protected:
    static void SetUpTestSuite() {
        ASSERT_EQ(TTF_Init(), 0);
        Testing::Fake().Set(
            [](Testing::FakeResults& results) { results.connectivityResponse = FixedReport(); });
    }
};

TEST_P(GoldenPictures, AreDrawnToThePixel) {
    const SheetPicture picture = DrawSheet(GetParam());
    ASSERT_NE(picture.surface, nullptr);
    ASSERT_FALSE(picture.cells.empty());
    for (const auto& [name, area] : picture.cells) {
        const std::string file = CropFileName(name, GetParam());
        const Surface drawn = Crop(picture, area);
        const Surface golden = Load(kGoldens / file);
        ASSERT_NE(drawn, nullptr);
        if (golden == nullptr) {
            ADD_FAILURE() << "no golden picture " << file << "; tools/renew_goldens makes it";
            continue;
        }
        if (golden->w != drawn->w || golden->h != drawn->h) {
            ADD_FAILURE() << file << " has another size";
            continue;
        }
        const Surface difference = Crop(picture, area);
        const int pixels = Compare(*drawn, *golden, *difference);
        if (pixels == 0) continue;
        fs::create_directories(kDifferences);
        IMG_SavePNG(difference.get(), (kDifferences / file).string().c_str());
        ADD_FAILURE() << file << ": " << pixels << " pixels differ, shown red in " << (kDifferences / file);
    }
}

TEST(GoldenFiles, BelongToCellsThatExist) {
    ASSERT_EQ(TTF_Init(), 0);
    const SheetPicture picture = DrawSheet(1.0F);
    size_t expected = 0;
    for (const float scale : {1.0F, 1.25F, 1.5F, 2.0F}) {
        for (const auto& [name, area] : picture.cells)
            expected += fs::exists(kGoldens / CropFileName(name, scale)) ? 1 : 0;
    }
    size_t found = 0;
    for (const auto& entry : fs::directory_iterator(kGoldens)) found += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(AtEveryScale, GoldenPictures, ::testing::Values(1.0F, 1.25F, 1.5F, 2.0F));

}  // namespace
}  // namespace Corvanta::Gallery
