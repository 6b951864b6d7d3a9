// Facts of this machine, read out of the texts in which the kernel and the distribution keep them. Plain
// values; any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace Corvanta::Engine {

// What stands for a figure that cannot be had.
inline constexpr const char* kNoFigure = "--";

// At most this much of a file of the kernel's is read.
inline constexpr std::size_t kLargestSystemFile = 1U << 20U;

// The file's text, or its beginning; empty when it cannot be read.
[[nodiscard]] std::string ReadSystemFile(const std::filesystem::path& path);

// The distribution's name for people, of an os-release file.
[[nodiscard]] std::optional<std::string> OperatingSystemOf(const std::string& osRelease);

// The processor's name, of /proc/cpuinfo.
[[nodiscard]] std::optional<std::string> ProcessorOf(const std::string& cpuInfo);

// The interface of the default route, of /proc/net/route and /proc/net/ipv6_route.
[[nodiscard]] std::optional<std::string> DefaultInterfaceOf(const std::string& routes,
                                                            const std::string& routes6);

enum class InterfaceKind { Wired, Wireless };

// What people call a connection by that interface.
[[nodiscard]] std::string ConnectionTypeOf(const std::string& interface, InterfaceKind kind);

}  // namespace Corvanta::Engine
