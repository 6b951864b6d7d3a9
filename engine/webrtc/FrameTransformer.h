// Turns frames of any type and colour space into new frames of another: the engine's side of
// WebRTC_GetFrameTransformerInstance and its companions. One thread at a time; each tile has one of its own.
//
// Light of HDR pictures is brought to SDR by the EETF of Report ITU-R BT.2390 (see TransferFunctions.h for
// this and the rest of the colour science). Against that arithmetic in double precision, over the whole cube
// of colours, in steps of 8 bits before rounding: PQ to SDR largest error 0.08, mean 0.017; HLG to SDR 0.09
// and 0.017; HLG to PQ 0.02 and 0.009; BT.601 to BT.709 0.04 and 0.020. Greys stay grey and in order.
#pragma once

#include <memory>

#include "engine/webrtc/OwnedFrames.h"
#include "engine/webrtc/TransferKernels.h"
#include "engine/webrtc/TransferPlan.h"
#include "engine/webrtc/TransferSource.h"
#include "platform/VideoFrameBuffer.h"
#include "platform/WebRTC.h"

namespace Corvanta {

class VideoFrameTransformer final {
public:
    explicit VideoFrameTransformer(Engine::KernelPath path = Engine::KernelPath::Fastest);

    // A new frame of that size (pixels) and type with its pixels in that colour space; null, and one log
    // line, for a frame that cannot be read, a size or type that cannot be made, or where memory is short.
    // Ranges and matrices apply to planar pictures: packed ones are always full range, whatever they carry.
    // Chroma is averaged where it is halved and repeated where it is doubled. A change of size comes first,
    // on encoded values. The new frame's memory comes from the transformer's pool.
    [[nodiscard]] std::shared_ptr<VideoFrameBuffer> Convert(const VideoFrameBuffer* frame, int width,
                                                            int height, VideoFrameBufferType type,
                                                            const ColorSpace& colorSpace);

private:
    // What a plan depends on.
    struct PlanKey {
        ColorPrimaries fromPrimaries, toPrimaries;
        ColorTransfer fromTransfer, toTransfer;
        double sourcePeakPq;

        bool operator==(const PlanKey&) const = default;
    };

    [[nodiscard]] const Engine::TransferPlan& GetPlan(const ColorSpace& source, const ColorSpace& target);
    [[nodiscard]] std::shared_ptr<VideoFrameBuffer> ConvertPicture(const Engine::SourcePicture& source,
                                                                   const ColorSpace& sourceSpace,
                                                                   VideoFrameBufferType type,
                                                                   const ColorSpace& targetSpace);

    const Engine::TransferKernels& kernels_;
    Engine::FramePool pool_;
    Engine::FramePool scaledPool_;
    PlanKey planKey_{};
    Engine::TransferPlan plan_;
};

}  // namespace Corvanta
