#include "drawing/DrawingSource.h"

#include "drawing/DrawingCanvas.h"

namespace Corvanta::Drawing {

void DrawingSource::Add(const std::string& participantId, const std::shared_ptr<Shape>& shape) {
    if (shape == nullptr) return;
    const std::scoped_lock lock(mutex_);
    entries_.push_back({participantId, shape});
    for (DrawingCanvas* const canvas : canvases_) canvas->AddShape(participantId, shape);
}

void DrawingSource::RemoveParticipant(const std::string& participantId) {
    const std::scoped_lock lock(mutex_);
    std::erase_if(entries_, [&](const Entry& entry) { return entry.participantId == participantId; });
    for (DrawingCanvas* const canvas : canvases_) canvas->ClearParticipant(participantId);
}

void DrawingSource::ClearAll() {
    const std::scoped_lock lock(mutex_);
    entries_.clear();
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
