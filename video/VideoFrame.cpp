#include "video/VideoFrame.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "drawing/DrawingCanvas.h"
#include "drawing/DrawingCanvasManager.h"
#include "ui/Clock.h"
#include "video/FrameCheck.h"
#include "video/StreamSubscription.h"
#include "video/TileMetrics.h"

namespace Corvanta::Video {
namespace {

// A camera that has sent nothing for this long shows its person's avatar instead of a frozen picture.
constexpr int64_t kStalePictureMs = 7001;
constexpr int64_t kNsPerMs = 1'000'000;
constexpr Uint8 kFullBrightness = 255;
constexpr Uint8 kDimmed = 128;
constexpr std::string_view kNameSeparator = " | ";

// The form of a prepared picture depends on no more than this.
[[nodiscard]] bool NeedSameForm(const UI::DisplayTraits& left, const UI::DisplayTraits& right) {
    return left.colorSpace == right.colorSpace && left.exactPlanes == right.exactPlanes;
}

// A side that no texture has is as good as none.
[[nodiscard]] int PlausibleSide(int side) {
    return std::clamp(side, 0, kMaxFrameSide);
}

void AppendUpper(std::string& text, std::string_view part) {
    std::transform(part.begin(), part.end(), std::back_inserter(text),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
}

}  // namespace

VideoFrame::VideoFrame(std::string streamId, std::string sessionName, std::string profileId,
                       TileOrigin origin)
    : streamId_(std::move(streamId)),
      sessionName_(std::move(sessionName)),
      profileId_(std::move(profileId)),
      origin_(origin),
      streamType_(Connections_GetStreamType(streamId_)),
      drawings_(Drawing::DrawingCanvasManager::Instance()),
      renderTimeNs_(UI::NowNs()),
      lastUploadTimeNs_(renderTimeNs_),
      intake_(std::make_shared<FrameIntake>()),
      frameSink_(std::make_shared<FrameCallback>(
          [intake = intake_](const Frame& frame) { intake->OnFrame(frame); })),
      worker_(*intake_, *this) {
    panel_ = std::make_unique<Connectivity::ThumbnailConnectivityPanel>(origin_ == TileOrigin::Local,
                                                                        streamId_, sessionName_, profileId_);
    MakeCanvas();
    SubscribeConnectionStats();
}

VideoFrame::~VideoFrame() {
    worker_.Stop();
    frameObserver_.reset();
}

void VideoFrame::MakeCanvas() {
    canvas_.reset();
    const auto manager = drawings_.lock();
    // A stream that has left is not to be drawn on again.
    if (manager == nullptr || retired_.load()) return;
    canvas_ = std::make_unique<Drawing::DrawingCanvas>();
    manager->AttachCanvas(streamId_, canvas_.get());
}

void VideoFrame::SizeCanvas() {
    if (canvas_ == nullptr) return;
    const PictureSize picture = GetPictureSize();
    canvas_->SetFrameSize(picture.width, picture.height);
}

void VideoFrame::Retire() {
    retired_.store(true);
    worker_.RequestStop();
}

bool VideoFrame::IsAtRest() const {
    return worker_.HasEnded() && !panel_->IsBusy();
}

bool VideoFrame::IsVideoWanted() const {
    return IsActive() ? IsVideoEnabled() : videoEnabledWanted_.load();
}

void VideoFrame::Render(SDL_Renderer* renderer, SDL_Point /*position*/) {
    const std::scoped_lock lock(tileMutex_);
    if (!renderable) return;
    renderer_ = renderer;
    if (picture_.KeepTexture(renderer)) SizeCanvas();
    if (inGrid) KeepName();
    if (picture_.GetTexture() != nullptr) DrawPicture(renderer);
    ReadDisplay(renderer);
    if (inGrid) DrawAvatar(renderer);
    DrawMarks(renderer);
    if (inGrid) DrawOverlays(renderer);
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 255);
}

void VideoFrame::KeepName() {
    if (!overlays_.NeedsName()) return;
    if (displayNameOverride_.empty()) {
        overlays_.SetName(Connections_GetPublisherDisplayName(streamId_));
    } else {
        overlays_.SetName(displayNameOverride_);
    }
}

void VideoFrame::DrawPicture(SDL_Renderer* renderer) {
    if (picture_.Upload()) lastUploadTimeNs_ = renderTimeNs_;
    pitch = picture_.GetPitch();
    const bool dimmed = (hovered || lostConnection) && inGrid && !dragging;
    const Uint8 brightness = dimmed ? kDimmed : kFullBrightness;
    SDL_Texture* texture = picture_.GetTexture();
    SDL_SetTextureColorMod(texture, brightness, brightness, brightness);
    SDL_RenderCopy(renderer, texture, &sourceRect, &rect);
    SDL_SetTextureColorMod(texture, kFullBrightness, kFullBrightness, kFullBrightness);
    if (!inGrid) return;
    overlays_.RenderGradient(renderer, {rect.x, rect.y});
    DropStalePicture();
}

void VideoFrame::DrawAvatar(SDL_Renderer* renderer) {
    if (!IsShowable(rect)) return;
    if (picture_.GetTexture() != nullptr && IsVideoEnabled()) return;
    overlays_.RenderAvatar(renderer, rect, displayRect.h);
}

void VideoFrame::DrawMarks(SDL_Renderer* renderer) {
    if (canvas_ == nullptr) return;
    const PictureSize picture = GetPictureSize();
    const bool hasPicture = picture.width > 0 && picture.height > 0 && picture_.GetTexture() != nullptr;
    // The main video is drawn a second time as a thumbnail, of another shape where there is no picture: the
    // canvas keeps to one of the two.
    if (hasPicture || !inGrid || canvas_->TextureWidth() == 0) {
        canvas_->Resize(renderer, hasPicture ? picture.width : rect.w, hasPicture ? picture.height : rect.h);
    }
    canvas_->Render(renderer, sourceRect, rect);
}

void VideoFrame::DropStalePicture() {
    const bool stale = (renderTimeNs_ - lastUploadTimeNs_) / kNsPerMs >= kStalePictureMs;
    if (streamType_ == StreamType::Camera && stale) picture_.Drop();
}

void VideoFrame::ReadDisplay(SDL_Renderer* renderer) {
    display_ = UI::HdrSdl::ReadTraits(renderer);
    if (owner != nullptr) {
        float scaleX = 1.0F;
        float scaleY = 1.0F;
        SDL_RenderGetScale(renderer, &scaleX, &scaleY);
        mainVideoRect_ = owner->GetMainVideoRect();
        mainVideoRect_.w = static_cast<int>(static_cast<float>(mainVideoRect_.w) * scaleX);
        mainVideoRect_.h = static_cast<int>(static_cast<float>(mainVideoRect_.h) * scaleY);
    }
    if (!prepareAgain_ && NeedsOtherForm()) {
        prepareAgain_ = true;
        intake_->Wake();
    }
}

bool VideoFrame::NeedsOtherForm() const {
    const Frame& frame = picture_.GetFrame();
    if (frame == nullptr || preparingAgain_) return false;
    const auto layout = PlaneLayoutOf(*frame);
    if (!layout.has_value() || frame->GetWidth() <= 0 || frame->GetHeight() <= 0) return false;
    return UI::HdrSdl::ShowsPlanes(display_, *layout) == picture_.IsPacked();
}

void VideoFrame::DrawOverlays(SDL_Renderer* renderer) {
    displayRect = rect;
    if (!IsShowable(rect)) {
        // The panel reports also while nothing of the tile can be seen.
        const SDL_Rect nothing{0, 0, 0, 0};
        panel_->Update(renderer, &nothing, 0);
        return;
    }
    overlays_.Render(renderer,
                     {.rect = rect,
                      .hovered = hovered,
                      .onMainVideo = onMainVideo,
                      .dragging = dragging,
                      .muted = muted,
                      .lostConnection = lostConnection,
                      .draggable = draggable},
                     *panel_);
}

UI::DisplayTraits VideoFrame::OnFrameTaken(const Frame& frame) {
    static const VideoSourceData kNothingKnown;
    const std::scoped_lock lock(tileMutex_);
    inWork_ = frame;
    if (frameObserver_ != nullptr) {
        frameObserver_->OnFrame(frame, display_.colorSpace, display_.pixelFormat, mainVideoRect_, 0,
                                sourceData_.has_value() ? *sourceData_ : kNothingKnown);
    }
    return display_;
}

std::optional<std::pair<Frame, UI::DisplayTraits>> VideoFrame::TakeFrameToPrepareAgain() {
    const std::scoped_lock lock(tileMutex_);
    if (!std::exchange(prepareAgain_, false) || !NeedsOtherForm()) return std::nullopt;
    inWork_ = picture_.GetFrame();
    preparingAgain_ = true;
    return std::pair{inWork_, display_};
}

std::optional<UI::DisplayTraits> VideoFrame::Install(PreparedFrame& prepared,
                                                     const UI::DisplayTraits& display) {
    const std::scoped_lock lock(tileMutex_);
    if (!NeedSameForm(display, display_)) return display_;
    // A shown picture that was dropped while it was prepared again stays dropped.
    if (!preparingAgain_ || picture_.GetFrame() != nullptr) {
        pictureSize_.store(
            {PlausibleSide(prepared.frame->GetWidth()), PlausibleSide(prepared.frame->GetHeight())});
        picture_.Install(prepared);
    }
    EndWork();
    return std::nullopt;
}

void VideoFrame::OnFrameGivenUp() {
    const std::scoped_lock lock(tileMutex_);
    EndWork();
}

void VideoFrame::EndWork() {
    inWork_.reset();
    preparingAgain_ = false;
    if (std::exchange(blankAfterWork_, false)) picture_.Blank();
}

bool VideoFrame::HasNoFrameSize() const {
    const PictureSize size = GetPictureSize();
    return size.width == 0 || size.height == 0;
}

ColorSpace VideoFrame::GetColorSpace() const {
    const std::scoped_lock lock(tileMutex_);
    return picture_.GetColorSpace();
}

bool VideoFrame::HasTexture() const {
    const std::scoped_lock lock(tileMutex_);
    return picture_.GetTexture() != nullptr;
}

const std::string& VideoFrame::GetDisplayName() {
    if (displayNameOverride_.empty()) displayNameOverride_ = Connections_GetPublisherDisplayName(streamId_);
    return displayNameOverride_;
}

std::string VideoFrame::GetPlaybackBarName() {
    const auto data = GetSourceData();
    if (data.has_value() && !data->sourceName.empty()) return data->sourceName;
    const std::string& name = GetDisplayName();
    const size_t separator = name.find(kNameSeparator);
    if (separator == std::string::npos) return name;
    const std::string_view whole = name;
    std::string swapped;
    AppendUpper(swapped, whole.substr(separator + kNameSeparator.size()));
    swapped += " - ";
    AppendUpper(swapped, whole.substr(0, separator));
    return swapped;
}

void VideoFrame::SetVideoEnabled(bool enabled) {
    intake_->SetVideoEnabled(enabled);
    if (!enabled) BlankFrame();
}

void VideoFrame::SetVideoEnabledWanted(bool enabled) {
    SetVideoEnabled(enabled);
    videoEnabledWanted_.store(enabled);
}

void VideoFrame::BlankFrame() {
    const std::scoped_lock lock(tileMutex_);
    // What the worker is reading is blackened when the worker has let go of it.
    blankAfterWork_ = picture_.GetFrame() != nullptr && picture_.GetFrame() == inWork_;
    if (!blankAfterWork_) picture_.Blank();
}

void VideoFrame::Activate() {
    if (active_.load()) return;
    SetVideoEnabled(videoEnabledWanted_.load());
    active_.store(true);
    ConfigureStream(streamId_, true, true, true);
}

void VideoFrame::Deactivate() {
    if (!active_.load()) return;
    videoEnabledWanted_.store(IsVideoEnabled());
    SetVideoEnabled(false);
    active_.store(false);
    ConfigureStream(streamId_, false, true, true);
}

bool VideoFrame::HasNoVideo(bool noTextureCounts) const {
    const bool enabled = IsVideoEnabled();
    const bool wanted = videoEnabledWanted_.load();
    if (!enabled && !wanted) return true;
    return noTextureCounts && enabled == wanted && !HasTexture();
}

bool VideoFrame::HasNewPicture() const {
    const std::scoped_lock lock(tileMutex_);
    return picture_.HasNewFrame();
}

void VideoFrame::ReleaseTextures() {
    picture_.ReleaseTexture();
    overlays_.ReleaseTextures();
    panel_->ReleaseTextures();
    if (canvas_ == nullptr) return;
    canvas_->ReleaseResources(renderer_);
    MakeCanvas();
}

void VideoFrame::ReleaseGraphics() {
    const std::scoped_lock lock(tileMutex_);
    ReleaseTextures();
    intake_->SetVideoEnabled(false);
}

void VideoFrame::MoveToRenderer(SDL_Renderer* renderer) {
    {
        const std::scoped_lock lock(tileMutex_);
        ReleaseTextures();
        intake_->SetVideoEnabled(videoEnabledWanted_.load());
        renderer_ = renderer;
        if (canvas_ != nullptr) canvas_->MoveToRenderer(renderer);
        UI::Menu& menu = GetMenu();
        menu.SetItemHeight(menu.GetItemHeight());
    }
    SubscribeConnectionStats();
}

void VideoFrame::RefreshNamePlate() {
    const std::scoped_lock lock(tileMutex_);
    overlays_.RefreshName();
}

void VideoFrame::SetFrameObserver(std::unique_ptr<FrameObserver> observer) {
    const std::scoped_lock lock(tileMutex_);
    frameObserver_.swap(observer);
}

void VideoFrame::SetSourceData(const VideoSourceData& data) {
    const std::scoped_lock lock(tileMutex_);
    sourceData_ = data;
}

std::optional<VideoSourceData> VideoFrame::GetSourceData() const {
    const std::scoped_lock lock(tileMutex_);
    return sourceData_;
}

}  // namespace Corvanta::Video
