// Where drawing meets the room: one source for each stream that somebody has drawn on or a tile shows, the
// local user's input, and the message "draw-canvas-broadcast" in both directions. Each client is the
// authority on its own shapes; everybody keeps the shapes of each participant apart.
//
// One instance, shared with whoever is inside it. OnDataChannelMessage, PublishLocalDrawings, AttachCanvas,
// RemoveStream, ClearAllSources and RemoveAllSources: any thread. Everything else: render thread. No lock is
// held while a sibling library is called.
#pragma once

#include <SDL.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "drawing/DrawingSource.h"
#include "drawing/DrawingSurface.h"
#include "drawing/InputEventDispatcher.h"
#include "drawing/LocalDrawingsProvider.h"
#include "drawing/Shape.h"
#include "platform/DataChannelMessage.h"
#include "platform/DrawToolState.h"
#include "ui/LockOrder.h"

namespace Corvanta::Drawing {

class DrawingCanvasManager {
public:
    // A manager for that view takes the present one's place, whose sources and histories go unless somebody
    // still owns it. Returns the new one.
    static std::shared_ptr<DrawingCanvasManager> SetView(DrawingSurface* view);
    // The view goes: there is no canvas from then on.
    void LeaveView();
    // Null when there is none.
    [[nodiscard]] static std::shared_ptr<DrawingCanvasManager> Instance();
    [[nodiscard]] static bool HasInstance();
    static void DestroyInstance();

    explicit DrawingCanvasManager(DrawingSurface* view);
    virtual ~DrawingCanvasManager();
    DrawingCanvasManager(const DrawingCanvasManager&) = delete;
    DrawingCanvasManager& operator=(const DrawingCanvasManager&) = delete;

    [[nodiscard]] std::shared_ptr<DrawingSource> GetOrCreateSource(const std::string& streamId);
    // Joins a tile's canvas to the drawings on its stream, which it then draws.
    void AttachCanvas(const std::string& streamId, DrawingCanvas* canvas);

    // The main video's; null without one. All local drawing goes there.
    [[nodiscard]] DrawingCanvas* CurrentCanvas();
    // No canvas shows the shape any more as the one that is being drawn, whichever stream its gesture began
    // on.
    void EndPreview(const Shape& shape);
    // Where the main video stands, in the pointer's coordinates; empty without a view.
    void VideoArea(SDL_Rect* out) const;
    [[nodiscard]] bool IsToolEnabled() const { return localDrawings_.IsToolEnabled(); }
    [[nodiscard]] int CursorHint() const { return localDrawings_.CursorHint(); }
    [[nodiscard]] bool IsTextOpen() const { return localDrawings_.IsTextOpen(); }
    void SetDrawToolState(const DrawToolState& state) { localDrawings_.SetDrawToolState(state); }
    [[nodiscard]] InputEventDispatcher& Input() { return inputDispatcher_; }
    [[nodiscard]] LocalDrawingsProvider& LocalDrawings() { return localDrawings_; }

    // The local user's marks on the main video; nothing without one.
    void ClearCurrentCanvas();
    void UndoCurrentCanvas();
    void RedoCurrentCanvas();
    // Tells the host what can be undone on the main video.
    void PublishHistoryState();
    void ReportHistoryState(bool canUndo, bool canRedo);

    // Sends the shapes to everybody; clearCanvas: they replace all that the local user has on that stream.
    // Throws, and sends nothing, when a text is no UTF-8.
    void SendShapes(const std::vector<std::shared_ptr<Shape>>& shapes, const std::string& streamId,
                    bool clearCanvas);
    void SendShape(const std::shared_ptr<Shape>& shape, const std::string& streamId, bool clearCanvas);
    // Every message of every kind. Throws at what is no message, and at a drawing that cannot be read.
    void OnDataChannelMessage(const DataChannelMessage& message);
    // Somebody has joined: sends all of the local user's shapes, stream by stream. What cannot be sent is
    // logged.
    void PublishLocalDrawings();

    // The participant has left: the drawings on that stream go, and its marks on all others.
    void RemoveStream(const std::string& streamId);
    // Shapes go; sources, canvases and histories stay.
    void ClearAllSources();
    void RemoveAllSources();

private:
    using SourceMap = std::map<std::string, std::shared_ptr<DrawingSource>>;

    // The source of the main video's stream; null without one.
    [[nodiscard]] std::shared_ptr<DrawingSource> CurrentSource();
    [[nodiscard]] SourceMap Sources() const;
    void Publish(const DrawingSource& source);

    mutable UI::OrderedMutex<std::mutex, UI::LockRank::Drawings> sourcesMutex_;
    // guards: sources_
    SourceMap sources_;
    DrawingSurface* roomView_;
    InputEventDispatcher inputDispatcher_;
    LocalDrawingsProvider localDrawings_;
};

}  // namespace Corvanta::Drawing
