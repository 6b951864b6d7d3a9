// A call by bare GStreamer elements, as the reference for a room: two webrtcbins in one process that hand
// each other their descriptions by function calls; a picture is encoded, sent over the loopback and decoded
// with the same settings, and a data channel carries texts. Used on one thread.
#pragma once

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "bench/StampedClip.h"
#include "engine/webrtc/GstSupport.h"

typedef struct _GstWebRTCDataChannel GstWebRTCDataChannel;
typedef struct _GstWebRTCSessionDescription GstWebRTCSessionDescription;

namespace Corvanta::Bench {

class BareCall final {
public:
    // When a picture reaches its end: as soon as it is decoded, or when all later ones can be shown at their
    // distance too, as people want them.
    enum class Showing { AtOnce, InTime };

    explicit BareCall(Showing wantedShowing);
    ~BareCall();
    BareCall(const BareCall&) = delete;
    BareCall& operator=(const BareCall&) = delete;

    // Calls. False, and a line on the standard error stream, when an element is missing.
    [[nodiscard]] bool Start();
    // The clip's thread. Nothing happens before Start.
    void Push(GstBuffer* picture, const GstVideoInfo& info);
    // From Start to the first picture; nothing where none came in time.
    [[nodiscard]] std::optional<double> FirstPictureMs() const;
    // Waits for the data channel. False where it is not there in time.
    [[nodiscard]] bool CanSay() const;
    void Say();
    // Ages of what has come since the last time.
    [[nodiscard]] std::vector<double> TakePictureAges();
    [[nodiscard]] std::vector<double> TakeTextAges();

private:
    using Clock = std::chrono::steady_clock;
    struct Side;

    [[nodiscard]] bool Build();
    void Connect(Side& side);
    void Describe(Side& side, const char* signal);
    void OnDescription(Side& side, GstWebRTCSessionDescription* description);
    void OnPad(GstPad* pad);
    void OnChannel(GstWebRTCDataChannel* channel);
    GstFlowReturn OnPicture(GstAppSink* sink);
    void OnText(const char* text);

    const Showing showing;
    std::unique_ptr<Side> sender, receiver;
    Engine::GstOwned<GstElement> source;
    GstWebRTCDataChannel* ownChannel = nullptr;
    GstWebRTCDataChannel* otherChannel = nullptr;
    Clock::time_point startedAt;

    mutable std::mutex mutex;  // guards: everything below
    bool isStarted = false;
    std::optional<double> firstMs;
    std::vector<double> pictureAges, textAges;
};

}  // namespace Corvanta::Bench
