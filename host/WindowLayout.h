// Where the parts of the room's window stand: the room, a bar above it, and a panel at its right. Plain
// values in logical pixels.
#pragma once

namespace Corvanta::Host {

struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Place&) const = default;
};

struct WindowParts {
    bool panel = false;
    int barHeight = 0;  // 0: no bar
};

struct WindowLayout {
    Place room;
    Place bar;
    Place panel;

    bool operator==(const WindowLayout&) const = default;
};

// The panel takes up to two fifths of a narrow window. Every part that is there has a size of at least 1.
[[nodiscard]] WindowLayout LayOut(int width, int height, WindowParts parts);

}  // namespace Corvanta::Host
