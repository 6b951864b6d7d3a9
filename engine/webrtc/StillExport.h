// Writes one frame as a PNG file: the engine's side of WebRTC_ExportStillImageFromVideoFrameBuffer.
// Stateless, any thread that may read the frame; a media thread calls it.
#pragma once

#include <string>

#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Engine {

// 8 bits a component for 8-bit frames, 16 for 10-bit ones, converted by the frame's own matrix and range,
// chroma repeated. Light and primaries are left as they are and named in the file: sRGB (with gAMA and cHRM
// for readers that know no better) for BT.709 primaries and sRGB's family of transfers, gAMA and cHRM for
// other SDR spaces, cICP for PQ and HLG. The file appears whole under its name or not at all. False, and one
// log line, for a frame that cannot be read or a file that cannot be written.
[[nodiscard]] bool ExportStill(const std::string& fileName, const VideoFrameBuffer* frame);

}  // namespace Corvanta::Engine
