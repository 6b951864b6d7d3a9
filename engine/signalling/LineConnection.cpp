#include "engine/signalling/LineConnection.h"

#include <array>
#include <exception>
#include <optional>
#include <utility>

#include "engine/signalling/RoomMessage.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr std::size_t kBlock = std::size_t{16} * 1024;
// What was sent is taken off the front of the queue when it has grown to that.
constexpr std::size_t kSentBytesKept = std::size_t{64} * 1024;

OwnedSource Watch(GMainContext* context, GSocket* socket, GIOCondition condition, GSocketSourceFunc function,
                  gpointer data) {
    OwnedSource source(g_socket_create_source(socket, condition, nullptr));
    g_source_set_callback(source.get(), G_SOURCE_FUNC(function), data, nullptr);
    g_source_attach(source.get(), context);
    return source;
}

}  // namespace

LineConnection::LineConnection(GMainContext* mainContext, GSocket* connected, Events connectionEvents)
    : context(mainContext), socket(connected), events(std::move(connectionEvents)), lines(kLongestLine) {
    g_socket_set_blocking(socket, FALSE);
}

LineConnection::~LineConnection() {
    Close();
    g_object_unref(socket);
}

void LineConnection::Open() {
    isOpen = true;
    StartReading();
}

void LineConnection::Close() {
    if (g_socket_is_closed(socket) != FALSE) return;
    isOpen = false;
    isBroken = true;
    reading.reset();
    writing.reset();
    pause.reset();
    std::string().swap(queue);
    queueBegin = 0;
    g_socket_close(socket, nullptr);
}

bool LineConnection::Send(std::string_view line) {
    if (isBroken) return true;
    if (Queued() + line.size() > kMostQueued) return false;
    const std::size_t written = Queued() == 0 ? Write(line) : 0;
    if (isBroken || written == line.size()) return true;
    queue += line.substr(written);
    if (!writing) writing = Watch(context, socket, G_IO_OUT, OnWritable, this);
    return true;
}

gboolean LineConnection::OnReadable(GSocket*, GIOCondition, gpointer data) {
    // What is called may let go of the connection.
    const std::shared_ptr<LineConnection> self = static_cast<LineConnection*>(data)->shared_from_this();
    try {
        self->Read();
    } catch (const std::exception& error) {
        // GLib's frames cannot be unwound.
        LOG(kLogError, "A line of a room could not be handled: %s", error.what());
    }
    return G_SOURCE_CONTINUE;
}

gboolean LineConnection::OnWritable(GSocket*, GIOCondition, gpointer data) {
    static_cast<LineConnection*>(data)->WriteQueue();
    return G_SOURCE_CONTINUE;
}

void LineConnection::StartReading() {
    pause.reset();
    reading = Watch(context, socket, G_IO_IN, OnReadable, this);
}

void LineConnection::Read() {
    std::array<char, kBlock> block;
    GError* error = nullptr;
    const gssize count = g_socket_receive(socket, block.data(), block.size(), nullptr, &error);
    if (count < 0) {
        const bool isNothing = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) != FALSE;
        g_clear_error(&error);
        if (!isNothing) Finish(End::Closed);
        return;
    }
    if (count == 0) {
        Finish(End::Closed);
        return;
    }
    lines.Add(std::string_view(block.data(), static_cast<std::size_t>(count)));
    HandOutLines();
    if (!isOpen) return;
    if (lines.IsTooLong()) {
        Finish(End::TooLongLine);
        return;
    }
    const auto rest =
        events.onRead ? events.onRead(static_cast<std::size_t>(count)) : std::chrono::milliseconds::zero();
    if (!isOpen || rest <= std::chrono::milliseconds::zero()) return;
    reading.reset();
    pause = StartTimer(context, rest, [this] { StartReading(); });
}

void LineConnection::HandOutLines() {
    while (isOpen) {
        std::optional<std::string> line = lines.Next();
        if (!line) return;
        events.onLine(std::move(*line));
    }
}

void LineConnection::Finish(End end) {
    Close();
    if (events.onEnd) events.onEnd(end);
}

std::size_t LineConnection::Write(std::string_view bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        GError* error = nullptr;
        const gssize count =
            g_socket_send(socket, bytes.data() + written, bytes.size() - written, nullptr, &error);
        if (count < 0) {
            isBroken = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) == FALSE;
            g_clear_error(&error);
            break;
        }
        written += static_cast<std::size_t>(count);
    }
    return written;
}

void LineConnection::WriteQueue() {
    queueBegin += Write(std::string_view(queue).substr(queueBegin));
    const bool isDone = isBroken || Queued() == 0;
    if (isDone) {
        std::string().swap(queue);
        queueBegin = 0;
        writing.reset();
    } else if (queueBegin >= kSentBytesKept) {
        queue.erase(0, queueBegin);
        queueBegin = 0;
    }
}

}  // namespace Corvanta::Engine
