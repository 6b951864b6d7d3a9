// Texts from each member of a room to all others, over a server that forwards what a member says to whoever
// hears that one at the moment, and keeps nothing. Told the time; knows nothing of the server. One thread.
//
// A member numbers its texts and remembers the last of them. Once a second, and when something changes, each
// member says what it hears of the others: under which number of the present channel, and which text it
// expects next. So everybody knows whom he reaches; one whose channel is new gets what was said while it had
// none; and whatever got lost is said again. A newcomer begins with the text that is said next after it was
// met.
//
//   t1 SEQUENCE OFFSET TOTAL\n...   a piece of a text (TextPieces.h), whose first byte tells its kind
//   s1 {"hears": {"MEMBER": [CHANNEL, NEXT]}, "from": {"MEMBER": [CHANNEL, FIRST]}, "sound": ..., ...}
//
// NEXT is 0 where the member does not know where to begin; "from" answers that, and tells of texts that are
// remembered no more.
//
// Everybody says so few texts a second that everybody else can read them: what is more waits. Who says more
// all the same is not read further, and has to say it again. What a member may set off, by saying again and
// again that it has not heard, is bounded too, and never keeps new texts from the others.
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
    // The member has given the local user up meanwhile, and met him anew: it knows nothing of what it was
    // told before. It is not heard any more until it is forgotten and met anew here too.
    std::function<void(const std::string& memberId)> begunAnew;
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
    // Texts that are put into the channel from one Tick to the next, and as many that are said again. Fewer
    // than kMessagesPerSecond, which everybody reads.
    static constexpr int kTextsPerTick = 900;
    // Of one member: what of its states is read, and how often it may begin to hear the local user.
    static constexpr double kStatesPerSecond = 20, kMostStatesAtOnce = 200;
    static constexpr double kBeginningsPerSecond = 1, kMostBeginningsAtOnce = 5;
    // What is said again for one member: all that is remembered, twice; then little.
    static constexpr double kBytesAgainPerSecond = 64.0 * 1024, kMostBytesAgainAtOnce = 2.0 * kMostBytes;

    RoomTexts(std::string ownMemberId, RoomTextsEvents handlers);
    RoomTexts(const RoomTexts&) = delete;
    RoomTexts& operator=(const RoomTexts&) = delete;

    // To all. One beyond kLongestText is left out, with a log line.
    void Say(const std::string& text);
    void Mute(const std::string& streamId);
    void SetTracks(const LocalTracks& tracks);

    // Whether our own channel is open.
    void OnOwnChannel(bool isOpen);
    // The member is there: what is said from now on is for it too. `name` is for the log.
    void Meet(const std::string& memberId, const std::string& name);
    // Whether the channel is open over which we hear the member, which is met by that at the latest.
    void OnEar(const std::string& memberId, const std::string& name, bool isOpen);
    // The member has left.
    void Forget(const std::string& memberId);
    // What comes over the member's channel; whatever it is.
    void Take(const std::string& memberId, const std::string& message, Clock::time_point now);

    // To be called once a second.
    void Tick(Clock::time_point now);
    // Goes on with what waits.
    void Pump();

    // When anything of the member's came last, over whichever channel; nothing where nothing has come.
    [[nodiscard]] std::optional<Clock::time_point> LastHeard(const std::string& memberId) const;

private:
    struct Member {
        Member(const std::string& memberName, std::uint64_t firstForIt);

        std::string name;
        // Of what it says.
        bool isHeard = false;
        std::uint32_t ear = 0;
        std::uint64_t expected = 0;
        bool hasBegun = false;
        int tries = 0;
        std::unique_ptr<TextJoiner> joiner;
        // Holds the texts of more than one tick, which may come in a heap.
        RateLimit limit{kMessagesPerSecond, 2 * kMessagesPerSecond};
        bool limitWasLogged = false;
        RateLimit states{kStatesPerSecond, kMostStatesAtOnce};
        RateLimit beginnings{kBeginningsPerSecond, kMostBeginningsAtOnce};
        std::optional<Clock::time_point> lastHeard;
        std::optional<LocalTracks> tracks;
        // Of what it hears of us. `met`: the first text that is for it.
        const std::uint64_t met;
        RateLimit again{kBytesAgainPerSecond, kMostBytesAgainAtOnce};
        bool hasBegunAnew = false;
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

    [[nodiscard]] static std::size_t Cost(const Said& text);
    void Remember(char kind, std::string_view text);
    // Has the pieces of a text at hand that is to be put into the channel; false when none may be.
    bool HasPieces();
    void Begin(std::uint64_t sequence);
    // The text at hand is to be begun afresh, or is dropped.
    void PutBack();
    // From that text on, as far as the member's budget goes.
    void SayAgain(Member& member, std::uint64_t sequence, Clock::time_point now);
    // Whether the text, or one before it, will be put into the channel without more being done.
    [[nodiscard]] bool IsOnItsWay(std::uint64_t sequence) const;
    // False when the channel does not take it.
    bool SayState();
    void TakeState(const std::string& memberId, Member& member, std::string_view text, Clock::time_point now);
    void TakeHearing(const std::string& memberId, std::uint32_t ear, std::uint64_t next,
                     Clock::time_point now);
    void TakePiece(const std::string& memberId, Member& member, const std::string& piece,
                   Clock::time_point now);
    // Whether a text may begin that is to be handed on.
    [[nodiscard]] bool MayBegin(Member& member, Clock::time_point now);
    void Deliver(const std::string& memberId, std::string text);
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
    // What is put into the channel next, and what is said again when nothing new waits: all from `again` up
    // to `cursor`. Then the pieces of the text at hand, which is one of the two.
    std::uint64_t cursor = 1, again = 1;
    std::uint64_t atHand = 0;
    std::vector<std::string> pieces;
    std::size_t nextPiece = 0;
    int newLeft = kTextsPerTick, againLeft = kTextsPerTick;
    bool channelIsOpen = false;
    bool isPumping = false;
    bool stateWaits = false;
    bool dropWasLogged = false;
};

}  // namespace Corvanta::Engine
