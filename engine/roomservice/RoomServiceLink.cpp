#include "engine/roomservice/RoomServiceLink.h"

#include <chrono>
#include <utility>

#include "engine/common/GuardedCallback.h"
#include "engine/connections/Room.h"
#include "platform/GraphQLClient.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr std::chrono::milliseconds kPatience{10'000};

GuardedCallback<void(const std::string&)>& NotesListener() {
    static GuardedCallback<void(const std::string&)> listener;
    return listener;
}

std::string Take(GraphQLClientString* string) {
    std::string text = string->c_str();
    GraphQLClient_CStringDealloc(string);
    return text;
}

Profile LocalUser() {
    return {.id = Take(GraphQLClient_GetProfileId()),
            .email = Take(GraphQLClient_GetEmail()),
            .displayName = Take(GraphQLClient_GetDisplayName())};
}

}  // namespace

RoomServiceLink::RoomServiceLink(const EngineOptions& options)
    : client(ServiceOf(options)),
      notes(client, options.isPrivate ? std::string() : options.room,
            [](const std::string& text) { NotesListener().Call(text); }) {}

void RoomServiceLink::Start() {
    const Profile user = LocalUser();
    if (!user.id.empty())
        Tell({.method = "PUT", .target = "/profile", .body = WriteProfile(user)}, "who the user is");
    notes.Start();
    client.Start();
}

void RoomServiceLink::Stop() {
    client.Stop();
    notes.Stop();
}

void RoomServiceLink::AddSession(const std::string& room, const RecordingSession& session) {
    Tell({.method = "POST", .target = "/sessions?room=" + Escape(room), .body = WriteSession(session)},
         "a recording session");
}

void RoomServiceLink::EndLastSession(const std::string& room, const std::string& ended) {
    Tell({.method = "PUT", .target = "/sessions?room=" + Escape(room), .body = WriteEnd(ended)},
         "the end of a recording session");
}

void RoomServiceLink::Tell(HttpRequest request, const char* what) {
    client.Send(std::move(request), kPatience, [what](const auto& answer) {
        if (answer && answer->status / 100 == 2) return;
        LOG(kLogWarning, "The room service was not told %s: %s", what,
            answer ? std::to_string(answer->status).c_str() : "it does not answer");
    });
}

std::string GetNotes() {
    const auto room = Room::Current();
    return room ? room->Service().Notes().Text() : std::string();
}

NotesStatus GetNotesStatus() {
    const auto room = Room::Current();
    return room ? room->Service().Notes().Status() : NotesStatus::NoRoom;
}

bool SetNotes(const std::string& text, const std::string& writtenOn) {
    const auto room = Room::Current();
    return room != nullptr && room->Service().Notes().Set(text, writtenOn);
}

void SetNotesListener(std::function<void(const std::string& text)> listener) {
    NotesListener().Set(std::move(listener));
}

}  // namespace Corvanta::Engine
