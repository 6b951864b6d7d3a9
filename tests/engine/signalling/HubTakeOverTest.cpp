// Members of a room in processes of their own that are killed and stopped.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/signalling/LogLines.h"
#include "tests/engine/signalling/LoopThread.h"
#include "tests/engine/signalling/RoomGuest.h"
#include "tests/engine/signalling/SignallingProcessHandle.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

class HubTakeOver : public ::testing::Test {
protected:
    HubTakeOver() : product(temporary.path / "corvanta"), witness(loop, product) {}

    // Processes that entered one after the other, and then the witness.
    void Gather(std::size_t count) {
        for (std::size_t index = 0; index < count; ++index) {
            processes.push_back(std::make_unique<SignallingProcess>(product));
            ASSERT_TRUE(processes.back()->Enters("process" + std::to_string(index)));
        }
        ASSERT_TRUE(witness.Enters("witness"));
        ASSERT_EQ(witness.Members().size(), count);
        for (const auto& process : processes) ASSERT_TRUE(process->events.Hears("joined", witness.OwnId()));
    }
    // Whether the two reach each other.
    [[nodiscard]] bool Talk(SignallingProcess& process, const std::string& word) {
        const std::string ownId = witness.OwnId();
        const std::string id = process.events.Id();
        process.Command("send " + ownId + " to-" + word);
        return witness.events.HearsMessage(id, "to-" + word) && witness.Send(id, "from-" + word) &&
               process.events.HearsMessage(ownId, "from-" + word);
    }

    TemporaryFolder temporary;
    const std::filesystem::path product;
    LoopThread loop;
    RoomGuest witness;
    std::vector<std::unique_ptr<SignallingProcess>> processes;
};

TEST_F(HubTakeOver, KeepsEverybodyWhenTheOneWithTheHubIsKilled) {
    ASSERT_NO_FATAL_FAILURE(Gather(3));
    const std::string ownId = witness.OwnId();
    const std::string killedId = processes[0]->events.Id();
    const auto begun = steady_clock::now();
    processes[0]->Kill();
    for (const RoomEvents* const events : {&witness.events, &processes[1]->events, &processes[2]->events})
        ASSERT_TRUE(events->Hears("back"));
    std::cout << "all back after " << duration_cast<milliseconds>(steady_clock::now() - begun).count()
              << " ms\n";
    EXPECT_EQ(witness.OwnId(), ownId);
    EXPECT_TRUE(Talk(*processes[1], "one"));
    EXPECT_TRUE(Talk(*processes[2], "two"));
    // The killed one's time to come back is over, and nobody else was ever missed.
    for (const RoomEvents* const events : {&witness.events, &processes[1]->events, &processes[2]->events}) {
        ASSERT_TRUE(events->Hears("left", killedId));
        EXPECT_EQ(events->Count("left"), 1U);
        EXPECT_EQ(events->Of("left").front().text, "");
        EXPECT_EQ(events->Count("entered"), 1U);
        EXPECT_EQ(events->Count("lost"), 1U);
    }
    std::cout << "the killed one left after "
              << duration_cast<milliseconds>(steady_clock::now() - begun).count() << " ms\n";
    EXPECT_EQ(witness.events.Count("joined"), 0U);
    EXPECT_EQ(witness.Members().size(), 2U);
}

TEST_F(HubTakeOver, TellsAtOnceOfAKilledMember) {
    ASSERT_NO_FATAL_FAILURE(Gather(2));
    processes[1]->Kill();
    EXPECT_TRUE(witness.events.Hears("left", processes[1]->events.Id()));
    EXPECT_TRUE(processes[0]->events.Hears("left", processes[1]->events.Id()));
    EXPECT_EQ(witness.events.Count("lost"), 0U);
}

TEST_F(HubTakeOver, GoesOnFromOneToTheNext) {
    ASSERT_NO_FATAL_FAILURE(Gather(4));
    const std::string ownId = witness.OwnId();
    // Sooner than those who are missed are told as left.
    for (std::size_t index = 0; index < 4; ++index) {
        const std::size_t before = witness.events.Count("back");
        const std::size_t lost = witness.events.Count("lost");
        processes[index]->Kill();
        // Whichever of them has the hub.
        const bool hadHub =
            Eventually([&] { return witness.events.Count("lost") > lost; }, milliseconds(500));
        ASSERT_TRUE(!hadHub || witness.events.Hears("back", {}, before + 1));
    }
    for (const auto& process : processes) EXPECT_TRUE(witness.events.Hears("left", process->events.Id()));
    EXPECT_EQ(witness.OwnId(), ownId);
    EXPECT_TRUE(witness.HasHub());
    EXPECT_TRUE(witness.Members().empty());
    SignallingProcess late(product);
    EXPECT_TRUE(late.Enters("late"));
    EXPECT_TRUE(Talk(late, "late"));
}

TEST_F(HubTakeOver, TakesANewcomerInWhileThereIsNoHub) {
    ASSERT_NO_FATAL_FAILURE(Gather(2));
    SignallingProcess late(product);
    processes[0]->Kill();
    ASSERT_TRUE(late.Enters("late"));
    ASSERT_TRUE(witness.events.Hears("joined", late.events.Id()));
    ASSERT_TRUE(processes[1]->events.Hears("joined", late.events.Id()));
    // Those who were there have come through it as who they were.
    EXPECT_EQ(witness.events.Count("entered"), 1U);
    EXPECT_EQ(processes[1]->events.Count("entered"), 1U);
    EXPECT_TRUE(Talk(late, "late"));
    EXPECT_TRUE(Talk(*processes[1], "one"));
}

TEST_F(HubTakeOver, LetsAStoppedMemberGoAndComeAgain) {
    ASSERT_NO_FATAL_FAILURE(Gather(3));
    SignallingProcess& stopped = *processes[1];
    const std::string id = stopped.events.Id();
    stopped.Stop();
    // More than the hub keeps for it.
    processes[2]->Command("flood " + id + " 3000000");
    ASSERT_TRUE(witness.events.Hears("left", id));
    ASSERT_TRUE(processes[2]->events.Hears("left", id));
    EXPECT_TRUE(Talk(*processes[2], "meanwhile"));
    stopped.Continue();
    ASSERT_TRUE(stopped.events.Hears("entered", id, 2));
    ASSERT_TRUE(witness.events.Hears("joined", id));
    ASSERT_TRUE(processes[2]->events.Hears("joined", id));
    EXPECT_EQ(witness.events.Of("joined", id)[0].text, "them process1");
    EXPECT_EQ(stopped.events.Count("lost"), 1U);
    EXPECT_EQ(stopped.events.Count("back"), 0U);
    EXPECT_TRUE(Talk(stopped, "again"));
}

TEST_F(HubTakeOver, WaitsForAStoppedMemberToWhomLittleIsSaid) {
    ASSERT_NO_FATAL_FAILURE(Gather(2));
    SignallingProcess& stopped = *processes[1];
    stopped.Stop();
    for (int count = 0; count < 100; ++count)
        EXPECT_TRUE(witness.Send(stopped.events.Id(), std::to_string(count)));
    EXPECT_TRUE(Talk(*processes[0], "meanwhile"));
    stopped.Continue();
    ASSERT_TRUE(stopped.events.Hears("message", witness.OwnId(), 100));
    EXPECT_EQ(stopped.events.Count("lost"), 0U);
    EXPECT_EQ(witness.events.Count("left"), 0U);
}

TEST_F(HubTakeOver, TakesWhoeverWasStoppedMeanwhileForANewcomer) {
    ASSERT_NO_FATAL_FAILURE(Gather(3));
    SignallingProcess& stopped = *processes[1];
    const std::string id = stopped.events.Id();
    stopped.Stop();
    processes[0]->Kill();
    ASSERT_TRUE(witness.events.Hears("left", id));
    ASSERT_TRUE(processes[2]->events.Hears("left", id));
    stopped.Continue();
    ASSERT_TRUE(stopped.events.Hears("entered", id, 2));
    ASSERT_TRUE(witness.events.Hears("joined", id));
    EXPECT_TRUE(Talk(stopped, "again"));
    EXPECT_EQ(witness.events.Count("entered"), 1U);
}

TEST_F(HubTakeOver, NamesTheStoppedProcessThatKeepsOthersOut) {
    ASSERT_NO_FATAL_FAILURE(Gather(1));
    processes[0]->Stop();
    LogLines log;
    RoomGuest late(loop, product);
    late.Join("late");
    std::string cause = "process ";
    cause += std::to_string(processes[0]->Id());
    cause += ", which has its hub, does not answer, since it is stopped";
    EXPECT_TRUE(Eventually([&] { return log.Count(cause) == 1; }));
    processes[0]->Continue();
    EXPECT_TRUE(late.events.Hears("entered"));
}

TEST_F(HubTakeOver, GoesOnWhereItWasWhenTheOneWithTheHubWasStopped) {
    ASSERT_NO_FATAL_FAILURE(Gather(2));
    processes[0]->Stop();
    for (int count = 0; count < 100; ++count)
        EXPECT_TRUE(witness.Send(processes[1]->events.Id(), std::to_string(count)));
    SignallingProcess late(product);
    late.Command("join room late");
    loop.Do([] {});
    EXPECT_EQ(late.events.Count("entered"), 0U);
    processes[0]->Continue();
    ASSERT_TRUE(processes[1]->events.Hears("message", witness.OwnId(), 100));
    ASSERT_TRUE(late.events.Hears("entered"));
    EXPECT_EQ(witness.events.Count("lost"), 0U);
    EXPECT_EQ(witness.events.Count("left"), 0U);
}

}  // namespace
}  // namespace Corvanta::Engine
