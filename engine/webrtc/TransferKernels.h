// The kernels that turn rows of samples into rows of floats, change their colours and turn them back: a table
// of functions for the machine at hand. Pure functions on the caller's memory, any thread.
#pragma once

#include <cstdint>

namespace Corvanta::Engine {

struct TransferPlan;

// Rows of floats are readable and writable up to a multiple of this, and so are rows of samples that are
// passed in.
inline constexpr int kRowPadding = 32;

// Red, green and blue of one row, encoded, 0 to 1 in gamut.
struct RgbRow {
    float* red;
    float* green;
    float* blue;
};

// Pixels worked on at a time, so that rows stay in the first-level cache.
inline constexpr int kRowChunk = 512;

// Two rows and a scratch row.
class RowBuffers {
public:
    [[nodiscard]] RgbRow Get(int row) { return At(3 * row); }
    [[nodiscard]] RgbRow GetScratch() { return At(6); }

private:
    static constexpr int kLength = kRowChunk + kRowPadding;
    static_assert(kRowChunk % kRowPadding == 0);

    [[nodiscard]] RgbRow At(int part) { return {parts_[part], parts_[part + 1], parts_[part + 2]}; }

    alignas(64) float parts_[9][kLength];
};

// codes = factor * rgb + offset, or rgb = factor * codes + offset.
struct FloatMap {
    float factor[3][3];
    float offset[3];
};

struct TransferKernels {
    template <typename Sample>
    using Load = void (*)(const FloatMap& map, const Sample* y, const Sample* u, const Sample* v, RgbRow row,
                          int count);
    template <typename Sample>
    using Store = void (*)(const FloatMap& map, int plane, int top, RgbRow row, Sample* out, int count);
    template <typename Sample>
    using StoreHalf = void (*)(const FloatMap& map, int top, RgbRow upper, RgbRow lower, Sample* u, Sample* v,
                               int count);

    // Planes to rows; Half: a chroma sample serves two pixels.
    Load<uint8_t> loadNarrowHalf;
    Load<uint8_t> loadNarrow;
    Load<uint16_t> loadWideHalf;
    Load<uint16_t> loadWide;
    // Packed pixels, bytes blue, green, red, any: each byte times scale plus offset.
    void (*loadPacked)(float scale, float offset, const uint8_t* pixels, RgbRow row, int count);
    // Colours of a row, in place: from values as the plan wants them to encoded values. `scratch` is as long.
    void (*convert)(const TransferPlan& plan, RgbRow row, RgbRow scratch, int count);
    // One plane at full width, clamped to 0 and top.
    Store<uint8_t> storeNarrow;
    Store<uint16_t> storeWide;
    // Both chroma planes at half width, each sample the mean over two pixels of two rows.
    StoreHalf<uint8_t> storeHalfNarrow;
    StoreHalf<uint16_t> storeHalfWide;
    // Opaque.
    void (*storePacked)(RgbRow row, uint8_t* pixels, int count);
};

enum class KernelPath { Fastest, Portable };
[[nodiscard]] const TransferKernels& GetTransferKernels(KernelPath path);

// Only for machines with AVX2 and FMA. Null where the compiler was not told to use them.
[[nodiscard]] const TransferKernels* GetAvx2Kernels();

}  // namespace Corvanta::Engine
