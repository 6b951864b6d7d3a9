// Names of this floor for headers that only point at them.
#pragma once

namespace Corvanta::Drawing {

class Color;
class DrawingCanvas;
class DrawingCanvasManager;
class DrawingHistory;
class DrawingSource;
class DrawingSurface;
class InputEventListener;
class LocalDrawingsProvider;
class Shape;

}  // namespace Corvanta::Drawing
