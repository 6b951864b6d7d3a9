// Sibling library Corvanta.Diagnostics: figures of this machine and error reports. Every function may be
// called on any thread; a figure may take some milliseconds to fetch, so the tick asks for none but at long
// intervals.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Api.h"

namespace Corvanta {

// Numbers of the reports that the library makes.
enum class DiagnosticsReport : int32_t {
    MicrophoneOutOfStep = 700,
    VideoOutOfStep = 701,
};

}  // namespace Corvanta

extern "C" {

// Texts for people; "--" or empty when a figure cannot be had. Usage is in per cent, such as "12.5%".
CORVANTA_PLATFORM_API std::string Diagnostics_GetOperatingSystem();
CORVANTA_PLATFORM_API std::string Diagnostics_GetPlatformVersion();
CORVANTA_PLATFORM_API std::string Diagnostics_GetCPUType();
CORVANTA_PLATFORM_API std::string Diagnostics_GetCPUSystemUsage();
CORVANTA_PLATFORM_API std::string Diagnostics_GetCPUAppUsage();
CORVANTA_PLATFORM_API std::string Diagnostics_GetConnectionType();

// Files an error report, in the background. `code` is a DiagnosticsReport as a number.
CORVANTA_PLATFORM_API void Diagnostics_Report(int32_t code);
}
