#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "engine/webrtc/TransferSource.h"

namespace Corvanta::Engine {

namespace {

// Which source positions make up one target position.
struct Taps {
    int first;
    std::vector<float> weights;
};

std::vector<Taps> MakeTaps(int from, int to) {
    const double scale = static_cast<double>(from) / to;
    const double reach = std::max(scale, 1.0);
    std::vector<Taps> all(static_cast<size_t>(to));
    for (int i = 0; i < to; ++i) {
        const double centre = (i + 0.5) * scale - 0.5;
        const int low = static_cast<int>(std::floor(centre - reach)) + 1;
        const int high = static_cast<int>(std::ceil(centre + reach)) - 1;
        Taps& taps = all[static_cast<size_t>(i)];
        taps.first = std::clamp(low, 0, from - 1);
        const int last = std::clamp(high, 0, from - 1);
        taps.weights.assign(static_cast<size_t>(last - taps.first) + 1, 0.0F);
        double sum = 0;
        for (int at = low; at <= high; ++at) sum += reach - std::abs(at - centre);
        for (int at = low; at <= high; ++at) {
            const int inside = std::clamp(at, taps.first, last);  // the edge repeats
            taps.weights[static_cast<size_t>(inside - taps.first)] +=
                static_cast<float>((reach - std::abs(at - centre)) / sum);
        }
    }
    return all;
}

struct SourcePlane {
    const uint8_t* data;
    int stride;
    int width;
    int height;
};

template <typename Sample>
Sample Load(const uint8_t* line, size_t index) {
    Sample sample;
    std::memcpy(&sample, line + sizeof(Sample) * index, sizeof(Sample));
    return sample;
}

// Rows first, then columns; a pixel is `channels` samples.
template <typename Sample>
void ScalePlane(const SourcePlane& source, const WritablePlane& target, int width, size_t channels) {
    const std::vector<Taps> rows = MakeTaps(source.height, target.rows);
    const std::vector<Taps> columns = MakeTaps(source.width, width);
    std::vector<float> line(static_cast<size_t>(source.width) * channels);
    for (size_t y = 0; y < rows.size(); ++y) {
        std::fill(line.begin(), line.end(), 0.0F);
        for (size_t tap = 0; tap < rows[y].weights.size(); ++tap) {
            const uint8_t* from =
                source.data + static_cast<ptrdiff_t>(source.stride) * (rows[y].first + static_cast<int>(tap));
            const float weight = rows[y].weights[tap];
            for (size_t x = 0; x < line.size(); ++x) {
                line[x] += weight * static_cast<float>(Load<Sample>(from, x));
            }
        }
        auto* out = reinterpret_cast<Sample*>(target.data + static_cast<ptrdiff_t>(target.stride) *
                                                                static_cast<ptrdiff_t>(y));
        for (size_t x = 0; x < columns.size(); ++x) {
            for (size_t channel = 0; channel < channels; ++channel) {
                float sum = 0.5F;
                size_t at = static_cast<size_t>(columns[x].first) * channels + channel;
                for (const float weight : columns[x].weights) {
                    sum += weight * line[at];
                    at += channels;
                }
                out[x * channels + channel] = static_cast<Sample>(sum);
            }
        }
    }
}

}  // namespace

NewFrame ScalePicture(const SourcePicture& source, int width, int height, const ColorSpace& colorSpace,
                      FramePool& pool) {
    NewFrame made = pool.MakeFrame(source.type, width, height, colorSpace);
    if (!made) return made;
    const SubsamplingMode mode = GetSubsampling(source.type);
    for (size_t i = 0; i < 3 && made.planes[i].rows > 0; ++i) {
        const bool halfWidth = i > 0 && mode != SubsamplingMode::Mode444;
        const bool halfHeight = i > 0 && mode == SubsamplingMode::Mode420;
        const SourcePlane plane{source.data[i], source.stride[i],
                                halfWidth ? (source.width + 1) / 2 : source.width,
                                halfHeight ? (source.height + 1) / 2 : source.height};
        const int targetWidth = halfWidth ? (width + 1) / 2 : width;
        if (IsSixteenBit(source.type)) {
            ScalePlane<uint16_t>(plane, made.planes[i], targetWidth, 1);
        } else {
            ScalePlane<uint8_t>(plane, made.planes[i], targetWidth, source.IsPacked() ? 4 : 1);
        }
    }
    return made;
}

}  // namespace Corvanta::Engine
