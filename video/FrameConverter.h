// Planar pictures turned into ARGB8888 for textures that cannot take planes as they are. Exact to 0.56/255 of
// the picture's matrix on every colour, out of gamut clamped. Chroma is taken by replication: each chroma
// sample colours the pixels of its own block, whatever the siting. Stateless, so any thread; the tile's
// worker calls it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Video {

enum class SampleDepth : int { Bits8 = 8, Bits10 = 10 };

// A planar picture as plain values. Planes are borrowed: bytes for 8 bits, native-order words for 10 bits
// (more than 1023 reads as 1023). Strides in bytes, and need no alignment. Range Unspecified means Limited;
// see GetLumaWeights for the matrix.
struct YuvPlanes {
    const void* y = nullptr;
    const void* u = nullptr;
    const void* v = nullptr;
    int strideY = 0;
    int strideU = 0;
    int strideV = 0;
    int width = 0;
    int height = 0;
    SubsamplingMode subsampling = SubsamplingMode::Mode420;  // an unknown mode reads as Mode420
    SampleDepth depth = SampleDepth::Bits8;
    ColorMatrix matrix = ColorMatrix::Unspecified;
    ColorRange range = ColorRange::Unspecified;
};

// Portable gives the same bytes as Fastest on every machine; tests and benches ask for it.
enum class ConverterPath { Fastest, Portable };

// Writes height rows of width pixels, `pitch` bytes apart. The planes must be readable (CheckFrame) and the
// pitch at least 4 * width.
void ConvertToArgb(const YuvPlanes& planes, uint32_t* target, size_t pitch,
                   ConverterPath path = ConverterPath::Fastest);

// The planes of a frame, empty if it is neither a YUVFrameBuffer nor a YUV16FrameBuffer. Nothing else is
// checked.
[[nodiscard]] std::optional<YuvPlanes> GetPlanes(const PlanarYUVFrameBuffer& frame);

// As above for a frame without defect. Writes nothing for a frame that has no planes to read.
void ConvertToArgb(const PlanarYUVFrameBuffer& frame, uint32_t* target, size_t pitch);

}  // namespace Corvanta::Video
