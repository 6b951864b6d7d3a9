// The signed-in user: a profile of this machine, from the configuration where it has one. Recording sessions
// are filed with the open room's service.
#include "platform/GraphQLClient.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "engine/EngineSettings.h"
#include "engine/configuration/ConfigurationStore.h"
#include "engine/connections/Room.h"
#include "engine/roomservice/ServiceAddress.h"

namespace {

constexpr const char* kProfileIdKey = "Profile.Id";
constexpr const char* kEmailKey = "Profile.Email";
constexpr const char* kDisplayNameKey = "Profile.DisplayName";

class OwnedString final : public Corvanta::GraphQLClientString {
public:
    explicit OwnedString(std::string content) : text(std::move(content)) {}
    ~OwnedString() override = default;
    [[nodiscard]] const char* c_str() const override { return text.c_str(); }

private:
    std::string text;
};

struct LoginName {
    std::string account = "user";
    std::string fullName = "User";
};

LoginName GetLoginName() {
    LoginName name;
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, 4096> texts;
    if (::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found) != 0 || found == nullptr)
        return name;
    if (entry.pw_name != nullptr && entry.pw_name[0] != '\0') name.fullName = name.account = entry.pw_name;
    if (entry.pw_gecos != nullptr) {
        // The first of the comma-separated fields is the person's name.
        const std::string gecos(entry.pw_gecos);
        const std::string person = gecos.substr(0, gecos.find(','));
        if (!person.empty()) name.fullName = person;
    }
    return name;
}

Corvanta::GraphQLClientString* ConfiguredOr(const char* key, std::string fallback) {
    const auto stored = Corvanta::Engine::ConfigurationStore::Get().Find(key);
    if (!stored) return new OwnedString(std::move(fallback));
    return new OwnedString(Corvanta::Engine::ToText(*stored));
}

std::string TextOf(const char* text) {
    return text != nullptr ? text : "";
}

// UTC, as sessions begin.
std::string Now() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

}  // namespace

// A room of this machine asks for no credential.
std::string GraphQLClient_GetStoredToken() {
    const Corvanta::Engine::EngineOptions options = Corvanta::Engine::CurrentOptions();
    return HasOwnService(options) ? std::string() : options.serverToken;
}

Corvanta::GraphQLClientString* GraphQLClient_GetProfileId() {
    return ConfiguredOr(kProfileIdKey, "local-" + GetLoginName().account);
}

Corvanta::GraphQLClientString* GraphQLClient_GetEmail() {
    return ConfiguredOr(kEmailKey, {});
}

Corvanta::GraphQLClientString* GraphQLClient_GetDisplayName() {
    if (std::string name = Corvanta::Engine::CurrentOptions().name; !name.empty())
        return new OwnedString(std::move(name));
    return ConfiguredOr(kDisplayNameKey, GetLoginName().fullName);
}

void GraphQLClient_CreateSessionMutation(const char* roomId, const char* sessionName, const char*, bool,
                                         const char* startTime, const char* recordingId) {
    const auto room = Corvanta::Engine::Room::Current();
    if (!room || recordingId == nullptr || startTime == nullptr) return;
    room->Service().AddSession(
        TextOf(roomId), {.id = recordingId, .name = TextOf(sessionName), .begun = startTime, .ended = {}});
}

void GraphQLClient_StopCurrentRecordingMutation(const char* roomId) {
    if (const auto room = Corvanta::Engine::Room::Current())
        room->Service().EndLastSession(TextOf(roomId), Now());
}

void GraphQLClient_CStringDealloc(Corvanta::GraphQLClientString* string) {
    delete static_cast<OwnedString*>(string);
}
