#include "engine/roomservice/ServiceMessage.h"

#include <charconv>
#include <utility>

#include "engine/roomservice/FlatJson.h"

namespace Corvanta::Engine {

namespace {

using Json = nlohmann::json;

constexpr const char* kRevision = "revision";
constexpr const char* kText = "text";
constexpr const char* kId = "id";
constexpr const char* kEmail = "email";
constexpr const char* kDisplayName = "displayName";
constexpr const char* kName = "name";
constexpr const char* kBegun = "begun";
constexpr const char* kEnded = "ended";
// Digits stand for digits.
constexpr std::string_view kTimeForm = "0000-00-00T00:00:00Z";
constexpr std::size_t kMostParameters = 8;

bool ReadText(const Json& object, const char* name, std::size_t longest, std::string& text) {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_string()) return false;
    text = found->get<std::string>();
    return text.size() <= longest;
}

bool IsDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool IsTime(const std::string& text) {
    if (text.size() != kTimeForm.size()) return false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (IsDigit(kTimeForm[at]) ? !IsDigit(text[at]) : text[at] != kTimeForm[at]) return false;
    }
    return true;
}

bool ReadTime(const Json& object, const char* name, std::string& time) {
    return ReadText(object, name, kTimeForm.size(), time) && IsTime(time);
}

// -1 for what is no digit of a byte.
int HexValue(char letter) {
    if (IsDigit(letter)) return letter - '0';
    if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
    if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
    return -1;
}

std::optional<std::string> Unescape(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            result += text[at] == '+' ? ' ' : text[at];
            continue;
        }
        if (text.size() - at < 3) return std::nullopt;
        const int high = HexValue(text[at + 1]);
        const int low = HexValue(text[at + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        result += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return result;
}

std::optional<NotesText> ReadNotesOf(const std::string& json, std::size_t longest) {
    if (json.size() > kLargestNotesMessage) return std::nullopt;
    const auto object = ParseFlatObject(json);
    NotesText notes;
    if (!object || !ReadText(*object, kText, longest, notes.text)) return std::nullopt;
    const auto revision = object->find(kRevision);
    if (revision == object->end() || !revision->is_number_unsigned()) return std::nullopt;
    const auto number = revision->get<std::uint64_t>();
    // One more must be there.
    if (number >= static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
    notes.revision = static_cast<std::int64_t>(number);
    return notes;
}

Json ToObject(const RecordingSession& session) {
    Json object{{kId, session.id}, {kName, session.name}, {kBegun, session.begun}};
    if (session.ended) object[kEnded] = *session.ended;
    return object;
}

}  // namespace

std::string WriteNotes(const NotesText& notes) {
    return WriteJson(Json{{kRevision, notes.revision}, {kText, notes.text}});
}

std::string WriteProfile(const Profile& profile) {
    return WriteJson(Json{{kId, profile.id}, {kEmail, profile.email}, {kDisplayName, profile.displayName}});
}

std::string WriteSession(const RecordingSession& session) {
    return WriteJson(ToObject(session));
}

std::string WriteSessions(const std::vector<RecordingSession>& sessions) {
    Json list = Json::array();
    for (const RecordingSession& session : sessions) list.push_back(ToObject(session));
    return WriteJson(Json{{"sessions", std::move(list)}});
}

std::string WriteEnd(const std::string& ended) {
    return WriteJson(Json{{kEnded, ended}});
}

std::optional<NotesText> ReadNotes(const std::string& json) {
    return ReadNotesOf(json, kLongestNotes);
}

bool AreTooLongNotes(const std::string& json) {
    const auto notes = ReadNotesOf(json, kLargestNotesMessage);
    return notes && notes->text.size() > kLongestNotes;
}

std::optional<Profile> ReadProfile(const std::string& json) {
    const auto object = ParseFlatObject(json);
    Profile profile;
    if (!object || !ReadText(*object, kId, kLongestServiceText, profile.id) || profile.id.empty() ||
        !ReadText(*object, kEmail, kLongestServiceText, profile.email) ||
        !ReadText(*object, kDisplayName, kLongestServiceText, profile.displayName))
        return std::nullopt;
    return profile;
}

std::optional<RecordingSession> ReadSession(const std::string& json) {
    const auto object = ParseFlatObject(json);
    RecordingSession session;
    if (!object || !ReadText(*object, kId, kLongestServiceText, session.id) || session.id.empty() ||
        !ReadText(*object, kName, kLongestServiceText, session.name) ||
        !ReadTime(*object, kBegun, session.begun))
        return std::nullopt;
    if (!object->contains(kEnded)) return session;
    std::string ended;
    if (!ReadTime(*object, kEnded, ended)) return std::nullopt;
    session.ended = std::move(ended);
    return session;
}

std::optional<std::string> ReadEnd(const std::string& json) {
    const auto object = ParseFlatObject(json);
    std::string ended;
    if (!object || !ReadTime(*object, kEnded, ended)) return std::nullopt;
    return ended;
}

std::optional<std::map<std::string, std::string>> ReadQuery(std::string_view query) {
    std::map<std::string, std::string> parameters;
    while (!query.empty()) {
        const std::string_view parameter = query.substr(0, query.find('&'));
        query.remove_prefix(std::min(query.size(), parameter.size() + 1));
        if (parameter.empty()) continue;
        const std::size_t sign = parameter.find('=');
        // A name alone has no value, not an empty one.
        if (sign == std::string_view::npos) continue;
        auto name = Unescape(parameter.substr(0, sign));
        auto value = Unescape(parameter.substr(sign + 1));
        if (!name || !value || parameters.size() == kMostParameters) return std::nullopt;
        parameters.emplace(std::move(*name), std::move(*value));
    }
    return parameters;
}

std::optional<std::int64_t> ReadRevision(std::string_view text) {
    std::int64_t revision = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, revision);
    if (error != std::errc() || last != end || revision < 0) return std::nullopt;
    return revision;
}

}  // namespace Corvanta::Engine
