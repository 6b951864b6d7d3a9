// What participants say, on its way to the library: in order, and never before the library can make something
// of it. A mark that comes ahead of the first picture of its stream would be placed by the shape of whatever
// stands in the picture's place, and stay there. So a text that names a stream waits, and what the same
// participant says after it, until the library shows that stream or there is nothing to be shown. The
// engine's thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/connections/ParticipantList.h"
#include "engine/connections/RoomChat.h"

namespace Corvanta::Engine {

class ParticipantTexts final {
public:
    // From the moment on at which the library knows of a stream. Whatever keeps its pictures away by then
    // will do so for longer.
    static constexpr std::chrono::seconds kPicturePatience{10};
    // Of one participant, that wait for pictures at most. When there is more, nothing waits: a mark at the
    // wrong place is better than none.
    static constexpr std::size_t kMostBytesHeld = std::size_t{4} * 1024 * 1024;

    // All of them outlive it.
    ParticipantTexts(EngineLoop& engineLoop, const ParticipantList& participants, RoomChat& roomChat)
        : loop(engineLoop), list(participants), chat(roomChat) {}

    // Lines of the chat go to the host at once.
    void Take(const std::shared_ptr<RoomParticipant>& participant, std::string text);
    // The participant's channel is open, or is no longer.
    void OnChannel(const std::shared_ptr<RoomParticipant>& participant, bool isOpen);
    // The library knows of the participant now.
    void OnEntered(const std::shared_ptr<RoomParticipant>& participant);

private:
    enum class Wait { ForPictures, ForNothing };

    void OpenChannel(const std::shared_ptr<RoomParticipant>& participant);
    // False when it is too early.
    [[nodiscard]] bool HandOn(RoomParticipant& participant, const std::string& text, Wait wait) const;
    [[nodiscard]] bool NamesUnseenStream(const std::string& text) const;
    void Flush(const std::shared_ptr<RoomParticipant>& participant);
    // Looks after what waits, until nothing does.
    void LookLater();

    EngineLoop& loop;
    const ParticipantList& list;
    RoomChat& chat;
    bool isLooking = false;
};

}  // namespace Corvanta::Engine
