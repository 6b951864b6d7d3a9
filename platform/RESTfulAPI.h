// Sibling library Corvanta.RESTfulAPI: the log of participants' connection figures. The calls block for the
// request, so they run on a task's thread, never in the tick. Several may run at a time.
//
// Reconciled form: the response stays the REST library's. It is valid until the next request for the same
// session and stream, and nobody else frees it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Api.h"

namespace Model::API {

// Last report of a participant. The order of the members is part of the binary interface.
struct ConnectivityLogResponse {
    std::string timestamp;
    // Bytes a second.
    double download = 0;
    std::string profileId;
    // Milliseconds.
    int32_t roundTrip = 0;
    // Bytes a second.
    double upload = 0;
    // Milliseconds.
    int32_t jitter = 0;
    std::string connectionType;
    std::string cpuType;
    std::string cpuAppUsage;
    std::string cpuSystemUsage;
    std::string platformVersion;
    std::string operatingSystem;
    std::string streamId;
};

// Result of RESTApi_ResponseGetStatus that means success.
inline constexpr int32_t kResponseSuccess = 1;

}  // namespace Model::API

extern "C" {

// Reports this client's figures. Rates in bytes a second, times in milliseconds, `timestamp` as
// "2024-03-01 12:34:56.1234567 UTC". Whether the service took it.
CORVANTA_PLATFORM_API bool RESTApi_SendConnectivityLog(
    const std::string& sessionName, const std::string& timestamp, double download,
    const std::string& profileId, int32_t roundTrip, double upload, int32_t jitter,
    const std::string& connectionType, const std::string& cpuType, const std::string& cpuAppUsage,
    const std::string& cpuSystemUsage, const std::string& platformVersion, const std::string& operatingSystem,
    const std::string& streamId);

// Asks for a participant's last report. Never null: a failed request is a response whose status is not
// success.
CORVANTA_PLATFORM_API Model::API::ConnectivityLogResponse* RESTApi_ReceiveParticipantsConnectivityLog(
    const std::string& sessionName, const std::string& streamId);

CORVANTA_PLATFORM_API int32_t RESTApi_ResponseGetStatus(const Model::API::ConnectivityLogResponse* response);
}
