#include "drawing/DrawingCanvas.h"

#include <iterator>
#include <utility>
#include <vector>

#include "drawing/DrawingSource.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/LayerTarget.h"
#include "drawing/LinePath.h"
#include "drawing/StrokePile.h"
#include "platform/Connections.h"
#include "platform/Logger.h"
#include "ui/HdrSdl.h"

namespace Corvanta::Drawing {
namespace {

// Twice the reference size keeps marks sharp on a small stream.
constexpr float kTextureScale = 2.0F;
constexpr SDL_ScaleMode kScaleMode = SDL_ScaleModeLinear;
// Who undoes the last mark often brings it back, and a layer of 15 MB takes time to be made. About a second,
// and half of one for the main video, which the wall shows a second time.
constexpr uint32_t kDrawingsWithoutMarks = 60;

[[nodiscard]] bool IsSame(SDL_Point left, SDL_Point right) {
    return left.x == right.x && left.y == right.y;
}

[[nodiscard]] int LongestSideOf(SDL_Renderer* renderer) {
    SDL_RendererInfo info{};
    if (SDL_GetRendererInfo(renderer, &info) != 0) return 0;
    if (info.max_texture_width <= 0) return info.max_texture_height;
    if (info.max_texture_height <= 0) return info.max_texture_width;
    return SDL_min(info.max_texture_width, info.max_texture_height);
}

void Destroy(SDL_Texture*& texture) {
    if (texture != nullptr) SDL_DestroyTexture(texture);
    texture = nullptr;
}

// All marks wait to be drawn again, in their order.
void QueueAgain(DrawingCanvas::ParticipantResources& resources) {
    auto& drawn = resources.drawnShapes;
    auto& pending = resources.pendingShapes;
    drawn.insert(drawn.end(), std::make_move_iterator(pending.begin()),
                 std::make_move_iterator(pending.end()));
    pending.swap(drawn);
    drawn.clear();
}

void Append(DrawingCanvas::ParticipantResources& resources, const std::shared_ptr<Shape>& shape) {
    if (shape == nullptr || !resources.ids.insert(shape.get()).second) return;
    resources.pendingShapes.push_back(shape);
}

void ClearShapes(DrawingCanvas::ParticipantResources& resources) {
    resources.ids.clear();
    resources.drawnShapes.clear();
    resources.pendingShapes.clear();
    resources.needsClear = true;
}

void Show(SDL_Renderer* renderer, SDL_Texture* layer, const SDL_Rect& crop, const SDL_Rect& destinationRect) {
    if (SDL_RectEmpty(&crop) == SDL_FALSE) SDL_RenderCopy(renderer, layer, &crop, &destinationRect);
}

}  // namespace

DrawingCanvas::~DrawingCanvas() {
    // Not under the lock: the source feeds its canvases under its own.
    if (const auto source = Source()) source->DetachCanvas(this);
    if (previewTexture_ != nullptr) {
        LOG(4, "Attempting to delete canvas when rendering resources are still valid");
    }
}

void DrawingCanvas::AddShape(const std::string& participantId, const std::shared_ptr<Shape>& shape) {
    AddShapes(participantId, {&shape, 1});
}

void DrawingCanvas::AddShapes(const std::string& participantId,
                              std::span<const std::shared_ptr<Shape>> shapes) {
    const std::scoped_lock lock(mutex_);
    ParticipantResources& resources = participants_[participantId];
    for (const std::shared_ptr<Shape>& shape : shapes) Append(resources, shape);
}

void DrawingCanvas::ReplaceShapes(const std::string& participantId,
                                  std::span<const std::shared_ptr<Shape>> shapes) {
    const std::scoped_lock lock(mutex_);
    ParticipantResources& resources = participants_[participantId];
    ClearShapes(resources);
    for (const std::shared_ptr<Shape>& shape : shapes) Append(resources, shape);
}

void DrawingCanvas::ClearParticipant(const std::string& participantId) {
    ReplaceShapes(participantId, {});
}

void DrawingCanvas::ClearAll() {
    const std::scoped_lock lock(mutex_);
    for (auto& [id, resources] : participants_) ClearShapes(resources);
}

void DrawingCanvas::SetFrameSize(int width, int height) {
    const std::scoped_lock lock(mutex_);
    TakeFrameSize(width, height);
}

void DrawingCanvas::Resize(SDL_Renderer* renderer, int width, int height) {
    const std::scoped_lock lock(mutex_);
    if (renderer != nullptr) TakeRenderer(renderer);
    TakeFrameSize(width, height);
    KeepLayerSize();
}

void DrawingCanvas::Render(SDL_Renderer* renderer, const SDL_Rect& sourceRect,
                           const SDL_Rect& destinationRect) {
    if (renderer == nullptr) return;
    const bool isErasing = dynamic_cast<const ErasedLinePath*>(preview_.get()) != nullptr;
    // Asked before the lock is taken, which no call into another library may meet.
    const std::string localUserId =
        isErasing ? Connections_GetLocalUserStreamID(StreamType::Camera) : std::string();

    const std::scoped_lock lock(mutex_);
    TakeRenderer(renderer);
    KeepLayerSize();
    if (textureSize_.x == 0 || textureSize_.y == 0) return;
    const SDL_Rect crop = CropOf(textureSize_, sourceRect, destinationRect);
    for (auto& [id, resources] : participants_) {
        if (UpdateLayer(resources)) Show(renderer, resources.texture, crop, destinationRect);
    }
    ReleaseFormerPreview();
    if (isErasing) {
        ErasePreview(localUserId);
    } else if (preview_ != nullptr && DrawPreview()) {
        Show(renderer, previewTexture_, crop, destinationRect);
    }
}

void DrawingCanvas::DrawAgain() {
    const std::scoped_lock lock(mutex_);
    for (auto& [id, resources] : participants_) {
        Destroy(resources.texture);
        QueueAgain(resources);
        for (const auto& shape : resources.pendingShapes) shape->ReleaseTextures(renderer_);
    }
    for (const auto& shape : {preview_, drawnPreview_}) {
        if (shape != nullptr) shape->ReleaseTextures(renderer_);
    }
    Destroy(previewTexture_);
}

void DrawingCanvas::MoveToRenderer(SDL_Renderer* renderer) {
    const std::scoped_lock lock(mutex_);
    for (auto& [id, resources] : participants_) {
        Destroy(resources.texture);
        QueueAgain(resources);
        for (const auto& shape : resources.pendingShapes) ReleaseTexturesOf(*shape, renderer);
    }
    DropPreview(renderer);
    renderer_ = nullptr;
}

void DrawingCanvas::ReleaseResources(SDL_Renderer* renderer) {
    const std::scoped_lock lock(mutex_);
    for (auto& [id, resources] : participants_) {
        Destroy(resources.texture);
        for (const auto& shape : resources.drawnShapes) ReleaseTexturesOf(*shape, renderer);
        for (const auto& shape : resources.pendingShapes) ReleaseTexturesOf(*shape, renderer);
    }
    participants_.clear();
    DropPreview(renderer);
    renderer_ = nullptr;
}

void DrawingCanvas::SetPreview(std::shared_ptr<Shape> shape) {
    preview_ = std::move(shape);
}

void DrawingCanvas::EndPreview(const Shape& shape) {
    if (preview_.get() == &shape) preview_ = nullptr;
}

std::shared_ptr<DrawingSource> DrawingCanvas::Source() const {
    const std::scoped_lock lock(mutex_);
    return source_.lock();
}

std::shared_ptr<DrawingSource> DrawingCanvas::SetSource(const std::shared_ptr<DrawingSource>& newSource) {
    const std::scoped_lock lock(mutex_);
    return std::exchange(source_, newSource).lock();
}

void DrawingCanvas::LeaveSource(const DrawingSource& oldSource) {
    const std::scoped_lock lock(mutex_);
    if (source_.lock().get() == &oldSource) source_.reset();
}

double DrawingCanvas::CanvasWidth() const {
    const std::scoped_lock lock(mutex_);
    return canvasSize_.width;
}

double DrawingCanvas::CanvasHeight() const {
    const std::scoped_lock lock(mutex_);
    return canvasSize_.height;
}

int DrawingCanvas::TextureWidth() const {
    const std::scoped_lock lock(mutex_);
    return textureSize_.x;
}

int DrawingCanvas::TextureHeight() const {
    const std::scoped_lock lock(mutex_);
    return textureSize_.y;
}

void DrawingCanvas::TakeFrameSize(int width, int height) {
    if (width <= 0 || height <= 0 || IsSame(frameSize_, {width, height})) return;
    frameSize_ = {width, height};
    canvasSize_ = CanvasSizeFor(width, height);
    textureSize_ = TextureSizeFor(canvasSize_, kTextureScale, maxSide_);
}

void DrawingCanvas::TakeRenderer(SDL_Renderer* renderer) {
    if (renderer_ == renderer) return;
    if (renderer_ != nullptr) ForgetRenderer();
    renderer_ = renderer;
    maxSide_ = LongestSideOf(renderer);
    textureSize_ = TextureSizeFor(canvasSize_, kTextureScale, maxSide_);
}

void DrawingCanvas::ForgetRenderer() {
    // It was left without a word: textures go with it, and it may have gone already.
    for (auto& [id, resources] : participants_) {
        resources.texture = nullptr;
        QueueAgain(resources);
        for (const auto& shape : resources.pendingShapes) shape->ForgetTextures(renderer_);
    }
    for (const auto& shape : {preview_, drawnPreview_}) {
        if (shape != nullptr) shape->ForgetTextures(renderer_);
    }
    drawnPreview_ = nullptr;
    previewTexture_ = nullptr;
}

void DrawingCanvas::KeepLayerSize() {
    if (IsSame(layerSize_, textureSize_)) return;
    layerSize_ = textureSize_;
    for (auto& [id, resources] : participants_) {
        Destroy(resources.texture);
        QueueAgain(resources);
    }
    Destroy(previewTexture_);
}

SDL_Texture* DrawingCanvas::MakeLayer() const {
    SDL_Texture* const texture = SDL_CreateTexture(renderer_, SDL_PIXELFORMAT_ARGB8888,
                                                   SDL_TEXTUREACCESS_TARGET, textureSize_.x, textureSize_.y);
    if (texture == nullptr) return nullptr;
    SDL_SetTextureBlendMode(texture, SDL_BLENDMODE_BLEND);
    SDL_SetTextureScaleMode(texture, kScaleMode);
    UI::HdrSdl::SetTextureColorSpace(texture, UI::HdrSdl::ReadTraits(renderer_).colorSpace);
    return texture;
}

bool DrawingCanvas::UpdateLayer(ParticipantResources& resources) const {
    if (resources.pendingShapes.empty()) {
        if (!resources.drawnShapes.empty()) return resources.texture != nullptr;
        // An empty layer would be laid over every frame for nothing.
        if (resources.texture != nullptr && ++resources.drawingsWithoutMarks > kDrawingsWithoutMarks) {
            Destroy(resources.texture);
        }
        return false;
    }
    resources.drawingsWithoutMarks = 0;
    if (resources.texture == nullptr) {
        resources.texture = MakeLayer();
        resources.needsClear = true;
    }
    if (resources.texture == nullptr) return false;

    const LayerTarget target(renderer_, resources.texture);
    if (!target.IsSet()) return !resources.needsClear;
    if (resources.needsClear) {
        SDL_SetRenderDrawColor(renderer_, 0, 0, 0, 0);
        SDL_RenderClear(renderer_);
        resources.needsClear = false;
    }
    while (!resources.pendingShapes.empty()) {
        for (size_t left = DrawNext(resources.pendingShapes); left > 0; --left) {
            resources.drawnShapes.push_back(resources.pendingShapes.front());
            resources.pendingShapes.pop_front();
            resources.drawnShapes.back()->ReleaseTextures(renderer_);
        }
    }
    return true;
}

size_t DrawingCanvas::DrawNext(const std::deque<std::shared_ptr<Shape>>& pending) const {
    std::vector<const LinePath*> strokes;
    for (const std::shared_ptr<Shape>& shape : pending) {
        auto* const stroke = dynamic_cast<LinePath*>(shape.get());
        if (stroke == nullptr) break;
        stroke->Normalize(canvasSize_.width, canvasSize_.height);
        if (!stroke->IsSolid(renderer_)) break;
        strokes.push_back(stroke);
    }
    if (strokes.size() < 2) {
        DrawShape(*pending.front());
        return 1;
    }
    StrokePile pile(renderer_);
    for (auto stroke = strokes.rbegin(); stroke != strokes.rend(); ++stroke) pile.Draw(**stroke);
    return strokes.size();
}

void DrawingCanvas::DrawShape(Shape& shape) const {
    SDL_SetRenderDrawBlendMode(renderer_, SDL_BLENDMODE_BLEND);
    shape.Normalize(canvasSize_.width, canvasSize_.height);
    shape.Render(renderer_);
}

void DrawingCanvas::ReleaseFormerPreview() {
    if (drawnPreview_ == nullptr || drawnPreview_ == preview_) return;
    drawnPreview_->ReleaseTextures(renderer_);
    drawnPreview_ = nullptr;
}

bool DrawingCanvas::DrawPreview() {
    if (previewTexture_ == nullptr) previewTexture_ = MakeLayer();
    if (previewTexture_ == nullptr) return false;
    const LayerTarget target(renderer_, previewTexture_);
    if (!target.IsSet()) return false;
    SDL_SetRenderDrawColor(renderer_, 0, 0, 0, 0);
    SDL_RenderClear(renderer_);
    drawnPreview_ = preview_;
    DrawShape(*preview_);
    return true;
}

void DrawingCanvas::ErasePreview(const std::string& localUserId) {
    const auto found = participants_.find(localUserId);
    if (found == participants_.end() || found->second.texture == nullptr) return;
    const LayerTarget target(renderer_, found->second.texture);
    if (target.IsSet()) DrawShape(*preview_);
}

void DrawingCanvas::ReleaseTexturesOf(Shape& shape, SDL_Renderer* renderer) const {
    shape.ReleaseTextures(renderer);
    // Where the tile has a new renderer already, the shape's textures are on the one that drew last.
    if (renderer_ != nullptr && renderer_ != renderer) shape.ReleaseTextures(renderer_);
}

void DrawingCanvas::DropPreview(SDL_Renderer* renderer) {
    for (auto* const shape : {&preview_, &drawnPreview_}) {
        if (*shape != nullptr) ReleaseTexturesOf(**shape, renderer);
        *shape = nullptr;
    }
    Destroy(previewTexture_);
}

}  // namespace Corvanta::Drawing
