// One published feed, a picture and its sound: raw pictures and sound go in, are encoded once (VP8 and Opus)
// and go out as packets to every peer that receives the feed. Made, changed and destroyed on the engine's
// thread; pictures and sound may come on any, one thread of each kind at a time.
#pragma once

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/peer/EncoderSettings.h"
#include "engine/peer/PacketOutlet.h"
#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/MappedPicture.h"
#include "platform/VideoFrameAdaptation.h"

namespace Corvanta::Engine {

class OutboundFeed final : public std::enable_shared_from_this<OutboundFeed> {
public:
    struct Settings {
        // For the log.
        std::string name;
        // Bits a second, where the adaptation leaves it to the feed.
        std::uint32_t targetBitrate = 1'500'000;
        // Pictures a second that are encoded at most.
        int frameRate = 30;
    };

    // Of what has been encoded since the feed was made.
    struct Counters {
        std::uint64_t pictures = 0;
        std::uint64_t keyFrames = 0;
        std::uint64_t videoBytes = 0;
        std::uint64_t audioBytes = 0;
        PictureSize size;
    };

    OutboundFeed(EngineLoop& engineLoop, Settings feedSettings);
    ~OutboundFeed();
    OutboundFeed(const OutboundFeed&) = delete;
    OutboundFeed& operator=(const OutboundFeed&) = delete;

    // Starts the encoders. False, and a log line, when an element is missing.
    [[nodiscard]] bool Open();
    // On return nothing is encoded and no packet is on its way to a peer; none follows. When an encoder fails
    // the feed is opened again by itself.
    void Close();

    // Any thread. Nothing happens while it is turned off or nobody receives it. Pictures may change their
    // size at any time. While none comes the last one is sent again, twice a second, so that whoever misses
    // it has it soon.
    void PushPicture(std::shared_ptr<const MappedPicture> picture);
    // Interleaved native floats, 48,000 a second on two channels, as SoundMixer::Format says. `due` is when
    // it was captured, on the clock of GStreamer's system; GST_CLOCK_TIME_NONE: at once. Sound that comes
    // steadily is sent without gaps.
    void PushSound(GstBuffer* samples, GstClockTime due);

    // Any thread. What is turned off is neither encoded nor sent.
    void SetVideoEnabled(bool enabled);
    void SetAudioEnabled(bool enabled);
    // Size by EncodedSize; bitrate 0 leaves the choice to the target.
    void SetAdaptation(const VideoFrameAdaptation& adaptation);
    void SetTargetBitrate(std::uint32_t bitsPerSecond);
    // The encoder keeps below this whatever else is asked for; 0 for no limit.
    void LimitBitrate(std::uint32_t bitsPerSecond);
    // Bits a second that the encoder is set to.
    [[nodiscard]] std::uint32_t Bitrate() const { return bitrate; }
    // The next picture is a key frame; the last one is sent again where none follows soon.
    void RequestKeyFrame();

    // Receivers. A peer asks for key frames through its outlet.
    void AddVideoOutlet(const std::shared_ptr<PacketOutlet>& outlet);
    void AddAudioOutlet(const std::shared_ptr<PacketOutlet>& outlet);
    // Unknown ones are ignored. Of either kind.
    void RemoveOutlet(const std::shared_ptr<PacketOutlet>& outlet);

    [[nodiscard]] Counters Count() const;

private:
    using Outlets = std::vector<std::shared_ptr<PacketOutlet>>;

    void AddOutlet(Outlets& outlets, std::atomic<bool>& isWanted,
                   const std::shared_ptr<PacketOutlet>& outlet);
    [[nodiscard]] bool Build();
    // Lets go of the pipeline and all that belongs to it.
    void Release();
    // The encoders have failed; they are made anew in a moment, unless the feed is closed before.
    void ReopenLater();
    void ApplyBitrate();
    void PushWrapped(const std::shared_ptr<const MappedPicture>& picture);
    // Where the source has rested for that long.
    void RepeatPicture(GstClockTime rest);
    void SetPictureCaps(const MappedPicture& picture, const VideoFrameAdaptation& adaptation);
    bool OnMessage(GstMessage* message);
    GstFlowReturn OnPacket(GstAppSink* sink, bool isVideo);

    EngineLoop& loop;
    const Settings settings;

    std::atomic<bool> videoEnabled = true, audioEnabled = true;
    std::atomic<bool> hasVideoOutlets = false, hasAudioOutlets = false;
    std::atomic<bool> repeatIsPlanned = false;
    std::atomic<std::uint32_t> bitrate = 0;
    std::atomic<std::uint64_t> pictures = 0, keyFrames = 0, videoBytes = 0, audioBytes = 0;

    std::mutex outletsMutex;  // guards: videoOutlets, audioOutlets
    Outlets videoOutlets, audioOutlets;

    mutable std::mutex settingsMutex;  // guards: everything down to encodedSize
    VideoFrameAdaptation adaptation{.scaleDown = 1, .minimumHeight = 240, .bitrate = 0};
    std::uint32_t targetBitrate;
    std::uint32_t bitrateLimit = 0;
    PictureSize encodedSize;

    std::mutex pictureMutex;  // guards: everything down to lastPictureTime, and pushing a picture
    GstOwned<GstElement> videoSource, pictureFilter, encoder;
    std::shared_ptr<const MappedPicture> lastPicture;
    GstVideoInfo pictureInfo{};
    PictureSize filteredSize;
    GstClockTime lastPictureTime = GST_CLOCK_TIME_NONE;

    std::mutex soundMutex;  // guards: everything down to nextSound
    GstOwned<GstElement> audioSource;
    GstClockTime nextSound = GST_CLOCK_TIME_NONE;

    // The engine's thread alone.
    GstOwned<GstElement> pipeline;
    GstOwned<GSource> watch, repeater;
    // Tells an opening that has failed from those before and after.
    std::uint64_t openings = 0;
};

}  // namespace Corvanta::Engine
