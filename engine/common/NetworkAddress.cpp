#include "engine/common/NetworkAddress.h"

#include <algorithm>
#include <charconv>

namespace Corvanta::Engine {

namespace {

constexpr std::string_view kSeparator = "://";

bool IsLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool IsName(std::string_view host) {
    return !host.empty() && std::ranges::all_of(host, [](char c) {
        return IsLetterOrDigit(c) || c == '-' || c == '.' || c == '_';
    });
}

// Of IPv6, with a zone where there is one.
bool IsBracketed(std::string_view host) {
    return host.find(':') != std::string_view::npos && std::ranges::all_of(host, [](char c) {
               return IsLetterOrDigit(c) || c == ':' || c == '.' || c == '%';
           });
}

bool ReadPort(std::string_view text, std::uint16_t& port) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    return error == std::errc() && stop == end && port > 0;
}

}  // namespace

std::string NetworkAddress::ToString() const {
    const bool isBracketed = host.find(':') != std::string::npos;
    std::string text = scheme;
    text += kSeparator;
    if (isBracketed) text += '[';
    text += host;
    if (isBracketed) text += ']';
    if (port == 0) return text;
    text += ':';
    text += std::to_string(port);
    return text;
}

bool NetworkAddress::IsEncrypted() const {
    return scheme == kServerSchemes.back() || scheme == kServiceSchemes.back();
}

bool NetworkAddress::IsLoopback() const {
    const bool isNumber =
        std::ranges::all_of(host, [](char c) { return (c >= '0' && c <= '9') || c == '.'; });
    return host == "localhost" || host == "::1" || (isNumber && host.starts_with("127."));
}

std::optional<NetworkAddress> ReadNetworkAddress(std::string_view text,
                                                 std::span<const std::string_view> schemes) {
    const std::size_t separator = text.find(kSeparator);
    if (separator == std::string_view::npos) return std::nullopt;
    NetworkAddress address{.scheme = std::string(text.substr(0, separator))};
    if (std::ranges::find(schemes, address.scheme) == schemes.end()) return std::nullopt;
    text.remove_prefix(separator + kSeparator.size());
    while (text.ends_with('/')) text.remove_suffix(1);
    std::string_view host;
    if (text.starts_with('[')) {
        const std::size_t end = text.find(']');
        if (end == std::string_view::npos) return std::nullopt;
        host = text.substr(1, end - 1);
        text.remove_prefix(end + 1);
        if (!IsBracketed(host)) return std::nullopt;
    } else {
        host = text.substr(0, text.find(':'));
        text.remove_prefix(host.size());
        if (!IsName(host)) return std::nullopt;
    }
    address.host = host;
    if (!text.empty() && (text.front() != ':' || !ReadPort(text.substr(1), address.port)))
        return std::nullopt;
    return address;
}

}  // namespace Corvanta::Engine
