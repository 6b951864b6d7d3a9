#include "guest/GuestScript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace Corvanta::Guest {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using std::chrono::system_clock;

constexpr int kManyActs = 300;

std::vector<GuestAct> ActsOf(const GuestRole& role) {
    GuestScript script(role);
    std::vector<GuestAct> acts;
    acts.reserve(kManyActs);
    for (int i = 0; i < kManyActs; ++i) acts.push_back(script.Next());
    return acts;
}

std::vector<GuestAct> OfKind(const std::vector<GuestAct>& acts, GuestAct::Kind kind) {
    std::vector<GuestAct> chosen;
    std::ranges::copy_if(acts, std::back_inserter(chosen),
                         [&](const GuestAct& act) { return act.kind == kind; });
    return chosen;
}

TEST(GuestScript, GivesTheSameActsForTheSameRole) {
    const GuestRole role{.seed = 7, .index = 1, .count = 3};
    EXPECT_EQ(ActsOf(role), ActsOf(role));
}

TEST(GuestScript, GivesOtherActsForAnotherSeedAndAnotherPlace) {
    const GuestRole role{.seed = 7, .index = 1, .count = 3};
    GuestRole otherSeed = role;
    otherSeed.seed = 8;
    GuestRole otherPlace = role;
    otherPlace.index = 2;
    EXPECT_NE(ActsOf(role), ActsOf(otherSeed));
    EXPECT_NE(ActsOf(role), ActsOf(otherPlace));
}

TEST(GuestScript, GoesForwardInTime) {
    const auto acts = ActsOf({.seed = 3, .index = 2, .count = 3});
    EXPECT_TRUE(std::ranges::is_sorted(acts, {}, &GuestAct::at));
    EXPECT_LT(acts.front().at, acts.back().at);
}

TEST(GuestScript, DrawsWithinTheFirstTenSecondsWithThreeGuests) {
    for (std::size_t index = 0; index < 3; ++index) {
        const auto marks = OfKind(ActsOf({.index = index, .count = 3}), GuestAct::Kind::Draw);
        EXPECT_GE(marks.front().at, 5s);
        EXPECT_LE(marks.front().at, 10s) << index;
    }
}

TEST(GuestScript, BeginsToDrawWhenItIsAskedTo) {
    const auto marks = OfKind(ActsOf({.drawAfter = 0ms}), GuestAct::Kind::Draw);
    EXPECT_EQ(marks.front().at, 0ms);
}

TEST(GuestScript, NeverDrawsWhenItIsAskedNotTo) {
    const auto acts = ActsOf({.drawAfter = std::nullopt});
    EXPECT_EQ(OfKind(acts, GuestAct::Kind::Chat).size(), acts.size());
}

TEST(GuestScript, TakesAMarkBackBeforeThereAreTooMany) {
    std::size_t standing = 0;
    std::size_t most = 0;
    for (const GuestAct& act : ActsOf({})) {
        if (act.kind == GuestAct::Kind::Draw) ++standing;
        if (act.kind == GuestAct::Kind::TakeBack) {
            ASSERT_GT(standing, 0U);
            --standing;
        }
        most = std::max(most, standing);
    }
    EXPECT_EQ(most, GuestScript::kMostMarks);
}

TEST(GuestScript, DrawsOnItsOwnStreamAndOnOthers) {
    const auto marks = OfKind(ActsOf({}), GuestAct::Kind::Draw);
    const auto own = std::ranges::count_if(marks, [](const GuestAct& act) { return !act.othersStream; });
    EXPECT_GT(own, 0);
    EXPECT_LT(own, std::ssize(marks));
}

TEST(GuestScript, LeavesMoreTimeBetweenTheActsOfOneWhereThereAreMore) {
    for (const std::size_t count : {1U, 3U, 16U}) {
        const auto waits = static_cast<milliseconds::rep>(count);
        const auto acts = ActsOf({.count = count});
        const auto lines = OfKind(acts, GuestAct::Kind::Chat);
        for (std::size_t i = 1; i < lines.size(); ++i) {
            EXPECT_GE(lines[i].at - lines[i - 1].at, GuestScript::kShortestChatWait * waits);
            EXPECT_LE(lines[i].at - lines[i - 1].at, GuestScript::kLongestChatWait * waits);
        }
        auto marks = acts;
        std::erase_if(marks, [](const GuestAct& act) { return act.kind == GuestAct::Kind::Chat; });
        for (std::size_t i = 1; i < marks.size(); ++i) {
            EXPECT_GE(marks[i].at - marks[i - 1].at, GuestScript::kShortestDrawWait * waits);
            EXPECT_LE(marks[i].at - marks[i - 1].at, GuestScript::kLongestDrawWait * waits);
        }
    }
}

TEST(GuestScript, WritesWhatTheOthersDoNot) {
    std::set<std::string> first;
    for (std::size_t index = 0; index < 3; ++index) {
        const auto lines = OfKind(ActsOf({.index = index, .count = 3}), GuestAct::Kind::Chat);
        EXPECT_FALSE(lines.front().line.empty());
        EXPECT_NE(lines[0].line, lines[1].line);
        first.insert(lines[0].line);
    }
    EXPECT_EQ(first.size(), 3U);
}

TEST(GuestScript, SpeaksInItsTurn) {
    const GuestScript script({.index = 2, .count = 3});
    EXPECT_EQ(script.Turn().index, 2U);
    EXPECT_EQ(script.Turn().count, 3U);
}

TEST(GuestClipTime, LetsOneAfterTheOtherSpeakAlsoWhereItBeginsAgain) {
    for (const std::size_t count : {1U, 3U, 7U, 16U}) {
        const Engine::SpeakingTurn turn{.index = 0, .count = count};
        std::size_t before = count;
        bool hasBegunAgain = false;
        std::chrono::nanoseconds timeBefore{0};
        for (auto now = system_clock::time_point(492000h); now < system_clock::time_point(492003h);
             now += Engine::kSpeakingTime) {
            const auto time = ClipTimeAt(now, turn);
            ASSERT_GE(time, 0ns);
            ASSERT_LE(time, 1h);
            hasBegunAgain = hasBegunAgain || time < timeBefore;
            timeBefore = time;
            const auto speaker = static_cast<std::size_t>(time / Engine::kSpeakingTime) % count;
            if (before < count) {
                ASSERT_EQ(speaker, (before + 1) % count) << count;
            }
            before = speaker;
        }
        EXPECT_TRUE(hasBegunAgain);
    }
}

}  // namespace
}  // namespace Corvanta::Guest
