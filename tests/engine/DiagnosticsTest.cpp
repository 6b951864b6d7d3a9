#include "platform/Diagnostics.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "engine/diagnostics/ProcessorUsage.h"
#include "engine/diagnostics/SystemFacts.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;

constexpr const char* kRouteHead =
    "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n";

TEST(SystemFacts, NameTheDistributionForPeople) {
    EXPECT_EQ(OperatingSystemOf("NAME=\"Some\"\nPRETTY_NAME=\"Some System 12 (quick)\"\n"),
              "Some System 12 (quick)");
    EXPECT_EQ(OperatingSystemOf("ID=some\nNAME='Some System'\n"), "Some System");
    EXPECT_EQ(OperatingSystemOf("PRETTY_NAME=\"With \\\"quotes\\\"\""), "With \"quotes\"");
    EXPECT_EQ(OperatingSystemOf("PRETTY_NAME=\"\"\nID=some"), "some");
    EXPECT_EQ(OperatingSystemOf("# PRETTY_NAME\nPRETTY_NAME"), std::nullopt);
    EXPECT_EQ(OperatingSystemOf(""), std::nullopt);
    EXPECT_EQ(OperatingSystemOf(std::string("\0=\xFF\n=\n", 6)), std::nullopt);
}

TEST(SystemFacts, NameTheProcessor) {
    EXPECT_EQ(ProcessorOf("processor\t: 0\nmodel name\t: Chip 9000 @ 2.0GHz\nmodel name\t: Other\n"),
              "Chip 9000 @ 2.0GHz");
    EXPECT_EQ(ProcessorOf("processor : 0\nHardware : Board\n"), "Board");
    EXPECT_EQ(ProcessorOf("processor : 0\nmodel name :\n"), std::nullopt);
    EXPECT_EQ(ProcessorOf(""), std::nullopt);
}

TEST(SystemFacts, FindTheInterfaceOfTheDefaultRoute) {
    const std::string local = "eth1\t0000A8C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\t0\t0\t0\n";
    const std::string standard = "wlan0\t00000000\t0100A8C0\t0003\t0\t0\t0\t00000000\t0\t0\t0\n";
    EXPECT_EQ(DefaultInterfaceOf(kRouteHead + local + standard, ""), "wlan0");
    EXPECT_EQ(DefaultInterfaceOf(kRouteHead + local, ""), std::nullopt);
    const std::string zeros(32, '0');
    const std::string ending = " 00 " + zeros + " ffffffff 00000001 00000000 00200200 ";
    const std::string unreachable = zeros + " 00 " + zeros + ending + "      lo\n";
    const std::string usable = zeros + " 00 " + zeros + ending + "    eth2\n";
    EXPECT_EQ(DefaultInterfaceOf(kRouteHead, unreachable), std::nullopt);
    EXPECT_EQ(DefaultInterfaceOf(kRouteHead, unreachable + usable), "eth2");
    EXPECT_EQ(DefaultInterfaceOf("nonsense\n\n\t\t\n", "x\n"), std::nullopt);
}

TEST(SystemFacts, NameConnectionsAsPeopleDo) {
    EXPECT_EQ(ConnectionTypeOf("eth0", InterfaceKind::Wired), "Ethernet");
    EXPECT_EQ(ConnectionTypeOf("enp3s0", InterfaceKind::Wired), "Ethernet");
    EXPECT_EQ(ConnectionTypeOf("ath0", InterfaceKind::Wireless), "Wi-Fi");
    EXPECT_EQ(ConnectionTypeOf("wlp2s0", InterfaceKind::Wired), "Wi-Fi");
    EXPECT_EQ(ConnectionTypeOf("wwan0", InterfaceKind::Wired), "Mobile");
    EXPECT_EQ(ConnectionTypeOf("tun0", InterfaceKind::Wired), "VPN");
    EXPECT_EQ(ConnectionTypeOf("wg0", InterfaceKind::Wired), "VPN");
}

TEST(SystemFacts, AreEmptyOfAFileThatIsNotThere) {
    EXPECT_EQ(ReadSystemFile("/nowhere/at/all"), "");
    EXPECT_NE(ReadSystemFile("/proc/self/stat"), "");
}

TEST(ProcessorUsage, ReadsTheKernelsCounters) {
    const auto times = ParseProcessorTimes("cpu  10 20 30 400 50 6 7 8 99 99\ncpu0 1 1 1 1\n",
                                           "12 (a) b (c)) S 1 2 3 4 5 6 7 8 9 10 111 222 0 0 20\n");
    ASSERT_TRUE(times.has_value());
    EXPECT_EQ(times->total, 531U);
    EXPECT_EQ(times->busy, 81U);
    EXPECT_EQ(times->own, 333U);
}

TEST(ProcessorUsage, RefusesWhatItCannotRead) {
    const std::string system = "cpu 1 2 3 4 5 6 7 8\n";
    const std::string process = "1 (a) S 1 2 3 4 5 6 7 8 9 10 11 12";
    EXPECT_TRUE(ParseProcessorTimes(system, process).has_value());
    EXPECT_FALSE(ParseProcessorTimes("", process).has_value());
    EXPECT_FALSE(ParseProcessorTimes("cpu 1 2", process).has_value());
    EXPECT_FALSE(ParseProcessorTimes("cpu0 1 2 3 4 5 6 7 8", process).has_value());
    EXPECT_FALSE(ParseProcessorTimes(system, "").has_value());
    EXPECT_FALSE(ParseProcessorTimes(system, "1 (a) S 1 2 3").has_value());
}

TEST(ProcessorUsage, IsWrittenInPerCent) {
    EXPECT_EQ(UsageText(0, 100), "0.0%");
    EXPECT_EQ(UsageText(125, 1000), "12.5%");
    EXPECT_EQ(UsageText(1, 3), "33.3%");
    EXPECT_EQ(UsageText(100, 100), "100.0%");
    EXPECT_EQ(UsageText(101, 100), "100.0%");
    EXPECT_EQ(UsageText(5, 0), "--");
}

class Meter : public ::testing::Test {
protected:
    std::optional<ProcessorTimes> times = ProcessorTimes{1000, 100, 10};
    std::chrono::steady_clock::time_point now;
    int readings = 0;
    ProcessorMeter meter{[this] {
                             ++readings;
                             return times;
                         },
                         [this] { return now; }};
};

TEST_F(Meter, KnowsNothingBeforeItsSecondReading) {
    EXPECT_EQ(meter.Get().system, "--");
    EXPECT_EQ(meter.Get().own, "--");
    EXPECT_EQ(readings, 1);
}

TEST_F(Meter, TellsTheUsageBetweenTwoReadings) {
    static_cast<void>(meter.Get());
    now += milliseconds(1000);
    times = ProcessorTimes{1200, 150, 15};
    EXPECT_EQ(meter.Get().system, "25.0%");
    EXPECT_EQ(meter.Get().own, "2.5%");
}

TEST_F(Meter, KeepsItsFigureForAMoment) {
    static_cast<void>(meter.Get());
    now += milliseconds(1000);
    times = ProcessorTimes{1200, 150, 15};
    static_cast<void>(meter.Get());
    now += milliseconds(999);
    times = ProcessorTimes{1300, 250, 115};
    EXPECT_EQ(meter.Get().system, "25.0%");
    now += milliseconds(1);
    EXPECT_EQ(meter.Get().system, "100.0%");
    EXPECT_EQ(readings, 3);
}

TEST_F(Meter, SurvivesCountersThatFailOrRunBackwards) {
    static_cast<void>(meter.Get());
    now += milliseconds(1000);
    times = ProcessorTimes{10, 1, 1};
    EXPECT_EQ(meter.Get().system, "--");
    now += milliseconds(1000);
    times = std::nullopt;
    EXPECT_EQ(meter.Get().system, "--");
    now += milliseconds(1000);
    times = ProcessorTimes{100, 10, 10};
    EXPECT_EQ(meter.Get().own, "--");
    now += milliseconds(1000);
    times = ProcessorTimes{200, 60, 20};
    EXPECT_EQ(meter.Get().own, "10.0%");
}

TEST(Diagnostics, KnowsThisMachine) {
    EXPECT_NE(Diagnostics_GetOperatingSystem(), "");
    EXPECT_NE(Diagnostics_GetPlatformVersion(), "");
    EXPECT_NE(Diagnostics_GetCPUType(), "");
    EXPECT_NE(Diagnostics_GetConnectionType(), "");
    EXPECT_EQ(Diagnostics_GetPlatformVersion().substr(0, 6), "Linux ");
}

TEST(Diagnostics, AnswersAllThreadsAtOnce) {
    std::vector<std::thread> threads;
    for (int index = 0; index < 8; ++index) {
        threads.emplace_back([] {
            for (int round = 0; round < 50; ++round) {
                EXPECT_NE(Diagnostics_GetCPUSystemUsage(), "");
                EXPECT_NE(Diagnostics_GetCPUAppUsage(), "");
                EXPECT_NE(Diagnostics_GetConnectionType(), "");
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    Diagnostics_Report(static_cast<int32_t>(DiagnosticsReport::VideoOutOfStep));
}

}  // namespace
}  // namespace Corvanta::Engine
