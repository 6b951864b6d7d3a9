#include "engine/janus/FeedFacts.h"

#include <nlohmann/json.hpp>

#include "engine/signalling/RoomMessage.h"
#include "engine/transport/StreamNames.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;

constexpr int kVersion = 1;

std::string TextOf(const json& object, const char* key) {
    const auto place = object.find(key);
    return place != object.end() && place->is_string() ? place->get<std::string>() : std::string();
}

}  // namespace

std::string WriteFeedFacts(const FeedFacts& facts) {
    const json object = {{"corvanta", kVersion},
                         {"name", CutName(facts.name)},
                         {"member", facts.memberId},
                         {"stream", StreamWord(facts.type)}};
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<FeedFacts> ReadFeedFacts(const std::string& feedId, std::string_view text) {
    const json object = json::parse(
        text, [](int depth, json::parse_event_t, json&) { return depth <= 2; }, false);
    const bool isOurs = object.is_object() && object.contains("corvanta");
    if (!isOurs) {
        const std::string name = CutName(text);
        return FeedFacts{name.empty() ? feedId : name, feedId, StreamType::Camera, false};
    }
    // Its pictures and sound are what they are everywhere; what it says may mean something else.
    if (object.at("corvanta") != kVersion) {
        const std::string name = CutName(TextOf(object, "name"));
        LOG(kLogWarning, "\"%s\" is of another version: it is seen and heard, and its texts are not read",
            name.c_str());
        return FeedFacts{name.empty() ? feedId : name, feedId, StreamType::Camera, false};
    }
    FeedFacts facts{CutName(TextOf(object, "name")), TextOf(object, "member"), StreamType::Camera, true};
    if (!IsMemberId(facts.memberId)) return std::nullopt;
    const auto type = StreamOfWord(TextOf(object, "stream"));
    if (!type || StreamIdOf(facts.memberId, *type) != feedId) return std::nullopt;
    facts.type = *type;
    return facts;
}

}  // namespace Corvanta::Engine
