// The notes of the open room: what the person writes goes to the room service, what others write comes from
// it, and both are merged. What is said here about threads apart, everything runs on the client's thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "engine/Engine.h"
#include "engine/restful/HttpClient.h"
#include "engine/roomservice/NotesDrafts.h"
#include "engine/roomservice/RoomServiceClient.h"
#include "engine/roomservice/ServiceMessage.h"

namespace Corvanta::Engine {

class RoomNotes final {
public:
    using Listener = std::function<void(const std::string& text)>;

    // How long a trouble lasts until the service is asked again: from the first to the last.
    static constexpr std::chrono::milliseconds kFirstPause{250};
    static constexpr std::chrono::milliseconds kLastPause{4000};

    // The client outlives this. The listener is called on its thread.
    RoomNotes(RoomServiceClient& serviceClient, std::string roomName, Listener textListener);

    // Any thread, once: before the client starts.
    void Start();
    // Any thread, after the client has stopped: what the service does not have goes to it, which is waited
    // for, or is kept on this machine until the room is opened again.
    void Stop();

    // Any thread, from memory. See Engine.h.
    [[nodiscard]] std::string Text() const;
    [[nodiscard]] NotesStatus Status() const;
    [[nodiscard]] bool Set(const std::string& text, const std::string& writtenOn);

private:
    void Poll();
    void OnPolled(const std::optional<HttpAnswer>& answer);
    // Sends what the service does not have, unless something is under way.
    void Push();
    void OnPushed(const std::string& sent, const std::optional<HttpAnswer>& answer);
    // What became of a text that was sent; Kept when it was taken, Sending when there was another.
    [[nodiscard]] NotesStatus TakePushed(const std::string& sent, const std::optional<HttpAnswer>& answer);
    // Whether a poll was asked before the own writing, and answered with what was there before it.
    [[nodiscard]] bool IsOutdated(const NotesText& notes) const;
    // The service has this. Whether it is news.
    bool Take(const NotesText& notes);
    [[nodiscard]] HttpRequest WriteRequest(const NotesText& notes) const;
    void SetPushTrouble(std::optional<NotesStatus> status);
    // While the service does not answer, the draft follows what the person writes.
    void KeepDraft();
    void ForgetDraft();

    // With textMutex held.
    [[nodiscard]] bool IsUnsent() const { return !revision || text != base; }

    RoomServiceClient& client;
    const std::string target;
    const NotesDrafts drafts;
    const Listener listener;

    mutable std::mutex textMutex;  // guards: everything down to isClosed
    // With all own changes.
    std::string text;
    // What the service had when it was last heard of.
    std::string base;
    std::optional<std::int64_t> revision;
    bool pollFails = false;
    std::optional<NotesStatus> pushTrouble;
    bool isClosed = false;

    // What was sent last, also when nobody knows whether it has arrived.
    std::optional<std::string> lastSent;
    bool isSending = false;
    bool isPushPlanned = false;
    // What was known when the poll was sent that is under way, or was answered last.
    std::optional<std::int64_t> polledAfter;
    // A poll was answered while a text was on its way, whose own answer comes first.
    std::optional<NotesText> held;
    std::optional<NotesDraft> draft;
    std::chrono::milliseconds pollPause = kFirstPause;
    std::chrono::milliseconds pushPause = kFirstPause;
};

}  // namespace Corvanta::Engine
