// What comes from one peer: depayloaded, decoded and handed on, the picture to a function and the sound to
// the room's mixer. Made and destroyed on the engine's thread, when no thread of the pipeline runs; streams
// are connected on the pipeline's threads.
#pragma once

#include <gst/gst.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "engine/webrtc/AudioSink.h"
#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/SoundMixer.h"
#include "engine/webrtc/VideoSink.h"

namespace Corvanta::Engine {

class PeerMedia final {
public:
    // Pictures are handed on on a streaming thread. Without a mixer the sound is measured and not heard.
    PeerMedia(std::string peerName, std::shared_ptr<SoundMixer> mixer, VideoSink::PictureCallback picture);
    PeerMedia(const PeerMedia&) = delete;
    PeerMedia& operator=(const PeerMedia&) = delete;

    // A thread of the pipeline: connects a new source pad of the connection. The first picture and the first
    // sound are played; whatever else a peer sends goes into nothing.
    void Connect(GstBin* pipeline, GstPad* pad);

    // Any thread.

    // What is turned off is not decoded.
    void SetVideoDecoded(bool decoded);
    void SetAudioDecoded(bool decoded) { audioDecoded = decoded; }
    void SetGain(double linear);
    // Asks the peer for one, where its pictures are connected.
    void RequestKeyFrame();

    struct Counters {
        std::uint64_t pictures = 0;
        int width = 0, height = 0;
    };
    [[nodiscard]] Counters Count() const { return {pictures, width, height}; }

private:
    [[nodiscard]] GstElement* MakeVideoBin();
    [[nodiscard]] GstElement* MakeAudioBin();
    // What comes from the network is not decoded beyond a size.
    static GstPadProbeReturn DropHugePictures(GstPad* pad, GstPadProbeInfo* probe, gpointer self);

    const std::string name;
    VideoSink videoSink;
    AudioSink audioSink;
    std::atomic<double> gain = 1.0;
    // The thread that brings the frames alone.
    bool isHuge = false, hugeWasLogged = false;
    std::atomic<bool> hasVideo = false, hasAudio = false;
    std::atomic<bool> videoDecoded = true, audioDecoded = true;
    std::atomic<std::uint64_t> pictures = 0;
    std::atomic<int> width = 0, height = 0;

    std::mutex padMutex;  // guards: videoPad
    GstOwned<GstPad> videoPad;
};

}  // namespace Corvanta::Engine
