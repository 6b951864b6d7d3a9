#include "engine/peer/Vp8Frame.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace Corvanta::Engine {
namespace {

// The beginning of a key frame.
std::vector<std::uint8_t> KeyFrame(int width, int height) {
    const auto low = [](int side) { return static_cast<std::uint8_t>(side & 0xFF); };
    // Scaled up by the receiver, which says nothing of the size that is decoded.
    const auto high = [](int side) { return static_cast<std::uint8_t>((side >> 8) | 0x40); };
    return {0x10, 0x02, 0x00, 0x9D, 0x01, 0x2A, low(width), high(width), low(height), high(height), 0x00};
}

TEST(Vp8Frame, OfAKeyFrameTellsItsSize) {
    EXPECT_EQ(ReadKeyFrameSize(KeyFrame(640, 360)), (PictureSize{640, 360}));
    EXPECT_EQ(ReadKeyFrameSize(KeyFrame(16383, 16383)), (PictureSize{16383, 16383}));
}

TEST(Vp8Frame, OfAnotherKindTellsNothing) {
    auto frame = KeyFrame(640, 360);
    frame[0] |= 1;
    EXPECT_FALSE(ReadKeyFrameSize(frame));
    frame = KeyFrame(640, 360);
    frame[4] = 2;
    EXPECT_FALSE(ReadKeyFrameSize(frame));
    frame = KeyFrame(640, 360);
    frame.resize(9);
    EXPECT_FALSE(ReadKeyFrameSize(frame));
    EXPECT_FALSE(ReadKeyFrameSize({}));
}

}  // namespace
}  // namespace Corvanta::Engine
