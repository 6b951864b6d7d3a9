#include "engine/common/CommandLine.h"

#include <span>
#include <utility>

#include "engine/common/NetworkAddress.h"
#include "engine/common/Utf8.h"

namespace Corvanta::Engine {

namespace {

std::optional<Failure> CheckAddress(std::string_view option, std::string_view value,
                                    std::span<const std::string_view> schemes) {
    if (ReadNetworkAddress(value, schemes)) return std::nullopt;
    std::string what;
    for (const std::string_view scheme : schemes) {
        if (!what.empty()) what += " or ";
        what += scheme;
        what += "://HOST:PORT";
    }
    what += ", and no more";
    return Wants(option, what);
}

}  // namespace

std::string Quoted(std::string_view text) {
    std::string quoted(1, '\'');
    quoted += text;
    quoted += '\'';
    return quoted;
}

Failure Wants(std::string_view option, std::string_view what) {
    std::string line(option);
    line += " wants ";
    line += what;
    return {std::move(line)};
}

Failure Wants(std::string_view option, std::string_view what, std::string_view value) {
    Failure failure = Wants(option, what);
    failure.line += ", not ";
    failure.line += Quoted(value);
    return failure;
}

std::optional<Failure> CheckName(std::string_view option, std::string_view value, std::size_t mostBytes) {
    if (value.empty()) return Wants(option, "a name");
    if (value.size() > mostBytes) {
        std::string what = "a name of at most ";
        what += std::to_string(mostBytes);
        what += " bytes";
        return Wants(option, what);
    }
    if (!IsOneLine(value)) return Wants(option, "a name in UTF-8 on one line");
    return std::nullopt;
}

std::optional<Failure> CheckServer(std::string_view option, std::string_view value) {
    return CheckAddress(option, value, kServerSchemes);
}

std::optional<Failure> CheckService(std::string_view option, std::string_view value) {
    return CheckAddress(option, value, kServiceSchemes);
}

}  // namespace Corvanta::Engine
