#include "drawing/LocalDrawingsProvider.h"

#include <SDL_keycode.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

#include "drawing/ControlId.h"
#include "drawing/DrawToolSettings.h"
#include "drawing/DrawingCanvas.h"
#include "drawing/DrawingCanvasManager.h"
#include "drawing/FontText.h"
#include "drawing/KeyToCharacter.h"
#include "drawing/PointerMapping.h"
#include "drawing/TextBox.h"
#include "drawing/ToolShape.h"
#include "platform/Connections.h"
#include "platform/Logger.h"

namespace Corvanta::Drawing {

namespace {

// What the view's pointer is to look like.
constexpr int kArrowHint = 0;
constexpr int kTextHint = 2;
constexpr int kMoveHint = 3;

std::string LocalId() {
    return Connections_GetLocalUserStreamID(StreamType::Camera);
}

SDL_Point UnitsOf(const DrawingCanvas& canvas) {
    return WholeUnits(canvas.CanvasWidth(), canvas.CanvasHeight());
}

std::optional<SDL_Point> PointOnCanvas(const DrawingCanvasManager& manager, const SDL_Point& position,
                                       const SDL_Point& canvasSize) {
    SDL_Rect videoArea{0, 0, 0, 0};
    manager.VideoArea(&videoArea);
    return MapToCanvas(position, videoArea, canvasSize);
}

// A font that readers refuse keeps them from reading what comes after it too.
bool CanBeRead(const TextBox& text) {
    try {
        static_cast<void>(ParseFontText(WriteFontText({text.fontStyle, text.fontSize, text.fontFamily})));
    } catch (const std::exception& error) {
        LOG(kLogWarning, "A text is dropped, since nobody could read its font: %s", error.what());
        return false;
    }
    return true;
}

void DragText(TextBox& text, const SDL_Point& point) {
    const double x = text.x + point.x - text.lastPointer.x;
    const double y = text.y + point.y - text.lastPointer.y;
    text.SetStart(x, y);
    text.lastPointer = point;
}

void LookForPointer(TextBox& text, const SDL_Point& point, const DrawingCanvas& canvas) {
    const TextHit hit =
        HitTestText(point, text.drawnRect, {canvas.TextureWidth(), canvas.TextureHeight()}, UnitsOf(canvas));
    text.pointerInside = hit.inside;
    text.pointerNearby = hit.nearby;
    if (hit.inside || hit.nearby) text.lastPointer = point;
}

}  // namespace

LocalDrawingsProvider::LocalDrawingsProvider(DrawingCanvasManager& manager) : manager_(manager) {
    manager_.Input().Add(this);
}

LocalDrawingsProvider::~LocalDrawingsProvider() {
    manager_.Input().Remove(this);
}

void LocalDrawingsProvider::OnMouseDown(const SDL_Point& position) {
    DrawingCanvas* const canvas = toolState_.enabled ? manager_.CurrentCanvas() : nullptr;
    if (canvas == nullptr) return;
    const SDL_Point size = UnitsOf(*canvas);
    const std::optional<SDL_Point> point = PointOnCanvas(manager_, position, size);
    if (!point || !IsOnCanvas(*point, size)) {
        if (OpenText() != nullptr) LetGo();
        return;
    }
    if (toolState_.selectedTool == DrawToolText && currentShape_ != nullptr) {
        OnTextMouseDown();
        return;
    }
    if (!BeginShape()) return;
    currentShape_->SetStart(point->x, point->y);
    canvas->SetPreview(currentShape_);
    drawing_ = true;
}

void LocalDrawingsProvider::OnTextMouseDown() {
    TextBox* const text = OpenText();
    if (text == nullptr || text->pointerInside) return;
    if (text->pointerNearby) {
        text->state = TextBox::State::Moving;
        drawing_ = true;
    } else if (text->state == TextBox::State::Editing) {
        text->state = TextBox::State::Finished;
        drawing_ = true;
    }
}

void LocalDrawingsProvider::OnMouseMove(const SDL_Point& position) {
    DrawingCanvas* const canvas = currentShape_ != nullptr ? manager_.CurrentCanvas() : nullptr;
    if (canvas == nullptr) return;
    const SDL_Point size = UnitsOf(*canvas);
    std::optional<SDL_Point> point = PointOnCanvas(manager_, position, size);
    if (!point) return;
    if (drawing_) {
        *point = {std::clamp(point->x, 0, std::max(size.x, 0)), std::clamp(point->y, 0, std::max(size.y, 0))};
        currentShape_->SetEnd(point->x, point->y);
    }
    if (TextBox* const text = OpenText()) {
        if (text->state == TextBox::State::Moving) {
            DragText(*text, *point);
        } else {
            LookForPointer(*text, *point, *canvas);
        }
    }
}

void LocalDrawingsProvider::OnMouseUp(const SDL_Point& /*position*/) {
    if (!drawing_ || currentShape_ == nullptr || manager_.CurrentCanvas() == nullptr) return;
    drawing_ = false;
    if (toolState_.selectedTool != DrawToolText) {
        FinishShape();
        return;
    }
    TextBox* const text = OpenText();
    if (text == nullptr) return;
    if (text->state == TextBox::State::Moving) {
        text->state = TextBox::State::Editing;
    } else if (text->state == TextBox::State::Finished && !text->pointerInside) {
        text->lastPointer = {0, 0};
        FinishShape();
    }
}

void LocalDrawingsProvider::OnKeyDown(int keycode) {
    if (keycode == SDLK_LSHIFT) shiftDown_ = true;
    if (keycode == SDLK_CAPSLOCK) capsLock_ = !capsLock_;
    if (IsTextOpen()) keysOfText_.insert(keycode);
}

void LocalDrawingsProvider::OnKeyUp(int keycode) {
    if (keycode == SDLK_LSHIFT) {
        shiftDown_ = false;
        return;
    }
    const bool isForText = keysOfText_.erase(keycode) > 0 && IsTextOpen();
    TextBox* const text = isForText ? OpenText() : nullptr;
    if (text == nullptr) return;
    if (const char typed = KeyToCharacter(keycode, {.shift = shiftDown_, .capsLock = capsLock_})) {
        text->text += typed;
    } else if (keycode == SDLK_BACKSPACE && !text->text.empty()) {
        text->text.pop_back();
    } else {
        return;
    }
    text->normalized = false;
}

void LocalDrawingsProvider::SetDrawToolState(const DrawToolState& state) {
    StoreDrawToolSettings(state);
    fontFamily_ = state.fontFamilyName != nullptr ? state.fontFamilyName : "";
    toolState_ = state;
    toolState_.fontFamilyName = nullptr;
    if (TextBox* const text = OpenText()) ApplyTextTool(*text, toolState_, fontFamily_);
}

int LocalDrawingsProvider::CursorHint() const {
    const TextBox* const text = OpenText();
    if (text == nullptr) return kArrowHint;
    if (text->pointerInside) return kTextHint;
    return text->pointerNearby ? kMoveHint : kArrowHint;
}

bool LocalDrawingsProvider::IsTextOpen() const {
    return toolState_.selectedTool == DrawToolText && OpenText() != nullptr;
}

void LocalDrawingsProvider::ClearCanvas(DrawingSource& source) {
    if (!source.History().RecordClear()) return;
    source.RemoveParticipant(LocalId());
    manager_.SendShapes(source.History().VisibleShapes(), source.StreamId(), true);
    Report(source);
}

void LocalDrawingsProvider::UndoCanvas(DrawingSource& source) {
    if (!source.History().Undo()) return;
    Refill(source);
    Report(source);
}

void LocalDrawingsProvider::RedoCanvas(DrawingSource& source) {
    int type = 0;
    if (!source.History().Redo(type)) return;
    const std::vector<std::shared_ptr<Shape>> visible = source.History().VisibleShapes();
    if (type == DrawingAction::CreateShape::kType && !visible.empty()) {
        source.Add(LocalId(), visible.back());
        manager_.SendShape(visible.back(), source.StreamId(), false);
    } else {
        Refill(source);
    }
    Report(source);
}

void LocalDrawingsProvider::DeleteShape(const std::string& controlId, DrawingSource& source) {
    if (!source.History().RecordDelete(controlId)) return;
    Refill(source);
    Report(source);
}

TextBox* LocalDrawingsProvider::OpenText() const {
    return dynamic_cast<TextBox*>(currentShape_.get());
}

bool LocalDrawingsProvider::BeginShape() {
    std::shared_ptr<Shape> shape = MakeToolShape(toolState_, fontFamily_);
    if (shape == nullptr) return false;
    if (currentShape_ != nullptr) LetGo();
    currentShape_ = std::move(shape);
    return true;
}

void LocalDrawingsProvider::FinishShape() {
    const DrawingCanvas* const canvas = manager_.CurrentCanvas();
    const std::shared_ptr<DrawingSource> source = canvas != nullptr ? canvas->Source() : nullptr;
    const TextBox* const text = OpenText();
    if (source == nullptr || source->StreamId().empty() || (text != nullptr && !CanBeRead(*text))) {
        LetGo();
        return;
    }
    currentShape_->controlId = GenerateControlId();
    try {
        manager_.SendShape(currentShape_, source->StreamId(), false);
    } catch (...) {
        TakeBack();
        throw;
    }
    source->Add(LocalId(), currentShape_);
    source->History().RecordCreate(currentShape_);
    LetGo();
    Report(*source);
}

void LocalDrawingsProvider::TakeBack() {
    currentShape_->controlId.clear();
    if (TextBox* const text = OpenText()) {
        // What was typed is not lost: in another font it may go out.
        text->state = TextBox::State::Editing;
    } else {
        LetGo();
    }
}

void LocalDrawingsProvider::LetGo() {
    manager_.EndPreview(*currentShape_);
    currentShape_ = nullptr;
    keysOfText_.clear();
}

void LocalDrawingsProvider::Refill(DrawingSource& source) {
    const std::vector<std::shared_ptr<Shape>> visible = source.History().VisibleShapes();
    source.Replace(LocalId(), visible);
    manager_.SendShapes(visible, source.StreamId(), true);
}

void LocalDrawingsProvider::Report(DrawingSource& source) {
    manager_.ReportHistoryState(source.History().CanUndo(), source.History().CanRedo());
}

}  // namespace Corvanta::Drawing
