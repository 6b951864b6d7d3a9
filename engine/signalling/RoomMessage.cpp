#include "engine/signalling/RoomMessage.h"

#include <glib.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

namespace Corvanta::Engine {

namespace {

using nlohmann::json;
using namespace RoomMessages;

// How the readers below say that a line is malformed; json's own exceptions say the same.
struct Malformed final : std::exception {};

constexpr std::size_t kIdLength = 32;
// No message is nested like that, and what is would keep the hub busy for long.
constexpr int kDeepest = 16;

const std::string& TextOf(const json& object, const char* name) {
    return object.at(name).get_ref<const std::string&>();
}

std::string IdOf(const json& text) {
    const auto& id = text.get_ref<const std::string&>();
    if (!IsMemberId(id)) throw Malformed();
    return id;
}

bool FlagOf(const json& object, const char* name) {
    const auto flag = object.find(name);
    return flag != object.end() && flag->get<bool>();
}

// An array of at most `most`.
const json& ListOf(const json& object, const char* name, std::size_t most) {
    const json& list = object.at(name);
    if (!list.is_array() || list.size() > most) throw Malformed();
    return list;
}

// None where the field is missing.
std::vector<std::string> IdsOf(const json& object, const char* name) {
    std::vector<std::string> ids;
    if (!object.contains(name)) return ids;
    for (const json& id : ListOf(object, name, kMostAtHub)) ids.push_back(IdOf(id));
    return ids;
}

RoomMember MemberOf(const json& object) {
    return {IdOf(object.at("id")), CutName(TextOf(object, "name"))};
}

// What is no int is another version than ours all the same.
int VersionOf(const json& number) {
    if (!number.is_number_integer()) throw Malformed();
    const bool isInt = number >= 0 && number <= std::numeric_limits<int>::max();
    return isInt ? number.get<int>() : std::numeric_limits<int>::max();
}

Hello ReadHello(const json& object) {
    Hello hello;
    hello.version = VersionOf(object.at("version"));
    if (hello.version != kRoomVersion) return hello;
    hello.name = CutName(TextOf(object, "name"));
    hello.id = TextOf(object, "id");
    hello.key = IdOf(object.at("key"));
    if (!hello.id.empty() && !IsMemberId(hello.id)) throw Malformed();
    hello.known = IdsOf(object, "known");
    return hello;
}

Welcome ReadWelcome(const json& object) {
    Welcome welcome{IdOf(object.at("id")), FlagOf(object, "returned"), {}};
    for (const json& member : ListOf(object, "members", kMostAtHub))
        welcome.members.push_back(MemberOf(member));
    welcome.known = IdsOf(object, "known");
    return welcome;
}

Settled ReadSettled(const json& object) {
    Settled settled;
    for (const json& id : ListOf(object, "ids", kMostAtHub)) settled.ids.push_back(IdOf(id));
    return settled;
}

RoomMessage Read(const json& object) {
    const std::string& kind = TextOf(object, "kind");
    if (kind == "hello") return ReadHello(object);
    if (kind == "welcome") return ReadWelcome(object);
    if (kind == "joined") return Joined{MemberOf(object.at("member")), FlagOf(object, "returned")};
    if (kind == "left") return Left{IdOf(object.at("id")), FlagOf(object, "orderly")};
    if (kind == "settled") return ReadSettled(object);
    if (kind == "to") return To{IdOf(object.at("member")), TextOf(object, "payload")};
    if (kind == "from") return From{IdOf(object.at("member")), TextOf(object, "payload")};
    if (kind == "leaving") return Leaving{};
    if (kind == "refused") return Refused{CutName(TextOf(object, "reason"))};
    return Unknown{};
}

json ToJson(const RoomMember& member) {
    return {{"id", member.id}, {"name", CutName(member.name)}};
}

struct Writer {
    json operator()(const Hello& hello) const {
        return {{"kind", "hello"}, {"version", hello.version}, {"name", CutName(hello.name)},
                {"id", hello.id},  {"key", hello.key},         {"known", hello.known}};
    }
    json operator()(const Welcome& welcome) const {
        json members = json::array();
        for (const RoomMember& member : welcome.members) members.push_back(ToJson(member));
        return {{"kind", "welcome"},
                {"id", welcome.id},
                {"returned", welcome.returned},
                {"members", std::move(members)},
                {"known", welcome.known}};
    }
    json operator()(const Joined& joined) const {
        return {{"kind", "joined"}, {"member", ToJson(joined.member)}, {"returned", joined.returned}};
    }
    json operator()(const Left& left) const {
        return {{"kind", "left"}, {"id", left.id}, {"orderly", left.orderly}};
    }
    json operator()(const Settled& settled) const { return {{"kind", "settled"}, {"ids", settled.ids}}; }
    json operator()(const To& to) const {
        return {{"kind", "to"}, {"member", to.member}, {"payload", to.payload}};
    }
    json operator()(const From& from) const {
        return {{"kind", "from"}, {"member", from.member}, {"payload", from.payload}};
    }
    json operator()(const Leaving&) const { return {{"kind", "leaving"}}; }
    json operator()(const Refused& refused) const {
        return {{"kind", "refused"}, {"reason", CutName(refused.reason)}};
    }
    json operator()(const Unknown&) const { return {{"kind", "unknown"}}; }
};

}  // namespace

std::optional<RoomMessage> ReadRoomMessage(std::string_view line) {
    const auto isShallow = [](int depth, json::parse_event_t, json&) {
        if (depth > kDeepest) throw Malformed();
        return true;
    };
    try {
        const json object = json::parse(line, isShallow, false);
        if (!object.is_object()) return std::nullopt;
        return Read(object);
    } catch (const json::exception&) {
        return std::nullopt;
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

std::string WriteRoomMessage(const RoomMessage& message) {
    std::string line = std::visit(Writer{}, message).dump(-1, ' ', false, json::error_handler_t::replace);
    line += '\n';
    return line;
}

bool IsMemberId(std::string_view text) {
    const auto fits = [](char letter) {
        return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'f') || letter == '-';
    };
    return !text.empty() && text.size() <= kLongestId && std::all_of(text.begin(), text.end(), fits);
}

std::string CutName(std::string_view name) {
    if (name.size() <= kLongestName) return std::string(name);
    std::size_t end = kLongestName;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
    return std::string(name.substr(0, end));
}

std::string MemberIdOf(const std::string& key) {
    std::string secret = "member ";
    secret += key;
    gchar* const digest = g_compute_checksum_for_data(
        G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(secret.data()), secret.size());
    std::string id(digest, kIdLength);
    g_free(digest);
    return id;
}

}  // namespace Corvanta::Engine
