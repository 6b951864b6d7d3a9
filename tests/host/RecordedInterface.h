// The library's functions that the window calls, as recorders: a test looks at what would have been pushed.
// Main thread only.
#pragma once

#include <string>
#include <vector>

#include "interface/SDLinterface.h"

namespace Corvanta::Host {

// Each call in order, as its name and its arguments: "move 0 0.5 0.25".
[[nodiscard]] std::vector<std::string>& Pushed();
// The same, and forgets them.
[[nodiscard]] std::vector<std::string> TakePushed();

// What the library answers.
struct DrawingAnswers {
    bool textOpen = false;
    // The settings of the last time, as they are loaded.
    int32_t complexSelectedShape = DrawToolRectangle;
    std::string fontFamily = "Arial";
    double fontSize = 32.0;
    double pencilStrokeWidth = 10.0;
};

[[nodiscard]] DrawingAnswers& Drawing();

}  // namespace Corvanta::Host
