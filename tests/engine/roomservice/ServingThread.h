// A room server on a thread of its own, as it is over TCP or on a Unix socket.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include "engine/restful/HttpClient.h"
#include "engine/roomservice/RoomServer.h"
#include "engine/roomservice/ServiceAddress.h"
#include "engine/roomservice/ServiceMessage.h"
#include "tests/engine/signalling/LoopThread.h"

namespace Corvanta::Engine {

class ServingThread final {
public:
    explicit ServingThread(const RoomServer::Options& options) {
        loop.Do([&] { server = RoomServer::Listen(options, problem); });
        port = server ? server->Port() : 0;
    }
    ~ServingThread() { Stop(); }
    ServingThread(const ServingThread&) = delete;
    ServingThread& operator=(const ServingThread&) = delete;

    // Clients find nobody any more.
    void Stop() {
        loop.Do([this] { server.reset(); });
    }
    [[nodiscard]] std::size_t Connections() {
        std::size_t count = 0;
        loop.Do([&] { count = server->Connections(); });
        return count;
    }
    [[nodiscard]] bool IsServing() const { return server != nullptr; }

    std::string problem;
    std::uint16_t port = 0;

private:
    LoopThread loop;
    std::unique_ptr<RoomServer> server;
};

// A test waits longer for an answer than a client does, on a machine that is busy with other tests.
constexpr std::chrono::milliseconds kAnswerPatience{20'000};

// 0 when nobody answers.
inline unsigned StatusOf(const std::optional<HttpAnswer>& answer) {
    return answer ? answer->status : 0;
}

// Notes as a client reads and writes them.
class NotesClient final {
public:
    NotesClient(ServiceAddress serviceAddress, const std::string& room)
        : address(std::move(serviceAddress)), target("/notes?room=" + Escape(room)) {}

    [[nodiscard]] std::optional<HttpAnswer> Put(const NotesText& notes) const {
        return SendRequest(address, {"PUT", target, WriteNotes(notes), kLargestNotesMessage},
                           kAnswerPatience);
    }
    [[nodiscard]] unsigned Put(std::int64_t revision, const std::string& text) const {
        return StatusOf(Put({.revision = revision, .text = text}));
    }
    [[nodiscard]] std::optional<NotesText> Get() const {
        const auto answer = SendRequest(address, {"GET", target, {}, kLargestNotesMessage}, kAnswerPatience);
        return StatusOf(answer) == 200 ? ReadNotes(answer->body) : std::nullopt;
    }
    // Waits for another revision.
    [[nodiscard]] std::optional<HttpAnswer> GetAfter(
        std::int64_t revision, std::chrono::milliseconds timeout = kAnswerPatience) const {
        return SendRequest(address,
                           {"GET", target + "&after=" + std::to_string(revision), {}, kLargestNotesMessage},
                           timeout);
    }

private:
    const ServiceAddress address;
    const std::string target;
};

}  // namespace Corvanta::Engine
