#include "tools/gallery/TestPicture.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Corvanta::Gallery {
namespace {

// 0xAARRGGBB.
constexpr uint32_t kBlack = 0xFF000000;
constexpr uint32_t kWall = 0xFF5E8CA3;
constexpr uint32_t kWindow = 0xFFE6F1F5;
constexpr uint32_t kWindowFrame = 0xFFF7F4EC;
constexpr uint32_t kShelf = 0xFF7A5A42;
constexpr uint32_t kBooks = 0xFFC98F4E;
constexpr uint32_t kHair = 0xFF3A2A24;
constexpr uint32_t kSkin = 0xFFDDAA84;
constexpr uint32_t kJacket = 0xFF8E3B46;

// What a display without HDR shows as it is; any other description would be converted by the engine.
constexpr ColorSpace kDisplayColors{ColorMatrix::RGB, ColorRange::Full, ColorPrimaries::BT709,
                                    ColorTransfer::IEC61966_2_1};

[[nodiscard]] bool IsInEllipse(int64_t x, int64_t y, int64_t radiusX, int64_t radiusY) {
    return x * x * radiusY * radiusY + y * y * radiusX * radiusX < radiusX * radiusX * radiusY * radiusY;
}

[[nodiscard]] bool IsBetween(int value, int from, int to) {
    return value >= from && value < to;
}

[[nodiscard]] uint32_t ColorAt(int x, int y) {
    if (IsInEllipse(x - 320, y - 130, 84, 90) && y < 120) return kHair;
    if (IsInEllipse(x - 320, y - 150, 70, 84)) return kSkin;
    if (IsInEllipse(x - 320, y - 370, 170, 130)) return kJacket;
    if (IsBetween(x, 110, 230) && IsBetween(y, 30, 180)) {
        const bool bar = IsBetween(x, 164, 176) || IsBetween(y, 100, 110);
        return bar ? kWindowFrame : kWindow;
    }
    if (IsBetween(x, 430, 550)) {
        if (y % 60 < 10) return kShelf;
        if (y % 60 >= 24 && x % 20 < 14) return kBooks;
    }
    return kWall;
}

class TestPicture final : public RGBFrameBuffer {
public:
    TestPicture() : RGBFrameBuffer(kPictureWidth, kPictureHeight, kDisplayColors) {
        pixels_.reserve(static_cast<size_t>(kPictureWidth) * kPictureHeight);
        for (int y = 0; y < kPictureHeight; ++y) {
            for (int x = 0; x < kPictureWidth; ++x) pixels_.push_back(ColorAt(x, y));
        }
    }

    void Clear() override { std::fill(pixels_.begin(), pixels_.end(), kBlack); }
    [[nodiscard]] VideoFrameBufferType GetType() const override { return VideoFrameBufferType::RGB; }
    [[nodiscard]] const uint8_t* GetBuffer() const override {
        return reinterpret_cast<const uint8_t*>(pixels_.data());
    }

private:
    std::vector<uint32_t> pixels_;
};

}  // namespace

std::shared_ptr<VideoFrameBuffer> MakeTestPicture() {
    return std::make_shared<TestPicture>();
}

}  // namespace Corvanta::Gallery
