#include "drawing/StepStamps.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "drawing/StrokeGeometry.h"

namespace Corvanta::Drawing {
namespace {

// Longer or wider ones do not fit into a stamp, at each side of its middle.
constexpr int kMiddle = CoverageMask::kWordBits / 2;
constexpr int kLongest = 7;
constexpr int kWidest = 40;
constexpr unsigned kBits = 4;
constexpr unsigned kOffset = 8;
constexpr size_t kSteps = size_t{1} << (4 * kBits);
constexpr uint16_t kNone = std::numeric_limits<uint16_t>::max();
// About 2 MB.
constexpr size_t kMostStamps = 8192;

// Corners are cut towards zero, which is downwards only where all are positive; on the way there they are
// rounded, by less than this wherever there are pixels.
constexpr int kLeastPlace = 2 * kMiddle;
constexpr double kLeastFraction = 1e-9;

[[nodiscard]] bool IsShort(SDL_Point step) {
    return std::abs(step.x) <= kLongest && std::abs(step.y) <= kLongest;
}

[[nodiscard]] size_t IndexOf(SDL_Point before, SDL_Point step) {
    size_t index = 0;
    for (const int part : {before.x, before.y, step.x, step.y})
        index = index << kBits | (static_cast<unsigned>(part) + kOffset);
    return index;
}

[[nodiscard]] bool IsSameEverywhere(double offset) {
    const double fraction = offset - std::floor(offset);
    return offset == 0 || (fraction > kLeastFraction && fraction < 1 - kLeastFraction);
}

// Whether the corners of that step are cut the same way wherever it begins.
[[nodiscard]] bool IsSameEverywhere(SDL_Point step, int width) {
    if (step.x == 0 && step.y == 0) return true;
    const auto [x, y] = ThickLineOffset(step, width);
    return IsSameEverywhere(x) && IsSameEverywhere(y);
}

}  // namespace

void AddCurveStep(CoverageMask& mask, SDL_Point before, SDL_Point from, SDL_Point to, int width) {
    const Corners corners = ThickLineCorners(from, to, width);
    mask.AddPolygon(corners);
    if (before.x == 0 && before.y == 0) return;
    const Corners last = ThickLineCorners({from.x - before.x, from.y - before.y}, from, width);
    mask.AddPolygon(Corners{last[2], last[3], corners[0], corners[1]});
}

StepStamps::StepStamps(int width) : width_(width), places_(width <= kWidest ? kSteps : 0) {}

const MaskStamp* StepStamps::Find(SDL_Point before, SDL_Point from, SDL_Point step) {
    if (places_.empty() || from.x < kLeastPlace || from.y < kLeastPlace) return nullptr;
    if (!IsShort(before) || !IsShort(step)) return nullptr;
    uint16_t& place = places_[IndexOf(before, step)];
    if (place == 0) place = Make(before, step);
    return place == kNone ? nullptr : &stamps_[place - 1U];
}

uint16_t StepStamps::Make(SDL_Point before, SDL_Point step) {
    if (stamps_.size() == kMostStamps) return kNone;
    if (!IsSameEverywhere(before, width_) || !IsSameEverywhere(step, width_)) return kNone;
    constexpr SDL_Point kFrom{2 * kLeastPlace, 2 * kLeastPlace};
    CoverageMask mask({kFrom.x - kMiddle, kFrom.y - kMiddle, 2 * kMiddle, 2 * kMiddle});
    AddCurveStep(mask, before, kFrom, {kFrom.x + step.x, kFrom.y + step.y}, width_);
    stamps_.push_back(mask.ToStamp(kFrom));
    return static_cast<uint16_t>(stamps_.size());
}

}  // namespace Corvanta::Drawing
