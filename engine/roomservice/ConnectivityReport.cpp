#include "engine/roomservice/ConnectivityReport.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "engine/common/Utf8.h"
#include "engine/roomservice/FlatJson.h"

namespace Corvanta::Engine {

namespace {

using Json = nlohmann::json;
using Figures = Model::API::ConnectivityLogResponse;

struct TextMember {
    const char* name;
    std::string Figures::*member;
};

struct RateMember {
    const char* name;
    double Figures::*member;
};

struct TimeMember {
    const char* name;
    int32_t Figures::*member;
};

constexpr const char* kSessionName = "sessionName";
constexpr TextMember kTexts[] = {{"timestamp", &Figures::timestamp},
                                 {"profileId", &Figures::profileId},
                                 {"connectionType", &Figures::connectionType},
                                 {"cpuType", &Figures::cpuType},
                                 {"cpuAppUsage", &Figures::cpuAppUsage},
                                 {"cpuSystemUsage", &Figures::cpuSystemUsage},
                                 {"platformVersion", &Figures::platformVersion},
                                 {"operatingSystem", &Figures::operatingSystem},
                                 {"streamId", &Figures::streamId}};
constexpr RateMember kRates[] = {{"download", &Figures::download}, {"upload", &Figures::upload}};
constexpr TimeMember kTimes[] = {{"roundTrip", &Figures::roundTrip}, {"jitter", &Figures::jitter}};

std::string Bounded(const std::string& text) {
    return std::string(CutUtf8(text, kLongestReportText));
}

bool ReadText(const Json& object, const char* name, std::string& text) {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_string()) return false;
    text = found->get<std::string>();
    return text.size() <= kLongestReportText;
}

bool ReadTime(const Json& object, const char* name, int32_t& time) {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_number_integer()) return false;
    // A number above the signed range reads as a negative one.
    if (found->is_number_unsigned() && found->get<uint64_t>() > INT32_MAX) return false;
    const auto value = found->get<int64_t>();
    if (value < INT32_MIN || value > INT32_MAX) return false;
    time = static_cast<int32_t>(value);
    return true;
}

}  // namespace

std::string ToJson(const ConnectivityReport& report) {
    Json object{{kSessionName, Bounded(report.sessionName)}};
    for (const auto& [name, member] : kTexts) object[name] = Bounded(report.figures.*member);
    for (const auto& [name, member] : kRates) {
        const double rate = report.figures.*member;
        object[name] = std::isfinite(rate) ? rate : 0.0;
    }
    for (const auto& [name, member] : kTimes) object[name] = report.figures.*member;
    return WriteJson(object);
}

std::optional<ConnectivityReport> ParseReport(const std::string& json) {
    if (json.size() > kLargestReport) return std::nullopt;
    const auto parsed = ParseFlatObject(json);
    if (!parsed) return std::nullopt;
    const Json& object = *parsed;
    ConnectivityReport report;
    if (!ReadText(object, kSessionName, report.sessionName)) return std::nullopt;
    for (const auto& [name, member] : kTexts) {
        if (!ReadText(object, name, report.figures.*member)) return std::nullopt;
    }
    for (const auto& [name, member] : kRates) {
        const auto found = object.find(name);
        if (found == object.end() || !found->is_number()) return std::nullopt;
        report.figures.*member = found->get<double>();
        if (!std::isfinite(report.figures.*member)) return std::nullopt;
    }
    for (const auto& [name, member] : kTimes) {
        if (!ReadTime(object, name, report.figures.*member)) return std::nullopt;
    }
    return report;
}

}  // namespace Corvanta::Engine
