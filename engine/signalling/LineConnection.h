// A connection over a Unix socket that carries lines, at either end. Nothing waits: what the other end does
// not take is kept, up to a bound. Lives on the thread of one GLib main context.
#pragma once

#include <gio/gio.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "engine/signalling/LineBuffer.h"
#include "engine/signalling/OwnedSource.h"

namespace Corvanta::Engine {

class LineConnection final : public std::enable_shared_from_this<LineConnection> {
public:
    // What is kept for an end that does not read.
    static constexpr std::size_t kMostQueued = std::size_t{1024} * 1024;

    enum class End {
        // The other end has closed, or the system has.
        Closed,
        TooLongLine,
    };

    struct Events {
        // A line without its line feed. May close the connection, or let go of it.
        std::function<void(std::string line)> onLine;
        // How many bytes were read, after their lines: for how long to read no more.
        std::function<std::chrono::milliseconds(std::size_t bytes)> onRead;
        // Once, and nothing follows. Not after Close.
        std::function<void(End)> onEnd;
    };

    // Takes over the socket, which is connected. Reads from Open on.
    LineConnection(GMainContext* mainContext, GSocket* connected, Events connectionEvents);
    ~LineConnection();
    LineConnection(const LineConnection&) = delete;
    LineConnection& operator=(const LineConnection&) = delete;

    void Open();
    // Nothing is called any more. What the system has taken still arrives.
    void Close();

    // Sends the line, whose line feed it has, or keeps it until it can be sent. False when too much is kept
    // already; the line is left out then. Calls nothing back, also when the other end has gone.
    [[nodiscard]] bool Send(std::string_view line);

    [[nodiscard]] std::size_t Queued() const { return queue.size() - queueBegin; }

private:
    static gboolean OnReadable(GSocket* socket, GIOCondition condition, gpointer self);
    static gboolean OnWritable(GSocket* socket, GIOCondition condition, gpointer self);

    void StartReading();
    void Read();
    void HandOutLines();
    void Finish(End end);
    // Gives the system what it takes of the bytes; how many that were.
    std::size_t Write(std::string_view bytes);
    void WriteQueue();

    GMainContext* const context;
    GSocket* socket;
    const Events events;
    LineBuffer lines;
    OwnedSource reading;
    OwnedSource writing;
    OwnedSource pause;
    std::string queue;
    std::size_t queueBegin = 0;
    bool isOpen = false;
    // The other end takes nothing more. What it sent before may still be there to be read.
    bool isBroken = false;
};

}  // namespace Corvanta::Engine
