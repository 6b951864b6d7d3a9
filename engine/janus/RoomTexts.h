// Texts from each member of a room to all others, over a server that forwards what a member says to whoever
// hears that one at the moment, and keeps nothing. Told the time; knows nothing of the server. One thread.
//
// A member numbers its texts and remembers the last of them. Once a second, and when something changes, each
// member says what it hears of the others: under which number of the present channel, and which text it
// expects next. So everybody knows whom he reaches; one whose channel is new gets what was said while it had
// none; and whatever got lost is said again. A newcomer begins with the text that is said next.
//
//   t1 SEQUENCE OFFSET TOTAL\n...   a piece of a text (TextPieces.h), whose first byte tells its kind
//   r1 {"hears": {"MEMBER": [CHANNEL, NEXT]}, "from": {"MEMBER": [CHANNEL, FIRST]}, "sound": ..., ...}
//
// NEXT is 0 where the member does not know where to begin; "from" answers that, and tells of texts that are
// remembered no more.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/signalling/RateLimit.h"
#include "engine/signalling/TextPieces.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

struct RoomTextsEvents {
    // Puts a message of at most kLongestPiece into the own channel. False when it takes nothing more: then
    // it is tried again with the next call of Pump or Tick.
    std::function<bool(const std::string& message)> send;
    std::function<void(const std::string& memberId, std::string text)> text;
    // Texts reach the member and come from it, over a new channel; or no longer.
    std::function<void(const std::string& memberId, bool isOpen)> channel;
    // What the member's camera stream carries; when it is heard first, and when it changes.
    std::function<void(const std::string& memberId, const LocalTracks& tracks)> tracks;
    // A member has switched the sound of that stream off for all.
    std::function<void(const std::string& streamId)> mute;
};

class RoomTexts final {
public:
    using Clock = std::chrono::steady_clock;

    // What is remembered for those who do not hear us at the moment. The oldest goes first.
    static constexpr std::size_t kMostBytes = std::size_t{8} * 1024 * 1024;
    static constexpr std::size_t kMostTexts = 100'000;
    static constexpr std::size_t kMostMembers = 128;
    // How long a member may expect a text before it is said again, and how often one is begun in vain.
    static constexpr std::chrono::seconds kStall{3};
    static constexpr int kMostTries = 3;

    RoomTexts(std::string ownMemberId, RoomTextsEvents handlers);
    RoomTexts(const RoomTexts&) = delete;
    RoomTexts& operator=(const RoomTexts&) = delete;

    // To all. One beyond kLongestText is left out, with a log line.
    void Say(std::string text);
    void Mute(const std::string& streamId);
    void SetTracks(const LocalTracks& tracks);

    // Whether our own channel is open.
    void OnOwnChannel(bool isOpen);
    // Whether the channel is open over which we hear the member. `name` is for the log.
    void OnEar(const std::string& memberId, const std::string& name, bool isOpen);
    // The member has left.
    void Forget(const std::string& memberId);
    // What comes over the member's channel; whatever it is.
    void Take(const std::string& memberId, const std::string& message, Clock::time_point now);

    // To be called once a second.
    void Tick(Clock::time_point now);
    // Goes on with what waits.
    void Pump();

    // When anything of the member's came last; nothing where nothing has come over the present channel.
    [[nodiscard]] std::optional<Clock::time_point> LastHeard(const std::string& memberId) const;

private:
    struct Member {
        explicit Member(const std::string& memberName);

        std::string name;
        // Of what it says.
        bool isHeard = false;
        std::uint32_t ear = 0;
        std::uint64_t expected = 0;
        bool hasBegun = false;
        int tries = 0;
        std::unique_ptr<TextJoiner> joiner;
        RateLimit limit;
        bool limitWasLogged = false;
        std::optional<Clock::time_point> lastHeard;
        std::optional<LocalTracks> tracks;
        // Of what it hears of us.
        bool hearsUs = false;
        std::uint32_t itsEar = 0;
        std::uint64_t itsNext = 0;
        // Where it is to begin; 0 for where it expects to.
        std::uint64_t first = 0;
        Clock::time_point progress;
        bool isOpen = false;
    };
    struct Said {
        std::uint64_t sequence = 0;
        std::string text;
    };

    void Remember(char kind, std::string_view text);
    void Forward(std::uint64_t sequence);
    void Rewind(std::uint64_t sequence);
    // False when the channel does not take it.
    bool SayState();
    void TakeState(const std::string& memberId, Member& member, std::string_view text, Clock::time_point now);
    void TakeHearing(const std::string& memberId, std::uint32_t ear, std::uint64_t next,
                     Clock::time_point now);
    void TakePiece(const std::string& memberId, Member& member, const std::string& piece,
                   Clock::time_point now);
    void Deliver(const std::string& memberId, Member& member, std::string text, Clock::time_point now);
    void SetOpen(const std::string& memberId, bool isOpen);
    [[nodiscard]] Member* Find(const std::string& memberId);

    const std::string ownId;
    const RoomTextsEvents events;
    std::map<std::string, Member> members;
    LocalTracks ownTracks;
    std::uint32_t ears;

    // What was said, one number after the other, and its bytes.
    std::deque<Said> said;
    std::size_t saidBytes = 0;
    std::uint64_t nextSequence = 1;
    // What is put into the channel next: a text, and its pieces where it has begun.
    std::uint64_t cursor = 1;
    std::vector<std::string> pieces;
    std::size_t nextPiece = 0;
    bool channelIsOpen = false;
    bool isPumping = false;
    bool stateWaits = false;
    bool dropWasLogged = false;
};

}  // namespace Corvanta::Engine
