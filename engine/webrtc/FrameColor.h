// Colour of a decoded picture, from GStreamer's caps to H.273 code points. Plain function of values.
#pragma once

#include <gst/video/video.h>

#include "platform/ColorSpace.h"

namespace Corvanta::Engine {

// What the caps leave open is taken from `container` (the description that the file's container gave, all
// unknown when it gave none). What is still open then: BT.709 primaries and transfer (sRGB's transfer for RGB
// pictures); for the matrix the usual rule by size, BT.709 from 720 lines on and BT.601 below; limited range
// (full for RGB). HDR metadata come from the caps' mastering display and light levels.
[[nodiscard]] ColorSpace DescribeColor(const GstVideoInfo& info, const GstCaps* caps,
                                       const GstVideoColorimetry& container);

}  // namespace Corvanta::Engine
