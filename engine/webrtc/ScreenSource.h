// Pictures of the screen or of one window as an element of a pipeline. They come live, some 15 a second, in
// whatever size the window has at the moment. When the window closes the stream ends. Engine's thread.
#pragma once

#include <cstdint>

#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

// A new element with one source pad, which owns what it captures with; 0 for the whole screen. Null when
// GStreamer lacks the element.
[[nodiscard]] GstOwned<GstElement> MakeScreenElement(std::uint32_t window);

}  // namespace Corvanta::Engine
