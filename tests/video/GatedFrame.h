// A white frame that can stop whoever reads its planes, once, at a gate: holds a worker in the middle of a
// conversion.
#pragma once

#include <array>
#include <atomic>
#include <memory>

#include "tests/fake_platform/TestFrames.h"
#include "tests/video/Gate.h"

namespace Corvanta::Testing {

class GatedFrame final : public YUVFrameBuffer {
public:
    static constexpr int kSide = 16;

    GatedFrame() : YUVFrameBuffer(kSide, kSide, kBt709Limited) {
        luma_.fill(235);
        chroma_.fill(128);
    }

    // The next reader stops at the gate.
    void Arm() { armed_.store(true); }
    mutable Gate gate;

    // Not guarded: a reader at the same time is what the thread sanitizer is to see.
    void Clear() override {
        luma_.fill(16);
        ++clearCount_;
    }
    [[nodiscard]] int ClearCount() const { return clearCount_.load(); }

    [[nodiscard]] VideoFrameBufferType GetType() const override { return VideoFrameBufferType::YUV420; }
    [[nodiscard]] SubsamplingMode GetSubsamplingMode() const override { return SubsamplingMode::Mode420; }
    [[nodiscard]] int GetStrideY() const override { return kSide; }
    [[nodiscard]] int GetStrideU() const override { return kSide / 2; }
    [[nodiscard]] int GetStrideV() const override { return kSide / 2; }
    [[nodiscard]] const uint8_t* GetDataY() const override {
        if (armed_.exchange(false)) gate.Pass();
        return luma_.data();
    }
    [[nodiscard]] const uint8_t* GetDataU() const override { return chroma_.data(); }
    [[nodiscard]] const uint8_t* GetDataV() const override { return chroma_.data(); }

private:
    mutable std::atomic<bool> armed_{false};
    std::atomic<int> clearCount_{0};
    std::array<uint8_t, kSide * kSide> luma_{};
    std::array<uint8_t, kSide * kSide / 4> chroma_{};
};

}  // namespace Corvanta::Testing
