// The engine's functions that the windows call, as recorders, and what they answer. A test changes the
// answers on the main thread while no stream is being started.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/Engine.h"

namespace Corvanta::Host {

struct EngineAnswers {
    std::map<Engine::DeviceKind, std::vector<std::string>> devices;
    std::vector<Engine::ScreenTarget> targets;
    std::vector<Engine::ParticipantInfo> participants;
    std::map<std::string, std::string> settings;
    // Why no stream starts; nothing lets it start.
    std::optional<std::string> shareFailure;
    bool connected = true;
    bool chatIsSent = true;
    // The room's notes. With NoRoom none are taken.
    std::string notes;
    Engine::NotesStatus notesStatus = Engine::NotesStatus::Kept;
};

[[nodiscard]] EngineAnswers& Answers();
// Everything as at the start of the program.
void ResetEngine();

// Each call that changes something, in order: "share 4 clip.mp4", "stop 4", "remove p1", "set Key value",
// "chat text", "notes text". And forgets them.
[[nodiscard]] std::vector<std::string> TakeEngineCalls();

// As if devices had come or gone.
void FireDevicesChanged();
// As if somebody had written.
void FireChatLine(const Engine::ChatLine& line);
// As if somebody had changed the room's notes to this.
void FireNotes(const std::string& text);
// As if a shared stream had ended by itself.
void EndShared(StreamType type);

}  // namespace Corvanta::Host
