#include "video/SingleVideoView.h"

#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Video {

SingleVideoView::SingleVideoView(int id, PictureFit fit) : AbstractView(id), fit_(fit) {}

SingleVideoView::~SingleVideoView() {
    const std::unique_ptr<VideoFrame> gone = TakeFrame();
}

int SingleVideoView::Init(void* nativeHandle, int width, int height) {
    const int result = AbstractView::Init(nativeHandle, width, height);
    windowReady_ = true;
    active_.store(true);
    return result;
}

void SingleVideoView::CreateLocalFrame() {
    std::unique_ptr<VideoFrame> gone;
    const std::scoped_lock lock(drawMutex_);
    gone = TakeFrame();
    frame_ = std::make_unique<VideoFrame>("local", "", "", TileOrigin::Local);
    frame_->SetVideoEnabled(videoEnabled_);
}

std::unique_ptr<VideoFrame> SingleVideoView::TakeFrame() {
    if (frame_ != nullptr) frame_->ReleaseGraphics();
    return std::move(frame_);
}

void SingleVideoView::Shutdown() {
    std::unique_ptr<VideoFrame> gone;
    const std::scoped_lock lock(drawMutex_);
    gone = TakeFrame();
    CleanupWindow();
    active_.store(false);
}

void SingleVideoView::Render() {
    const std::unique_lock lock(drawMutex_, std::try_to_lock);
    if (!lock.owns_lock() || !active_.load() || GetRenderer() == nullptr || frame_ == nullptr) return;
    if (!frame_->HasNewPicture() && !dirty_.load()) return;
    if (CanDraw()) Draw();
}

void SingleVideoView::Draw() {
    SDL_RenderClear(GetRenderer());
    const SinglePicture place = PlaceSinglePicture(frame_->GetPictureSize(), GetWidth(), GetHeight(), fit_);
    frame_->inGrid = false;
    frame_->onMainVideo = false;
    frame_->rect = place.destination;
    frame_->sourceRect = place.source;
    frame_->Render(GetRenderer(), {0, 0});
    dirty_.store(false);
    SDL_RenderPresent(GetRenderer());
}

void SingleVideoView::SetStreamName(const std::string& name) {
    streamName_ = name;
    if (frame_ != nullptr) frame_->RefreshNamePlate();
}

void SingleVideoView::SetVideoEnabled(bool enabled) {
    videoEnabled_ = enabled;
    if (frame_ == nullptr) return;
    LOG(2, "Enable/disable local video");
    frame_->SetVideoEnabled(enabled);
}

std::shared_ptr<FrameCallback> SingleVideoView::GetFrameSink() const {
    return frame_ != nullptr ? frame_->GetFrameSink() : nullptr;
}

const FrameCallback* SingleVideoView::GetFrameCallback() const {
    return frameCallback_ ? &frameCallback_ : nullptr;
}

}  // namespace Corvanta::Video
