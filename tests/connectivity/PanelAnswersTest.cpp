// What a panel shows of its participant: figures of its own when it is local, answers of the service when it
// is remote.
#include <gmock/gmock.h>

#include <limits>

#include "tests/connectivity/PanelTest.h"

namespace Corvanta::Connectivity {
namespace {

using Testing::Barrier;
using Testing::Call;
using Testing::Calls;
using ::testing::Each;
using ::testing::ElementsAre;
using Testing::Fake;
using Testing::FakeResults;
using ::testing::IsEmpty;
using Testing::kReceiveCall;
using ::testing::Pair;
using ::testing::SizeIs;
using ::testing::StartsWith;

class PanelAnswers : public Testing::PanelTest {
protected:
    PanelAnswers() {
        Fake().Set([](FakeResults& results) {
            results.connectivityResponse = {.timestamp = "then",
                                            .download = 125000.0,
                                            .profileId = "their profile",
                                            .roundTrip = 31,
                                            .upload = 250000.0,
                                            .jitter = 4,
                                            .connectionType = "Wi-Fi",
                                            .cpuType = "Their chip",
                                            .cpuAppUsage = "1.5%",
                                            .cpuSystemUsage = "2.5%",
                                            .platformVersion = "6.1",
                                            .operatingSystem = "Theirs",
                                            .streamId = "you"};
        });
    }

    void OpenRemote() {
        MakeRemote().SetVisible(true);
        Update();
    }
    // The first refresh only asks.
    void OpenRemoteWithAnswer() {
        OpenRemote();
        TurnMs(3001);
        Update();
        WaitForRequests(1);
        TakeAnswer();
    }
    void ExpectAllUnknown() {
        const auto shown = Shown();
        EXPECT_THAT(shown, SizeIs(10));
        EXPECT_THAT(shown, Each(Pair(::testing::_, "--")));
    }
};

TEST_F(PanelAnswers, OfALocalPanelBeginWithItsMachinesLastingFacts) {
    MakeLocal().SetVisible(true);
    Update();
    EXPECT_THAT(Shown(),
                ElementsAre(Pair("CONNECTION TYPE", "Ethernet"), Pair("CPU APP USAGE", "--"),
                            Pair("CPU SYSTEM USAGE", "--"), Pair("CPU TYPE", "Processor 1"),
                            Pair("DOWNLOAD SPEED", "--"), Pair("JITTER", "--"),
                            Pair("OPERATING SYSTEM", "Operating System 1"), Pair("ROUND TRIP TIME", "--"),
                            Pair("SYSTEM VERSION", "Version 1"), Pair("UPLOAD SPEED", "--")));
}

TEST_F(PanelAnswers, OfALocalPanelTakeStatisticsInTheNextUpdate) {
    MakeLocal().SetVisible(true);
    Update();
    Panel().GetConnectionStats()->OnConnectionStats(1, 1'234'000.0, 2, 5'678'900.0, 3.0, 4.6, 20.4);
    EXPECT_EQ(Shown()["UPLOAD SPEED"], "--");
    Update();
    auto shown = Shown();
    EXPECT_EQ(shown["UPLOAD SPEED"], "1.234Mbps");
    EXPECT_EQ(shown["DOWNLOAD SPEED"], "5.679Mbps");
    EXPECT_EQ(shown["ROUND TRIP TIME"], "20ms");
    EXPECT_EQ(shown["JITTER"], "5ms");
}

TEST_F(PanelAnswers, OfALocalPanelKeepStatisticsThatCameWhileItWasHidden) {
    MakeLocal();
    Panel().GetConnectionStats()->OnConnectionStats(0, 8'000'000.0, 0, 0, 0, 0, 0);
    Update();
    EXPECT_EQ(Shown()["UPLOAD SPEED"], "--");
    Panel().SetVisible(true);
    Update();
    EXPECT_EQ(Shown()["UPLOAD SPEED"], "8.000Mbps");
}

TEST_F(PanelAnswers, OfALocalPanelAreRefreshedAfter3001MillisecondsAndNotAfter3000) {
    MakeLocal().SetVisible(true);
    WaitForSends(1);
    Fake().Set([](FakeResults& results) { results.connectionType = "Wi-Fi"; });
    Calls().Clear();
    TurnMs(3000);
    TurnNs(999'999);
    Update();
    EXPECT_EQ(Shown()["CPU APP USAGE"], "--");
    EXPECT_EQ(Shown()["CONNECTION TYPE"], "Ethernet");
    TurnNs(1);
    Update();
    auto shown = Shown();
    EXPECT_EQ(shown["CPU APP USAGE"], "10%");
    EXPECT_EQ(shown["CPU SYSTEM USAGE"], "20%");
    EXPECT_EQ(shown["CONNECTION TYPE"], "Wi-Fi");
    const std::vector<std::string> facts{"Diagnostics_GetCPUAppUsage", "Diagnostics_GetCPUSystemUsage",
                                         "Diagnostics_GetConnectionType"};
    EXPECT_EQ(Calls().NamesAmong(facts), facts);
}

TEST_F(PanelAnswers, AreNotRefreshedWhileThePanelIsHidden) {
    MakeLocal();
    WaitForSends(1);
    Calls().Clear();
    TurnMs(4000);
    Update();
    EXPECT_EQ(Calls().Count("Diagnostics_GetCPUAppUsage"), 0U);
}

TEST_F(PanelAnswers, AreNeverAskedForByARemotePanelThatIsNotOpened) {
    MakeRemote();
    for (int round = 0; round < 5; ++round) {
        TurnMs(4000);
        Update();
    }
    DeletePanel();
    EXPECT_THAT(Calls().All(), IsEmpty());
}

TEST_F(PanelAnswers, AreUnknownUntilTheServiceHasSpoken) {
    OpenRemote();
    ExpectAllUnknown();
    EXPECT_EQ(Calls().Count("Diagnostics_GetCPUType"), 0U);
}

TEST_F(PanelAnswers, AreAskedForAfter3001MillisecondsAndNotAfter3000) {
    OpenRemote();
    TurnMs(3000);
    Update();
    WaitUntilIdle();
    EXPECT_EQ(Calls().Count(kReceiveCall), 0U);
    TurnMs(1);
    Update();
    WaitForRequests(1);
    EXPECT_THAT(Calls().Of(kReceiveCall)[0].arguments, ElementsAre("session", "you"));
    EXPECT_NE(Calls().Of(kReceiveCall)[0].thread, std::this_thread::get_id());
}

TEST_F(PanelAnswers, AreShownAndAskedForAgain) {
    OpenRemoteWithAnswer();
    EXPECT_THAT(Shown(), ElementsAre(Pair("CONNECTION TYPE", "Wi-Fi"), Pair("CPU APP USAGE", "1.5%"),
                                     Pair("CPU SYSTEM USAGE", "2.5%"), Pair("CPU TYPE", "Their chip"),
                                     Pair("DOWNLOAD SPEED", "1.000Mbps"), Pair("JITTER", "4ms"),
                                     Pair("OPERATING SYSTEM", "Theirs"), Pair("ROUND TRIP TIME", "31ms"),
                                     Pair("SYSTEM VERSION", "6.1"), Pair("UPLOAD SPEED", "2.000Mbps")));
    EXPECT_EQ(Calls().Count(kReceiveCall), 2U);
}

TEST_F(PanelAnswers, WithoutAValueTakeTheRowAway) {
    Fake().Set([](FakeResults& results) {
        results.connectivityResponse.cpuType.clear();
        results.connectivityResponse.connectionType.clear();
    });
    OpenRemoteWithAnswer();
    auto shown = Shown();
    EXPECT_THAT(shown, SizeIs(8));
    EXPECT_EQ(shown.count("CPU TYPE"), 0U);
    EXPECT_EQ(shown.count("CONNECTION TYPE"), 0U);
}

TEST_F(PanelAnswers, AreUnknownAfterAFailedOne) {
    OpenRemoteWithAnswer();
    Fake().Set([](FakeResults& results) { results.connectivityStatus = 0; });
    // The answer under way may still be a good one.
    TakeAnswer();
    TakeAnswer();
    ExpectAllUnknown();
    Fake().Set([](FakeResults& results) { results.connectivityStatus = 1; });
    TakeAnswer();
    TakeAnswer();
    EXPECT_EQ(Shown()["JITTER"], "4ms");
}

TEST_F(PanelAnswers, AreUnknownWhenTheServiceIsDownFromTheStart) {
    Fake().Set([](FakeResults& results) { results.connectivityStatus = 2; });
    OpenRemoteWithAnswer();
    ExpectAllUnknown();
}

TEST_F(PanelAnswers, BringBackRowsThatWereAwayWhenTheyFail) {
    Fake().Set([](FakeResults& results) { results.connectivityResponse.cpuType.clear(); });
    OpenRemoteWithAnswer();
    ASSERT_THAT(Shown(), SizeIs(9));
    Fake().Set([](FakeResults& results) { results.connectivityStatus = 0; });
    TakeAnswer();
    TakeAnswer();
    ExpectAllUnknown();
}

TEST_F(PanelAnswers, ThatAreNoResponseAtAllCountAsFailed) {
    Fake().Set([](FakeResults& results) { results.connectivityResponseMissing = true; });
    OpenRemoteWithAnswer();
    ExpectAllUnknown();
    EXPECT_EQ(Calls().Count("RESTApi_ResponseGetStatus"), 0U);
}

TEST_F(PanelAnswers, ThatThrowCountAsFailed) {
    Calls().ThrowFrom(kReceiveCall, 5);
    OpenRemoteWithAnswer();
    ExpectAllUnknown();
    Calls().OnCall(kReceiveCall, [](const Call&) { throw std::runtime_error("no network"); });
    TakeAnswer();
    TakeAnswer();
    ExpectAllUnknown();
}

TEST_F(PanelAnswers, ThatAreLateAreWaitedForInTheBackgroundAlone) {
    Barrier barrier;
    Calls().OnCall(kReceiveCall, [&](const Call&) { barrier.Pass(); });
    OpenRemote();
    TurnMs(3001);
    Update();
    WaitForRequests(1);
    for (int round = 0; round < 20; ++round) {
        TurnMs(3001);
        Update();
    }
    EXPECT_EQ(Calls().Count(kReceiveCall), 1U);
    ExpectAllUnknown();
    barrier.Open();
    TakeAnswer();
    EXPECT_EQ(Shown()["CPU TYPE"], "Their chip");
    DeletePanel();
}

TEST_F(PanelAnswers, ThatAreNonsenseAreShownWithoutHarm) {
    Fake().Set([](FakeResults& results) {
        results.connectivityResponse.download = std::numeric_limits<double>::quiet_NaN();
        results.connectivityResponse.upload = std::numeric_limits<double>::max();
        results.connectivityResponse.jitter = std::numeric_limits<int32_t>::min();
        results.connectivityResponse.cpuType = std::string(3'000'000, 'W');
        results.connectivityResponse.operatingSystem = "\xC3\x28\xFF\xFE broken";
        results.connectivityResponse.platformVersion = std::string("zero\0inside", 11);
        results.connectivityResponse.connectionType = "two\nlines";
    });
    OpenRemoteWithAnswer();
    auto shown = Shown();
    EXPECT_EQ(shown["DOWNLOAD SPEED"], "--");
    EXPECT_EQ(shown["UPLOAD SPEED"], "--");
    EXPECT_THAT(shown["CPU TYPE"], StartsWith("WWW"));
    EXPECT_LT(shown["CPU TYPE"].size(), 100U);
    EXPECT_THAT(shown, SizeIs(10));
}

TEST_F(PanelAnswers, OfTheLastTimeAreShownWhenThePanelIsOpenedAgain) {
    OpenRemoteWithAnswer();
    Panel().SetVisible(false);
    WaitUntilIdle();
    const size_t requests = Calls().Count(kReceiveCall);
    for (int round = 0; round < 5; ++round) {
        TurnMs(4000);
        Update();
    }
    WaitUntilIdle();
    EXPECT_EQ(Calls().Count(kReceiveCall), requests);
    Panel().SetVisible(true);
    Update();
    EXPECT_EQ(Shown()["CPU TYPE"], "Their chip");
    TakeAnswer();
    WaitUntilIdle();
    EXPECT_GT(Calls().Count(kReceiveCall), requests);
}

}  // namespace
}  // namespace Corvanta::Connectivity
