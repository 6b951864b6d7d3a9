// Texts of the generated clips as masks, drawn by GStreamer's text element with the machine's sans-serif
// face. For one thread at a time; blocks some milliseconds for each text.
#pragma once

#include <optional>
#include <string>

#include "engine/webrtc/ClipPainter.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

class ClipText final {
public:
    // `size` is the height of the face in pixels. Without the text element no text is drawn, which is logged
    // once.
    explicit ClipText(int size);
    ~ClipText();
    ClipText(const ClipText&) = delete;
    ClipText& operator=(const ClipText&) = delete;

    // The text's ink with its advance to the left and right kept out, in a mask that is `Height` high, so
    // that masks of one object share a base line. Nothing when no text can be drawn.
    [[nodiscard]] std::optional<Mask> Render(const std::string& text);

private:
    int boxHeight;
    GstOwned<GstElement> pipeline;
    GstOwned<GstElement> source, overlay, sink;
};

}  // namespace Corvanta::Engine
