#include "engine/webrtc/OwnedFrames.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace Corvanta::Engine {

namespace {

constexpr size_t kAlignment = 64;
// The tile's queue holds 3 frames, one is shown and one is in work.
constexpr size_t kKeptBlocks = 5;

constexpr std::array<uint8_t, 4> kOpaqueBlack{0, 0, 0, 255};  // bytes blue, green, red, alpha

struct Free {
    void operator()(uint8_t* bytes) const { ::operator delete (bytes, std::align_val_t{kAlignment}); }
};

struct Block {
    std::unique_ptr<uint8_t, Free> bytes;
    size_t size = 0;
};

Block Allocate(size_t size) {
    void* bytes = ::operator new (size, std::align_val_t{kAlignment}, std::nothrow);
    return {std::unique_ptr<uint8_t, Free>(static_cast<uint8_t*>(bytes)), size};
}

size_t RoundUp(size_t value) {
    return (value + kAlignment - 1) / kAlignment * kAlignment;
}

// Where each plane of a picture lies in its block.
struct Layout {
    std::array<WritablePlane, 3> planes;
    std::array<size_t, 3> offsets{};
    size_t size = 0;
};

Layout MakeLayout(VideoFrameBufferType type, int width, int height) {
    Layout layout;
    if (type == VideoFrameBufferType::RGB) {
        layout.planes[0] = {nullptr, 4 * width, 4 * width, height};
        layout.size = static_cast<size_t>(4 * width) * static_cast<size_t>(height) + kAlignment;
        return layout;
    }
    const SubsamplingMode mode = GetSubsampling(type);
    const int sampleBytes = IsSixteenBit(type) ? 2 : 1;
    const int chromaWidth = mode == SubsamplingMode::Mode444 ? width : (width + 1) / 2;
    const int chromaHeight = mode == SubsamplingMode::Mode420 ? (height + 1) / 2 : height;
    for (size_t i = 0; i < 3; ++i) {
        const int rowBytes = (i == 0 ? width : chromaWidth) * sampleBytes;
        const int rows = i == 0 ? height : chromaHeight;
        const size_t stride = RoundUp(static_cast<size_t>(rowBytes));
        layout.planes[i] = {nullptr, static_cast<int>(stride), rowBytes, rows};
        layout.offsets[i] = layout.size;
        layout.size += stride * static_cast<size_t>(rows);
    }
    return layout;
}

}  // namespace

// Blocks between two frames.
class FramePool::Shelf {
public:
    [[nodiscard]] Block Take(size_t size) {
        {
            const std::lock_guard lock(mutex_);
            if (size != size_) {
                size_ = size;
                blocks_.clear();
            }
            if (!blocks_.empty()) {
                Block block = std::move(blocks_.back());
                blocks_.pop_back();
                return block;
            }
        }
        return Allocate(size);
    }

    void PutBack(Block block) {
        const std::lock_guard lock(mutex_);
        if (block.size != size_ || blocks_.size() >= kKeptBlocks) return;
        blocks_.push_back(std::move(block));
    }

    void Close() {
        const std::lock_guard lock(mutex_);
        size_ = 0;
        blocks_.clear();
    }

private:
    std::mutex mutex_;
    // guarded by mutex_
    std::vector<Block> blocks_;
    size_t size_ = 0;  // of every block on the shelf; 0 takes none back
};

namespace {

// A block that goes back to its pool.
class Storage {
public:
    Storage(Block block, std::shared_ptr<FramePool::Shelf> shelf)
        : block_(std::move(block)), shelf_(std::move(shelf)) {}
    ~Storage() {
        if (shelf_ != nullptr) shelf_->PutBack(std::move(block_));
    }
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;

    [[nodiscard]] uint8_t* Data() const { return block_.bytes.get(); }

private:
    Block block_;
    std::shared_ptr<FramePool::Shelf> shelf_;
};

using Planes = std::array<WritablePlane, 3>;

class OwnedRGBFrame final : public RGBFrameBuffer {
public:
    OwnedRGBFrame(int width, int height, const ColorSpace& colorSpace, VideoFrameBufferType,
                  const Planes& planes, Block block, std::shared_ptr<FramePool::Shelf> shelf)
        : RGBFrameBuffer(width, height, colorSpace),
          planes_(planes),
          storage_(std::move(block), std::move(shelf)) {}

    void Clear() override { Blacken(VideoFrameBufferType::RGB, planes_, GetColorSpace()); }
    [[nodiscard]] VideoFrameBufferType GetType() const override { return VideoFrameBufferType::RGB; }
    [[nodiscard]] const uint8_t* GetBuffer() const override { return planes_[0].data; }

private:
    Planes planes_;
    Storage storage_;
};

template <typename Base, typename Sample>
class OwnedPlanarFrame final : public Base {
public:
    OwnedPlanarFrame(int width, int height, const ColorSpace& colorSpace, VideoFrameBufferType type,
                     const Planes& planes, Block block, std::shared_ptr<FramePool::Shelf> shelf)
        : Base(width, height, colorSpace),
          type_(type),
          planes_(planes),
          storage_(std::move(block), std::move(shelf)) {}

    void Clear() override { Blacken(type_, planes_, this->GetColorSpace()); }
    [[nodiscard]] VideoFrameBufferType GetType() const override { return type_; }
    [[nodiscard]] SubsamplingMode GetSubsamplingMode() const override { return GetSubsampling(type_); }
    [[nodiscard]] int GetStrideY() const override { return planes_[0].stride; }
    [[nodiscard]] int GetStrideU() const override { return planes_[1].stride; }
    [[nodiscard]] int GetStrideV() const override { return planes_[2].stride; }
    [[nodiscard]] const Sample* GetDataY() const override { return Data(0); }
    [[nodiscard]] const Sample* GetDataU() const override { return Data(1); }
    [[nodiscard]] const Sample* GetDataV() const override { return Data(2); }

private:
    [[nodiscard]] const Sample* Data(size_t plane) const {
        return reinterpret_cast<const Sample*>(planes_[plane].data);
    }

    VideoFrameBufferType type_;
    Planes planes_;
    Storage storage_;
};

template <typename Frame>
std::shared_ptr<VideoFrameBuffer> Wrap(VideoFrameBufferType type, int width, int height,
                                       const ColorSpace& colorSpace, const Planes& planes, Block block,
                                       std::shared_ptr<FramePool::Shelf> shelf) {
    return std::make_shared<Frame>(width, height, colorSpace, type, planes, std::move(block),
                                   std::move(shelf));
}

NewFrame MakeFrameOn(std::shared_ptr<FramePool::Shelf> shelf, VideoFrameBufferType type, int width,
                     int height, const ColorSpace& colorSpace) {
    if (!IsKnown(type) || width < 1 || height < 1 || width > kMaxFrameSide || height > kMaxFrameSide)
        return {};
    Layout layout = MakeLayout(type, width, height);
    Block block = shelf != nullptr ? shelf->Take(layout.size) : Allocate(layout.size);
    if (block.bytes == nullptr) return {};
    for (size_t i = 0; i < 3; ++i) {
        if (layout.planes[i].rows > 0) layout.planes[i].data = block.bytes.get() + layout.offsets[i];
    }
    const auto wrap = type == VideoFrameBufferType::RGB ? &Wrap<OwnedRGBFrame>
                      : IsSixteenBit(type)              ? &Wrap<OwnedPlanarFrame<YUV16FrameBuffer, uint16_t>>
                                                        : &Wrap<OwnedPlanarFrame<YUVFrameBuffer, uint8_t>>;
    return {wrap(type, width, height, colorSpace, layout.planes, std::move(block), std::move(shelf)),
            layout.planes};
}

void Fill(const WritablePlane& plane, bool sixteenBit, int value) {
    for (int row = 0; row < plane.rows; ++row) {
        uint8_t* line = plane.data + static_cast<ptrdiff_t>(plane.stride) * row;
        if (sixteenBit) {
            std::fill_n(reinterpret_cast<uint16_t*>(line), plane.rowBytes / 2, static_cast<uint16_t>(value));
        } else {
            std::memset(line, value, static_cast<size_t>(plane.rowBytes));
        }
    }
}

}  // namespace

SubsamplingMode GetSubsampling(VideoFrameBufferType type) {
    switch (type) {
        case VideoFrameBufferType::YUV420:
        case VideoFrameBufferType::YUV420_16: return SubsamplingMode::Mode420;
        case VideoFrameBufferType::YUV422:
        case VideoFrameBufferType::YUV422_16: return SubsamplingMode::Mode422;
        default: return SubsamplingMode::Mode444;
    }
}

void Blacken(VideoFrameBufferType type, const std::array<WritablePlane, 3>& planes,
             const ColorSpace& colorSpace) {
    if (type == VideoFrameBufferType::RGB) {
        for (int row = 0; row < planes[0].rows; ++row) {
            uint8_t* line = planes[0].data + static_cast<ptrdiff_t>(planes[0].stride) * row;
            for (int x = 0; x < planes[0].rowBytes; x += 4) std::memcpy(line + x, kOpaqueBlack.data(), 4);
        }
        return;
    }
    const bool sixteenBit = IsSixteenBit(type);
    const int step = sixteenBit ? 4 : 1;
    const int black = colorSpace.GetRange() == ColorRange::Full ? 0 : 16 * step;
    const int neutral = colorSpace.GetMatrix() == ColorMatrix::RGB ? black : 128 * step;
    Fill(planes[0], sixteenBit, black);
    Fill(planes[1], sixteenBit, neutral);
    Fill(planes[2], sixteenBit, neutral);
}

NewFrame MakeFrame(VideoFrameBufferType type, int width, int height, const ColorSpace& colorSpace) {
    return MakeFrameOn(nullptr, type, width, height, colorSpace);
}

FramePool::FramePool() : shelf_(std::make_shared<Shelf>()) {}

FramePool::~FramePool() {
    shelf_->Close();
}

NewFrame FramePool::MakeFrame(VideoFrameBufferType type, int width, int height,
                              const ColorSpace& colorSpace) {
    return MakeFrameOn(shelf_, type, width, height, colorSpace);
}

}  // namespace Corvanta::Engine
