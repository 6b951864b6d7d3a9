#include "video/TilePicture.h"

#include <algorithm>
#include <utility>

#include "platform/Logger.h"
#include "ui/HdrSdl.h"
#include "video/TextureFormat.h"

namespace Corvanta::Video {
namespace {

constexpr uint32_t kOpaqueBlack = 0xFF000000U;

[[nodiscard]] bool IsNarrow(VideoFrameBufferType type) {
    return type >= VideoFrameBufferType::YUV420 && type <= VideoFrameBufferType::YUV444;
}

[[nodiscard]] bool IsSupported(VideoFrameBufferType type) {
    return type >= VideoFrameBufferType::RGB && type <= VideoFrameBufferType::YUV444_16;
}

[[nodiscard]] Uint32 FormatOf(const VideoFrameBuffer& frame, bool packed) {
    if (packed) return SDL_PIXELFORMAT_ARGB8888;
    if (frame.GetType() == VideoFrameBufferType::RGB) {
        if (dynamic_cast<const RGBFrameBuffer*>(&frame) == nullptr) return SDL_PIXELFORMAT_UNKNOWN;
        return SDL_PIXELFORMAT_ARGB8888;
    }
    const auto layout = PlaneLayoutOf(frame);
    if (!layout.has_value()) return SDL_PIXELFORMAT_UNKNOWN;
    return TextureFormatFor(frame.GetType(), layout->subsampling);
}

}  // namespace

void TilePicture::Install(PreparedFrame& prepared) {
    currentFrame_.swap(prepared.frame);
    raster_.pixels.swap(prepared.raster.pixels);
    packed_ = prepared.packed;
    wantedFormat_ = FormatOf(*currentFrame_, packed_);
    prepared.frame.reset();
    frameDirty_ = true;
    unsupportedReported_ = false;
}

bool TilePicture::KeepTexture(SDL_Renderer* renderer) {
    if (currentFrame_ == nullptr) return false;
    const int width = currentFrame_->GetWidth();
    const int height = currentFrame_->GetHeight();
    if (texture_ == nullptr) {
        RecreateTexture(renderer);
        if (texture_ == nullptr) return false;
        LOG(1, "Created video texture: w,h: %d %d", width, height);
        return true;
    }
    Uint32 format = SDL_PIXELFORMAT_UNKNOWN;
    int oldWidth = 0;
    int oldHeight = 0;
    SDL_QueryTexture(texture_, &format, nullptr, &oldWidth, &oldHeight);
    const bool isResized =
        oldWidth != width || oldHeight != height || currentFrame_->GetType() != frameBufferType_;
    if (!isResized && format == wantedFormat_) return false;
    RecreateTexture(renderer);
    // Only the stream's own changes are told: the format alone changes when the output shows other forms.
    if (isResized) {
        LOG(1, "Resized video texture from w: %d h: %d to new w: %d new h: %d", oldWidth, oldHeight, width,
            height);
    }
    return texture_ != nullptr;
}

void TilePicture::RecreateTexture(SDL_Renderer* renderer) {
    ReleaseTexture();
    if (currentFrame_ == nullptr) return;
    frameBufferType_ = currentFrame_->GetType();
    if (!IsSupported(frameBufferType_)) {
        if (!std::exchange(unsupportedReported_, true)) {
            LOG(4, "Attempted to create unsupported texture (VideoFrame::RecreateTexture)");
        }
        return;
    }
    const int width = currentFrame_->GetWidth();
    const int height = currentFrame_->GetHeight();
    if (wantedFormat_ == SDL_PIXELFORMAT_UNKNOWN || width <= 0 || height <= 0) return;
    if (frameBufferType_ == VideoFrameBufferType::RGB) pitch_ = 4 * width;
    if (!packed_ && IsNarrow(frameBufferType_)) SDL_SetYUVConversionMode(SDL_YUV_CONVERSION_BT709);
    texture_ = SDL_CreateTexture(renderer, wantedFormat_, SDL_TEXTUREACCESS_STREAMING, width, height);
    // A texture that is new shows nothing until it is filled, whether or not its frame was uploaded before.
    if (texture_ != nullptr) frameDirty_ = true;
}

bool TilePicture::Upload() {
    if (texture_ == nullptr || !std::exchange(frameDirty_, false) || currentFrame_ == nullptr) return false;
    if (packed_) {
        const int rowBytes = currentFrame_->GetWidth() * static_cast<int>(sizeof(uint32_t));
        SDL_UpdateTexture(texture_, nullptr, raster_.pixels.data(), rowBytes);
    } else {
        UploadPlanes();
    }
    const ColorSpace& colorSpace = currentFrame_->GetColorSpace();
    UI::HdrSdl::SetTextureColorSpace(texture_, colorSpace == ColorSpace(LegacyColorSpace::BT2020) ? 1 : 0);
    colorSpace_ = colorSpace;
    UI::HdrSdl::SetTextureColorSpace(texture_, colorSpace.GetPrimaries() == ColorPrimaries::BT2020 ? 1 : 0);
    UI::HdrSdl::SetTextureColorSpaceRange(texture_, colorSpace.GetRange() == ColorRange::Full ? 1 : 0);
    return true;
}

void TilePicture::UploadPlanes() const {
    if (frameBufferType_ == VideoFrameBufferType::RGB) {
        if (const auto* rgb = dynamic_cast<const RGBFrameBuffer*>(currentFrame_.get())) {
            SDL_UpdateTexture(texture_, nullptr, rgb->GetBuffer(), pitch_);
        }
    } else if (IsNarrow(frameBufferType_)) {
        if (const auto* yuv = dynamic_cast<const YUVFrameBuffer*>(currentFrame_.get())) {
            SDL_UpdateYUVTexture(texture_, nullptr, yuv->GetDataY(), yuv->GetStrideY(), yuv->GetDataU(),
                                 yuv->GetStrideU(), yuv->GetDataV(), yuv->GetStrideV());
        }
    } else if (const auto* yuv = dynamic_cast<const YUV16FrameBuffer*>(currentFrame_.get())) {
        UI::HdrSdl::UpdateYUVTexture16(texture_, yuv->GetDataY(), yuv->GetStrideY(), yuv->GetDataU(),
                                       yuv->GetStrideU(), yuv->GetDataV(), yuv->GetStrideV());
    }
}

void TilePicture::Blank() {
    if (currentFrame_ == nullptr) return;
    frameDirty_ = true;
    currentFrame_->Clear();
    if (packed_) std::fill(raster_.pixels.begin(), raster_.pixels.end(), kOpaqueBlack);
}

void TilePicture::ReleaseTexture() {
    if (texture_ != nullptr) SDL_DestroyTexture(texture_);
    texture_ = nullptr;
}

void TilePicture::Drop() {
    ReleaseTexture();
    currentFrame_.reset();
    packed_ = false;
}

}  // namespace Corvanta::Video
