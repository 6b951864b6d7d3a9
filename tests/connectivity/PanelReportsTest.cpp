// What a local panel reports, and when.
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/connectivity/PanelTest.h"

namespace Corvanta::Connectivity {
namespace {

using Testing::Barrier;
using Testing::Call;
using Testing::Calls;
using ::testing::ElementsAre;
using Testing::Fake;
using Testing::FakeResults;
using Testing::kReceiveCall;
using Testing::kSendCall;

// Every digit is a nine.
std::string WithNines(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char letter) { return std::isdigit(letter) != 0; }, '9');
    return text;
}

class PanelReports : public Testing::PanelTest {};

TEST_F(PanelReports, BeginAtOnceAlthoughThePanelIsHidden) {
    EXPECT_FALSE(MakeLocal().visible);
    WaitForSends(1);
}

TEST_F(PanelReports, CarryTheMachinesFactsAndTheNewestFigures) {
    MakeLocal();
    WaitForSends(1);
    WaitUntilIdle();
    Panel().GetConnectionStats()->OnConnectionStats(1, 16000.0, 2, 8000.0, 3.0, 4.6, 20.4);
    TurnMs(5001);
    Update();
    WaitForSends(2);
    WaitUntilIdle();
    const Call call = Calls().Of(kSendCall)[1];
    ASSERT_EQ(call.arguments.size(), 14U);
    EXPECT_EQ(call.arguments[0], "session");
    EXPECT_EQ(WithNines(call.arguments[1]), "9999-99-99 99:99:99.9999999 UTC");
    EXPECT_EQ(call.arguments[2], Testing::ToText(1000.0));
    EXPECT_EQ(call.arguments[3], "profile");
    EXPECT_EQ(call.arguments[4], "20");
    EXPECT_EQ(call.arguments[5], Testing::ToText(2000.0));
    EXPECT_EQ(call.arguments[6], "5");
    EXPECT_THAT(
        std::vector<std::string>(call.arguments.begin() + 7, call.arguments.end()),
        ElementsAre("Ethernet", "Processor 1", "10%", "20%", "Version 1", "Operating System 1", "me"));
}

TEST_F(PanelReports, ReadTheMachinesFactsInOneOrderOnATasksThread) {
    MakeLocal();
    WaitForSends(1);
    WaitUntilIdle();
    Calls().Clear();
    TurnMs(5001);
    Update();
    WaitForSends(1);
    WaitUntilIdle();
    EXPECT_THAT(Calls().Names(),
                ElementsAre("Diagnostics_GetOperatingSystem", "Diagnostics_GetPlatformVersion",
                            "Diagnostics_GetCPUSystemUsage", "Diagnostics_GetCPUAppUsage",
                            "Diagnostics_GetCPUType", "Diagnostics_GetConnectionType", kSendCall));
    for (const Call& call : Calls().All()) EXPECT_NE(call.thread, std::this_thread::get_id());
}

TEST_F(PanelReports, FollowEachOtherAfter5001MillisecondsAndNotAfter5000) {
    MakeLocal();
    WaitForSends(1);
    WaitUntilIdle();
    TurnMs(5000);
    TurnNs(999'999);
    Update();
    WaitUntilIdle();
    EXPECT_EQ(Calls().Count("Diagnostics_GetOperatingSystem"), 2U)
        << "the constructor's, and the first report's";
    TurnNs(1);
    Update();
    WaitForSends(2);
    WaitUntilIdle();
    TurnMs(5000);
    Update();
    WaitUntilIdle();
    EXPECT_EQ(Calls().Count("Diagnostics_GetOperatingSystem"), 3U);
    TurnMs(1);
    Update();
    WaitForSends(3);
}

TEST_F(PanelReports, AreNotMadeByARemotePanel) {
    MakeRemote().SetVisible(true);
    for (int round = 0; round < 3; ++round) {
        TurnMs(6000);
        Update();
    }
    WaitForRequests(1);
    WaitUntilIdle();
    EXPECT_EQ(Calls().Count(kSendCall), 0U);
}

TEST_F(PanelReports, AskForNothing) {
    MakeLocal().SetVisible(true);
    for (int round = 0; round < 3; ++round) {
        TurnMs(6000);
        Update();
    }
    WaitForSends(1);
    WaitUntilIdle();
    EXPECT_EQ(Calls().Count(kReceiveCall), 0U);
}

TEST_F(PanelReports, AreLeftOutWhileTheOneBeforeIsUnderWay) {
    Barrier barrier;
    Calls().OnCall(kSendCall, [&](const Call&) { barrier.Pass(); });
    MakeLocal();
    WaitForSends(1);
    for (int round = 0; round < 3; ++round) {
        TurnMs(5001);
        Update();
    }
    EXPECT_EQ(Calls().Count("Diagnostics_GetCPUType"), 2U);
    EXPECT_TRUE(Panel().IsBusy());
    barrier.Open();
    EXPECT_TRUE(Testing::Eventually([&] {
        TurnMs(5001);
        Update();
        return Calls().Count(kSendCall) > 1;
    }));
    DeletePanel();
}

TEST_F(PanelReports, GoOnAfterOneThatFailed) {
    Fake().Set([](FakeResults& results) { results.connectivityLogAccepted = false; });
    Calls().ThrowFrom(kSendCall, 7);
    MakeLocal().SetVisible(true);
    WaitForSends(1);
    EXPECT_TRUE(Testing::Eventually([&] {
        TurnMs(5001);
        Update();
        return Calls().Count(kSendCall) >= 3;
    }));
}

TEST_F(PanelReports, AreWaitedForWhenThePanelGoes) {
    std::atomic<bool> isOver = false;
    Calls().OnCall(kSendCall, [&](const Call&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        isOver = true;
    });
    MakeLocal();
    WaitForSends(1);
    DeletePanel();
    EXPECT_TRUE(isOver);
}

}  // namespace
}  // namespace Corvanta::Connectivity
