#include "tests/fake_platform/TestFrames.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace Corvanta::Testing {

namespace {

// Above this a frame only claims its size.
constexpr int64_t kMaxStoredPixels = int64_t{1} << 26;

bool IsStored(int width, int height) {
    return width > 0 && height > 0 && int64_t{width} * height <= kMaxStoredPixels;
}

bool Is16Bit(VideoFrameBufferType type) {
    return type == VideoFrameBufferType::YUV420_16 || type == VideoFrameBufferType::YUV422_16 ||
           type == VideoFrameBufferType::YUV444_16;
}

// Middle grey in limited range, near enough in full range.
constexpr uint16_t kGreyLuma8 = 126;
constexpr uint16_t kGreyChroma8 = 128;

}  // namespace

SubsamplingMode SubsamplingOf(VideoFrameBufferType type) {
    switch (type) {
        case VideoFrameBufferType::YUV422:
        case VideoFrameBufferType::YUV422_16: return SubsamplingMode::Mode422;
        case VideoFrameBufferType::YUV444:
        case VideoFrameBufferType::YUV444_16: return SubsamplingMode::Mode444;
        default: return SubsamplingMode::Mode420;
    }
}

RgbTestFrame::RgbTestFrame(const FrameSpec& options)
    : RGBFrameBuffer(options.width, options.height, options.colorSpace), faults_(options.faults) {
    const uint32_t argb = options.argb.value_or(0xFF808080);
    const bool stored = IsStored(options.width, options.height);
    bytes_.resize(
        stored ? size_t{4} * static_cast<size_t>(options.width) * static_cast<size_t>(options.height) : 4);
    for (size_t i = 0; i < bytes_.size(); ++i) {
        bytes_[i] = static_cast<uint8_t>(argb >> (8 * (i % 4)));
    }
}

void RgbTestFrame::Clear() {
    CountClear();
    for (size_t i = 0; i < bytes_.size(); ++i) {
        bytes_[i] = i % 4 == 3 ? 0xFF : 0;
    }
}

VideoFrameBufferType RgbTestFrame::GetType() const {
    return faults_.type.value_or(VideoFrameBufferType::RGB);
}

const uint8_t* RgbTestFrame::GetBuffer() const {
    return faults_.nullPlane[0] ? nullptr : bytes_.data();
}

void RgbTestFrame::SetPixel(int x, int y, uint32_t argb) {
    const size_t at = 4 * (static_cast<size_t>(y) * static_cast<size_t>(GetWidth()) + static_cast<size_t>(x));
    for (size_t i = 0; i < 4; ++i) {
        bytes_.at(at + i) = static_cast<uint8_t>(argb >> (8 * i));
    }
}

template <typename Sample>
TestPlane<Sample>::TestPlane(int width, int height, int padding, Sample fill)
    : stride_(width + (padding + static_cast<int>(sizeof(Sample)) - 1) / static_cast<int>(sizeof(Sample))),
      samples_(static_cast<size_t>(stride_) * static_cast<size_t>(height - 1) + static_cast<size_t>(width),
               fill) {}

template <typename Sample>
void TestPlane<Sample>::Fill(Sample value) {
    std::fill(samples_.begin(), samples_.end(), value);
}

template <typename Base, typename Sample>
PlanarTestFrame<Base, Sample>::PlanarTestFrame(const FrameSpec& options)
    : Base(options.width, options.height, options.colorSpace),
      faults_(options.faults),
      type_(options.type),
      subsampling_(SubsamplingOf(options.type)) {
    constexpr int kDepthFactor = sizeof(Sample) == 2 ? 4 : 1;
    const bool stored = IsStored(options.width, options.height);
    const int width = stored ? options.width : 1;
    const int height = stored ? options.height : 1;
    const int chromaWidth = subsampling_ == SubsamplingMode::Mode444 ? width : (width + 1) / 2;
    const int chromaHeight = subsampling_ == SubsamplingMode::Mode420 ? (height + 1) / 2 : height;
    const auto fill = [](const std::optional<uint16_t>& value, uint16_t otherwise) {
        return static_cast<Sample>(value.value_or(static_cast<uint16_t>(otherwise * kDepthFactor)));
    };
    planes_.emplace_back(width, height, options.padding, fill(options.y, kGreyLuma8));
    planes_.emplace_back(chromaWidth, chromaHeight, options.padding, fill(options.u, kGreyChroma8));
    planes_.emplace_back(chromaWidth, chromaHeight, options.padding, fill(options.v, kGreyChroma8));
}

template <typename Base, typename Sample>
void PlanarTestFrame<Base, Sample>::Clear() {
    constexpr int kDepthFactor = sizeof(Sample) == 2 ? 4 : 1;
    CountClear();
    const bool full = this->GetColorSpace().GetRange() == ColorRange::Full;
    planes_[0].Fill(static_cast<Sample>(full ? 0 : 16 * kDepthFactor));
    planes_[1].Fill(static_cast<Sample>(128 * kDepthFactor));
    planes_[2].Fill(static_cast<Sample>(128 * kDepthFactor));
}

template <typename Base, typename Sample>
VideoFrameBufferType PlanarTestFrame<Base, Sample>::GetType() const {
    return faults_.type.value_or(type_);
}

template <typename Base, typename Sample>
SubsamplingMode PlanarTestFrame<Base, Sample>::GetSubsamplingMode() const {
    return faults_.subsampling.value_or(subsampling_);
}

template <typename Base, typename Sample>
void PlanarTestFrame<Base, Sample>::SetPixel(int x, int y, Sample luma, Sample u, Sample v) {
    const int chromaX = subsampling_ == SubsamplingMode::Mode444 ? x : x / 2;
    const int chromaY = subsampling_ == SubsamplingMode::Mode420 ? y / 2 : y;
    SetSample(0, x, y, luma);
    SetSample(1, chromaX, chromaY, u);
    SetSample(2, chromaX, chromaY, v);
}

template <typename Base, typename Sample>
int PlanarTestFrame<Base, Sample>::StrideOf(size_t plane) const {
    return faults_.stride[plane].value_or(planes_[plane].Stride());
}

template <typename Base, typename Sample>
const Sample* PlanarTestFrame<Base, Sample>::DataOf(size_t plane) const {
    return faults_.nullPlane[plane] ? nullptr : planes_[plane].Data();
}

template class PlanarTestFrame<YUVFrameBuffer, uint8_t>;
template class PlanarTestFrame<YUV16FrameBuffer, uint16_t>;

std::shared_ptr<RgbTestFrame> MakeRgbFrame(FrameSpec options) {
    options.type = VideoFrameBufferType::RGB;
    return std::make_shared<RgbTestFrame>(options);
}

std::shared_ptr<YuvTestFrame> MakeYuvFrame(const FrameSpec& options) {
    return std::make_shared<YuvTestFrame>(options);
}

std::shared_ptr<Yuv16TestFrame> MakeYuv16Frame(const FrameSpec& options) {
    return std::make_shared<Yuv16TestFrame>(options);
}

std::shared_ptr<VideoFrameBuffer> MakeFrame(const FrameSpec& options) {
    if (options.type == VideoFrameBufferType::RGB) {
        return MakeRgbFrame(options);
    }
    if (Is16Bit(options.type)) {
        return MakeYuv16Frame(options);
    }
    return MakeYuvFrame(options);
}

int ClearCount(const std::shared_ptr<VideoFrameBuffer>& frame) {
    const auto* const testFrame = dynamic_cast<const TestFrame*>(frame.get());
    return testFrame != nullptr ? testFrame->ClearCount() : 0;
}

std::vector<BadFrame> MakeBadFrames() {
    using Type = VideoFrameBufferType;
    constexpr int kHuge = std::numeric_limits<int>::max();
    std::vector<BadFrame> frames;
    const auto add = [&](const char* name, const FrameSpec& options) {
        frames.push_back({name, MakeFrame(options)});
    };

    for (const Type type : {Type::RGB, Type::YUV420, Type::YUV422_16}) {
        add("zero width", {.width = 0, .type = type});
        add("zero height", {.height = 0, .type = type});
        add("negative size", {.width = -4, .height = -4, .type = type});
        add("huge size", {.width = kHuge, .height = kHuge, .type = type});
        add("huge width", {.width = kHuge, .height = 1, .type = type});
        add("null plane 0", {.type = type, .faults = {.nullPlane = {true, false, false}}});
    }
    for (const Type type : {Type::YUV420, Type::YUV444, Type::YUV420_16}) {
        add("null plane 1", {.type = type, .faults = {.nullPlane = {false, true, false}}});
        add("null plane 2", {.type = type, .faults = {.nullPlane = {false, false, true}}});
        add("short stride of plane 0", {.type = type, .faults = {.stride = {63, {}, {}}}});
        add("short stride of plane 1", {.type = type, .faults = {.stride = {{}, 1, {}}}});
        add("short stride of plane 2", {.type = type, .faults = {.stride = {{}, {}, 0}}});
        add("negative stride", {.type = type, .faults = {.stride = {-64, -64, -64}}});
    }
    add("type 7", {.type = static_cast<Type>(7)});
    add("type of the largest number", {.type = static_cast<Type>(kHuge)});
    add("negative type", {.type = static_cast<Type>(-1)});
    add("RGB class, planar type", {.type = Type::RGB, .faults = {.type = Type::YUV420}});
    add("planar class, RGB type", {.type = Type::YUV420, .faults = {.type = Type::RGB}});
    add("8-bit class, 16-bit type", {.type = Type::YUV420, .faults = {.type = Type::YUV420_16}});
    add("16-bit class, 8-bit type", {.type = Type::YUV420_16, .faults = {.type = Type::YUV420}});
    return frames;
}

}  // namespace Corvanta::Testing
