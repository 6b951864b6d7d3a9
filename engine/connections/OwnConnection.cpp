#include "engine/connections/OwnConnection.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ctime>

#include "platform/Diagnostics.h"
#include "platform/RESTfulAPI.h"

namespace Corvanta::Engine {

namespace {

constexpr double kBitsPerByte = 8.0;

}  // namespace

std::string ReportTime() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 64> text{};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S.0000000 UTC", &parts);
    return {text.data(), length};
}

bool ReportOwnConnection(const std::string& session, const std::string& streamId,
                         const LocalConnectionFigures& figures) {
    return RESTApi_SendConnectivityLog(
        session, ReportTime(), figures.downloadRate / kBitsPerByte, streamId,
        static_cast<std::int32_t>(std::lround(figures.roundTripMs)), figures.uploadRate / kBitsPerByte,
        static_cast<std::int32_t>(std::lround(figures.jitterMs)), Diagnostics_GetConnectionType(),
        Diagnostics_GetCPUType(), Diagnostics_GetCPUAppUsage(), Diagnostics_GetCPUSystemUsage(),
        Diagnostics_GetPlatformVersion(), Diagnostics_GetOperatingSystem(), streamId);
}

}  // namespace Corvanta::Engine
