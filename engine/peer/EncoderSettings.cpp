#include "engine/peer/EncoderSettings.h"

#include <algorithm>

namespace Corvanta::Engine {

namespace {

constexpr int kSmallestSide = 16;
// A VP8 frame header has 14 bits for each side.
constexpr int kLargestSide = 16382;

constexpr double kHighLoss = 0.10;
constexpr double kLowLoss = 0.02;
constexpr std::chrono::seconds kLossyTime{2};
constexpr std::chrono::seconds kRaiseInterval{1};
constexpr std::uint32_t kLoweredBy = 5;
constexpr std::uint32_t kRaisedBy = 20;

int EvenSide(int side) {
    return std::clamp(side, kSmallestSide, kLargestSide) & ~1;
}

}  // namespace

PictureSize EncodedSize(int width, int height, const VideoFrameAdaptation& adaptation) {
    const auto lines = static_cast<std::uint32_t>(std::max(height, 1));
    const std::uint32_t largestDivisor = std::max(lines / std::max(adaptation.minimumHeight, 1U), 1U);
    const auto divisor = static_cast<int>(std::clamp(adaptation.scaleDown, 1U, largestDivisor));
    return {EvenSide(width / divisor), EvenSide(height / divisor)};
}

BitrateRule::BitrateRule(std::uint32_t lowestBitrate, std::uint32_t highestBitrate)
    : lowest(lowestBitrate), highest(std::max(lowestBitrate, highestBitrate)), bitrate(highest) {}

std::uint32_t BitrateRule::Report(double lossShare, Clock::time_point now) {
    if (lossShare > kHighLoss) {
        if (!isLossy) lossySince = now;
        isLossy = true;
        if (now - lossySince >= kLossyTime) {
            bitrate = std::max(bitrate - bitrate / kLoweredBy, lowest);
            lossySince = now;
        }
        return bitrate;
    }
    isLossy = false;
    if (lossShare < kLowLoss && now - lastRaise >= kRaiseInterval) {
        bitrate = std::min(bitrate + bitrate / kRaisedBy, highest);
        lastRaise = now;
    }
    return bitrate;
}

void BitrateRule::SetBounds(std::uint32_t lowestBitrate, std::uint32_t highestBitrate) {
    const bool isUnlimited = bitrate == highest;
    lowest = lowestBitrate;
    highest = std::max(lowestBitrate, highestBitrate);
    bitrate = isUnlimited ? highest : std::clamp(bitrate, lowest, highest);
}

}  // namespace Corvanta::Engine
