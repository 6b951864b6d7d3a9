// Any text for a message: reading it throws what it promises, and the shapes that it has given up to then can
// be sent on.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "drawing/BroadcastMessage.h"
#include "fuzz/DrawingInput.h"

using namespace Corvanta::Drawing;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::optional<BroadcastMessage> message;
    std::vector<std::shared_ptr<Shape>> shapes;
    Reads([&] {
        message = BroadcastMessage::Open(text);
        if (!message) return;
        message->ReadBody();
        while (message->HasNext()) shapes.push_back(message->ReadNext());
    });
    if (!message) return 0;
    static_cast<void>(BroadcastMessage::Write(shapes, message->StreamId(), message->EndsPresentShapes()));
    return 0;
}
