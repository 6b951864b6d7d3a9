#include "guest/GuestScript.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Corvanta::Guest {

namespace {

using std::chrono::milliseconds;

// How much later than the guest before it one begins.
constexpr milliseconds kDrawApart{2500};
constexpr milliseconds kFirstLine{3000}, kLineApart{9000};
// Every third mark is on somebody else's stream.
constexpr std::size_t kOthersEvery = 3;

constexpr std::array<std::string_view, 12> kLines{
    "Good morning, everybody.",
    "Can we go back two seconds?",
    "I like this one better than the last.",
    "The sky is a little bright on my screen.",
    "Give me a moment, I am writing that down.",
    "Who has the newest cut?",
    "There, top left. Do you see it?",
    "That works for me.",
    "Could we have the sound a bit lower here?",
    "I have marked the place.",
    "Let us keep it and go on.",
    "Shall we look at the next one?",
};

std::mt19937 MakeRandom(const GuestRole& role) {
    std::seed_seq seed{role.seed, static_cast<std::uint32_t>(role.index)};
    return std::mt19937(seed);
}

}  // namespace

GuestScript::GuestScript(const GuestRole& guestRole)
    : role(guestRole),
      random(MakeRandom(role)),
      lineAt(kFirstLine + kLineApart * static_cast<milliseconds::rep>(role.index)),
      // One after the other begins on somebody else's stream, and with another line.
      marks(role.seed + role.index),
      lines(role.seed + role.index) {
    if (role.drawAfter) markAt = *role.drawAfter + kDrawApart * static_cast<milliseconds::rep>(role.index);
}

GuestAct GuestScript::Next() {
    return markAt && *markAt <= lineAt ? NextMark() : NextLine();
}

milliseconds GuestScript::Wait(milliseconds shortest, milliseconds longest) {
    std::uniform_int_distribution<milliseconds::rep> wait(shortest.count(), longest.count());
    return milliseconds(wait(random) * static_cast<milliseconds::rep>(std::max<std::size_t>(role.count, 1)));
}

GuestAct GuestScript::NextMark() {
    GuestAct act{.at = *markAt};
    *markAt += Wait(kShortestDrawWait, kLongestDrawWait);
    if (standing == kMostMarks) {
        --standing;
        act.kind = GuestAct::Kind::TakeBack;
        return act;
    }
    ++standing;
    if (marks++ % kOthersEvery == 0) act.othersStream = static_cast<std::uint32_t>(random());
    return act;
}

GuestAct GuestScript::NextLine() {
    GuestAct act{.kind = GuestAct::Kind::Chat, .at = lineAt};
    lineAt += Wait(kShortestChatWait, kLongestChatWait);
    act.line = kLines[lines % kLines.size()];
    // Each writes what the others have not written before.
    lines += std::max<std::size_t>(role.count, 1);
    return act;
}

std::chrono::nanoseconds ClipTimeAt(std::chrono::system_clock::time_point now,
                                    const Engine::SpeakingTurn& turn) {
    // Whole rounds of turns, so that nobody is cut off where it begins again.
    const std::chrono::nanoseconds round =
        Engine::kSpeakingTime * static_cast<std::chrono::seconds::rep>(std::max<std::size_t>(turn.count, 1));
    const std::chrono::nanoseconds period = round * std::max<long>(1, std::chrono::hours(1) / round);
    return std::chrono::nanoseconds(now.time_since_epoch()) % period;
}

}  // namespace Corvanta::Guest
