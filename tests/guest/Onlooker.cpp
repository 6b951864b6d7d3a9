#include "tests/guest/Onlooker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>

#include "engine/connections/ChatMessage.h"
#include "engine/connections/TransportChoice.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Guest {

using Engine::MappedPicture;
using nlohmann::json;

Onlooker::Onlooker(const std::string& room, const std::string& name) {
    EXPECT_TRUE(Engine::EnsureGStreamer());
    Engine::EngineOptions options;
    options.room = room;
    options.name = name;
    loop.Start([this, maker = Engine::ChooseTransport(options, name)] {
        transport = maker(loop, std::make_shared<Engine::SoundMixer>(loop));
        loop.Post([this] { transport->Start(EventsOfTransport()); });
        loop.Run();
        for (const auto& [id, known] : others) known.media->Close();
        transport->Stop();
        transport.reset();
    });
    problem = entry.get_future().get();
}

Onlooker::~Onlooker() {
    loop.Quit();
    loop.Join();
}

Onlooker::Impression Onlooker::Of(const std::string& name) const {
    const std::lock_guard lock(impressionsMutex);
    const auto found = impressions.find(name);
    return found != impressions.end() ? found->second : Impression{};
}

Engine::TransportEvents Onlooker::EventsOfTransport() {
    return {.entered =
                [this] {
                    isIn = true;
                    for (const auto& [id, known] : others) Open(id);
                    entry.set_value("");
                },
            .failed = [this](const std::string& line) { entry.set_value(line); },
            .joined = [this](const Engine::ParticipantDescription& description) { Meet(description); },
            .left =
                [this](const std::string& id, const std::string& reason) {
                    const auto found = others.find(id);
                    if (found == others.end()) return;
                    const Known gone = found->second;
                    others.erase(found);
                    gone.media->Close();
                    const std::lock_guard lock(impressionsMutex);
                    impressions[gone.name].hasLeft = true;
                    impressions[gone.name].reason = reason;
                },
            .dropped = [](bool) {},
            .muted = [] {}};
}

void Onlooker::Meet(const Engine::ParticipantDescription& description) {
    others[description.id] = {description.name, description.media};
    {
        const std::lock_guard lock(impressionsMutex);
        impressions[description.name].hasJoined = true;
    }
    if (isIn) Open(description.id);
}

void Onlooker::Open(const std::string& id) {
    loop.Post([this, id] {
        const auto found = others.find(id);
        if (found == others.end()) return;
        const auto [name, media] = found->second;
        media->Open({.picture =
                         [this, name = name](const std::shared_ptr<const MappedPicture>& picture) {
                             const std::lock_guard lock(impressionsMutex);
                             ++impressions[name].pictures;
                             impressions[name].width = picture->Width();
                         },
                     .loudness =
                         [this, name = name](double meanSquare) {
                             const std::lock_guard lock(impressionsMutex);
                             double& loudest = impressions[name].loudest;
                             loudest = std::max(loudest, meanSquare);
                         },
                     .withoutPicture = [] {},
                     .connection = [](bool) {},
                     .channel = [](bool) {},
                     .text = [this, name = name](const std::string& text) { Hear(name, text); },
                     .ended = [] {}});
        media->Play();
    });
}

void Onlooker::Hear(const std::string& name, const std::string& text) {
    const std::lock_guard lock(impressionsMutex);
    Impression& impression = impressions[name];
    if (Engine::ReadChat(text, std::chrono::system_clock::now())) {
        ++impression.lines;
        return;
    }
    const json message = json::parse(text);
    if (message.at("type") != "draw-canvas-broadcast") return;
    auto& marks = impression.marks[message.at("streamId").get<std::string>()];
    const json& body = message.at("message");
    if (body.at("clearCanvas").get<bool>() || body.at("shapes").empty()) marks.clear();
    for (const json& shape : body.at("shapes")) marks.insert(shape.at("controlId").get<std::string>());
}

}  // namespace Corvanta::Guest
