#include "tests/host/RecordedEngine.h"

#include <functional>
#include <mutex>
#include <utility>

namespace Corvanta::Host {
namespace {

std::mutex& CallsMutex() {
    static std::mutex mutex;
    return mutex;
}

// guarded by CallsMutex
std::vector<std::string>& Calls() {
    static std::vector<std::string> calls;
    return calls;
}

// guarded by CallsMutex
std::vector<StreamType>& Shared() {
    static std::vector<StreamType> shared;
    return shared;
}

std::function<void()>& Listener() {
    static std::function<void()> listener;
    return listener;
}

std::function<void(const Engine::ChatLine&)>& ChatListener() {
    static std::function<void(const Engine::ChatLine&)> listener;
    return listener;
}

std::function<void(const std::string&)>& NotesListener() {
    static std::function<void(const std::string&)> listener;
    return listener;
}

}  // namespace

EngineAnswers& Answers() {
    static EngineAnswers answers;
    return answers;
}

void ResetEngine() {
    const std::scoped_lock lock(CallsMutex());
    Answers() = {};
    Calls().clear();
    Shared().clear();
}

std::vector<std::string> TakeEngineCalls() {
    const std::scoped_lock lock(CallsMutex());
    return std::exchange(Calls(), {});
}

void FireDevicesChanged() {
    if (Listener()) Listener()();
}

void FireChatLine(const Engine::ChatLine& line) {
    if (ChatListener()) ChatListener()(line);
}

void FireNotes(const std::string& text) {
    {
        const std::scoped_lock lock(CallsMutex());
        Answers().notes = text;
    }
    if (NotesListener()) NotesListener()(text);
}

void EndShared(StreamType type) {
    const std::scoped_lock lock(CallsMutex());
    std::erase(Shared(), type);
}

}  // namespace Corvanta::Host

namespace Corvanta::Engine {

using Host::Answers;
using Host::Calls;
using Host::CallsMutex;
using Host::Shared;

std::vector<std::string> ListDevices(DeviceKind kind) {
    return Answers().devices[kind];
}

void SetDevicesChangedListener(std::function<void()> listener) {
    Host::Listener() = std::move(listener);
}

bool SendChat(const std::string& text) {
    const std::scoped_lock lock(CallsMutex());
    if (Answers().chatIsSent) Calls().push_back("chat " + text);
    return Answers().chatIsSent;
}

void SetChatListener(std::function<void(const ChatLine&)> listener) {
    Host::ChatListener() = std::move(listener);
}

std::string GetNotes() {
    const std::scoped_lock lock(CallsMutex());
    return Answers().notes;
}

NotesStatus GetNotesStatus() {
    return Answers().notesStatus;
}

bool SetNotes(const std::string& text, const std::string& writtenOn) {
    const std::scoped_lock lock(CallsMutex());
    if (Answers().notesStatus == NotesStatus::NoRoom) return false;
    Calls().push_back("notes " + text);
    Answers().notes = MergeNotes(writtenOn, text, Answers().notes);
    return true;
}

void SetNotesListener(std::function<void(const std::string& text)> listener) {
    Host::NotesListener() = std::move(listener);
}

std::vector<ScreenTarget> ListScreenTargets() {
    return Answers().targets;
}

std::optional<std::string> ShareStream(StreamType type, const std::string& source) {
    const std::scoped_lock lock(CallsMutex());
    Calls().push_back("share " + std::to_string(static_cast<int>(type)) + " " + source);
    if (!Answers().shareFailure) {
        std::erase(Shared(), type);
        Shared().push_back(type);
    }
    return Answers().shareFailure;
}

void StopSharing(StreamType type) {
    const std::scoped_lock lock(CallsMutex());
    Calls().push_back("stop " + std::to_string(static_cast<int>(type)));
    std::erase(Shared(), type);
}

std::vector<StreamType> SharedStreams() {
    const std::scoped_lock lock(CallsMutex());
    return Shared();
}

std::vector<ParticipantInfo> ListParticipants() {
    return Answers().participants;
}

void RemoveParticipant(const std::string& streamId) {
    const std::scoped_lock lock(CallsMutex());
    Calls().push_back("remove " + streamId);
}

std::string ReadSetting(const std::string& key) {
    return Answers().settings[key];
}

void WriteSetting(const std::string& key, const std::string& value) {
    Answers().settings[key] = value;
    const std::scoped_lock lock(CallsMutex());
    Calls().push_back("set " + key + " " + value);
}

RoomStatus GetRoomStatus() {
    RoomStatus status;
    status.connected = Answers().connected;
    return status;
}

}  // namespace Corvanta::Engine
