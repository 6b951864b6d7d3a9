// The data channels of one webrtcbin, taken together as one way for texts. What a peer sends besides texts
// shows that it is there, and is not handed on. The engine's thread alone.
#pragma once

#include <gst/gst.h>
#include <gst/webrtc/webrtc.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

class TextChannel final : public std::enable_shared_from_this<TextChannel> {
public:
    // Longer ones would be lost on their way without a word.
    static constexpr std::size_t kMaxTextBytes = std::size_t{16} * 1024;
    // Of texts that wait to be sent; each counts for more than its bytes.
    static constexpr std::size_t kMaxWaitingBytes = std::size_t{16} * 1024 * 1024;
    static constexpr std::size_t kTextOverhead = 512;

    // On the engine's thread.
    struct Events {
        // Texts can be sent from then on; once.
        std::function<void()> open;
        // No more text can be sent, or the peer sends or asks for more than is right; once.
        std::function<void(const std::string& reason)> ended;
        std::function<void(const std::string& text)> text;
        // A text was refused since too much waited, and there is room again.
        std::function<void()> drained;
    };

    TextChannel(EngineLoop& engineLoop, Events handlers);
    ~TextChannel();
    TextChannel(const TextChannel&) = delete;
    TextChannel& operator=(const TextChannel&) = delete;

    // `element` is the webrtcbin, which outlives this one's Close.
    void Attach(GstElement* element);
    // Before the offer or the answer, and not ahead of READY.
    void Create(const std::string& label);
    // On return no event follows, and nothing of the element waits for room to send.
    void Close();

    [[nodiscard]] bool IsOpen() const;
    // Never waits. False for a text that is empty, longer than kMaxTextBytes or has a zero byte; when nothing
    // is open; or when too much waits already.
    [[nodiscard]] bool Send(const std::string& text);
    // Has the peer answer, without a word to its owner. Nothing where texts are waiting, which do the same.
    void Ping();

private:
    using Channel = std::shared_ptr<GstWebRTCDataChannel>;
    struct Counts;
    struct Link;

    // Any thread: connects to the channel's signals, and gives the numbers of the connections.
    [[nodiscard]] static std::vector<gulong> Listen(GstWebRTCDataChannel* channel, const Link& listener);
    void Take(Channel channel, const std::vector<gulong>& listeners);
    void OnState();
    void End(const std::string& reason);
    [[nodiscard]] GstWebRTCDataChannel* OpenOne() const;
    [[nodiscard]] std::size_t WaitingBytes() const;
    void CollectSources();
    void AwaitDrain();
    template <class Task>
    static void Post(const Link& link, Task task);
    [[nodiscard]] Link* MakeLink();

    EngineLoop& loop;
    const Events events;
    const std::shared_ptr<Counts> counts;
    GstElement* webrtc = nullptr;
    std::vector<Channel> channels;
    // Of the element's signals and of the channels'.
    std::vector<std::pair<std::shared_ptr<GObject>, gulong>> handlers;
    // In which texts wait.
    std::vector<GstOwned<GstElement>> sources;
    bool wasOpen = false;
    bool hasRefused = false;
    bool hasEnded = false;
};

}  // namespace Corvanta::Engine
