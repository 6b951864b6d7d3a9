// The time at which a picture was finished, written into the picture itself as a row of light and dark blocks
// along its upper edge, so that it comes out of an encoder, and of a window's pixels, on the other side. All
// processes of a machine share the clock. Plain functions, any thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

#include "engine/webrtc/MappedPicture.h"

namespace Corvanta::Bench {

inline constexpr int kStampBits = 20;
// Of the picture's height.
inline constexpr int kStampShare = 10;
// The lower 16 bits are tenths of a millisecond, the upper four prove that it was read as it was written.
inline constexpr double kStampUnitMs = 0.1;
inline constexpr std::uint32_t kStampPeriod = 1U << 16U;

[[nodiscard]] inline std::uint32_t StampNow() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::microseconds>(now).count() /
                                      100 % kStampPeriod);
}

// What has gone by since a stamp, up to 6.5 seconds.
[[nodiscard]] inline double StampAgeMs(std::uint32_t stamp) {
    return kStampUnitMs * static_cast<double>((StampNow() - stamp) % kStampPeriod);
}

[[nodiscard]] inline std::uint32_t StampProof(std::uint32_t stamp) {
    return (stamp ^ stamp >> 4U ^ stamp >> 8U ^ stamp >> 12U ^ 0x6U) & 0xFU;
}

// Writes it into a plane of brightness.
inline void WriteStamp(std::uint8_t* plane, int stride, int width, int height, std::uint32_t stamp) {
    const std::uint32_t bits = stamp | StampProof(stamp) << 16U;
    const int block = width / kStampBits;
    for (int y = 0; y < height / kStampShare; ++y) {
        for (int bit = 0; bit < kStampBits; ++bit) {
            std::memset(
                plane + static_cast<std::ptrdiff_t>(y) * stride + static_cast<std::ptrdiff_t>(bit) * block,
                (bits >> static_cast<unsigned>(bit) & 1U) != 0 ? 225 : 30, static_cast<std::size_t>(block));
        }
    }
}

// Nothing where the picture has none that can be read.
[[nodiscard]] inline std::optional<std::uint32_t> ReadStamp(const std::uint8_t* plane, int stride, int width,
                                                            int height) {
    constexpr int kReach = 3;
    constexpr int kMiddle = 128 * (2 * kReach + 1) * (2 * kReach + 1);
    const int block = width / kStampBits;
    const int middle = height / kStampShare / 2;
    if (block / 2 <= kReach || middle <= kReach) return std::nullopt;
    std::uint32_t bits = 0;
    for (int bit = 0; bit < kStampBits; ++bit) {
        int sum = 0;
        for (int y = middle - kReach; y <= middle + kReach; ++y) {
            const std::uint8_t* place =
                plane + static_cast<std::ptrdiff_t>(y) * stride + bit * block + block / 2;
            for (int x = -kReach; x <= kReach; ++x) sum += place[x];
        }
        if (sum > kMiddle) bits |= 1U << static_cast<unsigned>(bit);
    }
    const std::uint32_t stamp = bits % kStampPeriod;
    if (bits >> 16U != StampProof(stamp)) return std::nullopt;
    return stamp;
}

[[nodiscard]] inline std::optional<std::uint32_t> ReadStamp(const Engine::MappedPicture& picture) {
    return ReadStamp(picture.Plane(0), picture.Stride(0), picture.Width(), picture.Height());
}

}  // namespace Corvanta::Bench
