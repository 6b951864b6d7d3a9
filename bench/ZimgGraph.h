// zimg's way from one picture format to another, as the yardstick of our own conversions. One thread at a
// time.
#pragma once

#include <zimg++.hpp>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "platform/ColorSpace.h"
#include "platform/VideoFrameBuffer.h"

namespace Corvanta::Bench {

// How zimg may work: as it comes; with curves from tables, which costs it a little of its exactness; and also
// with the widest vectors of the machine and without interpolation of chroma.
enum class ZimgMode { Default, Approximate, Fastest };

struct ZimgPlane {
    void* data;
    ptrdiff_t stride;
};

// A planar picture: 8 or 10 bits, Y, U, V or (rgb) red, green, blue.
[[nodiscard]] inline zimgxx::zimage_format MakeZimgFormat(int width, int height, int bits,
                                                          SubsamplingMode mode, const ColorSpace& space,
                                                          bool rgb) {
    zimgxx::zimage_format format;
    format.width = static_cast<unsigned>(width);
    format.height = static_cast<unsigned>(height);
    format.pixel_type = bits > 8 ? ZIMG_PIXEL_WORD : ZIMG_PIXEL_BYTE;
    format.depth = static_cast<unsigned>(bits);
    format.subsample_w = mode == SubsamplingMode::Mode444 ? 0 : 1;
    format.subsample_h = mode == SubsamplingMode::Mode420 ? 1 : 0;
    format.color_family = rgb ? ZIMG_COLOR_RGB : ZIMG_COLOR_YUV;
    format.matrix_coefficients =
        rgb ? ZIMG_MATRIX_RGB : static_cast<zimg_matrix_coefficients_e>(static_cast<int>(space.GetMatrix()));
    format.transfer_characteristics =
        static_cast<zimg_transfer_characteristics_e>(static_cast<int>(space.GetTransfer()));
    format.color_primaries = static_cast<zimg_color_primaries_e>(static_cast<int>(space.GetPrimaries()));
    format.pixel_range = rgb || space.GetRange() == ColorRange::Full ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
    return format;
}

class ZimgGraph final {
public:
    ZimgGraph(const zimgxx::zimage_format& from, const zimgxx::zimage_format& to, ZimgMode mode) {
        zimgxx::zfilter_graph_builder_params parameters;
        parameters.nominal_peak_luminance = 203;
        parameters.allow_approximate_gamma = mode == ZimgMode::Default ? 0 : 1;
        if (mode == ZimgMode::Fastest) {
            parameters.cpu_type = ZIMG_CPU_AUTO_64B;
            parameters.resample_filter = parameters.resample_filter_uv = ZIMG_RESIZE_POINT;
        }
        graph_ = zimgxx::FilterGraph::build(from, to, &parameters);
        constexpr size_t kAlignment = 64;
        const size_t size = (graph_.get_tmp_size() + kAlignment - 1) / kAlignment * kAlignment;
        scratch_.reset(std::aligned_alloc(kAlignment, size));
        if (scratch_ == nullptr) throw std::bad_alloc();
    }

    // Planes start on 64 bytes, as their strides do.
    void Run(const std::array<ZimgPlane, 3>& from, const std::array<ZimgPlane, 3>& to) {
        zimgxx::zimage_buffer_const source;
        zimgxx::zimage_buffer target;
        for (unsigned i = 0; i < 3; ++i) {
            source.data(i) = from[i].data;
            source.stride(i) = from[i].stride;
            source.mask(i) = ZIMG_BUFFER_MAX;
            target.data(i) = to[i].data;
            target.stride(i) = to[i].stride;
            target.mask(i) = ZIMG_BUFFER_MAX;
        }
        graph_.process(source, target, scratch_.get());
    }

private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    zimgxx::FilterGraph graph_;
    std::unique_ptr<void, Free> scratch_;
};

}  // namespace Corvanta::Bench
