// The functions of platform/Diagnostics.h over what the kernel tells. What cannot change is read once.
#include "platform/Diagnostics.h"

#include <sys/utsname.h>

#include <filesystem>
#include <system_error>

#include "engine/diagnostics/ProcessorUsage.h"
#include "engine/diagnostics/SystemFacts.h"
#include "platform/Logger.h"

namespace {

using Corvanta::Engine::InterfaceKind;
using Corvanta::Engine::kNoFigure;
using Corvanta::Engine::ReadSystemFile;

std::string ReadOperatingSystem() {
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"}) {
        if (auto name = Corvanta::Engine::OperatingSystemOf(ReadSystemFile(path))) return *name;
    }
    utsname names{};
    return ::uname(&names) == 0 ? names.sysname : kNoFigure;
}

std::string ReadPlatformVersion() {
    utsname names{};
    if (::uname(&names) != 0) return kNoFigure;
    std::string version = names.sysname;
    version += ' ';
    version += names.release;
    return version;
}

std::string ReadProcessor() {
    if (auto name = Corvanta::Engine::ProcessorOf(ReadSystemFile("/proc/cpuinfo"))) return *name;
    utsname names{};
    return ::uname(&names) == 0 ? names.machine : kNoFigure;
}

Corvanta::Engine::ProcessorMeter::Usage GetUsage() {
    static Corvanta::Engine::ProcessorMeter meter(
        [] {
            return Corvanta::Engine::ParseProcessorTimes(ReadSystemFile("/proc/stat"),
                                                         ReadSystemFile("/proc/self/stat"));
        },
        [] { return std::chrono::steady_clock::now(); });
    return meter.Get();
}

}  // namespace

std::string Diagnostics_GetOperatingSystem() {
    static const std::string name = ReadOperatingSystem();
    return name;
}

std::string Diagnostics_GetPlatformVersion() {
    static const std::string version = ReadPlatformVersion();
    return version;
}

std::string Diagnostics_GetCPUType() {
    static const std::string name = ReadProcessor();
    return name;
}

std::string Diagnostics_GetCPUSystemUsage() {
    return GetUsage().system;
}

std::string Diagnostics_GetCPUAppUsage() {
    return GetUsage().own;
}

std::string Diagnostics_GetConnectionType() {
    const auto interface = Corvanta::Engine::DefaultInterfaceOf(ReadSystemFile("/proc/net/route"),
                                                                ReadSystemFile("/proc/net/ipv6_route"));
    if (!interface) return kNoFigure;
    std::error_code error;
    const bool isWireless =
        std::filesystem::exists(std::filesystem::path("/sys/class/net") / *interface / "wireless", error);
    return Corvanta::Engine::ConnectionTypeOf(*interface,
                                              isWireless ? InterfaceKind::Wireless : InterfaceKind::Wired);
}

void Diagnostics_Report(int32_t code) {
    LOG(kLogWarning, "Error report %d", code);
}
