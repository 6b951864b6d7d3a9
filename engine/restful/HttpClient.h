// One HTTP request to the room service, for threads that may wait: a task's, never the tick's. Any thread,
// several at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace Corvanta::Engine {

// The longest that a request takes, whatever the other end does, and the longest answer that is read.
inline constexpr std::chrono::milliseconds kRequestTimeout{2000};
inline constexpr std::size_t kLargestAnswer = 256U << 10U;

struct ServiceAddress;

struct HttpRequest {
    // "GET", "POST", "PUT", "DELETE".
    std::string method;
    // Path and query, escaped.
    std::string target;
    // JSON; not sent when it is empty.
    std::string body;
    std::size_t largestAnswer = kLargestAnswer;
};

struct HttpAnswer {
    unsigned status = 0;
    std::string body;
};

// Nothing when nobody answers in time, or too much, or the other end is not who it has to be.
[[nodiscard]] std::optional<HttpAnswer> SendRequest(const ServiceAddress& address, const HttpRequest& request,
                                                    std::chrono::milliseconds timeout = kRequestTimeout);
// To the service at that Unix socket.
[[nodiscard]] std::optional<HttpAnswer> SendRequest(const std::filesystem::path& socket,
                                                    const HttpRequest& request,
                                                    std::chrono::milliseconds timeout = kRequestTimeout);

// A value of a query.
[[nodiscard]] std::string Escape(const std::string& text);

}  // namespace Corvanta::Engine
