#include "engine/peer/PeerStatistics.h"

#include <gtest/gtest.h>

namespace Corvanta::Engine {
namespace {

using std::chrono::seconds;

class StatisticsRatesTest : public testing::Test {
protected:
    StatisticsRates rates;
    const StatisticsRates::Clock::time_point start = StatisticsRates::Clock::now();
    const PeerReport first{.bytesSent = 1000,
                           .bytesReceived = 2000,
                           .packetsReceived = 100,
                           .packetsLost = 5,
                           .jitterMs = 0,
                           .roundTripMs = {},
                           .remoteLossShare = {},
                           .videoCodec = {},
                           .pictures = 30};
};

TEST_F(StatisticsRatesTest, AreOfTheTimeBetweenTwoReports) {
    const PeerStatistics none = rates.Add(first, start);
    EXPECT_EQ(none.uploadRate, 0);
    EXPECT_EQ(none.lossShare, 0);
    PeerReport second = first;
    second.bytesSent += 500;
    second.bytesReceived += 1000;
    second.packetsReceived += 90;
    second.packetsLost += 10;
    second.pictures += 50;
    second.jitterMs = 3;
    const PeerStatistics statistics = rates.Add(second, start + seconds(2));
    EXPECT_DOUBLE_EQ(statistics.uploadRate, 2000);
    EXPECT_DOUBLE_EQ(statistics.downloadRate, 4000);
    EXPECT_DOUBLE_EQ(statistics.frameRate, 25);
    EXPECT_DOUBLE_EQ(statistics.lossShare, 0.1);
    EXPECT_DOUBLE_EQ(statistics.jitterMs, 3);
}

TEST_F(StatisticsRatesTest, StartAnewWithAnotherConnection) {
    (void)rates.Add(first, start);
    PeerReport other = first;
    other.bytesSent = 10;
    EXPECT_EQ(rates.Add(other, start + seconds(1)).uploadRate, 0);
    other.bytesSent = 20;
    EXPECT_DOUBLE_EQ(rates.Add(other, start + seconds(2)).uploadRate, 80);
}

TEST_F(StatisticsRatesTest, TakeLostPacketsBackThatCameLate) {
    (void)rates.Add(first, start);
    PeerReport second = first;
    second.packetsLost = -3;
    second.packetsReceived += 10;
    EXPECT_EQ(rates.Add(second, start + seconds(1)).lossShare, 0);
}

TEST_F(StatisticsRatesTest, KeepTheLastRoundTripWhereNoneIsTold) {
    PeerReport told = first;
    told.roundTripMs = 12;
    (void)rates.Add(told, start);
    EXPECT_EQ(rates.Add(first, start + seconds(1)).roundTripMs, 12);
}

}  // namespace
}  // namespace Corvanta::Engine
