#include "engine/peer/TextChannel.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <utility>

namespace Corvanta::Engine {

namespace {

// Where a sender that was refused may go on.
constexpr std::size_t kLowBytes = std::size_t{4} * 1024 * 1024;
constexpr std::chrono::milliseconds kDrainInterval{20};
// Of texts that came and were not handed on yet. A peer of this kind has less under way, unless the engine's
// thread stands still.
constexpr std::size_t kMaxUnreadBytes = std::size_t{64} * 1024 * 1024;
// Channels that a peer may make; one of this kind makes one.
constexpr std::size_t kMostOffered = 4;

template <class Object>
std::shared_ptr<Object> Share(Object* owned) {
    return std::shared_ptr<Object>(owned, g_object_unref);
}

// Calls `visit` with each element of that kind, however deep it lies.
template <class Visitor>
void ForEach(GstElement* bin, const char* factory, Visitor visit) {
    GstIterator* elements = gst_bin_iterate_all_by_element_factory_name(GST_BIN(bin), factory);
    const GstIteratorForeachFunction call = [](const GValue* value, gpointer data) {
        (*static_cast<Visitor*>(data))(GST_ELEMENT(g_value_get_object(value)));
    };
    while (gst_iterator_foreach(elements, call, &visit) == GST_ITERATOR_RESYNC) gst_iterator_resync(elements);
    gst_iterator_free(elements);
}

}  // namespace

struct TextChannel::Counts {
    // Bytes of texts that came and were not handed on yet.
    std::atomic<std::size_t> unread = 0;
    // Channels that the peer has made.
    std::atomic<std::size_t> offered = 0;
};

// What threads of GStreamer hold on to.
struct TextChannel::Link {
    EngineLoop& loop;
    std::weak_ptr<TextChannel> channel;
    std::shared_ptr<Counts> counts;

    static void Delete(gpointer data, GClosure*) { delete static_cast<Link*>(data); }
};

TextChannel::Link* TextChannel::MakeLink() {
    return new Link{loop, weak_from_this(), counts};
}

template <class Task>
void TextChannel::Post(const Link& link, Task task) {
    link.loop.Post([weak = link.channel, task = std::move(task)] {
        const auto self = weak.lock();
        if (self && !self->hasEnded) task(*self);
    });
}

TextChannel::TextChannel(EngineLoop& engineLoop, Events eventHandlers)
    : loop(engineLoop), events(std::move(eventHandlers)), counts(std::make_shared<Counts>()) {}

TextChannel::~TextChannel() {
    Close();
}

void TextChannel::Attach(GstElement* element) {
    webrtc = element;
    const gulong handler = g_signal_connect_data(
        element, "on-data-channel", G_CALLBACK(+[](GstElement*, GstWebRTCDataChannel* created, Link* link) {
            // Each is a queue and threads, whoever listens.
            if (++link->counts->offered > kMostOffered) {
                Post(*link, [](TextChannel& self) { self.End("it makes too many channels"); });
                return;
            }
            // Listened to at once: what the peer says first is on its way already.
            Post(*link,
                 [channel = Share(GST_WEBRTC_DATA_CHANNEL(g_object_ref(created))),
                  listeners = Listen(created, *link)](TextChannel& self) { self.Take(channel, listeners); });
        }),
        MakeLink(), Link::Delete, GConnectFlags{});
    handlers.emplace_back(Share(G_OBJECT(g_object_ref(element))), handler);
}

void TextChannel::Create(const std::string& label) {
    GstWebRTCDataChannel* created = nullptr;
    g_signal_emit_by_name(webrtc, "create-data-channel", label.c_str(), nullptr, &created);
    if (created == nullptr) return;
    const std::unique_ptr<Link> link(MakeLink());
    const auto listeners = Listen(created, *link);
    Take(Share(created), listeners);
}

void TextChannel::Close() {
    hasEnded = true;
    for (const auto& [object, handler] : std::exchange(handlers, {})) {
        g_signal_handler_disconnect(object.get(), handler);
    }
    // A text that waits for room in the connection does so until it is told to give up, and whoever stops
    // its thread would wait as long.
    if (webrtc != nullptr) {
        ForEach(std::exchange(webrtc, nullptr), "sctpenc", [](GstElement* encoder) {
            const GstElementForeachPadFunc flush = [](GstElement*, GstPad* pad, gpointer) -> gboolean {
                gst_pad_send_event(pad, gst_event_new_flush_start());
                return TRUE;
            };
            gst_element_foreach_sink_pad(encoder, flush, nullptr);
        });
    }
    sources.clear();
    channels.clear();
}

std::vector<gulong> TextChannel::Listen(GstWebRTCDataChannel* channel, const Link& listener) {
    std::vector<gulong> listeners;
    const auto connect = [&](const char* signal, GCallback handler) {
        listeners.push_back(g_signal_connect_data(channel, signal, handler, new Link(listener), Link::Delete,
                                                  GConnectFlags{}));
    };
    connect("notify::ready-state", G_CALLBACK(+[](GstWebRTCDataChannel*, GParamSpec*, Link* link) {
                Post(*link, [](TextChannel& self) { self.OnState(); });
            }));
    connect("on-message-string", G_CALLBACK(+[](GstWebRTCDataChannel*, gchar* text, Link* link) {
                if (text == nullptr) return;
                std::string copy(text);
                const std::size_t bytes = copy.size() + kTextOverhead;
                if (link->counts->unread.fetch_add(bytes) > kMaxUnreadBytes) {
                    link->counts->unread -= bytes;
                    Post(*link, [](TextChannel& self) { self.End("it sends more than can be read"); });
                    return;
                }
                Post(*link, [copy = std::move(copy), bytes](TextChannel& self) {
                    self.counts->unread -= bytes;
                    self.events.text(copy);
                });
            }));
    return listeners;
}

void TextChannel::Take(Channel channel, const std::vector<gulong>& listeners) {
    for (const gulong listener : listeners)
        handlers.emplace_back(Share(G_OBJECT(g_object_ref(channel.get()))), listener);
    channels.push_back(std::move(channel));
    OnState();
}

GstWebRTCDataChannel* TextChannel::OpenOne() const {
    const auto isOpen = [](const Channel& channel) {
        GstWebRTCDataChannelState state{};
        g_object_get(channel.get(), "ready-state", &state, nullptr);
        return state == GST_WEBRTC_DATA_CHANNEL_STATE_OPEN;
    };
    const auto found = std::find_if(channels.begin(), channels.end(), isOpen);
    return found == channels.end() ? nullptr : found->get();
}

bool TextChannel::IsOpen() const {
    return OpenOne() != nullptr;
}

void TextChannel::OnState() {
    if (IsOpen()) {
        CollectSources();
        if (!std::exchange(wasOpen, true)) events.open();
    } else if (wasOpen) {
        End("it has closed the connection");
    }
}

void TextChannel::End(const std::string& reason) {
    hasEnded = true;
    events.ended(reason);
}

void TextChannel::CollectSources() {
    sources.clear();
    ForEach(webrtc, "appsrc",
            [this](GstElement* source) { sources.emplace_back(GST_ELEMENT(gst_object_ref(source))); });
}

std::size_t TextChannel::WaitingBytes() const {
    std::size_t waiting = 0;
    for (const auto& source : sources) {
        guint64 bytes = 0, buffers = 0;
        g_object_get(source.get(), "current-level-bytes", &bytes, "current-level-buffers", &buffers, nullptr);
        waiting += bytes + buffers * kTextOverhead;
    }
    return waiting;
}

bool TextChannel::Send(const std::string& text) {
    if (text.empty() || text.size() > kMaxTextBytes || text.find('\0') != std::string::npos) return false;
    GstWebRTCDataChannel* channel = OpenOne();
    if (channel == nullptr) return false;
    if (WaitingBytes() + text.size() + kTextOverhead > kMaxWaitingBytes) {
        if (!std::exchange(hasRefused, true)) AwaitDrain();
        return false;
    }
    return gst_webrtc_data_channel_send_string_full(channel, text.c_str(), nullptr) != FALSE;
}

void TextChannel::AwaitDrain() {
    // The channel's own signal does not count what many small texts take.
    loop.PostAfter(kDrainInterval, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || self->hasEnded) return;
        if (self->WaitingBytes() > kLowBytes) {
            self->AwaitDrain();
        } else {
            self->hasRefused = false;
            self->events.drained();
        }
    });
}

void TextChannel::Ping() {
    GstWebRTCDataChannel* channel = OpenOne();
    if (channel == nullptr || WaitingBytes() > 0) return;
    static constexpr char kPing = 0;
    GBytes* bytes = g_bytes_new_static(&kPing, sizeof kPing);
    gst_webrtc_data_channel_send_data_full(channel, bytes, nullptr);
    g_bytes_unref(bytes);
}

}  // namespace Corvanta::Engine
