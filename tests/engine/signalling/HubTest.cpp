// A hub by itself: clients that say anything over its socket.
#include "engine/signalling/Hub.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/signalling/LogLines.h"
#include "tests/engine/signalling/LoopThread.h"
#include "tests/engine/signalling/RawClient.h"

namespace Corvanta::Engine {
namespace {

using namespace RoomMessages;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using ::testing::HasSubstr;

constexpr const char* kCutsOff = "The room cuts off";

class HubTest : public ::testing::Test {
protected:
    HubTest() : folder(RoomFolderIn(temporary.path / "corvanta", "room")) {
        EXPECT_EQ(PrepareRoomFolder(folder), std::nullopt);
    }
    ~HubTest() override { Close(); }

    void Open(std::vector<std::string> expected = {}) {
        loop.Do([&] {
            std::string complaint;
            hub = Hub::Open(loop.Context(), folder, std::make_unique<HubLock>(folder.lock),
                            std::move(expected), complaint);
            EXPECT_EQ(complaint, "");
        });
        ASSERT_NE(hub, nullptr);
    }
    void Close() {
        loop.Do([this] { hub.reset(); });
    }
    [[nodiscard]] std::size_t Members() {
        std::size_t count = 0;
        loop.Do([&] { count = hub->Members(); });
        return count;
    }
    [[nodiscard]] std::size_t Clients() {
        std::size_t count = 0;
        loop.Do([&] { count = hub->Clients(); });
        return count;
    }

    TemporaryFolder temporary;
    const RoomFolder folder;
    LoopThread loop;
    std::unique_ptr<Hub> hub;
};

TEST_F(HubTest, IsOpenToItsUserAlone) {
    const mode_t before = ::umask(0);
    Open();
    ::umask(before);
    for (const auto& [path, mode] :
         {std::pair{folder.socket, 0600U}, std::pair{folder.lock, 0600U}, std::pair{folder.path, 0700U}}) {
        struct stat found {};
        ASSERT_EQ(::stat(path.c_str(), &found), 0);
        EXPECT_EQ(found.st_mode & 0777U, mode) << path;
    }
}

TEST_F(HubTest, KeepsTheLockUntilItGoes) {
    Open();
    EXPECT_FALSE(HubLock(folder.lock).IsHeld());
    Close();
    EXPECT_TRUE(HubLock(folder.lock).IsHeld());
    EXPECT_FALSE(std::filesystem::exists(folder.socket));
}

TEST_F(HubTest, TellsEachPairOnce) {
    Open();
    RawClient first(folder.socket);
    first.Say(Hello{kRoomVersion, "one", "", "1"});
    EXPECT_EQ(first.Next(), RoomMessage(Welcome{MemberIdOf("1"), false, {}}));
    RawClient second(folder.socket);
    second.Say(Hello{kRoomVersion, "two", "", "2"});
    EXPECT_EQ(second.Next(), RoomMessage(Welcome{MemberIdOf("2"), false, {{MemberIdOf("1"), "one"}}}));
    EXPECT_EQ(first.Next(), RoomMessage(Joined{{MemberIdOf("2"), "two"}, false}));
    second.Say(To{MemberIdOf("1"), "payload"});
    EXPECT_EQ(first.Next(), RoomMessage(From{MemberIdOf("2"), "payload"}));
}

TEST_F(HubTest, TellsWhenAMemberGoes) {
    Open();
    RawClient first(folder.socket);
    first.Enter("1");
    {
        RawClient second(folder.socket);
        second.Enter("2");
        EXPECT_EQ(first.Next<Joined>().member.id, MemberIdOf("2"));
    }
    EXPECT_EQ(first.Next(), RoomMessage(Left{MemberIdOf("2")}));
    EXPECT_TRUE(Eventually([this] { return Clients() == 1; }));
}

TEST_F(HubTest, TellsWhetherAMemberGoesInOrder) {
    Open();
    RawClient first(folder.socket);
    first.Enter("1");
    RawClient second(folder.socket);
    second.Enter("2");
    EXPECT_EQ(first.Next<Joined>().member.id, MemberIdOf("2"));
    second.Say(Leaving{});
    EXPECT_EQ(first.Next(), RoomMessage(Left{MemberIdOf("2"), true}));
    EXPECT_TRUE(second.IsEnded());
}

TEST_F(HubTest, CarriesWhatAMemberSaysLast) {
    Open();
    RawClient first(folder.socket);
    first.Enter("1");
    {
        RawClient second(folder.socket);
        second.Enter("2");
        second.Say(To{MemberIdOf("1"), "goodbye"});
    }
    EXPECT_EQ(first.Next<Joined>().member.id, MemberIdOf("2"));
    EXPECT_EQ(first.Next(), RoomMessage(From{MemberIdOf("2"), "goodbye"}));
    EXPECT_EQ(first.Next(), RoomMessage(Left{MemberIdOf("2")}));
}

TEST_F(HubTest, PassesOverWhatItDoesNotKnow) {
    Open();
    RawClient first(folder.socket);
    first.SayBytes("{\"kind\":\"wave\"}\n");
    EXPECT_EQ(first.Enter("1"), MemberIdOf("1"));
    first.SayBytes("{\"kind\":\"wave\",\"to\":[1]}\n");
    first.Say(To{"abc", "to nobody"});
    first.Say(To{MemberIdOf("1"), "to myself"});
    EXPECT_EQ(first.Next(), RoomMessage(From{MemberIdOf("1"), "to myself"}));
}

TEST_F(HubTest, EndsWhoeverTalksNonsenseAlone) {
    Open();
    RawClient decent(folder.socket);
    decent.Enter("1");
    for (const std::string& line :
         {std::string("hello\n"), std::string("\n"), std::string("{}\n"), std::string(1000, '\0') + "\n",
          std::string("{\"kind\":\"to\",\"member\":\"../\",\"payload\":\"\"}\n"),
          std::string(100'000, '[') + "\n", WriteRoomMessage(Left{MemberIdOf("1")}),
          WriteRoomMessage(Welcome{"abc", false, {}}), WriteRoomMessage(From{MemberIdOf("1"), ""}),
          WriteRoomMessage(Hello{kRoomVersion, "", "", "3"}), std::string(kLongestLine, 'x') + "\n",
          std::string(2 * kLongestLine, 'x')}) {
        LogLines log;
        RawClient wild(folder.socket);
        EXPECT_EQ(wild.Enter("2"), MemberIdOf("2"));
        EXPECT_EQ(decent.Next<Joined>().member.id, MemberIdOf("2"));
        wild.SayBytes(line);
        EXPECT_TRUE(wild.IsEnded()) << line.substr(0, 60);
        EXPECT_EQ(decent.Next(), RoomMessage(Left{MemberIdOf("2")})) << line.substr(0, 60);
        EXPECT_EQ(log.Count(kCutsOff), 1) << line.substr(0, 60);
    }
    // Whoever has not said hello may say nothing else.
    LogLines log;
    RawClient stranger(folder.socket);
    stranger.Say(To{MemberIdOf("1"), "no hello"});
    EXPECT_TRUE(stranger.IsEnded());
    EXPECT_EQ(log.Count(kCutsOff), 1);
    decent.Say(To{MemberIdOf("1"), "still here"});
    EXPECT_EQ(decent.Next(), RoomMessage(From{MemberIdOf("1"), "still here"}));
}

TEST_F(HubTest, CarriesALineAsLongAsAllowedAndEndsNoReceiverWithOne) {
    Open();
    RawClient receiver(folder.socket);
    receiver.Enter("1");
    RawClient sender(folder.socket);
    sender.Enter("2");
    receiver.Next();
    const std::size_t frame = WriteRoomMessage(From{MemberIdOf("2"), ""}).size();
    const std::string longest(kLongestLine - frame, 'x');
    sender.Say(To{MemberIdOf("1"), longest});
    EXPECT_EQ(receiver.Next<From>().payload.size(), longest.size());
    // What is said to the hub in a line that is just short enough is too long when it is handed on.
    const std::string most(kLongestLine - WriteRoomMessage(To{MemberIdOf("1"), ""}).size(), 'x');
    EXPECT_GT(most.size(), longest.size());
    sender.Say(To{MemberIdOf("1"), most});
    EXPECT_TRUE(sender.IsEnded());
    EXPECT_EQ(receiver.Next(), RoomMessage(Left{MemberIdOf("2")}));
}

TEST_F(HubTest, CutsALongName) {
    Open();
    RawClient first(folder.socket);
    first.Enter("1", std::string(10'000, 'n'));
    RawClient second(folder.socket);
    second.SayBytes("{\"kind\":\"hello\",\"version\":1,\"id\":\"\",\"key\":\"2\",\"name\":\"" +
                    std::string(10'000, 'm') + "\"}\n");
    EXPECT_EQ(second.Next(),
              RoomMessage(Welcome{MemberIdOf("2"), false, {{MemberIdOf("1"), std::string(256, 'n')}}}));
    EXPECT_EQ(first.Next(), RoomMessage(Joined{{MemberIdOf("2"), std::string(256, 'm')}, false}));
}

TEST_F(HubTest, RefusesAnotherVersionWithALine) {
    Open();
    LogLines log;
    for (const char* version : {"0", "2", "-5", "99999999999999"}) {
        RawClient stale(folder.socket);
        stale.SayBytes(std::string("{\"kind\":\"hello\",\"version\":") + version + "}\n");
        EXPECT_THAT(stale.Next<Refused>().reason, HasSubstr("version 1"));
        EXPECT_TRUE(stale.IsEnded());
    }
    EXPECT_EQ(log.Count("was not let into the room"), 4);
    EXPECT_EQ(Members(), 0U);
}

TEST_F(HubTest, GivesAnotherIdToWhoeverClaimsOneInUse) {
    Open();
    RawClient first(folder.socket);
    const std::string id = first.Enter("1");
    RawClient second(folder.socket);
    second.Say(Hello{kRoomVersion, "one", id, "2"});
    const auto welcome = second.Next<Welcome>();
    EXPECT_NE(welcome.id, id);
    EXPECT_TRUE(IsMemberId(welcome.id));
    EXPECT_EQ(welcome.members, (std::vector<RoomMember>{{id, "raw"}}));
    EXPECT_EQ(first.Next<Joined>().member.id, welcome.id);
    second.Say(To{id, "hello"});
    EXPECT_EQ(first.Next(), RoomMessage(From{welcome.id, "hello"}));
}

TEST_F(HubTest, TakesTheSameClientForTheNewOneWhenItComesAgain) {
    Open();
    RawClient other(folder.socket);
    other.Enter("1");
    RawClient before(folder.socket);
    const std::string id = before.Enter("2");
    EXPECT_EQ(other.Next<Joined>().member.id, id);
    RawClient after(folder.socket);
    after.Say(Hello{kRoomVersion, "raw", id, "2"});
    EXPECT_EQ(after.Next(), RoomMessage(Welcome{id, false, {{MemberIdOf("1"), "raw"}}}));
    EXPECT_TRUE(before.IsEnded());
    EXPECT_EQ(other.Next(), RoomMessage(Left{id}));
    EXPECT_EQ(other.Next<Joined>().member.id, id);
}

TEST_F(HubTest, HasMembersOfOneName) {
    Open();
    RawClient first(folder.socket);
    first.Enter("1", "same");
    RawClient second(folder.socket);
    second.Say(Hello{kRoomVersion, "same", "", "2"});
    const auto welcome = second.Next<Welcome>();
    EXPECT_EQ(welcome.members, (std::vector<RoomMember>{{MemberIdOf("1"), "same"}}));
    EXPECT_NE(welcome.id, MemberIdOf("1"));
    EXPECT_EQ(Members(), 2U);
}

TEST_F(HubTest, TakesNoMoreMembersThanItCanName) {
    Open();
    std::vector<std::unique_ptr<RawClient>> clients;
    for (std::size_t count = 0; count < kMostAtHub; ++count) {
        clients.push_back(std::make_unique<RawClient>(folder.socket));
        EXPECT_NE(clients.back()->Enter(std::to_string(count)), "") << count;
    }
    RawClient late(folder.socket);
    late.Say(Hello{kRoomVersion, "late", "", "abc"});
    EXPECT_THAT(late.Next<Refused>().reason, HasSubstr("full"));
    clients.pop_back();
    EXPECT_TRUE(Eventually([this] { return Members() == kMostAtHub - 1; }));
    EXPECT_NE(RawClient(folder.socket).Enter("abc"), "");
}

TEST_F(HubTest, KeepsNoCrowdOfTheSilent) {
    Open();
    RawClient decent(folder.socket);
    decent.Enter("1");
    std::vector<std::unique_ptr<RawClient>> silent;
    for (std::size_t count = 0; count < 3 * Hub::kMostSilent; ++count)
        silent.push_back(std::make_unique<RawClient>(folder.socket));
    RawClient late(folder.socket);
    EXPECT_NE(late.Enter("2"), "");
    EXPECT_LE(Clients(), Hub::kMostSilent + 2);
    EXPECT_TRUE(silent.front()->IsEnded());
    EXPECT_EQ(decent.Next<Joined>().member.id, MemberIdOf("2"));
    // The last of them go when their time is over.
    EXPECT_TRUE(Eventually([this] { return Clients() == 2; }));
}

TEST_F(HubTest, CutsOffAMemberThatDoesNotRead) {
    Open();
    RawClient witness(folder.socket);
    witness.Enter("1");
    RawClient deaf(folder.socket);
    deaf.Enter("2");
    RawClient sender(folder.socket);
    sender.Enter("3");
    witness.Next();
    witness.Next();
    LogLines log;
    // The hub's queue and the system's own, with the rate at which the hub reads: a second.
    std::thread talking([&] {
        const std::string payload(64U * 1024U, 'x');
        for (int count = 0; count < 48; ++count) sender.Say(To{MemberIdOf("2"), payload});
        sender.Say(To{MemberIdOf("1"), "done"});
    });
    EXPECT_EQ(witness.Next(), RoomMessage(Left{MemberIdOf("2")}));
    EXPECT_EQ(witness.Next(), RoomMessage(From{MemberIdOf("3"), "done"}));
    talking.join();
    EXPECT_EQ(log.Count(kCutsOff), 1);
    EXPECT_TRUE(deaf.IsEnded());
    EXPECT_EQ(Members(), 2U);
}

TEST_F(HubTest, ReadsSlowlyFromWhoeverSaysTooMuchAndLosesNothing) {
    Open();
    RawClient receiver(folder.socket);
    receiver.Enter("1");
    RawClient sender(folder.socket);
    sender.Enter("2");
    receiver.Next();
    constexpr int kCount = 2500;
    const auto begun = steady_clock::now();
    std::thread talking([&] {
        for (int count = 0; count < kCount; ++count) sender.Say(To{MemberIdOf("1"), std::to_string(count)});
    });
    RawClient other(folder.socket);
    other.Enter("3");
    other.Say(To{MemberIdOf("3"), "by the way"});
    other.Next();
    const auto answered = steady_clock::now() - begun;
    int expected = 0;
    while (expected < kCount) {
        const auto message = receiver.Next();
        ASSERT_TRUE(message) << expected;
        if (std::holds_alternative<Joined>(*message)) continue;
        EXPECT_EQ(*message, RoomMessage(From{MemberIdOf("2"), std::to_string(expected)}));
        ++expected;
    }
    const auto passed = steady_clock::now() - begun;
    talking.join();
    // A thousand at once, then a thousand a second; for the last block it need not wait.
    EXPECT_GE(passed, milliseconds(1000));
    EXPECT_LT(answered, passed);
}

TEST_F(HubTest, TakesThoseWhoKnewTheOneBeforeForWhomTheyWere) {
    const std::string one = MemberIdOf("1");
    const std::string two = MemberIdOf("2");
    Open({one, two, MemberIdOf("3"), MemberIdOf("4")});
    RawClient first(folder.socket);
    first.Say(Hello{kRoomVersion, "one", one, "1", {two}});
    EXPECT_EQ(first.Next(), RoomMessage(Welcome{one, true, {}}));
    RawClient second(folder.socket);
    second.Say(Hello{kRoomVersion, "two", two, "2", {one}});
    EXPECT_EQ(second.Next(), RoomMessage(Welcome{two, true, {{one, "one"}}, {one}}));
    EXPECT_EQ(first.Next(), RoomMessage(Joined{{two, "two"}, true}));
    // Not one of them, or one that does not say so.
    RawClient stranger(folder.socket);
    stranger.Say(Hello{kRoomVersion, "new", MemberIdOf("5"), "5"});
    EXPECT_FALSE(stranger.Next<Welcome>().returned);
    EXPECT_FALSE(first.Next<Joined>().returned);
    RawClient forgetful(folder.socket);
    EXPECT_EQ(forgetful.Enter("4"), MemberIdOf("4"));
    EXPECT_FALSE(first.Next<Joined>().returned);
    // The third has not come in time.
    const auto settled = first.Next<Settled>();
    EXPECT_THAT(settled.ids, ::testing::UnorderedElementsAre(one, two, MemberIdOf("4"), MemberIdOf("5")));
    RawClient late(folder.socket);
    late.Say(Hello{kRoomVersion, "three", MemberIdOf("3"), "3"});
    EXPECT_FALSE(late.Next<Welcome>().returned);
}

TEST_F(HubTest, HasTwoMeetAnewOfWhomOneDoesNotKnowTheOther) {
    const std::string one = MemberIdOf("1");
    const std::string two = MemberIdOf("2");
    const std::string three = MemberIdOf("3");
    // The one who opened it had not heard of the first yet; the second had, and the third had not.
    Open({two, three});
    RawClient first(folder.socket);
    first.Say(Hello{kRoomVersion, "one", one, "1", {two, three}});
    EXPECT_EQ(first.Next(), RoomMessage(Welcome{one, false, {}}));
    RawClient second(folder.socket);
    second.Say(Hello{kRoomVersion, "two", two, "2", {one, three}});
    EXPECT_EQ(second.Next(), RoomMessage(Welcome{two, true, {{one, "one"}}}));
    EXPECT_EQ(first.Next(), RoomMessage(Joined{{two, "two"}, false}));
    RawClient third(folder.socket);
    third.Say(Hello{kRoomVersion, "three", three, "3"});
    EXPECT_EQ(third.Next(), RoomMessage(Welcome{three, true, {{one, "one"}, {two, "two"}}}));
    EXPECT_EQ(second.Next(), RoomMessage(Joined{{three, "three"}, false}));
}

TEST_F(HubTest, SettlesAsSoonAsAllAreBack) {
    const std::string one = MemberIdOf("1");
    const std::string two = MemberIdOf("2");
    Open({one, two});
    const auto begun = steady_clock::now();
    RawClient first(folder.socket);
    first.Say(Hello{kRoomVersion, "one", one, "1", {two}});
    EXPECT_TRUE(first.Next<Welcome>().returned);
    RawClient second(folder.socket);
    second.Say(Hello{kRoomVersion, "two", two, "2", {one}});
    EXPECT_TRUE(second.Next<Welcome>().returned);
    EXPECT_TRUE(first.Next<Joined>().returned);
    EXPECT_THAT(first.Next<Settled>().ids, ::testing::UnorderedElementsAre(one, two));
    EXPECT_LT(steady_clock::now() - begun, Hub::kReturnTime);
}

TEST_F(HubTest, CannotBeOpenedWhereItsSocketCannotBe) {
    std::filesystem::create_directory(folder.socket);
    loop.Do([&] {
        std::string complaint;
        hub = Hub::Open(loop.Context(), folder, std::make_unique<HubLock>(folder.lock), {}, complaint);
        EXPECT_EQ(hub, nullptr);
        EXPECT_THAT(complaint, ::testing::StartsWith("No room can be opened: "));
    });
    EXPECT_TRUE(HubLock(folder.lock).IsHeld());
}

}  // namespace
}  // namespace Corvanta::Engine
