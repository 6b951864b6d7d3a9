#include "engine/roomservice/ConnectivityReport.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <string>

namespace Corvanta::Engine {
namespace {

using Json = nlohmann::json;

ConnectivityReport SomeReport() {
    return {.sessionName = "session",
            .figures = {.timestamp = "then",
                        .download = 0.1,
                        .profileId = "profile",
                        .roundTrip = -1,
                        .upload = 1e12,
                        .jitter = 7,
                        .connectionType = "Wi-Fi",
                        .cpuType = "",
                        .cpuAppUsage = "1%",
                        .cpuSystemUsage = "2%",
                        .platformVersion = "6.1",
                        .operatingSystem = std::string("a\0\"\xE2\x82\xAC", 6),
                        .streamId = "stream"}};
}

// The report with one member changed, or taken away by null.
std::string With(const char* member, const Json& value) {
    Json json = Json::parse(ToJson(SomeReport()));
    json[member] = value;
    return json.dump();
}

TEST(ConnectivityReport, ComesThroughJsonUnchanged) {
    const ConnectivityReport report = SomeReport();
    const auto parsed = ParseReport(ToJson(report));
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->sessionName, report.sessionName);
    const auto& got = parsed->figures;
    EXPECT_EQ(got.timestamp, report.figures.timestamp);
    EXPECT_EQ(got.download, report.figures.download);
    EXPECT_EQ(got.profileId, report.figures.profileId);
    EXPECT_EQ(got.roundTrip, report.figures.roundTrip);
    EXPECT_EQ(got.upload, report.figures.upload);
    EXPECT_EQ(got.jitter, report.figures.jitter);
    EXPECT_EQ(got.connectionType, report.figures.connectionType);
    EXPECT_EQ(got.cpuType, report.figures.cpuType);
    EXPECT_EQ(got.cpuAppUsage, report.figures.cpuAppUsage);
    EXPECT_EQ(got.cpuSystemUsage, report.figures.cpuSystemUsage);
    EXPECT_EQ(got.platformVersion, report.figures.platformVersion);
    EXPECT_EQ(got.operatingSystem, report.figures.operatingSystem);
    EXPECT_EQ(got.streamId, report.figures.streamId);
}

TEST(ConnectivityReport, IsMadeFitForJson) {
    ConnectivityReport report = SomeReport();
    report.figures.download = std::numeric_limits<double>::quiet_NaN();
    report.figures.upload = -std::numeric_limits<double>::infinity();
    report.figures.cpuType = "a\xFF\xC3z";
    report.figures.operatingSystem = std::string(1'000'000, '\x01');
    const std::string json = ToJson(report);
    EXPECT_LE(json.size(), kLargestReport);
    const auto parsed = ParseReport(json);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->figures.download, 0.0);
    EXPECT_EQ(parsed->figures.upload, 0.0);
    EXPECT_EQ(parsed->figures.cpuType, "az");
    EXPECT_EQ(parsed->figures.operatingSystem, std::string(kLongestReportText, '\x01'));
}

TEST(ConnectivityReport, OfTheLongestTextsIsNotTooLarge) {
    ConnectivityReport report;
    const std::string text(2 * kLongestReportText, '\x01');
    report.sessionName = text;
    auto& figures = report.figures;
    for (std::string* member : {&figures.timestamp, &figures.profileId, &figures.connectionType,
                                &figures.cpuType, &figures.cpuAppUsage, &figures.cpuSystemUsage,
                                &figures.platformVersion, &figures.operatingSystem, &figures.streamId})
        *member = text;
    EXPECT_TRUE(ParseReport(ToJson(report)).has_value());
}

TEST(ConnectivityReport, IsRefusedWhenItIsNoReport) {
    for (const char* text : {"", "{", "null", "[]", "3", "\"text\"", "{}", "{\"sessionName\":\"a\"}", "\xFF"})
        EXPECT_FALSE(ParseReport(text).has_value()) << text;
    EXPECT_FALSE(ParseReport(std::string(kLargestReport, '[')).has_value());
    EXPECT_FALSE(ParseReport(std::string(kLargestReport + 1, ' ') + ToJson(SomeReport())).has_value());
}

TEST(ConnectivityReport, IsRefusedWithAMemberOfTheWrongKind) {
    ASSERT_TRUE(ParseReport(With("jitter", 8)).has_value());
    for (const char* text :
         {"sessionName", "timestamp", "profileId", "connectionType", "cpuType", "cpuAppUsage",
          "cpuSystemUsage", "platformVersion", "operatingSystem", "streamId"}) {
        for (const Json& value : {Json(), Json(5), Json::array(), Json(std::string(1025, 'x'))})
            EXPECT_FALSE(ParseReport(With(text, value)).has_value()) << text << value;
        EXPECT_TRUE(ParseReport(With(text, std::string(1024, 'x'))).has_value()) << text;
    }
    for (const char* rate : {"download", "upload"}) {
        for (const Json& value : {Json(), Json("5"), Json(true)})
            EXPECT_FALSE(ParseReport(With(rate, value)).has_value()) << rate << value;
        EXPECT_TRUE(ParseReport(With(rate, 5)).has_value());
    }
    for (const char* time : {"roundTrip", "jitter"}) {
        for (const Json& value : {Json(), Json("5"), Json(5.5), Json(2147483648), Json(-2147483649),
                                  Json(std::numeric_limits<uint64_t>::max())})
            EXPECT_FALSE(ParseReport(With(time, value)).has_value()) << time << value;
        EXPECT_TRUE(ParseReport(With(time, -2147483648)).has_value());
        EXPECT_TRUE(ParseReport(With(time, 2147483647U)).has_value());
    }
}

}  // namespace
}  // namespace Corvanta::Engine
