#include "engine/webrtc/StillExport.h"

#include <png.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "engine/webrtc/TransferFunctions.h"
#include "engine/webrtc/TransferSource.h"
#include "platform/Logger.h"
#include "platform/WebRTC.h"

namespace Corvanta::Engine {

namespace {

// A still is written while the next frame waits: level 2 costs a third of the default's time for a tenth more
// bytes.
constexpr int kCompressionLevel = 2;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// A picture's rows as PNG wants them: red, green, blue, of 8 bits or of 16 in network order.
class RowReader {
public:
    RowReader(const SourcePicture& picture, const ColorSpace& colorSpace)
        : picture_(picture),
          sixteenBit_(IsSixteenBit(picture.type)),
          halfWidth_(GetSubsampling(picture.type) != SubsamplingMode::Mode444),
          halfHeight_(GetSubsampling(picture.type) == SubsamplingMode::Mode420),
          map_(MakeCodesToRgb(colorSpace.GetMatrix(), colorSpace.GetRange(), sixteenBit_ ? 10 : 8)),
          row_(static_cast<size_t>(picture.width) * (sixteenBit_ ? 6 : 3)) {}

    [[nodiscard]] int GetBits() const { return sixteenBit_ ? 16 : 8; }
    [[nodiscard]] const SourcePicture& GetPicture() const { return picture_; }

    // Valid until the next call.
    const uint8_t* Read(int y) {
        for (int x = 0; x < picture_.width; ++x) {
            if (picture_.IsPacked()) {
                const uint8_t* pixel = Line(0, y) + 4 * static_cast<ptrdiff_t>(x);
                uint8_t* out = &row_[static_cast<size_t>(x) * 3];
                out[0] = pixel[2];
                out[1] = pixel[1];
                out[2] = pixel[0];
            } else {
                Convert(x, y);
            }
        }
        return row_.data();
    }

private:
    [[nodiscard]] const uint8_t* Line(size_t plane, int y) const {
        return picture_.data[plane] + static_cast<ptrdiff_t>(picture_.stride[plane]) * y;
    }

    [[nodiscard]] double Sample(size_t plane, int x, int y) const {
        const uint8_t* line = Line(plane, y);
        if (!sixteenBit_) return line[x];
        uint16_t word = 0;
        std::memcpy(&word, line + 2 * static_cast<ptrdiff_t>(x), sizeof(word));
        return word;
    }

    void Convert(int x, int y) {
        const int chromaX = halfWidth_ ? x / 2 : x;
        const int chromaY = halfHeight_ ? y / 2 : y;
        const Rgb codes{Sample(0, x, y), Sample(1, chromaX, chromaY), Sample(2, chromaX, chromaY)};
        for (size_t i = 0; i < 3; ++i) {
            const auto& factor = map_.factor[i];
            const double value =
                factor[0] * codes[0] + factor[1] * codes[1] + factor[2] * codes[2] + map_.offset[i];
            const double inGamut = std::clamp(value, 0.0, 1.0);
            const size_t at = static_cast<size_t>(x) * 3 + i;
            if (sixteenBit_) {
                const auto word = static_cast<uint16_t>(std::lround(inGamut * 65535));
                row_[2 * at] = static_cast<uint8_t>(word >> 8);
                row_[2 * at + 1] = static_cast<uint8_t>(word & 255);
            } else {
                row_[at] = static_cast<uint8_t>(std::lround(inGamut * 255));
            }
        }
    }

    const SourcePicture& picture_;
    bool sixteenBit_;
    bool halfWidth_;
    bool halfHeight_;
    CodeMap map_;
    std::vector<uint8_t> row_;
};

// Exponent of a file's values as gAMA states it, 0 where none describes them.
double GetFileGamma(ColorTransfer transfer) {
    if (GetTransferClass(transfer) == TransferClass::Display) return 1 / 2.2;
    switch (transfer) {
        case ColorTransfer::Linear: return 1;
        case ColorTransfer::Gamma22: return 1 / 2.2;
        case ColorTransfer::Gamma26: return 1 / 2.6;
        case ColorTransfer::Gamma28: return 1 / 2.8;
        default: return 0;
    }
}

void DescribeColours(png_structp png, png_infop info, const ColorSpace& colorSpace) {
    const ColorTransfer transfer = colorSpace.GetTransfer();
    const TransferClass type = GetTransferClass(transfer);
    if (type == TransferClass::Pq || type == TransferClass::Hlg) return;
    if (type == TransferClass::Display && IsSamePrimaries(colorSpace.GetPrimaries(), ColorPrimaries::BT709)) {
        png_set_sRGB_gAMA_and_cHRM(png, info, PNG_sRGB_INTENT_RELATIVE);
        return;
    }
    if (const double gamma = GetFileGamma(transfer); gamma > 0) png_set_gAMA(png, info, gamma);
    const PrimarySet set = GetPrimarySet(colorSpace.GetPrimaries());
    png_set_cHRM(png, info, set.white.x, set.white.y, set.rgb[0].x, set.rgb[0].y, set.rgb[1].x, set.rgb[1].y,
                 set.rgb[2].x, set.rgb[2].y);
}

// Coding-independent code points (PNG, third edition, 11.3.2.6): primaries, transfer, no matrix, full range.
void WriteCodePoints(png_structp png, const ColorSpace& colorSpace) {
    const TransferClass type = GetTransferClass(colorSpace.GetTransfer());
    if (type != TransferClass::Pq && type != TransferClass::Hlg) return;
    const ColorPrimaries primaries = colorSpace.GetPrimaries() == ColorPrimaries::Unspecified
                                         ? ColorPrimaries::BT709
                                         : colorSpace.GetPrimaries();
    const png_byte points[4] = {static_cast<png_byte>(primaries),
                                static_cast<png_byte>(colorSpace.GetTransfer()), 0, 1};
    png_write_chunk(png, reinterpret_cast<png_const_bytep>("cICP"), points, sizeof(points));
}

// libpng leaves by longjmp when something fails, so nothing between here and there owns anything.
bool Write(png_structp png, png_infop info, std::FILE* file, RowReader& rows, const ColorSpace& colorSpace) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    const SourcePicture& picture = rows.GetPicture();
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height),
                 rows.GetBits(), PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, kCompressionLevel);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    DescribeColours(png, info, colorSpace);
    png_write_info_before_PLTE(png, info);
    WriteCodePoints(png, colorSpace);
    png_write_info(png, info);
    for (int y = 0; y < picture.height; ++y) png_write_row(png, rows.Read(y));
    png_write_end(png, info);
    return true;
}

bool WritePng(std::FILE* file, RowReader& rows, const ColorSpace& colorSpace) {
    const auto ignore = [](png_structp, png_const_charp) {};
    const auto fail = [](png_structp png, png_const_charp) { png_longjmp(png, 1); };
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
    if (png == nullptr) return false;
    png_infop info = png_create_info_struct(png);
    const bool written = info != nullptr && Write(png, info, file, rows, colorSpace);
    png_destroy_write_struct(&png, &info);
    return written;
}

bool WriteFile(const std::string& fileName, RowReader& rows, const ColorSpace& colorSpace) {
    const File file(std::fopen(fileName.c_str(), "wb"));
    return file != nullptr && WritePng(file.get(), rows, colorSpace) && std::fflush(file.get()) == 0;
}

bool Refuse(const std::string& fileName, const char* reason) {
    LOG(kLogError, "Could not write the still %s: %s", fileName.c_str(), reason);
    return false;
}

}  // namespace

bool ExportStill(const std::string& fileName, const VideoFrameBuffer* frame) {
    const char* defect = "";
    const std::optional<SourcePicture> picture = ReadFrame(frame, defect);
    if (!picture) return Refuse(fileName, defect);
    RowReader rows(*picture, frame->GetColorSpace());
    static std::atomic<unsigned> counter{0};
    const std::string unfinished = fileName + "." + std::to_string(counter.fetch_add(1)) + ".part";
    std::error_code error;
    if (!WriteFile(unfinished, rows, frame->GetColorSpace())) {
        std::filesystem::remove(unfinished, error);
        return Refuse(fileName, "the file cannot be written");
    }
    std::filesystem::rename(unfinished, fileName, error);
    if (!error) return true;
    const std::string reason = error.message();
    std::filesystem::remove(unfinished, error);
    return Refuse(fileName, reason.c_str());
}

}  // namespace Corvanta::Engine

extern "C" bool WebRTC_ExportStillImageFromVideoFrameBuffer(
    const std::string& path, const std::shared_ptr<Corvanta::VideoFrameBuffer>& frame) {
    return Corvanta::Engine::ExportStill(path + ".png", frame.get());
}
