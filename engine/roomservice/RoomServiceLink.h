// What an open room has to do with the room service: it tells who the local user is, keeps the notes, and
// files the sessions of recordings. Any thread; nothing here waits for the service but Stop.
#pragma once

#include <string>

#include "engine/Engine.h"
#include "engine/roomservice/RoomNotes.h"
#include "engine/roomservice/RoomServiceClient.h"
#include "engine/roomservice/ServiceMessage.h"

namespace Corvanta::Engine {

class RoomServiceLink final {
public:
    // Of the options' room and service.
    explicit RoomServiceLink(const EngineOptions& options);

    // Once.
    void Start();
    // Waits a few seconds at most for what the service does not have yet. Nothing is called on return.
    void Stop();

    [[nodiscard]] RoomNotes& Notes() { return notes; }

    // Trouble is logged.
    void AddSession(const std::string& room, const RecordingSession& session);
    void EndLastSession(const std::string& room, const std::string& ended);

private:
    void Tell(HttpRequest request, const char* what);

    RoomServiceClient client;
    RoomNotes notes;
};

}  // namespace Corvanta::Engine
