// Clients of a room in one process, over the hub that one of them has.
#include "engine/signalling/HubClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/signalling/RoomFolder.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RawConnection.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/signalling/LogLines.h"
#include "tests/engine/signalling/LoopThread.h"
#include "tests/engine/signalling/RawClient.h"
#include "tests/engine/signalling/RoomGuest.h"

namespace Corvanta::Engine {
namespace {

using namespace RoomMessages;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class HubClientTest : public ::testing::Test {
protected:
    HubClientTest() : product(temporary.path / "corvanta"), folder(RoomFolderIn(product, "room")) {}

    TemporaryFolder temporary;
    const std::filesystem::path product;
    const RoomFolder folder;
    LoopThread loop;
};

std::vector<std::string> Kinds(const RoomGuest& guest) {
    std::vector<std::string> kinds;
    for (const RoomEvent& event : guest.events.All()) kinds.push_back(event.kind);
    return kinds;
}

TEST_F(HubClientTest, OpensTheRoomAndFindsWhoIsThere) {
    RoomGuest one(loop, product);
    ASSERT_TRUE(one.Enters("one"));
    EXPECT_TRUE(one.HasHub());
    RoomGuest two(loop, product);
    ASSERT_TRUE(two.Enters("two"));
    EXPECT_FALSE(two.HasHub());
    ASSERT_TRUE(one.events.Hears("joined"));
    // Of each pair one begins: whoever found the other there.
    EXPECT_EQ(one.events.All(),
              (std::vector<RoomEvent>{{"entered", one.OwnId(), ""}, {"joined", two.OwnId(), "them two"}}));
    EXPECT_EQ(two.events.All(), (std::vector<RoomEvent>{{"entered", two.OwnId(), one.OwnId() + " "}}));
    EXPECT_EQ(two.Members(), (std::vector<RoomMember>{{one.OwnId(), "one"}}));
    EXPECT_EQ(one.Members(), (std::vector<RoomMember>{{two.OwnId(), "two"}}));
}

TEST_F(HubClientTest, IsAloneInAnotherRoom) {
    RoomGuest one(loop, product);
    RoomGuest two(loop, product);
    one.Join("one", "here");
    two.Join("two", "there");
    ASSERT_TRUE(one.events.Hears("entered"));
    ASSERT_TRUE(two.events.Hears("entered"));
    EXPECT_TRUE(one.HasHub());
    EXPECT_TRUE(two.HasHub());
    EXPECT_TRUE(one.Members().empty());
    EXPECT_TRUE(two.Members().empty());
}

TEST_F(HubClientTest, CarriesMessagesInOrder) {
    RoomGuest one(loop, product);
    RoomGuest two(loop, product);
    ASSERT_TRUE(one.Enters("one"));
    ASSERT_TRUE(two.Enters("two"));
    ASSERT_TRUE(one.events.Hears("joined"));
    for (int count = 0; count < 100; ++count) {
        EXPECT_TRUE(one.Send(two.OwnId(), "to two " + std::to_string(count)));
        EXPECT_TRUE(two.Send(one.OwnId(), "to one " + std::to_string(count)));
    }
    ASSERT_TRUE(one.events.Hears("message", two.OwnId(), 100));
    ASSERT_TRUE(two.events.Hears("message", one.OwnId(), 100));
    for (std::size_t count = 0; count < 100; ++count) {
        EXPECT_EQ(two.events.Of("message")[count].text, "to two " + std::to_string(count));
        EXPECT_EQ(one.events.Of("message")[count].text, "to one " + std::to_string(count));
    }
}

TEST_F(HubClientTest, CarriesDescriptionsButNothingThatIsTooLong) {
    RoomGuest one(loop, product);
    RoomGuest two(loop, product);
    ASSERT_TRUE(one.Enters("one"));
    ASSERT_TRUE(two.Enters("two"));
    const std::string description(std::size_t{256} * 1024, '\n');
    EXPECT_FALSE(two.Send(one.OwnId(), std::string(kLongestLine, 'x')));
    EXPECT_FALSE(two.Send(one.OwnId(), std::string(kLongestLine - 100, 'x')));
    EXPECT_FALSE(two.Send("abc", "to nobody"));
    EXPECT_FALSE(two.Send(two.OwnId(), "to myself"));
    EXPECT_FALSE(two.Send("", ""));
    EXPECT_TRUE(two.Send(one.OwnId(), description.substr(0, std::size_t{250} * 1024)));
    EXPECT_TRUE(two.Send(one.OwnId(), "after"));
    ASSERT_TRUE(one.events.HearsMessage(two.OwnId(), "after"));
    EXPECT_EQ(one.events.Count("message"), 2U);
    EXPECT_EQ(one.events.Of("message")[0].text.size(), std::size_t{250} * 1024);
    EXPECT_EQ(one.events.Count("lost"), 0U);
    EXPECT_EQ(two.events.Count("lost"), 0U);
}

TEST_F(HubClientTest, LeavesAtOnceAndHearsNoMore) {
    RoomGuest one(loop, product);
    RoomGuest two(loop, product);
    ASSERT_TRUE(one.Enters("one"));
    ASSERT_TRUE(two.Enters("two"));
    const std::string id = two.OwnId();
    two.Leave();
    ASSERT_TRUE(one.events.Hears("left", id));
    EXPECT_EQ(one.events.Of("left").front().text, "in order");
    EXPECT_EQ(two.OwnId(), "");
    EXPECT_TRUE(two.Members().empty());
    EXPECT_FALSE(two.Send(one.OwnId(), "gone"));
    EXPECT_THAT(Kinds(two), ElementsAre("entered"));
    EXPECT_TRUE(one.Members().empty());
    // And comes again as somebody else.
    ASSERT_TRUE(two.Enters("two"));
    EXPECT_NE(two.OwnId(), id);
    EXPECT_TRUE(one.events.Hears("joined", two.OwnId()));
}

TEST_F(HubClientTest, GoesOnWhenTheOneWithTheHubLeaves) {
    RoomGuest one(loop, product);
    RoomGuest two(loop, product);
    RoomGuest three(loop, product);
    ASSERT_TRUE(one.Enters("one"));
    ASSERT_TRUE(two.Enters("two"));
    ASSERT_TRUE(three.Enters("three"));
    ASSERT_TRUE(two.events.Hears("joined"));
    const std::string first = one.OwnId();
    const std::string second = two.OwnId();
    const std::string third = three.OwnId();
    one.Leave();
    for (RoomGuest* const guest : {&two, &three}) {
        EXPECT_TRUE(guest->events.Hears("back"));
        EXPECT_EQ(guest->events.Count("left"), 1U);
        EXPECT_EQ(guest->events.Count("left", first), 1U);
        EXPECT_EQ(guest->events.Of("left").front().text, "in order");
    }
    EXPECT_TRUE(two.HasHub() != three.HasHub());
    EXPECT_EQ(two.OwnId(), second);
    EXPECT_EQ(three.OwnId(), third);
    EXPECT_TRUE(two.Send(third, "still here"));
    EXPECT_TRUE(three.events.HearsMessage(second, "still here"));
    // Nobody was taken for a newcomer.
    EXPECT_EQ(two.events.Count("entered"), 1U);
    EXPECT_EQ(three.events.Count("entered"), 1U);
    EXPECT_EQ(three.events.Count("joined"), 0U);
    ASSERT_TRUE(one.Enters("one"));
    EXPECT_EQ(one.Members().size(), 2U);
}

TEST_F(HubClientTest, LeavesTheNextHubToThoseWhoWereThere) {
    RoomGuest one(loop, product);
    RoomGuest two(loop, product);
    RoomEvents events;
    std::unique_ptr<HubClient> newcomer;
    ASSERT_TRUE(one.Enters("one"));
    ASSERT_TRUE(two.Enters("two"));
    two.onEvent = [&](const std::string& kind, HubClient&) {
        if (kind != "lost") return;
        // Looks for a hub before those who have just lost theirs do.
        newcomer = std::make_unique<HubClient>(loop.Context(), NotedIn(events));
        newcomer->Join("room", "newcomer", product);
    };
    one.Leave();
    EXPECT_TRUE(events.Hears("entered"));
    EXPECT_TRUE(two.events.Hears("joined", events.Id()));
    EXPECT_TRUE(two.HasHub());
    EXPECT_EQ(two.events.Count("back"), 1U);
    EXPECT_EQ(two.events.Count("entered"), 1U);
    loop.Do([&] { newcomer.reset(); });
}

TEST_F(HubClientTest, KeepsWhatIsSentWhileThereIsNoHub) {
    RoomGuest one(loop, product);
    RoomGuest two(loop, product);
    RoomGuest three(loop, product);
    std::string third;
    std::vector<bool> taken;
    two.onEvent = [&](const std::string& kind, HubClient& client) {
        if (kind != "lost") return;
        for (int count = 0; count < 3; ++count)
            taken.push_back(client.Send(third, "kept " + std::to_string(count)));
        const std::string half(HubClient::kMostKept / 3, 'x');
        for (int count = 0; count < 3; ++count) taken.push_back(client.Send(third, half));
    };
    ASSERT_TRUE(one.Enters("one"));
    ASSERT_TRUE(two.Enters("two"));
    ASSERT_TRUE(three.Enters("three"));
    third = three.OwnId();
    ASSERT_TRUE(two.events.Hears("joined", third));
    one.Leave();
    ASSERT_TRUE(three.events.Hears("message", two.OwnId(), 5));
    const auto messages = three.events.Of("message");
    for (std::size_t count = 0; count < 3; ++count)
        EXPECT_EQ(messages[count].text, "kept " + std::to_string(count));
    EXPECT_THAT(taken, ElementsAre(true, true, true, true, true, false));
    EXPECT_EQ(messages.size(), 5U);
}

TEST_F(HubClientTest, MayLeaveOrEndInsideEachOfItsCalls) {
    for (const std::string wanted : {"entered", "joined", "left", "message", "lost", "back", "failed"}) {
        for (const bool ends : {false, true}) {
            const auto place = temporary.path / (wanted + (ends ? "-ends" : "-leaves"));
            RoomGuest one(loop, place);
            RoomGuest two(loop, place);
            RoomGuest three(loop, place);
            RoomEvents events;
            std::unique_ptr<HubClient> own;
            std::atomic<bool> isCalled = false;
            HubClientEvents told = NotedIn(events);
            const auto react = [&](const std::string& kind) {
                if (kind != wanted || isCalled) return;
                isCalled = true;
                if (ends) {
                    own.reset();
                } else {
                    own->Leave();
                }
            };
            told.onEntered = [&](const auto&, const auto&) { react("entered"); };
            told.onMemberJoined = [&](const auto&, Initiator) { react("joined"); };
            told.onMemberLeft = [&](const auto&, bool) { react("left"); };
            told.onMessage = [&](const auto&, const auto&) { react("message"); };
            told.onHubLost = [&] { react("lost"); };
            told.onHubBack = [&] { react("back"); };
            told.onFailed = [&](const auto&) { react("failed"); };
            ASSERT_TRUE(one.Enters("one"));
            if (wanted == "failed") temporary.Write("no folder", "");
            loop.Do([&] {
                own = std::make_unique<HubClient>(loop.Context(), std::move(told));
                own->Join("room", "own", wanted == "failed" ? temporary.File("no folder") : place);
            });
            if (wanted != "failed") {
                ASSERT_TRUE(one.events.Hears("joined"));
                const std::string id = one.events.Of("joined")[0].id;
                ASSERT_TRUE(two.Enters("two"));
                // The client may have left by then.
                loop.Do([] {});
                static_cast<void>(two.Send(id, "message"));
                ASSERT_TRUE(three.Enters("three"));
                three.Leave();
                ASSERT_TRUE(one.events.Hears("left", {}, 1));
                one.Leave();
            }
            EXPECT_TRUE(Eventually([&] { return isCalled.load(); })) << wanted;
            EXPECT_TRUE(wanted == "failed" || two.events.Hears("back")) << wanted;
            loop.Do([&] { own.reset(); });
        }
    }
}

TEST_F(HubClientTest, ReplacesTheSocketOfAHubThatCrashed) {
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    { RawListener(folder.socket); }
    ASSERT_TRUE(std::filesystem::is_socket(folder.socket));
    temporary.Write("hub.lock", "");
    RoomGuest one(loop, product);
    ASSERT_TRUE(one.Enters("one"));
    EXPECT_TRUE(one.HasHub());
    RoomGuest two(loop, product);
    ASSERT_TRUE(two.Enters("two"));
    EXPECT_EQ(two.Members().size(), 1U);
}

TEST_F(HubClientTest, ReplacesWhatIsNoSocket) {
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    std::filesystem::copy_file("/proc/self/status", folder.socket);
    RoomGuest one(loop, product);
    ASSERT_TRUE(one.Enters("one"));
}

TEST_F(HubClientTest, FailsWithOneLineWhereNoRoomCanBe) {
    temporary.Write("corvanta", "no folder");
    LogLines log;
    RoomGuest one(loop, product);
    one.Join("one");
    ASSERT_TRUE(one.events.Hears("failed"));
    EXPECT_THAT(Kinds(one), ElementsAre("failed"));
    const std::string line = one.events.Of("failed")[0].text;
    EXPECT_THAT(line, StartsWith("No room can be opened: "));
    EXPECT_EQ(line.find('\n'), std::string::npos);
    EXPECT_EQ(log.Count(line), 1);
    EXPECT_EQ(one.OwnId(), "");
    // It can be tried again.
    std::filesystem::remove(product);
    EXPECT_TRUE(one.Enters("one"));
}

TEST_F(HubClientTest, FailsWhereTheLockOrTheSocketCannotBeMade) {
    for (const std::string name : {"hub.lock", "hub.socket"}) {
        std::filesystem::remove_all(product);
        ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
        std::filesystem::create_directory(folder.path / name);
        RoomGuest one(loop, product);
        one.Join("one");
        ASSERT_TRUE(one.events.Hears("failed")) << name;
        EXPECT_THAT(one.events.Of("failed")[0].text, HasSubstr(name));
    }
}

// A hub that says what a test has it say.
class FakeHub final {
public:
    explicit FakeHub(const RoomFolder& folder) : lock(folder.lock) {
        EXPECT_TRUE(lock.IsHeld());
        listener = std::make_unique<RawListener>(folder.socket);
    }
    [[nodiscard]] RawClient Take() const { return RawClient(listener->Accept()); }

private:
    HubLock lock;
    std::unique_ptr<RawListener> listener;
};

// Takes the client in as "ab", beside two others, and hangs up.
void TakeAndGo(const FakeHub& hub, const RoomGuest& one) {
    RawClient client(hub.Take());
    client.Next<Hello>();
    client.Say(Welcome{"ab", false, {{"cd", "other"}, {"ef", "third"}}});
    ASSERT_TRUE(one.events.Hears("entered"));
}

TEST_F(HubClientTest, FailsWithTheWordsOfAHubOfAnotherVersion) {
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    const FakeHub hub(folder);
    LogLines log;
    RoomGuest one(loop, product);
    one.Join("one");
    RawClient client(hub.Take());
    EXPECT_EQ(client.Next<Hello>().version, kRoomVersion);
    client.Say(Refused{"This room speaks version 2"});
    ASSERT_TRUE(one.events.Hears("failed"));
    EXPECT_EQ(one.events.All(), (std::vector<RoomEvent>{{"failed", {}, "This room speaks version 2"}}));
    EXPECT_EQ(log.Count("This room speaks version 2"), 1);
    EXPECT_TRUE(client.IsEnded());
}

TEST_F(HubClientTest, LeavesAHubThatTalksNonsenseForTheNextOne) {
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    const FakeHub hub(folder);
    RoomGuest one(loop, product);
    one.Join("one");
    std::size_t round = 0;
    for (const std::string& nonsense :
         {std::string("nonsense\n"), std::string(2 * kLongestLine, 'x'), WriteRoomMessage(To{"abc", ""}),
          WriteRoomMessage(Welcome{"abc", true, {}})}) {
        RawClient client(hub.Take());
        const auto hello = client.Next<Hello>();
        EXPECT_EQ(hello.id, round == 0 ? "" : "ab");
        client.Say(Welcome{"ab", round > 0, {{"cd", "other"}}, {"cd"}});
        ++round;
        client.SayBytes("{\"kind\":\"unknown\"}\n");
        client.Say(From{"cd", "decent"});
        ASSERT_TRUE(one.events.Hears("message", "cd", round));
        client.SayBytes(nonsense);
        EXPECT_TRUE(client.IsEnded());
        EXPECT_TRUE(one.events.Hears("lost", {}, round));
    }
    EXPECT_EQ(one.events.Count("entered"), 1U);
    EXPECT_EQ(one.events.Count("back"), 3U);
    EXPECT_EQ(one.events.Count("left"), 0U);
}

TEST_F(HubClientTest, EntersAnewWhenTheOthersWereToldThatItLeft) {
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    const FakeHub hub(folder);
    RoomGuest one(loop, product);
    one.Join("one");
    ASSERT_NO_FATAL_FAILURE(TakeAndGo(hub, one));
    RawClient client(hub.Take());
    EXPECT_EQ(client.Next<Hello>().id, "ab");
    client.Say(Welcome{"ab", false, {{"cd", "other"}}});
    ASSERT_TRUE(one.events.Hears("entered", "ab", 2));
    EXPECT_THAT(Kinds(one), ElementsAre("entered", "lost", "entered"));
    EXPECT_EQ(one.events.All()[2].text, "cd ");
    // Somebody whom it knew and who is new all the same.
    client.Say(Joined{{"cd", "again"}, false});
    ASSERT_TRUE(one.events.Hears("joined"));
    EXPECT_THAT(Kinds(one), ElementsAre("entered", "lost", "entered", "left", "joined"));
}

TEST_F(HubClientTest, MeetsAnewWhoeverDoesNotKnowItAfterTheHubHasGone) {
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    const FakeHub hub(folder);
    RoomGuest one(loop, product);
    one.Join("one");
    ASSERT_NO_FATAL_FAILURE(TakeAndGo(hub, one));
    RawClient client(hub.Take());
    EXPECT_EQ(client.Next<Hello>().known, (std::vector<std::string>{"cd", "ef"}));
    // The other one was taken for a newcomer, and knows nobody.
    client.Say(Welcome{"ab", true, {{"cd", "other"}, {"ef", "third"}}, {"ef"}});
    ASSERT_TRUE(one.events.Hears("joined"));
    EXPECT_THAT(Kinds(one), ElementsAre("entered", "lost", "back", "left", "joined"));
    EXPECT_EQ(one.events.All()[3].id, "cd");
    EXPECT_EQ(one.events.All()[4], (RoomEvent{"joined", "cd", "us other"}));
}

TEST_F(HubClientTest, WaitsForAHubThatDoesNotAnswer) {
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    const FakeHub hub(folder);
    LogLines log;
    RoomGuest one(loop, product);
    one.Join("one");
    RawClient client(hub.Take());
    EXPECT_TRUE(Eventually([&] { return log.Count("does not answer") == 1; }));
    client.Next<Hello>();
    client.Say(Welcome{"ab", false, {}});
    EXPECT_TRUE(one.events.Hears("entered", "ab"));
}

TEST_F(HubClientTest, LivesThroughHandlersThatThrow) {
    RoomGuest one(loop, product);
    one.onEvent = [](const std::string&, HubClient&) { throw std::runtime_error("handler"); };
    RoomGuest two(loop, product);
    ASSERT_TRUE(one.Enters("one"));
    ASSERT_TRUE(two.Enters("two"));
    EXPECT_TRUE(one.events.Hears("joined"));
    EXPECT_TRUE(two.Send(one.OwnId(), "message"));
    EXPECT_TRUE(one.events.HearsMessage(two.OwnId(), "message"));
}

std::size_t OpenFiles() {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                                  std::filesystem::directory_iterator()));
}

TEST_F(HubClientTest, LeavesNothingBehindAfterFiftyJoinsAndLeaves) {
    RoomGuest host(loop, product);
    ASSERT_TRUE(host.Enters("host"));
    RoomGuest guest(loop, product);
    std::size_t visits = 0;
    const auto visit = [&](int times) {
        for (int count = 0; count < times; ++count) {
            ASSERT_TRUE(guest.Enters("guest"));
            const std::string id = guest.OwnId();
            EXPECT_TRUE(guest.Send(host.OwnId(), std::string(100'000, 'x')));
            guest.Leave();
            ASSERT_TRUE(host.events.Hears("left", id));
            ++visits;
        }
    };
    visit(10);
    const std::size_t files = OpenFiles();
    const auto memory = [] { return static_cast<long>(::mallinfo2().uordblks + ::mallinfo2().hblkhd); };
    const long before = memory();
    visit(50);
    EXPECT_EQ(OpenFiles(), files);
    // What the test itself has noted of each visit stays.
    const long noted = 50L * (100'000 + 2'000);
    EXPECT_LT(memory() - before, noted + 200'000);
    EXPECT_EQ(host.events.Count("left"), visits);
    EXPECT_TRUE(host.Members().empty());
}

TEST_F(HubClientTest, OpensAndClosesFiftyRooms) {
    RoomGuest guest(loop, product);
    ASSERT_TRUE(guest.Enters("guest"));
    guest.Leave();
    const std::size_t files = OpenFiles();
    for (int count = 0; count < 50; ++count) {
        ASSERT_TRUE(guest.Enters("guest"));
        EXPECT_TRUE(guest.HasHub());
        guest.Leave();
        EXPECT_FALSE(std::filesystem::exists(folder.socket));
    }
    EXPECT_EQ(OpenFiles(), files);
}

}  // namespace
}  // namespace Corvanta::Engine
