#include "engine/roomservice/RoomServiceClient.h"

#include <algorithm>
#include <string>
#include <utility>

#include "engine/common/GuardedCall.h"
#include "engine/roomservice/ServiceSession.h"
#include "engine/signalling/OwnedSource.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr gsize kChunk = 64U << 10U;

}  // namespace

// A request that is under way: one asynchronous operation at a time, which ends by itself, by its alarm or
// with the client.
struct RoomServiceClient::Call {
    Call(RoomServiceClient& owner, SoupMessage* sent, std::size_t mostBytes, OnAnswer then)
        : client(owner),
          message(sent),
          cancellable(g_cancellable_new()),
          largest(mostBytes),
          onAnswer(std::move(then)) {}
    ~Call() {
        g_clear_object(&stream);
        g_object_unref(cancellable);
        g_object_unref(message);
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    RoomServiceClient& client;
    SoupMessage* const message;
    GCancellable* const cancellable;
    const std::size_t largest;
    const OnAnswer onAnswer;
    OwnedSource alarm;
    GInputStream* stream = nullptr;
    std::string body;
};

RoomServiceClient::RoomServiceClient(ServiceAddress serviceAddress) : address(std::move(serviceAddress)) {}

RoomServiceClient::~RoomServiceClient() {
    Stop();
}

void RoomServiceClient::Start() {
    loop.Start([this] { Run(); });
}

void RoomServiceClient::Stop() {
    isClosing = true;
    loop.Quit();
    loop.Join();
}

void RoomServiceClient::Run() {
    session = MakeServiceSession(address);
    loop.Run();
    for (const auto& call : calls) g_cancellable_cancel(call->cancellable);
    while (!calls.empty()) g_main_context_iteration(loop.Context(), TRUE);
    if (session != nullptr) {
        soup_session_abort(session);
        g_clear_object(&session);
    }
    while (g_main_context_iteration(loop.Context(), FALSE) != FALSE) {
    }
}

void RoomServiceClient::Post(std::function<void()> task) {
    PostAfter(std::chrono::milliseconds::zero(), std::move(task));
}

void RoomServiceClient::PostAfter(std::chrono::milliseconds delay, std::function<void()> task) {
    loop.PostAfter(delay, [this, run = std::move(task)] {
        if (!isClosing) run();
    });
}

void RoomServiceClient::Send(HttpRequest request, std::chrono::milliseconds timeout, OnAnswer onAnswer) {
    Post([this, sent = std::move(request), timeout, then = std::move(onAnswer)] {
        Begin(sent, timeout, then);
    });
}

void RoomServiceClient::Begin(const HttpRequest& request, std::chrono::milliseconds timeout,
                              OnAnswer onAnswer) {
    SoupMessage* const message = session != nullptr ? MakeServiceMessage(address, request) : nullptr;
    if (message == nullptr) {
        onAnswer(std::nullopt);
        return;
    }
    calls.push_back(std::make_unique<Call>(*this, message, request.largestAnswer, std::move(onAnswer)));
    Call& call = *calls.back();
    call.alarm = StartTimer(loop.Context(), timeout, [&call] { g_cancellable_cancel(call.cancellable); });
    soup_session_send_async(session, message, G_PRIORITY_DEFAULT, call.cancellable, OnSent, &call);
}

void RoomServiceClient::OnSent(GObject* source, GAsyncResult* result, gpointer data) {
    Call& call = *static_cast<Call*>(data);
    GError* error = nullptr;
    call.stream = soup_session_send_finish(SOUP_SESSION(source), result, &error);
    if (call.stream != nullptr) {
        Read(call);
    } else {
        call.client.End(call, error);
        g_clear_error(&error);
    }
}

void RoomServiceClient::Read(Call& call) {
    g_input_stream_read_bytes_async(call.stream, kChunk, G_PRIORITY_DEFAULT, call.cancellable, OnRead, &call);
}

void RoomServiceClient::OnRead(GObject* source, GAsyncResult* result, gpointer data) {
    Call& call = *static_cast<Call*>(data);
    GError* error = nullptr;
    GBytes* const bytes = g_input_stream_read_bytes_finish(G_INPUT_STREAM(source), result, &error);
    gsize size = 0;
    if (bytes != nullptr) {
        const auto* const content = static_cast<const char*>(g_bytes_get_data(bytes, &size));
        const bool isTaken = content == nullptr || CallGuarded("To read from the room service",
                                                               [&] { call.body.append(content, size); });
        g_bytes_unref(bytes);
        if (!isTaken) g_set_error(&error, G_IO_ERROR, G_IO_ERROR_FAILED, "there is no memory for it");
    }
    if (error == nullptr && call.body.size() > call.largest)
        g_set_error(&error, G_IO_ERROR, G_IO_ERROR_MESSAGE_TOO_LARGE, "there is too much of the answer");
    if (error == nullptr && size > 0) {
        Read(call);
    } else {
        call.client.End(call, error);
        g_clear_error(&error);
    }
}

void RoomServiceClient::End(Call& call, const GError* error) {
    const auto place = std::ranges::find_if(calls, [&](const auto& other) { return other.get() == &call; });
    const std::unique_ptr<Call> ended = std::move(*place);
    calls.erase(place);
    if (isClosing) return;
    if (error != nullptr) LOG(kLogDebug, "A request to the room service failed: %s", error->message);
    std::optional<HttpAnswer> answer;
    if (error == nullptr)
        answer = HttpAnswer{soup_message_get_status(ended->message), std::move(ended->body)};
    CallGuarded("To take an answer of the room service", [&] { ended->onAnswer(answer); });
}

}  // namespace Corvanta::Engine
