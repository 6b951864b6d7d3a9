#include "video/DisplayColor.h"

#include "platform/SDLAdditions.h"

namespace Corvanta::Video {

bool IsShownUnconverted(const ColorSpace& colorSpace, int renderColorSpace) {
    const ColorPrimaries primaries = colorSpace.GetPrimaries();
    const ColorTransfer transfer = colorSpace.GetTransfer();
    if (primaries == ColorPrimaries::BT709) {
        return transfer == ColorTransfer::BT709 || transfer == ColorTransfer::IEC61966_2_1;
    }
    return renderColorSpace == kColorSpaceBt2020 && primaries == ColorPrimaries::BT2020 &&
           transfer == ColorTransfer::SMPTEST2084;
}

const ColorSpace& ConversionTarget(const ColorSpace& colorSpace, int renderColorSpace) {
    const ColorTransfer transfer = colorSpace.GetTransfer();
    const bool hdr = transfer == ColorTransfer::SMPTEST2084 || transfer == ColorTransfer::ARIB_STD_B67;
    return hdr && renderColorSpace == kColorSpaceBt2020 ? hdrTargetColorSpace : sdrTargetColorSpace;
}

}  // namespace Corvanta::Video
