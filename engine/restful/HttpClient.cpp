#include "engine/restful/HttpClient.h"

#include <libsoup/soup.h>

#include <utility>

#include "engine/roomservice/ServiceAddress.h"
#include "engine/roomservice/ServiceSession.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr gsize kChunk = 16U << 10U;

// A session with a main context of its own, so that a request can be given up at a certain time and leaves
// nothing behind. One thread.
class Exchange final {
public:
    Exchange(const ServiceAddress& address, std::chrono::milliseconds timeout)
        : context(g_main_context_new()), cancellable(g_cancellable_new()) {
        g_main_context_push_thread_default(context);
        session = MakeServiceSession(address);
        GSource* const alarm = g_timeout_source_new(static_cast<guint>(timeout.count()));
        g_source_set_callback(alarm, OnAlarm, cancellable, nullptr);
        g_source_attach(alarm, context);
        g_source_unref(alarm);
    }
    ~Exchange() {
        if (session != nullptr) {
            soup_session_abort(session);
            g_object_unref(session);
        }
        while (g_main_context_iteration(context, FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
        g_object_unref(cancellable);
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    std::optional<std::string> Send(SoupMessage* message, std::size_t largest) {
        if (session == nullptr) return std::nullopt;
        GError* error = nullptr;
        soup_session_send_async(session, message, G_PRIORITY_DEFAULT, cancellable, OnResult, this);
        GAsyncResult* result = Await();
        GInputStream* const stream = soup_session_send_finish(session, result, &error);
        g_object_unref(result);
        std::optional<std::string> body;
        if (stream != nullptr) {
            body = ReadAll(stream, largest, &error);
            g_object_unref(stream);
        }
        if (error != nullptr) LOG(kLogDebug, "A request to the room service failed: %s", error->message);
        g_clear_error(&error);
        return body;
    }

private:
    static gboolean OnAlarm(gpointer cancellable) {
        g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
        return G_SOURCE_REMOVE;
    }
    static void OnResult(GObject*, GAsyncResult* result, gpointer self) {
        static_cast<Exchange*>(self)->arrived = G_ASYNC_RESULT(g_object_ref(result));
    }

    // The result of the operation that was started; the caller's to unref. The alarm ends every operation.
    GAsyncResult* Await() {
        while (arrived == nullptr) g_main_context_iteration(context, TRUE);
        return std::exchange(arrived, nullptr);
    }

    std::optional<std::string> ReadAll(GInputStream* stream, std::size_t largest, GError** error) {
        std::string text;
        while (true) {
            g_input_stream_read_bytes_async(stream, kChunk, G_PRIORITY_DEFAULT, cancellable, OnResult, this);
            GAsyncResult* result = Await();
            GBytes* const bytes = g_input_stream_read_bytes_finish(stream, result, error);
            g_object_unref(result);
            if (bytes == nullptr) return std::nullopt;
            gsize size = 0;
            const auto* const data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
            if (data != nullptr) text.append(data, size);
            g_bytes_unref(bytes);
            if (size == 0) return text;
            if (text.size() > largest) return std::nullopt;
        }
    }

    GMainContext* const context;
    GCancellable* const cancellable;
    SoupSession* session = nullptr;
    GAsyncResult* arrived = nullptr;
};

}  // namespace

std::optional<HttpAnswer> SendRequest(const std::filesystem::path& socket, const HttpRequest& request,
                                      std::chrono::milliseconds timeout) {
    return SendRequest(ServiceAddress{.socket = socket}, request, timeout);
}

std::optional<HttpAnswer> SendRequest(const ServiceAddress& address, const HttpRequest& request,
                                      std::chrono::milliseconds timeout) {
    SoupMessage* const message = MakeServiceMessage(address, request);
    if (message == nullptr) return std::nullopt;
    std::optional<HttpAnswer> answer;
    {
        Exchange exchange(address, timeout);
        if (auto body = exchange.Send(message, request.largestAnswer))
            answer = HttpAnswer{soup_message_get_status(message), std::move(*body)};
    }
    g_object_unref(message);
    return answer;
}

std::string Escape(const std::string& text) {
    std::string escaped;
    constexpr const char* kDigits = "0123456789ABCDEF";
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        if (g_ascii_isalnum(letter) != FALSE || letter == '-' || letter == '_' || letter == '.') {
            escaped += letter;
        } else {
            escaped += '%';
            escaped += kDigits[byte >> 4U];
            escaped += kDigits[byte & 15U];
        }
    }
    return escaped;
}

}  // namespace Corvanta::Engine
