// Which colours an output shows without conversion, and what everything else is converted to. Plain values,
// any thread.
#pragma once

#include "platform/ColorSpace.h"

namespace Corvanta::Video {

inline constexpr ColorSpace sdrTargetColorSpace{ColorMatrix::BT709, ColorRange::Limited,
                                                ColorPrimaries::BT709, ColorTransfer::IEC61966_2_1};
inline constexpr ColorSpace hdrTargetColorSpace{ColorMatrix::BT2020NCL, ColorRange::Limited,
                                                ColorPrimaries::BT2020, ColorTransfer::SMPTEST2084};

// Whether a picture of these primaries and transfer goes to the output as it is. renderColorSpace: as read
// from the renderer, kColorSpaceBt2020 for an HDR output.
[[nodiscard]] bool IsShownUnconverted(const ColorSpace& colorSpace, int renderColorSpace);

// What a picture that is not shown unconverted is converted to: PQ for HDR pictures on an HDR output, else
// SDR.
[[nodiscard]] const ColorSpace& ConversionTarget(const ColorSpace& colorSpace, int renderColorSpace);

}  // namespace Corvanta::Video
