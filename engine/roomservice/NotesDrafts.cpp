#include "engine/roomservice/NotesDrafts.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "engine/Engine.h"
#include "engine/restful/HttpClient.h"

namespace Corvanta::Engine {

namespace {

using Json = nlohmann::json;

constexpr const char* kDrafts = "Room.UnsentNotes";
constexpr const char* kFormerNotes = "Room.Notes";
constexpr const char* kPlace = "place";
constexpr const char* kBase = "base";
constexpr const char* kText = "text";

// The names of rooms may be any bytes.
std::string PlaceOf(const std::string& url, const std::string& room) {
    std::string place = url;
    place += ' ';
    place += Escape(room);
    return place;
}

bool IsDraft(const Json& draft) {
    if (!draft.is_object()) return false;
    for (const char* const name : {kPlace, kBase, kText}) {
        const auto found = draft.find(name);
        if (found == draft.end() || !found->is_string()) return false;
    }
    return true;
}

// The oldest first. The setting may have been changed by hand.
Json ReadDrafts() {
    const std::string setting = ReadSetting(kDrafts);
    Json drafts = Json::array();
    if (setting.empty()) return drafts;
    const Json read = Json::parse(setting, nullptr, false);
    if (!read.is_array()) return drafts;
    for (const Json& draft : read) {
        if (IsDraft(draft)) drafts.push_back(draft);
    }
    return drafts;
}

void WriteDrafts(const Json& drafts) {
    const std::string setting =
        drafts.empty() ? std::string() : drafts.dump(-1, ' ', false, Json::error_handler_t::ignore);
    if (setting != ReadSetting(kDrafts)) WriteSetting(kDrafts, setting);
}

Json Without(const Json& drafts, const std::string& place) {
    Json others = Json::array();
    for (const Json& draft : drafts) {
        if (draft.at(kPlace) != place) others.push_back(draft);
    }
    return others;
}

}  // namespace

NotesDrafts::NotesDrafts(std::string serviceUrl, std::string roomName)
    : url(std::move(serviceUrl)), room(std::move(roomName)) {}

std::optional<NotesDraft> NotesDrafts::Load() const {
    std::optional<NotesDraft> found;
    const std::string place = PlaceOf(url, room);
    const Json drafts = ReadDrafts();
    for (const Json& draft : drafts) {
        if (draft.at(kPlace) == place)
            found = NotesDraft{draft.at(kBase).get<std::string>(), draft.at(kText).get<std::string>()};
    }
    if (!TakesOver()) return found;
    const std::string former = ReadSetting(kFormerNotes);
    if (former.empty()) return found;
    if (!found) return NotesDraft{.base = {}, .text = former};
    found->text = MergeNotes({}, former, found->text);
    return found;
}

void NotesDrafts::Store(const NotesDraft& draft) const {
    const std::string place = PlaceOf(url, room);
    Json drafts = Without(ReadDrafts(), place);
    if (drafts.size() >= kMostDrafts) drafts.erase(drafts.begin());
    drafts.push_back(Json{{kPlace, place}, {kBase, draft.base}, {kText, draft.text}});
    WriteDrafts(drafts);
    if (TakesOver() && !ReadSetting(kFormerNotes).empty()) WriteSetting(kFormerNotes, {});
}

void NotesDrafts::Forget() const {
    WriteDrafts(Without(ReadDrafts(), PlaceOf(url, room)));
    if (TakesOver() && !ReadSetting(kFormerNotes).empty()) WriteSetting(kFormerNotes, {});
}

}  // namespace Corvanta::Engine
