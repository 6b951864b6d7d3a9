#include "drawing/DrawingSource.h"

#include <algorithm>
#include <iterator>

#include "drawing/DrawingCanvas.h"

namespace Corvanta::Drawing {

void DrawingSource::Add(const std::string& participantId, const std::shared_ptr<Shape>& shape) {
    AddAll(participantId, {&shape, 1});
}

void DrawingSource::AddAll(const std::string& participantId, std::span<const std::shared_ptr<Shape>> shapes) {
    const std::scoped_lock lock(mutex_);
    Append(participantId, shapes);
    for (DrawingCanvas* const canvas : canvases_) canvas->AddShapes(participantId, shapes);
}

void DrawingSource::Replace(const std::string& participantId,
                            std::span<const std::shared_ptr<Shape>> shapes) {
    // Ahead of the lock, so that the shapes go when it has been given back.
    std::vector<Entry> former;
    const std::scoped_lock lock(mutex_);
    former = TakeEntriesOf(participantId);
    Append(participantId, shapes);
    for (DrawingCanvas* const canvas : canvases_) canvas->ReplaceShapes(participantId, shapes);
}

void DrawingSource::RemoveParticipant(const std::string& participantId) {
    Replace(participantId, {});
}

void DrawingSource::ClearAll() {
    std::deque<Entry> former;
    const std::scoped_lock lock(mutex_);
    former.swap(entries_);
    shapes_.clear();
    for (DrawingCanvas* const canvas : canvases_) canvas->ClearAll();
}

std::vector<std::shared_ptr<Shape>> DrawingSource::ShapesOf(const std::string& participantId) const {
    std::vector<std::shared_ptr<Shape>> shapes;
    const std::scoped_lock lock(mutex_);
    for (const Entry& entry : entries_) {
        if (entry.participantId == participantId) shapes.push_back(entry.shape);
    }
    return shapes;
}

void DrawingSource::Append(const std::string& participantId, std::span<const std::shared_ptr<Shape>> shapes) {
    if (shapes.empty()) return;
    ShapeSet& known = shapes_[participantId];
    for (const std::shared_ptr<Shape>& shape : shapes) {
        if (shape != nullptr) entries_.push_back({participantId, *known.insert(shape).first});
    }
}

std::vector<DrawingSource::Entry> DrawingSource::TakeEntriesOf(const std::string& participantId) {
    const auto first = std::stable_partition(
        entries_.begin(), entries_.end(),
        [&participantId](const Entry& entry) { return entry.participantId != participantId; });
    std::vector<Entry> taken(std::make_move_iterator(first), std::make_move_iterator(entries_.end()));
    entries_.erase(first, entries_.end());
    shapes_.erase(participantId);
    return taken;
}

void DrawingSource::AttachCanvas(DrawingCanvas* canvas) {
    if (canvas == nullptr) return;
    const std::shared_ptr<DrawingSource> self = shared_from_this();
    std::shared_ptr<DrawingSource> previous;
    {
        const std::scoped_lock lock(mutex_);
        canvases_.insert(canvas);
        previous = canvas->SetSource(self);
        for (const Entry& entry : entries_) canvas->AddShape(entry.participantId, entry.shape);
    }
    // Outside of the lock, since no two sources are locked at once.
    if (previous != nullptr && previous != self) previous->DetachCanvas(canvas);
}

void DrawingSource::DetachCanvas(DrawingCanvas* canvas) {
    const std::scoped_lock lock(mutex_);
    if (canvases_.erase(canvas) > 0) canvas->LeaveSource(*this);
}

void DrawingSource::EndPreview(const Shape& shape) {
    const std::scoped_lock lock(mutex_);
    for (DrawingCanvas* const canvas : canvases_) canvas->EndPreview(shape);
}

}  // namespace Corvanta::Drawing
