// The picture of one tile: the newest prepared frame and the one texture that shows it. The owner's lock
// guards all of it; what takes a renderer runs on the render thread.
#pragma once

#include <SDL.h>

#include <cstdint>

#include "platform/ColorSpace.h"
#include "platform/VideoFrameBuffer.h"
#include "ui/HdrSdl.h"
#include "video/FrameWorker.h"

namespace Corvanta::Video {

class TilePicture final {
public:
    // The newest frame; what it replaces goes back in prepared. Frames installed between two drawings replace
    // each other unseen.
    void Install(PreparedFrame& prepared);

    // Makes the texture fit the frame: one is made for the first frame, and again when size, buffer type or
    // format changed. True when there is a new one.
    bool KeepTexture(SDL_Renderer* renderer);
    // Copies the pending frame into the texture, if there is one of each. True when a frame was copied.
    bool Upload();

    // Blackens what is shown.
    void Blank();
    // Destroys the texture; the frame stays, so that the next drawing makes a new texture, on whatever
    // renderer.
    void ReleaseTexture();
    // Forgets frame and texture.
    void Drop();

    // A frame that was not drawn yet, or not on the present renderer.
    [[nodiscard]] bool HasNewFrame() const {
        return currentFrame_ != nullptr && (frameDirty_ || texture_ == nullptr);
    }

    [[nodiscard]] const Frame& GetFrame() const { return currentFrame_; }
    [[nodiscard]] SDL_Texture* GetTexture() const { return texture_; }
    [[nodiscard]] bool IsPacked() const { return packed_; }
    // Of the last uploaded frame.
    [[nodiscard]] const ColorSpace& GetColorSpace() const { return colorSpace_; }
    // Bytes of a row of an RGB frame.
    [[nodiscard]] int GetPitch() const { return pitch_; }

private:
    void RecreateTexture(SDL_Renderer* renderer);
    void UploadPlanes() const;

    Frame currentFrame_;
    Raster raster_;
    bool packed_ = false;
    // Format of the texture that shows currentFrame_; unknown when none can.
    Uint32 wantedFormat_ = SDL_PIXELFORMAT_UNKNOWN;
    bool frameDirty_ = false;
    bool unsupportedReported_ = false;
    VideoFrameBufferType frameBufferType_ = VideoFrameBufferType::YUV420;
    ColorSpace colorSpace_;
    int pitch_ = 0;
    SDL_Texture* texture_ = nullptr;
};

}  // namespace Corvanta::Video
