#include "drawing/BroadcastMessage.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "drawing/ShapeReader.h"
#include "drawing/WireValues.h"

namespace Corvanta::Drawing {

namespace {

constexpr char kMessageType[] = "draw-canvas-broadcast";

}  // namespace

std::string BroadcastMessage::Write(const std::vector<std::shared_ptr<Shape>>& shapes,
                                    const std::string& streamId, bool clearCanvas) {
    nlohmann::json list = nlohmann::json::array();
    for (const std::shared_ptr<Shape>& shape : shapes) {
        if (shape) list.push_back(shape->ToJson());
    }
    nlohmann::json body = nlohmann::json::object();
    body["clearCanvas"] = clearCanvas;
    body["shapes"] = std::move(list);
    nlohmann::json message = nlohmann::json::object();
    message["type"] = kMessageType;
    message["streamId"] = streamId;
    message["message"] = std::move(body);
    return message.dump();
}

std::optional<BroadcastMessage> BroadcastMessage::Open(const std::string& text) {
    auto message = std::make_unique<nlohmann::json>(nlohmann::json::parse(text));
    if (message->at("type") != kMessageType) return std::nullopt;
    std::string streamId = TakeText(message->at("streamId"));
    return BroadcastMessage(std::move(message), std::move(streamId));
}

BroadcastMessage::BroadcastMessage(std::unique_ptr<nlohmann::json> message, std::string streamId)
    : json_(std::move(message)), streamId_(std::move(streamId)) {}

BroadcastMessage::BroadcastMessage(BroadcastMessage&& other) noexcept = default;
BroadcastMessage& BroadcastMessage::operator=(BroadcastMessage&& other) noexcept = default;
BroadcastMessage::~BroadcastMessage() = default;

void BroadcastMessage::ReadBody() {
    nlohmann::json& body = json_->at("message");
    nlohmann::json list = std::move(body.at("shapes"));
    RequireArray(list);
    const auto clear = body.find("clearCanvas");
    const bool clearCanvas = clear != body.end() && clear->get<bool>();
    endsPresentShapes_ = clearCanvas || list.empty();
    *json_ = std::move(list);
}

bool BroadcastMessage::HasNext() const {
    return json_->is_array() && nextShape_ < json_->size();
}

std::shared_ptr<Shape> BroadcastMessage::ReadNext() {
    if (!HasNext()) return nullptr;
    return ReadShape(std::move((*json_)[nextShape_++]));
}

}  // namespace Corvanta::Drawing
