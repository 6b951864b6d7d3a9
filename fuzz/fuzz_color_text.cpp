// Any text for a colour: reading it must neither crash nor throw, and the colour must come back from each of
// the texts that it writes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "drawing/Color.h"

using Corvanta::Drawing::Color;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Color color = Color::Parse(std::string(reinterpret_cast<const char*>(data), size));
    if (!(Color::Parse(color.ToRgbaString()) == color)) std::abort();
    if (!(Color::Parse(color.ToHexString()) == color)) std::abort();
    return 0;
}
