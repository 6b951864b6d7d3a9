// The message "draw-canvas-broadcast", by which clients tell each other their shapes. It is read in steps, so
// that what a reader has done at one step stands when the next one finds something bad and throws:
//
//   std::optional<BroadcastMessage> broadcast = BroadcastMessage::Open(message.text);
//   if (!broadcast) return;
//   source = GetOrCreateSource(broadcast->StreamId());
//   broadcast->ReadBody();
//   while (broadcast->HasNext()) {
//       if (std::shared_ptr<Shape> shape = broadcast->ReadNext()) shapes.push_back(std::move(shape));
//   }
//   broadcast->EndsPresentShapes() ? source->Replace(senderId, shapes) : source->AddAll(senderId, shapes);
//
// Belongs to the thread that made it, which may be any.
#pragma once

#include <cstddef>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "drawing/Shape.h"

namespace Corvanta::Drawing {

class BroadcastMessage final {
public:
    // The text of a message, on one line. clearCanvas: the shapes replace all that the sender has on that
    // stream. A null entry is left out. Throws nlohmann::json::type_error 316 when a text is no UTF-8.
    [[nodiscard]] static std::string Write(const std::vector<std::shared_ptr<Shape>>& shapes,
                                           const std::string& streamId, bool clearCanvas);

    // Nothing for a message of another type. Throws what the JSON library throws at a text that is no JSON
    // object, that has no type, or that is of this type and has no good stream id.
    [[nodiscard]] static std::optional<BroadcastMessage> Open(const std::string& text);

    BroadcastMessage(BroadcastMessage&& other) noexcept;
    BroadcastMessage& operator=(BroadcastMessage&& other) noexcept;
    BroadcastMessage(const BroadcastMessage&) = delete;
    BroadcastMessage& operator=(const BroadcastMessage&) = delete;
    ~BroadcastMessage();

    // The stream that is drawn on.
    [[nodiscard]] const std::string& StreamId() const { return streamId_; }

    // Comes before what follows, once. Throws what the JSON library throws when the list of shapes is missing
    // or is no list, and then when the wish to clear is not true or false.
    void ReadBody();
    // The shapes that the sender has on that stream go before the first of these comes: it says so, or its
    // list is empty.
    [[nodiscard]] bool EndsPresentShapes() const { return endsPresentShapes_; }
    [[nodiscard]] bool HasNext() const;
    // The next shape, oldest first; null for a class that this client does not know. Throws as ReadShape
    // does.
    [[nodiscard]] std::shared_ptr<Shape> ReadNext();

private:
    BroadcastMessage(std::unique_ptr<nlohmann::json> message, std::string streamId);

    // The message, and from ReadBody on its list of shapes.
    std::unique_ptr<nlohmann::json> json_;
    std::string streamId_;
    size_t nextShape_ = 0;
    bool endsPresentShapes_ = false;
};

}  // namespace Corvanta::Drawing
