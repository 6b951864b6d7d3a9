// Who drew what on one stream, in order of arrival. Canvases come and go; this record stays and feeds every
// canvas that is attached. Any thread; its lock is held while canvases are fed, and is taken outside theirs.
// The history alone belongs to the render thread.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "drawing/DrawingHistory.h"
#include "drawing/Shape.h"
#include "drawing/ShapeIdentity.h"
#include "ui/LockOrder.h"

namespace Corvanta::Drawing {

class DrawingCanvas;

// Shared: whoever feeds it owns it meanwhile, so it may leave the manager at any time.
class DrawingSource : public std::enable_shared_from_this<DrawingSource> {
public:
    struct Entry {
        // The sender.
        std::string participantId;
        std::shared_ptr<Shape> shape;
    };

    explicit DrawingSource(std::string streamId) : streamId_(std::move(streamId)) {}
    // Canvases that are still attached are left without a source.
    virtual ~DrawingSource() = default;
    DrawingSource(const DrawingSource&) = delete;
    DrawingSource& operator=(const DrawingSource&) = delete;

    // A shape may come again, by its controlId: the list then has the first one twice, and canvases leave
    // out what they have.
    void Add(const std::string& participantId, const std::shared_ptr<Shape>& shape);
    // The same with several, and with several in the place of all that the participant has; oldest first.
    // Each is one step: no reader of the list and no frame of a canvas sees a part of it.
    void AddAll(const std::string& participantId, std::span<const std::shared_ptr<Shape>> shapes);
    void Replace(const std::string& participantId, std::span<const std::shared_ptr<Shape>> shapes);
    void RemoveParticipant(const std::string& participantId);
    // The history stays.
    void ClearAll();
    [[nodiscard]] std::vector<std::shared_ptr<Shape>> ShapesOf(const std::string& participantId) const;

    // The canvas, which must live until it is detached, gets all shapes so far. It is detached from the
    // source that it had.
    void AttachCanvas(DrawingCanvas* canvas);
    void DetachCanvas(DrawingCanvas* canvas);
    // Render thread: no canvas shows the shape as the one that is being drawn any more.
    void EndPreview(const Shape& shape);

    [[nodiscard]] const std::string& StreamId() const { return streamId_; }
    [[nodiscard]] DrawingHistory& History() { return history_; }

private:
    using ShapeSet = std::unordered_set<std::shared_ptr<Shape>, HashOfId, SameId>;

    // Their callers hold mutex_.
    void Append(const std::string& participantId, std::span<const std::shared_ptr<Shape>> shapes);
    [[nodiscard]] std::vector<Entry> TakeEntriesOf(const std::string& participantId);

    const std::string streamId_;
    mutable UI::OrderedMutex<std::mutex, UI::LockRank::DrawingSource> mutex_;
    // guards: entries_, shapes_, canvases_
    std::deque<Entry> entries_;
    // Each participant's, once each. Everybody sends all of theirs whenever somebody joins: without it every
    // newcomer would cost the memory of all shapes.
    std::map<std::string, ShapeSet> shapes_;
    // Not owned.
    std::set<DrawingCanvas*> canvases_;
    // Render thread.
    DrawingHistory history_;
};

}  // namespace Corvanta::Drawing
