#include "engine/roomservice/RoomNotes.h"

#include <algorithm>
#include <utility>

#include "engine/configuration/ConfigurationFile.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// The service answers a poll after 25 s when there is nothing to tell.
constexpr std::chrono::milliseconds kPollTimeout{35'000};
constexpr std::chrono::milliseconds kPushTimeout{10'000};
constexpr std::chrono::milliseconds kIdlePause{100};
// Others may write at the same moment, again and again.
constexpr int kLastTries = 5;

constexpr unsigned kOk = 200;
constexpr unsigned kNoContent = 204;
constexpr unsigned kConflict = 409;
constexpr unsigned kTooLarge = 413;
constexpr unsigned kFull = 507;

}  // namespace

RoomNotes::RoomNotes(RoomServiceClient& serviceClient, std::string roomName, Listener textListener)
    : client(serviceClient),
      target("/notes?room=" + Escape(roomName)),
      drafts(serviceClient.Address().url, std::move(roomName)),
      listener(std::move(textListener)) {}

void RoomNotes::Start() {
    draft = drafts.Load();
    if (draft) {
        const std::lock_guard lock(textMutex);
        base = draft->base;
        text = draft->text;
    }
    client.Post([this] {
        if (draft && listener) listener(Text());
        Poll();
    });
}

void RoomNotes::Stop() {
    for (int tries = 0; tries < kLastTries; ++tries) {
        NotesText notes;
        {
            const std::lock_guard lock(textMutex);
            if (!revision || text == base) break;
            notes = {.revision = *revision, .text = text};
        }
        lastSent = notes.text;
        const NotesStatus status = TakePushed(notes.text, SendRequest(client.Address(), WriteRequest(notes)));
        if (status != NotesStatus::Kept && status != NotesStatus::Sending) break;
    }
    NotesDraft left;
    bool isKept = false;
    {
        const std::lock_guard lock(textMutex);
        isClosed = true;
        left = {.base = base, .text = text};
        isKept = revision.has_value();
    }
    if (left.text != left.base) {
        drafts.Store(left);
        LOG(kLogWarning, "The room service does not have the last notes: they are kept for the next time");
    } else if (isKept) {
        ForgetDraft();
    }
}

std::string RoomNotes::Text() const {
    const std::lock_guard lock(textMutex);
    return text;
}

NotesStatus RoomNotes::Status() const {
    const std::lock_guard lock(textMutex);
    if (pushTrouble) return *pushTrouble;
    if (pollFails) return NotesStatus::Unreachable;
    return IsUnsent() ? NotesStatus::Sending : NotesStatus::Kept;
}

bool RoomNotes::Set(const std::string& wanted, const std::string& writtenOn) {
    if (wanted.size() > kLongestNotes || !IsStorable(wanted)) return false;
    {
        const std::lock_guard lock(textMutex);
        if (isClosed) return false;
        text = MergeNotes(writtenOn, wanted, text);
    }
    client.Post([this] { Push(); });
    return true;
}

void RoomNotes::Poll() {
    HttpRequest request{.method = "GET", .target = target, .body = {}, .largestAnswer = kLargestNotesMessage};
    {
        const std::lock_guard lock(textMutex);
        polledAfter = revision;
        if (revision) {
            request.target += "&after=";
            request.target += std::to_string(*revision);
        }
    }
    client.Send(std::move(request), kPollTimeout, [this](const auto& answer) { OnPolled(answer); });
}

void RoomNotes::OnPolled(const std::optional<HttpAnswer>& answer) {
    auto notes = answer && answer->status == kOk ? ReadNotes(answer->body) : std::nullopt;
    const bool hasFailed = !notes && (!answer || answer->status != kNoContent);
    {
        const std::lock_guard lock(textMutex);
        pollFails = hasFailed;
    }
    if (hasFailed) {
        KeepDraft();
        client.PostAfter(pollPause, [this] { Poll(); });
        pollPause = std::min(pollPause * 2, kLastPause);
        return;
    }
    pollPause = kFirstPause;
    if (notes && isSending) {
        held = std::move(notes);
        return;
    }
    const bool isNews = notes && !IsOutdated(*notes) && Take(*notes);
    Push();
    // Nobody who has nothing to tell is asked again and again.
    client.PostAfter(isNews ? std::chrono::milliseconds::zero() : kIdlePause, [this] { Poll(); });
}

bool RoomNotes::IsOutdated(const NotesText& notes) const {
    const std::lock_guard lock(textMutex);
    return revision != polledAfter && notes.revision < revision;
}

bool RoomNotes::Take(const NotesText& notes) {
    std::string merged;
    {
        const std::lock_guard lock(textMutex);
        if (revision == notes.revision) return false;
        // The own text may have arrived without an answer: what was written since is a change of it.
        merged = lastSent == notes.text ? text : MergeNotes(base, text, notes.text);
        base = notes.text;
        revision = notes.revision;
        if (merged == text) return true;
        text = merged;
    }
    if (listener) listener(merged);
    return true;
}

HttpRequest RoomNotes::WriteRequest(const NotesText& notes) const {
    return {
        .method = "PUT", .target = target, .body = WriteNotes(notes), .largestAnswer = kLargestNotesMessage};
}

void RoomNotes::Push() {
    NotesText notes;
    {
        const std::lock_guard lock(textMutex);
        if (isSending || isPushPlanned || !revision) return;
        notes = {.revision = *revision, .text = text};
        if (text == base) pushTrouble.reset();
        isSending = text != base;
    }
    if (!isSending) {
        ForgetDraft();
        return;
    }
    lastSent = notes.text;
    client.Send(WriteRequest(notes), kPushTimeout,
                [this, sent = notes.text](const auto& answer) { OnPushed(sent, answer); });
}

void RoomNotes::OnPushed(const std::string& sent, const std::optional<HttpAnswer>& answer) {
    isSending = false;
    const NotesStatus status = TakePushed(sent, answer);
    const auto notes = std::exchange(held, std::nullopt);
    if (notes && status != NotesStatus::Sending && !IsOutdated(*notes)) static_cast<void>(Take(*notes));
    if (status == NotesStatus::Unreachable || status == NotesStatus::Refused) {
        SetPushTrouble(status);
        KeepDraft();
        isPushPlanned = true;
        client.PostAfter(pushPause, [this] {
            isPushPlanned = false;
            Push();
        });
        pushPause = std::min(pushPause * 2, kLastPause);
    } else {
        SetPushTrouble(std::nullopt);
        pushPause = kFirstPause;
        Push();
    }
    if (notes) Poll();
}

NotesStatus RoomNotes::TakePushed(const std::string& sent, const std::optional<HttpAnswer>& answer) {
    if (!answer) return NotesStatus::Unreachable;
    const bool isTold = answer->status == kOk || answer->status == kConflict;
    const auto notes = isTold ? ReadNotes(answer->body) : std::nullopt;
    if (notes && answer->status == kOk) {
        const std::lock_guard lock(textMutex);
        base = sent;
        revision = notes->revision;
        return NotesStatus::Kept;
    }
    if (notes) {
        // A conflict with nothing is none.
        return Take(*notes) ? NotesStatus::Sending : NotesStatus::Unreachable;
    }
    return answer->status == kTooLarge || answer->status == kFull ? NotesStatus::Refused
                                                                  : NotesStatus::Unreachable;
}

void RoomNotes::SetPushTrouble(std::optional<NotesStatus> status) {
    const std::lock_guard lock(textMutex);
    pushTrouble = status;
}

void RoomNotes::KeepDraft() {
    NotesDraft current;
    {
        const std::lock_guard lock(textMutex);
        if (text == base) return;
        current = {.base = base, .text = text};
    }
    if (draft == current) return;
    drafts.Store(current);
    draft = std::move(current);
}

void RoomNotes::ForgetDraft() {
    if (std::exchange(draft, std::nullopt)) drafts.Forget();
}

}  // namespace Corvanta::Engine
