#include "engine/connections/ParticipantTexts.h"

#include <algorithm>
#include <utility>

#include "engine/connections/ConnectionCallbacks.h"

namespace Corvanta::Engine {

namespace {

// How often it is looked whether the pictures are there that texts wait for.
constexpr std::chrono::milliseconds kLookInterval{20};

// As the library's texts, which are JSON, name a stream.
bool Names(const std::string& text, const std::string& streamId) {
    std::string quoted = "\"";
    quoted += streamId;
    quoted += '"';
    return text.find(quoted) != std::string::npos;
}

bool IsAwaited(const RoomParticipant& participant) {
    if (!participant.hasEntered) return true;
    return participant.IsStillToBeShown() &&
           std::chrono::steady_clock::now() - participant.enteredAt < ParticipantTexts::kPicturePatience;
}

}  // namespace

void ParticipantTexts::Take(const std::shared_ptr<RoomParticipant>& participant, std::string text) {
    if (chat.Take(*participant, text) || !participant->dataPublished) return;
    TextBacklog& early = participant->earlyTexts;
    const Wait wait = early.Bytes() + text.size() > kMostBytesHeld ? Wait::ForNothing : Wait::ForPictures;
    const auto take = [&](const std::string& said) { return HandOn(*participant, said, wait); };
    if (wait == Wait::ForNothing) early.Flush(take);
    early.Send(std::move(text), take);
    LookLater();
}

void ParticipantTexts::OnChannel(const std::shared_ptr<RoomParticipant>& participant, bool isOpen) {
    if (std::exchange(participant->hasChannel, isOpen) == isOpen || !participant->hasEntered) return;
    if (isOpen) {
        OpenChannel(participant);
    } else {
        participant->channel.Close();
    }
}

void ParticipantTexts::OnEntered(const std::shared_ptr<RoomParticipant>& participant) {
    if (participant->hasChannel) OpenChannel(participant);
}

void ParticipantTexts::OpenChannel(const std::shared_ptr<RoomParticipant>& participant) {
    participant->channel.Open();
    ConnectionCallbacks::Get().participantJoined.Call();
    Flush(participant);
    LookLater();
}

bool ParticipantTexts::HandOn(RoomParticipant& participant, const std::string& text, Wait wait) const {
    if (participant.hasLeft || !participant.hasEntered || !participant.hasChannel) return false;
    if (wait == Wait::ForPictures && NamesUnseenStream(text)) return false;
    participant.channel.Deliver({participant.id, text});
    return true;
}

bool ParticipantTexts::NamesUnseenStream(const std::string& text) const {
    const ParticipantList::Snapshot all = list.Get();
    return std::ranges::any_of(*all, [&](const auto& participant) {
        return IsAwaited(*participant) && Names(text, participant->id);
    });
}

void ParticipantTexts::Flush(const std::shared_ptr<RoomParticipant>& participant) {
    participant->earlyTexts.Flush(
        [&](const std::string& text) { return HandOn(*participant, text, Wait::ForPictures); });
}

void ParticipantTexts::LookLater() {
    if (isLooking) return;
    const ParticipantList::Snapshot all = list.Get();
    if (std::ranges::all_of(*all, [](const auto& each) { return each->earlyTexts.IsEmpty(); })) return;
    isLooking = true;
    loop.PostAfter(kLookInterval, [this] {
        isLooking = false;
        const ParticipantList::Snapshot present = list.Get();
        for (const auto& participant : *present) Flush(participant);
        LookLater();
    });
}

}  // namespace Corvanta::Engine
