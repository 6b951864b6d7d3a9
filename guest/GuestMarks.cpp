#include "guest/GuestMarks.h"

#include <utility>

#include "engine/embedded/ScriptedShapes.h"

namespace Corvanta::Guest {

using nlohmann::json;

GuestMarks::GuestMarks(std::uint32_t seed, std::size_t hand) : inkOfHand(hand) {
    // The identity of a mark is unique in the room, so no two guests may make the same ones.
    std::seed_seq seeds{seed, static_cast<std::uint32_t>(hand)};
    random.seed(seeds);
}

std::string GuestMarks::Draw(const std::string& streamId) {
    const std::size_t number = drawn++;
    // Guests begin with marks of different kinds.
    json shape = Engine::MakeScriptedShape(inkOfHand + number, inkOfHand, random);
    std::string text = Engine::WriteBroadcast(streamId, json::array({shape}), Engine::ApplyShapes::Add);
    streams[streamId].push_back({.number = number, .shape = std::move(shape)});
    return text;
}

std::optional<std::string> GuestMarks::TakeBack() {
    const std::string* oldest = nullptr;
    std::size_t number = drawn;
    for (const auto& [id, marks] : streams) {
        if (marks.empty() || marks.front().number >= number) continue;
        number = marks.front().number;
        oldest = &id;
    }
    if (oldest == nullptr) return std::nullopt;
    streams[*oldest].pop_back();
    return Tell(*oldest);
}

std::vector<std::string> GuestMarks::TellAll() const {
    std::vector<std::string> texts;
    for (const auto& [id, marks] : streams) texts.push_back(Tell(id));
    return texts;
}

std::size_t GuestMarks::Count() const {
    std::size_t count = 0;
    for (const auto& [id, marks] : streams) count += marks.size();
    return count;
}

std::string GuestMarks::Tell(const std::string& streamId) const {
    json shapes = json::array();
    for (const Mark& mark : streams.at(streamId)) shapes.push_back(mark.shape);
    return Engine::WriteBroadcast(streamId, std::move(shapes), Engine::ApplyShapes::Replace);
}

}  // namespace Corvanta::Guest
