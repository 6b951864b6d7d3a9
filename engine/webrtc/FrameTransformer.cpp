#include "engine/webrtc/FrameTransformer.h"

#include <algorithm>
#include <cstring>

#include "engine/webrtc/TransferFunctions.h"
#include "platform/Logger.h"

namespace Corvanta {

using namespace Engine;

namespace {

FloatMap Narrow(const CodeMap& map) {
    FloatMap narrow{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) narrow.factor[i][j] = static_cast<float>(map.factor[i][j]);
        narrow.offset[i] = static_cast<float>(map.offset[i]);
    }
    return narrow;
}

int BitsOf(VideoFrameBufferType type) {
    return IsSixteenBit(type) ? 10 : 8;
}

// Whether samples mean the same in both, given the same light.
bool IsSameCoding(VideoFrameBufferType type, const ColorSpace& first, const ColorSpace& second) {
    if (type == VideoFrameBufferType::RGB) return true;
    const CodeMap a = MakeRgbToCodes(first.GetMatrix(), first.GetRange(), BitsOf(type));
    const CodeMap b = MakeRgbToCodes(second.GetMatrix(), second.GetRange(), BitsOf(type));
    return a.factor == b.factor && a.offset == b.offset;
}

void CopyPlanes(const SourcePicture& source, const NewFrame& made) {
    for (size_t i = 0; i < 3; ++i) {
        const WritablePlane& plane = made.planes[i];
        for (int row = 0; row < plane.rows; ++row) {
            std::memcpy(plane.data + static_cast<ptrdiff_t>(plane.stride) * row,
                        source.data[i] + static_cast<ptrdiff_t>(source.stride[i]) * row,
                        static_cast<size_t>(plane.rowBytes));
        }
    }
}

// Reads pieces of rows. Pieces that do not fill whole vectors, or lie at odd addresses, go through a copy
// whose end repeats the last sample.
class PictureLoader {
public:
    PictureLoader(const TransferKernels& kernels, const SourcePicture& picture, const ColorSpace& colorSpace,
                  const TransferPlan& plan)
        : kernels_(kernels),
          picture_(picture),
          map_(MakeMap(picture, colorSpace, plan)),
          packedScale_(plan.inputScale / 255),
          packedOffset_(plan.inputOffset),
          halfWidth_(GetSubsampling(picture.type) != SubsamplingMode::Mode444),
          halfHeight_(GetSubsampling(picture.type) == SubsamplingMode::Mode420) {}

    // x is a multiple of kRowChunk.
    void Load(int x, int y, int count, const RgbRow& row) const {
        if (picture_.IsPacked()) {
            LoadPacked(Line(0, y) + 4 * static_cast<ptrdiff_t>(x), count, row);
        } else if (IsSixteenBit(picture_.type)) {
            LoadPlanar<uint16_t>(x, y, count, row, halfWidth_ ? kernels_.loadWideHalf : kernels_.loadWide);
        } else {
            LoadPlanar<uint8_t>(x, y, count, row, halfWidth_ ? kernels_.loadNarrowHalf : kernels_.loadNarrow);
        }
    }

private:
    static FloatMap MakeMap(const SourcePicture& picture, const ColorSpace& colorSpace,
                            const TransferPlan& plan) {
        CodeMap map = MakeCodesToRgb(colorSpace.GetMatrix(), colorSpace.GetRange(), BitsOf(picture.type));
        const auto scale = static_cast<double>(plan.inputScale);
        for (size_t i = 0; i < 3; ++i) {
            for (double& factor : map.factor[i]) factor *= scale;
            map.offset[i] = map.offset[i] * scale + static_cast<double>(plan.inputOffset);
        }
        return Narrow(map);
    }

    [[nodiscard]] const uint8_t* Line(size_t plane, int y) const {
        return picture_.data[plane] + static_cast<ptrdiff_t>(picture_.stride[plane]) * y;
    }

    template <typename Sample>
    static bool IsAligned(const uint8_t* samples) {
        return reinterpret_cast<uintptr_t>(samples) % alignof(Sample) == 0;
    }

    template <typename Sample>
    static void CopyPadded(const uint8_t* from, int count, Sample* to) {
        std::memcpy(to, from, sizeof(Sample) * static_cast<size_t>(count));
        std::fill(to + count, to + kRowPadding, to[count - 1]);
    }

    template <typename Sample>
    void LoadPlanar(int x, int y, int count, const RgbRow& row, TransferKernels::Load<Sample> load) const {
        const int chromaLine = halfHeight_ ? y / 2 : y;
        const int chromaX = halfWidth_ ? x / 2 : x;
        const auto at = [](const uint8_t* line, int index) {
            return line + static_cast<ptrdiff_t>(sizeof(Sample)) * index;
        };
        const uint8_t* luma = at(Line(0, y), x);
        const uint8_t* u = at(Line(1, chromaLine), chromaX);
        const uint8_t* v = at(Line(2, chromaLine), chromaX);
        const bool aligned = IsAligned<Sample>(luma) && IsAligned<Sample>(u) && IsAligned<Sample>(v);
        const int whole = aligned ? count / kRowPadding * kRowPadding : 0;
        if (whole > 0) {
            load(map_, reinterpret_cast<const Sample*>(luma), reinterpret_cast<const Sample*>(u),
                 reinterpret_cast<const Sample*>(v), row, whole);
        }
        Sample piece[3][kRowPadding];
        for (int done = whole; done < count; done += kRowPadding) {
            const int left = std::min(count - done, kRowPadding);
            const int chromaDone = halfWidth_ ? done / 2 : done;
            const int chromaLeft = halfWidth_ ? (left + 1) / 2 : left;
            CopyPadded(at(luma, done), left, piece[0]);
            CopyPadded(at(u, chromaDone), chromaLeft, piece[1]);
            CopyPadded(at(v, chromaDone), chromaLeft, piece[2]);
            load(map_, piece[0], piece[1], piece[2], {row.red + done, row.green + done, row.blue + done},
                 kRowPadding);
        }
    }

    void LoadPacked(const uint8_t* pixels, int count, const RgbRow& row) const {
        const int whole = count / kRowPadding * kRowPadding;
        if (whole > 0) kernels_.loadPacked(packedScale_, packedOffset_, pixels, row, whole);
        if (whole == count) return;
        uint32_t piece[kRowPadding];
        CopyPadded(pixels + 4 * static_cast<ptrdiff_t>(whole), count - whole, piece);
        kernels_.loadPacked(packedScale_, packedOffset_, reinterpret_cast<const uint8_t*>(piece),
                            {row.red + whole, row.green + whole, row.blue + whole}, kRowPadding);
    }

    const TransferKernels& kernels_;
    const SourcePicture& picture_;
    FloatMap map_;
    float packedScale_;
    float packedOffset_;
    bool halfWidth_;
    bool halfHeight_;
};

// Writes pieces of one row or two into a frame that MakeFrame made, whole vectors at a time.
class FrameStorer {
public:
    FrameStorer(const TransferKernels& kernels, const NewFrame& made, const ColorSpace& colorSpace)
        : kernels_(kernels),
          planes_(made.planes),
          type_(made.frame->GetType()),
          map_(Narrow(MakeRgbToCodes(colorSpace.GetMatrix(), colorSpace.GetRange(), BitsOf(type_)))) {}

    // Rows that are stored together.
    [[nodiscard]] int GetRowStep() const { return GetSubsampling(type_) == SubsamplingMode::Mode420 ? 2 : 1; }

    void Store(int x, int y, int rows, int count, RowBuffers& buffers) const {
        if (type_ == VideoFrameBufferType::RGB) {
            kernels_.storePacked(buffers.Get(0), Line(0, y) + 4 * static_cast<ptrdiff_t>(x), count);
        } else if (IsSixteenBit(type_)) {
            StorePlanar<uint16_t>(x, y, rows, count, buffers, kernels_.storeWide, kernels_.storeHalfWide);
        } else {
            StorePlanar<uint8_t>(x, y, rows, count, buffers, kernels_.storeNarrow, kernels_.storeHalfNarrow);
        }
    }

private:
    [[nodiscard]] uint8_t* Line(size_t plane, int y) const {
        return planes_[plane].data + static_cast<ptrdiff_t>(planes_[plane].stride) * y;
    }

    template <typename Sample>
    void StorePlanar(int x, int y, int rows, int count, RowBuffers& buffers,
                     TransferKernels::Store<Sample> store,
                     TransferKernels::StoreHalf<Sample> storeHalf) const {
        const int top = (1 << BitsOf(type_)) - 1;
        const auto samples = [this](size_t plane, int line) {
            return reinterpret_cast<Sample*>(Line(plane, line));
        };
        for (int row = 0; row < rows; ++row) {
            store(map_, 0, top, buffers.Get(row), samples(0, y + row) + x, count);
        }
        switch (GetSubsampling(type_)) {
            case SubsamplingMode::Mode444:
                store(map_, 1, top, buffers.Get(0), samples(1, y) + x, count);
                store(map_, 2, top, buffers.Get(0), samples(2, y) + x, count);
                return;
            case SubsamplingMode::Mode422:
                storeHalf(map_, top, buffers.Get(0), buffers.Get(0), samples(1, y) + x / 2,
                          samples(2, y) + x / 2, count);
                return;
            case SubsamplingMode::Mode420:
                storeHalf(map_, top, buffers.Get(0), buffers.Get(rows - 1), samples(1, y / 2) + x / 2,
                          samples(2, y / 2) + x / 2, count);
                return;
        }
    }

    const TransferKernels& kernels_;
    const std::array<WritablePlane, 3>& planes_;
    VideoFrameBufferType type_;
    FloatMap map_;
};

std::shared_ptr<VideoFrameBuffer> Refuse(const char* reason) {
    LOG(kLogWarning, "Could not convert a video frame: %s", reason);
    return nullptr;
}

}  // namespace

VideoFrameTransformer::VideoFrameTransformer(KernelPath path) : kernels_(GetTransferKernels(path)) {}

const TransferPlan& VideoFrameTransformer::GetPlan(const ColorSpace& source, const ColorSpace& target) {
    const PlanKey key{source.GetPrimaries(), target.GetPrimaries(), source.GetTransfer(),
                      target.GetTransfer(), MakeToneCurve(source).sourcePeakPq};
    if (key != planKey_) {
        plan_ = MakeTransferPlan(source, target);
        planKey_ = key;
    }
    return plan_;
}

std::shared_ptr<VideoFrameBuffer> VideoFrameTransformer::ConvertPicture(const SourcePicture& source,
                                                                        const ColorSpace& sourceSpace,
                                                                        VideoFrameBufferType type,
                                                                        const ColorSpace& targetSpace) {
    NewFrame made = pool_.MakeFrame(type, source.width, source.height, targetSpace);
    if (!made) return Refuse("out of memory");
    const TransferPlan& plan = GetPlan(sourceSpace, targetSpace);
    if (plan.light == TransferPlan::Light::Same && source.type == type &&
        IsSameCoding(type, sourceSpace, targetSpace)) {
        CopyPlanes(source, made);
        return made.frame;
    }
    const PictureLoader loader(kernels_, source, sourceSpace, plan);
    const FrameStorer storer(kernels_, made, targetSpace);
    const int rowStep = storer.GetRowStep();
    RowBuffers buffers;
    for (int y = 0; y < source.height; y += rowStep) {
        const int rows = std::min(rowStep, source.height - y);
        for (int x = 0; x < source.width; x += kRowChunk) {
            const int count = std::min(kRowChunk, source.width - x);
            for (int row = 0; row < rows; ++row) {
                loader.Load(x, y + row, count, buffers.Get(row));
                kernels_.convert(plan, buffers.Get(row), buffers.GetScratch(), count + (count & 1));
            }
            storer.Store(x, y, rows, count, buffers);
        }
    }
    return made.frame;
}

std::shared_ptr<VideoFrameBuffer> VideoFrameTransformer::Convert(const VideoFrameBuffer* frame, int width,
                                                                 int height, VideoFrameBufferType type,
                                                                 const ColorSpace& colorSpace) {
    const char* defect = "";
    const std::optional<SourcePicture> source = ReadFrame(frame, defect);
    if (!source) return Refuse(defect);
    if (!IsKnown(type)) return Refuse("unknown buffer type asked for");
    if (width < 1 || height < 1 || width > kMaxFrameSide || height > kMaxFrameSide) {
        return Refuse("a size asked for that no frame can have");
    }
    if (width == source->width && height == source->height) {
        return ConvertPicture(*source, frame->GetColorSpace(), type, colorSpace);
    }
    const NewFrame scaled = ScalePicture(*source, width, height, frame->GetColorSpace(), scaledPool_);
    if (!scaled) return Refuse("out of memory");
    return ConvertPicture(ReadNewFrame(scaled), frame->GetColorSpace(), type, colorSpace);
}

}  // namespace Corvanta

extern "C" {

Corvanta::VideoFrameTransformer* WebRTC_GetFrameTransformerInstance() {
    return new Corvanta::VideoFrameTransformer;
}

void WebRTC_DeleteFrameTransformerInstance(Corvanta::VideoFrameTransformer* transformer) {
    delete transformer;
}

std::shared_ptr<Corvanta::VideoFrameBuffer> WebRTC_ConvertFrame(
    Corvanta::VideoFrameTransformer* transformer, const std::shared_ptr<Corvanta::VideoFrameBuffer>& frame,
    int32_t width, int32_t height, Corvanta::VideoFrameBufferType type,
    const Corvanta::ColorSpace& colorSpace) {
    if (transformer == nullptr) {
        LOG(kLogWarning, "Could not convert a video frame: no converter given");
        return nullptr;
    }
    return transformer->Convert(frame.get(), width, height, type, colorSpace);
}
}
