// What drawing asks of the view in which it takes place. Render thread.
#pragma once

#include <SDL.h>

namespace Corvanta::Drawing {

class DrawingCanvas;

class DrawingSurface {
public:
    // The canvas of the main video; null without one.
    [[nodiscard]] virtual DrawingCanvas* GetMainCanvas() = 0;
    // Where the main video stands, in the pointer's coordinates.
    [[nodiscard]] virtual SDL_Rect GetMainVideoArea() const = 0;
    // For the host's buttons.
    virtual void ReportHistoryState(bool canUndo, bool canRedo) = 0;

protected:
    ~DrawingSurface() = default;
};

}  // namespace Corvanta::Drawing
