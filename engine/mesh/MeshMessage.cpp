#include "engine/mesh/MeshMessage.h"

#include <exception>
#include <limits>
#include <nlohmann/json.hpp>

#include "engine/signalling/RoomMessage.h"
#include "engine/transport/StreamNames.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;
using namespace MeshMessages;

// How the readers below say that a message is malformed; json's own exceptions say the same.
struct Malformed final : std::exception {};

// No message is nested like that.
constexpr int kDeepest = 8;
constexpr std::size_t kLongestLink = kLongestId + 32;

const std::string& TextOf(const json& object, const char* name) {
    return object.at(name).get_ref<const std::string&>();
}

std::string LinkOf(const json& object) {
    const std::string& link = TextOf(object, "link");
    if (link.empty() || link.size() > kLongestLink) throw Malformed();
    return link;
}

std::uint32_t LineOf(const json& object) {
    const json& line = object.at("line");
    if (!line.is_number_unsigned() || line > std::numeric_limits<std::uint32_t>::max()) throw Malformed();
    return line.get<std::uint32_t>();
}

StreamType StreamOf(const json& object) {
    const auto type = StreamOfWord(TextOf(object, "stream"));
    if (!type) throw Malformed();
    return *type;
}

LocalTracks TracksOf(const json& object) {
    return {.audio = object.at("audio").get<bool>(), .video = object.at("video").get<bool>()};
}

std::optional<MeshMessage> Read(const json& object) {
    const std::string& kind = TextOf(object, "kind");
    if (kind == "description") return Description{LinkOf(object), TextOf(object, "text")};
    if (kind == "candidate") return Candidate{LinkOf(object), LineOf(object), TextOf(object, "text")};
    if (kind == "publish")
        return Publish{StreamOf(object), CutName(TextOf(object, "name")), TracksOf(object)};
    if (kind == "unpublish") return Unpublish{StreamOf(object)};
    if (kind == "want") return Want{StreamOf(object), TracksOf(object)};
    if (kind == "mute") return Mute{StreamOf(object)};
    if (kind == "remove") return Remove{};
    return std::nullopt;
}

struct Writer {
    json operator()(const Description& message) const {
        return {{"kind", "description"}, {"link", message.link}, {"text", message.text}};
    }
    json operator()(const Candidate& message) const {
        return {
            {"kind", "candidate"}, {"link", message.link}, {"line", message.line}, {"text", message.text}};
    }
    json operator()(const Publish& message) const {
        return {{"kind", "publish"},
                {"stream", StreamWord(message.type)},
                {"name", CutName(message.name)},
                {"audio", message.tracks.audio},
                {"video", message.tracks.video}};
    }
    json operator()(const Unpublish& message) const {
        return {{"kind", "unpublish"}, {"stream", StreamWord(message.type)}};
    }
    json operator()(const Want& message) const {
        return {{"kind", "want"},
                {"stream", StreamWord(message.type)},
                {"audio", message.tracks.audio},
                {"video", message.tracks.video}};
    }
    json operator()(const Mute& message) const {
        return {{"kind", "mute"}, {"stream", StreamWord(message.type)}};
    }
    json operator()(const Remove&) const { return {{"kind", "remove"}}; }
};

}  // namespace

std::optional<MeshMessage> ReadMeshMessage(std::string_view payload) {
    const auto isShallow = [](int depth, json::parse_event_t, json&) {
        if (depth > kDeepest) throw Malformed();
        return true;
    };
    try {
        const json object = json::parse(payload, isShallow, false);
        if (!object.is_object()) return std::nullopt;
        return Read(object);
    } catch (const json::exception&) {
        return std::nullopt;
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

std::string WriteMeshMessage(const MeshMessage& message) {
    return std::visit(Writer{}, message).dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace Corvanta::Engine
