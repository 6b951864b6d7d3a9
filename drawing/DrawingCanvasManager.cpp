#include "drawing/DrawingCanvasManager.h"

#include <exception>
#include <optional>
#include <utility>

#include "drawing/BroadcastMessage.h"
#include "drawing/DrawingCanvas.h"
#include "platform/Connections.h"
#include "platform/Logger.h"
#include "platform/MediaManager.h"

namespace Corvanta::Drawing {

namespace {

// The process's one manager.
struct Installed {
    UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> mutex;
    // guards: manager
    std::shared_ptr<DrawingCanvasManager> manager;
};

Installed& TheInstalled() {
    static Installed installed;
    return installed;
}

// What was there is let go of with no lock held, since its sources and canvases may go with it.
void Install(std::shared_ptr<DrawingCanvasManager> manager) {
    Installed& installed = TheInstalled();
    const std::scoped_lock lock(installed.mutex);
    installed.manager.swap(manager);
}

}  // namespace

std::shared_ptr<DrawingCanvasManager> DrawingCanvasManager::SetView(DrawingSurface* view) {
    auto manager = std::make_shared<DrawingCanvasManager>(view);
    Install(manager);
    return manager;
}

void DrawingCanvasManager::LeaveView() {
    roomView_ = nullptr;
}

std::shared_ptr<DrawingCanvasManager> DrawingCanvasManager::Instance() {
    Installed& installed = TheInstalled();
    const std::scoped_lock lock(installed.mutex);
    return installed.manager;
}

bool DrawingCanvasManager::HasInstance() {
    return Instance() != nullptr;
}

void DrawingCanvasManager::DestroyInstance() {
    Install(nullptr);
}

DrawingCanvasManager::DrawingCanvasManager(DrawingSurface* view) : roomView_(view), localDrawings_(*this) {}

DrawingCanvasManager::~DrawingCanvasManager() = default;

std::shared_ptr<DrawingSource> DrawingCanvasManager::GetOrCreateSource(const std::string& streamId) {
    const std::scoped_lock lock(sourcesMutex_);
    std::shared_ptr<DrawingSource>& source = sources_[streamId];
    if (source == nullptr) source = std::make_shared<DrawingSource>(streamId);
    return source;
}

void DrawingCanvasManager::AttachCanvas(const std::string& streamId, DrawingCanvas* canvas) {
    GetOrCreateSource(streamId)->AttachCanvas(canvas);
}

DrawingCanvas* DrawingCanvasManager::CurrentCanvas() {
    return roomView_ != nullptr ? roomView_->GetMainCanvas() : nullptr;
}

void DrawingCanvasManager::EndPreview(const Shape& shape) {
    // A canvas may have lost its source.
    if (DrawingCanvas* const canvas = CurrentCanvas()) canvas->EndPreview(shape);
    for (const auto& [streamId, source] : Sources()) source->EndPreview(shape);
}

void DrawingCanvasManager::VideoArea(SDL_Rect* out) const {
    *out = roomView_ != nullptr ? roomView_->GetMainVideoArea() : SDL_Rect{0, 0, 0, 0};
}

void DrawingCanvasManager::ClearCurrentCanvas() {
    if (const auto source = CurrentSource()) localDrawings_.ClearCanvas(*source);
}

void DrawingCanvasManager::UndoCurrentCanvas() {
    if (const auto source = CurrentSource()) localDrawings_.UndoCanvas(*source);
}

void DrawingCanvasManager::RedoCurrentCanvas() {
    if (const auto source = CurrentSource()) localDrawings_.RedoCanvas(*source);
}

void DrawingCanvasManager::PublishHistoryState() {
    if (const auto source = CurrentSource()) {
        ReportHistoryState(source->History().CanUndo(), source->History().CanRedo());
    }
}

void DrawingCanvasManager::ReportHistoryState(bool canUndo, bool canRedo) {
    if (roomView_ != nullptr) roomView_->ReportHistoryState(canUndo, canRedo);
}

void DrawingCanvasManager::SendShapes(const std::vector<std::shared_ptr<Shape>>& shapes,
                                      const std::string& streamId, bool clearCanvas) {
    const std::string text = BroadcastMessage::Write(shapes, streamId, clearCanvas);
    MediaManager_SendDatachannelMessage(text.c_str());
}

void DrawingCanvasManager::SendShape(const std::shared_ptr<Shape>& shape, const std::string& streamId,
                                     bool clearCanvas) {
    SendShapes({shape}, streamId, clearCanvas);
}

void DrawingCanvasManager::OnDataChannelMessage(const DataChannelMessage& message) {
    std::optional<BroadcastMessage> broadcast = BroadcastMessage::Open(message.text);
    if (!broadcast) return;
    const std::shared_ptr<DrawingSource> source = GetOrCreateSource(broadcast->StreamId());
    broadcast->ReadBody();
    // All are read before the first is filed, so that nobody sees a part of an undo. What stands before a bad
    // one holds.
    std::vector<std::shared_ptr<Shape>> shapes;
    std::exception_ptr badShape;
    try {
        while (broadcast->HasNext()) {
            if (std::shared_ptr<Shape> shape = broadcast->ReadNext()) shapes.push_back(std::move(shape));
        }
    } catch (...) {
        badShape = std::current_exception();
    }
    if (broadcast->EndsPresentShapes()) {
        source->Replace(message.senderId, shapes);
    } else {
        source->AddAll(message.senderId, shapes);
    }
    if (badShape != nullptr) std::rethrow_exception(badShape);
}

void DrawingCanvasManager::PublishLocalDrawings() {
    for (const auto& [streamId, source] : Sources()) {
        try {
            Publish(*source);
        } catch (const std::exception& error) {
            LOG(kLogWarning, "The drawings on a stream could not be shared: %s", error.what());
        }
    }
}

void DrawingCanvasManager::Publish(const DrawingSource& source) {
    const std::string localId = Connections_GetLocalUserStreamID(StreamType::Camera);
    std::vector<std::shared_ptr<Shape>> sent = source.ShapesOf(localId);
    SendShapes(sent, source.StreamId(), false);
    // Where the local user took a shape back meanwhile, this message has brought it back to everybody.
    for (auto present = source.ShapesOf(localId); present != sent; present = source.ShapesOf(localId)) {
        sent = std::move(present);
        SendShapes(sent, source.StreamId(), true);
    }
}

void DrawingCanvasManager::RemoveStream(const std::string& streamId) {
    SourceMap remaining;
    std::shared_ptr<DrawingSource> removed;
    {
        const std::scoped_lock lock(sourcesMutex_);
        if (const auto found = sources_.find(streamId); found != sources_.end()) {
            removed = std::move(found->second);
            sources_.erase(found);
        }
        remaining = sources_;
    }
    for (const auto& [id, source] : remaining) source->RemoveParticipant(streamId);
}

void DrawingCanvasManager::ClearAllSources() {
    for (const auto& [streamId, source] : Sources()) source->ClearAll();
}

void DrawingCanvasManager::RemoveAllSources() {
    SourceMap removed;
    const std::scoped_lock lock(sourcesMutex_);
    sources_.swap(removed);
}

std::shared_ptr<DrawingSource> DrawingCanvasManager::CurrentSource() {
    const DrawingCanvas* const canvas = CurrentCanvas();
    return canvas != nullptr ? canvas->Source() : nullptr;
}

DrawingCanvasManager::SourceMap DrawingCanvasManager::Sources() const {
    const std::scoped_lock lock(sourcesMutex_);
    return sources_;
}

}  // namespace Corvanta::Drawing
