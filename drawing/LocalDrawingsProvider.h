// Turns the local user's pointer and keys into shapes on the main video's canvas, and their undo. Render
// thread.
#pragma once

#include <SDL.h>

#include <memory>
#include <set>
#include <string>

#include "drawing/DrawingSource.h"
#include "drawing/InputEventListener.h"
#include "drawing/Shape.h"
#include "platform/DrawToolState.h"

namespace Corvanta::Drawing {

class DrawingCanvas;
class DrawingCanvasManager;
class TextBox;

class LocalDrawingsProvider final : public InputEventListener {
public:
    // Listens to the manager's input until it is destroyed.
    explicit LocalDrawingsProvider(DrawingCanvasManager& manager);
    virtual ~LocalDrawingsProvider();
    LocalDrawingsProvider(const LocalDrawingsProvider&) = delete;
    LocalDrawingsProvider& operator=(const LocalDrawingsProvider&) = delete;

    void OnMouseDown(const SDL_Point& position) override;
    void OnMouseUp(const SDL_Point& position) override;
    void OnMouseMove(const SDL_Point& position) override;
    void OnKeyDown(int keycode) override;
    void OnKeyUp(int keycode) override;

    // Stores the settings and takes them over for the next shape; an open text changes at once.
    void SetDrawToolState(const DrawToolState& state);
    [[nodiscard]] bool IsToolEnabled() const { return toolState_.enabled; }
    // For the view's pointer: over an open text 2, within its margin 3, else 0.
    [[nodiscard]] int CursorHint() const;
    // A text is open and takes the keys.
    [[nodiscard]] bool IsTextOpen() const;
    // The shape in progress; null without one.
    [[nodiscard]] const std::shared_ptr<Shape>& CurrentShape() const { return currentShape_; }
    // The settings in force. The family's text is null; FontFamily has it.
    [[nodiscard]] const DrawToolState& ToolState() const { return toolState_; }
    [[nodiscard]] const std::string& FontFamily() const { return fontFamily_; }

    // The local user's marks on that stream. Each shows the outcome, sends it and reports what can be undone
    // from there; with nothing to do it does none of it. Throws, with nothing sent, what SendShapes throws.
    void ClearCanvas(DrawingSource& source);
    void UndoCanvas(DrawingSource& source);
    void RedoCanvas(DrawingSource& source);
    void DeleteShape(const std::string& controlId, DrawingSource& source);

private:
    // Null unless a text is in progress.
    [[nodiscard]] TextBox* OpenText() const;
    // Makes the tool's shape the one in progress, in the place of what was. False when the tool makes none.
    bool BeginShape();
    void OnTextMouseDown();
    // Sends and files the shape in progress, if there is a stream for it and others can read it, and lets go
    // of it.
    void FinishShape();
    // The shape in progress could not be sent.
    void TakeBack();
    // There is no shape in progress any more, and no canvas shows it as such.
    void LetGo();
    // What is visible takes the place of all that the local user has on the stream.
    void Refill(DrawingSource& source);
    void Report(DrawingSource& source);

    DrawingCanvasManager& manager_;
    std::shared_ptr<Shape> currentShape_;
    // The button went down and has not come up.
    bool drawing_ = false;
    bool shiftDown_ = false;
    bool capsLock_ = false;
    // Keys that went down while the text was open and are still down. Characters come when keys go up, and
    // one that was held before is none of the text's.
    std::set<int> keysOfText_;
    // Its family's text is null; fontFamily_ holds it.
    DrawToolState toolState_{};
    std::string fontFamily_;
};

}  // namespace Corvanta::Drawing
