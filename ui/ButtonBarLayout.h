// The geometry of the button bar: everything follows from its size and the number of its buttons. Plain
// values, in logical pixels; points of buttons are their centres.
#pragma once

#include <SDL.h>

namespace Corvanta::UI {

struct BarCounts {
    int left = 0;
    int centre = 0;
    int right = 0;
};

struct BarMetrics {
    int cell = 0;      // a button's cell
    int half = 0;      // half of it
    int gap = 0;       // between cells
    int leftGap = 0;   // around the title
    int rightGap = 0;  // between the right buttons
    int middleY = 0;
    int centreX = 0;     // first button of the centre group
    int titleSpace = 0;  // between the left and the centre group
};

// rect: where the bar is drawn; width and height: its size.
[[nodiscard]] BarMetrics ComputeBarMetrics(const SDL_Rect& rect, int width, int height,
                                           const BarCounts& counts);

// Whether everything has room. textWidth: the wider of title and text button; recordWidth: 0 without one.
[[nodiscard]] bool FullBarFits(const BarMetrics& metrics, int width, const BarCounts& counts, int textWidth,
                               int recordWidth);

// The centre group stands in the middle of the bar, and a long right group would reach into it. Moves the
// centre group to the left, as far as the title's space goes beyond textWidth, and then takes the rest from
// the gaps of the right group, of which there are rightGaps. rightEnd: left edge of the right group with the
// gaps that it has. Without a common pixel nothing changes. False when there is no room even so.
[[nodiscard]] bool PartGroups(BarMetrics& metrics, const BarCounts& counts, int rightEnd, int rightGaps,
                              int textWidth);

// First button of the left group, and the way to the next one.
[[nodiscard]] int FirstLeftX(const BarMetrics& metrics);
[[nodiscard]] int LeftStep(const BarMetrics& metrics);
// Step of the centre group and of the compact bar.
[[nodiscard]] int CentreStep(const BarMetrics& metrics);
// Where the title's space begins.
[[nodiscard]] int TitleSpaceX(const BarMetrics& metrics, int leftCount);
[[nodiscard]] int FirstRightX(const BarMetrics& metrics, int width);
[[nodiscard]] int RecordX(const BarMetrics& metrics, int width);
// The right button behind the first, with and without a record button between.
[[nodiscard]] int SecondRightX(const BarMetrics& metrics, int width, bool hasRecord, int recordWidth);
[[nodiscard]] int FirstCompactX(const BarMetrics& metrics, const SDL_Rect& rect, int width, int count);

}  // namespace Corvanta::UI
