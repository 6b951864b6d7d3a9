#include "video/HdrMetadata.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace Corvanta::Video {
namespace {

TEST(HdrMetadata, NarrowsTheEightChromaticitiesAndPutsTheLuminancesBeforeTheLightLevels) {
    const HDRMetadata metadata{.redX = 0.1,
                               .redY = 0.2,
                               .greenX = 0.3,
                               .greenY = 0.4,
                               .blueX = 0.5,
                               .blueY = 0.6,
                               .whiteX = 0.7,
                               .whiteY = 0.8,
                               .maxContentLightLevelNits = 9,
                               .maxFrameAverageLightLevelNits = 10,
                               .maxMasteringLuminanceNits = 11,
                               .minMasteringLuminanceNits = 12};
    const RenderHDRMetadata record = ToRenderMetadata(metadata);
    std::array<float, 12> floats{};
    std::memcpy(floats.data(), &record, sizeof(record));
    EXPECT_EQ(floats, (std::array<float, 12>{0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F, 0.7F, 0.8F, 11, 12, 9, 10}));
}

}  // namespace
}  // namespace Corvanta::Video
