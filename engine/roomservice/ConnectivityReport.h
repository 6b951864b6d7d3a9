// A participant's connectivity report as it travels between a client and the room service: a JSON object.
// Plain values; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/RESTfulAPI.h"

namespace Corvanta::Engine {

struct ConnectivityReport {
    std::string sessionName;
    Model::API::ConnectivityLogResponse figures;
};

// Longer texts are cut by the sender and refused by the receiver.
inline constexpr std::size_t kLongestReportText = 1024;
// No report with such texts is larger, even when every byte of them is escaped.
inline constexpr std::size_t kLargestReport = 96U << 10U;

// What JSON cannot hold is made harmless: bytes that are no UTF-8, rates that are no number.
[[nodiscard]] std::string ToJson(const ConnectivityReport& report);

// Nothing, unless it is an object with every member of the right type and in its bounds.
[[nodiscard]] std::optional<ConnectivityReport> ParseReport(const std::string& json);

}  // namespace Corvanta::Engine
