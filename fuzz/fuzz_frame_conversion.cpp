// Frames of any size, layout and colour, some of them lying about themselves: what passes the check must
// convert without a read or write out of bounds. The frames' buffers end with their last sample.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/fake_platform/TestFrames.h"
#include "video/FrameCheck.h"
#include "video/FrameConverter.h"

using namespace Corvanta;

namespace {

[[nodiscard]] Testing::FrameSpec AnySpec(FuzzedDataProvider& provider) {
    Testing::FrameSpec spec;
    spec.width = provider.ConsumeIntegralInRange(-1, 70);
    spec.height = provider.ConsumeIntegralInRange(-1, 70);
    spec.type = static_cast<VideoFrameBufferType>(provider.ConsumeIntegralInRange(0, 8));
    spec.colorSpace = ColorSpace(static_cast<ColorMatrix>(provider.ConsumeIntegralInRange(0, 15)),
                                 static_cast<ColorRange>(provider.ConsumeIntegralInRange(0, 3)),
                                 ColorPrimaries::BT709, ColorTransfer::BT709);
    spec.y = provider.ConsumeIntegral<uint16_t>();
    spec.u = provider.ConsumeIntegral<uint16_t>();
    spec.v = provider.ConsumeIntegral<uint16_t>();
    spec.padding = 2 * provider.ConsumeIntegralInRange(0, 9);
    for (int plane = 0; plane < 3; ++plane) {
        spec.faults.nullPlane[plane] = provider.ConsumeIntegralInRange(0, 15) == 0;
        // Only strides that the check refuses: a longer one than the truth cannot be seen from outside.
        if (provider.ConsumeIntegralInRange(0, 15) == 0) {
            spec.faults.stride[plane] = provider.ConsumeIntegralInRange(-9, 0);
        }
    }
    return spec;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider provider(data, size);
    const auto frame = Testing::MakeFrame(AnySpec(provider));
    if (Video::CheckFrame(*frame) != Video::FrameDefect::None) return 0;
    const auto* planes = dynamic_cast<const PlanarYUVFrameBuffer*>(frame.get());
    if (planes == nullptr) return 0;
    const auto width = static_cast<size_t>(frame->GetWidth());
    std::vector<uint32_t> pixels(width * static_cast<size_t>(frame->GetHeight()));
    Video::ConvertToArgb(*planes, pixels.data(), width * sizeof(uint32_t));
    return 0;
}
