#include "connectivity/ConnectivityText.h"

#include <gtest/gtest.h>

#include <limits>

namespace Corvanta::Connectivity {
namespace {

ReportTime At(int64_t steps) {
    return ReportTime(ReportTime::duration(steps));
}

TEST(ConnectivityText, ShowsARateInMegabitsWithThreeDecimals) {
    EXPECT_EQ(FormatRate(1'234'000.0), "1.234Mbps");
    EXPECT_EQ(FormatRate(125000.0 * 8), "1.000Mbps");
    EXPECT_EQ(FormatRate(0.0), "0.000Mbps");
    EXPECT_EQ(FormatRate(499.0), "0.000Mbps");
    EXPECT_EQ(FormatRate(501.0), "0.001Mbps");
    EXPECT_EQ(FormatRate(12'345'678'901.0), "12345.679Mbps");
    EXPECT_EQ(FormatRate(-1'500'000.0), "-1.500Mbps");
}

TEST(ConnectivityText, ShowsNoRateForWhatIsNoNumber) {
    EXPECT_EQ(FormatRate(std::numeric_limits<double>::quiet_NaN()), "--");
    EXPECT_EQ(FormatRate(std::numeric_limits<double>::infinity()), "--");
    EXPECT_EQ(FormatRate(-std::numeric_limits<double>::infinity()), "--");
}

TEST(ConnectivityText, ShowsEvenTheGreatestRate) {
    const std::string text = FormatRate(-std::numeric_limits<double>::max());
    EXPECT_EQ(text.substr(text.size() - 8), ".000Mbps");
    EXPECT_EQ(text.substr(0, 4), "-179");
}

TEST(ConnectivityText, ShowsTimesInMilliseconds) {
    EXPECT_EQ(FormatMilliseconds(0), "0ms");
    EXPECT_EQ(FormatMilliseconds(17), "17ms");
    EXPECT_EQ(FormatMilliseconds(std::numeric_limits<int32_t>::min()), "-2147483648ms");
}

TEST(ConnectivityText, StampsATimeInUtcWithSevenDecimals) {
    EXPECT_EQ(FormatTimestamp(At(0)), "1970-01-01 00:00:00.0000000 UTC");
    EXPECT_EQ(FormatTimestamp(At(17'092'964'961'234'567)), "2024-03-01 12:34:56.1234567 UTC");
    EXPECT_EQ(FormatTimestamp(At(17'092'512'000'000'001)), "2024-03-01 00:00:00.0000001 UTC");
    EXPECT_EQ(FormatTimestamp(At(17'092'511'999'999'999)), "2024-02-29 23:59:59.9999999 UTC");
    EXPECT_EQ(FormatTimestamp(At(-1)), "1969-12-31 23:59:59.9999999 UTC");
}

TEST(ConnectivityText, LeavesATextOfSaneLengthAlone) {
    EXPECT_EQ(BoundText(""), "");
    EXPECT_EQ(BoundText("Ethernet"), "Ethernet");
    EXPECT_EQ(BoundText(std::string(1024, 'x')), std::string(1024, 'x'));
}

TEST(ConnectivityText, CutsALongTextBetweenCharacters) {
    EXPECT_EQ(BoundText(std::string(10'000'000, 'x')), std::string(1024, 'x'));
    const std::string euro = "\xE2\x82\xAC";
    EXPECT_EQ(BoundText(std::string(1023, 'x') + euro), std::string(1023, 'x'));
    EXPECT_EQ(BoundText(std::string(1022, 'x') + euro), std::string(1022, 'x'));
    EXPECT_EQ(BoundText(std::string(1021, 'x') + euro + "y"), std::string(1021, 'x') + euro);
    EXPECT_EQ(BoundText(std::string(2000, '\x80')), "");
}

}  // namespace
}  // namespace Corvanta::Connectivity
