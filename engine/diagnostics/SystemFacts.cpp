#include "engine/diagnostics/SystemFacts.h"

#include <array>
#include <fstream>
#include <sstream>
#include <string_view>
#include <utility>

namespace Corvanta::Engine {

namespace {

constexpr std::string_view kSpaces = " \t\r";

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kSpaces);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpaces) - first + 1);
}

// A value as a shell would read it: quotes around it go, and so does the backslash before a character.
std::string Unquote(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    std::string text;
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] == '\\' && index + 1 < value.size()) ++index;
        text += value[index];
    }
    return text;
}

// The value behind the first line that begins with the key and the separator.
std::optional<std::string> FindValue(const std::string& text, std::string_view key, char separator) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t split = line.find(separator);
        if (split == std::string::npos || Trim(std::string_view(line).substr(0, split)) != key) continue;
        const std::string_view value = Trim(std::string_view(line).substr(split + 1));
        if (!value.empty()) return std::string(value);
    }
    return std::nullopt;
}

bool IsZero(const std::string& number) {
    return !number.empty() && number.find_first_not_of('0') == std::string::npos;
}

}  // namespace

std::string ReadSystemFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::array<char, 4096> block;
    while (file && text.size() < kLargestSystemFile) {
        file.read(block.data(), block.size());
        text.append(block.data(), static_cast<std::size_t>(file.gcount()));
    }
    return text;
}

std::optional<std::string> OperatingSystemOf(const std::string& osRelease) {
    for (const char* key : {"PRETTY_NAME", "NAME", "ID"}) {
        const auto value = FindValue(osRelease, key, '=');
        if (!value) continue;
        std::string name = Unquote(*value);
        if (!name.empty()) return name;
    }
    return std::nullopt;
}

std::optional<std::string> ProcessorOf(const std::string& cpuInfo) {
    // x86, MIPS and PowerPC, ARM boards.
    for (const char* key : {"model name", "cpu model", "cpu", "Model", "Hardware"}) {
        if (auto value = FindValue(cpuInfo, key, ':')) return value;
    }
    return std::nullopt;
}

std::optional<std::string> DefaultInterfaceOf(const std::string& routes, const std::string& routes6) {
    std::istringstream lines(routes);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string interface;
        std::string destination;
        std::string gateway;
        std::string flags;
        std::string mask;
        std::string skipped;
        fields >> interface >> destination >> gateway >> flags >> skipped >> skipped >> skipped >> mask;
        if (fields && IsZero(destination) && IsZero(mask)) return interface;
    }
    std::istringstream lines6(routes6);
    for (std::string line; std::getline(lines6, line);) {
        std::istringstream fields(line);
        std::array<std::string, 10> columns;
        for (std::string& column : columns) fields >> column;
        // Without a destination, as long as it does not lead nowhere.
        if (fields && IsZero(columns[0]) && IsZero(columns[1]) && columns[9] != "lo") return columns[9];
    }
    return std::nullopt;
}

std::string ConnectionTypeOf(const std::string& interface, InterfaceKind kind) {
    if (kind == InterfaceKind::Wireless) return "Wi-Fi";
    constexpr std::array<std::pair<std::string_view, const char*>, 7> kNames{{{"wl", "Wi-Fi"},
                                                                              {"ww", "Mobile"},
                                                                              {"ppp", "Mobile"},
                                                                              {"tun", "VPN"},
                                                                              {"tap", "VPN"},
                                                                              {"wg", "VPN"},
                                                                              {"bnep", "Bluetooth"}}};
    for (const auto& [prefix, name] : kNames) {
        if (interface.starts_with(prefix)) return name;
    }
    return "Ethernet";
}

}  // namespace Corvanta::Engine
