// Talks to the room service on a thread of its own, so that nobody waits for it: the library's tick and the
// room's loop least of all. The functions here: any thread. What they are given runs on the client's thread.
#pragma once

#include <libsoup/soup.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>

#include "engine/common/EngineLoop.h"
#include "engine/restful/HttpClient.h"
#include "engine/roomservice/ServiceAddress.h"

namespace Corvanta::Engine {

class RoomServiceClient final {
public:
    // Nothing when nobody answers in time, the other end is not who it has to be, or there is too much of it.
    using OnAnswer = std::function<void(const std::optional<HttpAnswer>& answer)>;

    explicit RoomServiceClient(ServiceAddress serviceAddress);
    // Stops.
    ~RoomServiceClient();
    RoomServiceClient(const RoomServiceClient&) = delete;
    RoomServiceClient& operator=(const RoomServiceClient&) = delete;

    void Start();
    // Requests under way are given up. On return nothing that was given is called, and nothing follows.
    void Stop();

    void Send(HttpRequest request, std::chrono::milliseconds timeout, OnAnswer onAnswer);
    void Post(std::function<void()> task);
    void PostAfter(std::chrono::milliseconds delay, std::function<void()> task);

    [[nodiscard]] const ServiceAddress& Address() const { return address; }

private:
    struct Call;

    static void OnSent(GObject* session, GAsyncResult* result, gpointer call);
    static void OnRead(GObject* stream, GAsyncResult* result, gpointer call);

    void Run();
    void Begin(const HttpRequest& request, std::chrono::milliseconds timeout, OnAnswer onAnswer);
    static void Read(Call& call);
    void End(Call& call, const GError* error);

    const ServiceAddress address;
    EngineLoop loop;
    std::atomic<bool> isClosing = false;

    // The client's thread alone.
    SoupSession* session = nullptr;
    std::list<std::unique_ptr<Call>> calls;
};

}  // namespace Corvanta::Engine
