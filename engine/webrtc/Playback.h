// One source's media: a pipeline over a file or URI, which plays in real time and in a loop, over a generated
// clip, or over an element that captures. All operations belong to the engine's thread; pictures are handed
// on on a streaming thread.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/webrtc/AudioSink.h"
#include "engine/webrtc/ClipSource.h"
#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/PictureShape.h"
#include "engine/webrtc/VideoSink.h"

namespace Corvanta::Engine {

// What a playback reports: the picture and the sound on streaming threads, the others on the engine's.
struct PlaybackEvents {
    VideoSink::PictureCallback picture;
    // Mean square of a piece of sound.
    std::function<void(double)> loudness;
    // It is known that there is no picture, at least until the source is opened again.
    std::function<void()> withoutPicture;
    // A network source was lost, or is back.
    std::function<void(bool lost)> connection;
    // A source that cannot be played again has come to its end: a stream of a network, or a captured window.
    std::function<void()> ended;
    // Nothing of the source can be played, and it is not tried again. May be empty.
    std::function<void()> failed = {};
    // The sound itself, as AudioSink::Listener has it. May be empty.
    AudioSink::Listener sound = {};
};

struct PlaybackSource {
    // For the log: the participant's name.
    std::string name;
    // A URI; empty for the two others.
    std::string uri;
    // Makes the scene of a generated clip.
    std::function<std::unique_ptr<const ClipScene>()> makeScene;
    // The moment at which generated clips are at their beginning.
    std::chrono::steady_clock::time_point clipEpoch;
    // Makes the element that captures, with one source pad. Null where it cannot.
    std::function<GstOwned<GstElement>()> makeCapture = {};
    // How the pictures are to be; empty: as they come.
    std::optional<PictureShape> shape = {};
};

class Playback final : public std::enable_shared_from_this<Playback> {
public:
    // Without a mixer it is never heard.
    Playback(EngineLoop& engineLoop, PlaybackSource playedSource, std::shared_ptr<SoundMixer> mixer,
             PlaybackEvents handlers);
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    // Opens the source and holds it at its first picture until Play.
    void Open();
    void Play();
    // On return no event is in progress and none follows, until Open.
    void Close();
    // Opens it anew, after a wait that grows when it fails again and again.
    void Restart(bool immediately);

    void SetGain(double linear);

private:
    enum class Stage { Closed, Opening, Cueing, Ready };

    [[nodiscard]] bool BuildClip();
    [[nodiscard]] bool BuildUri();
    [[nodiscard]] bool BuildCapture();
    void ConnectDecoder(GstElement* decoder);
    // On streaming threads.
    void OnPadAdded(GstPad* pad);
    void OnElementAdded(GstElement* element);
    static GstPadProbeReturn OnVideoEvent(GstPad* pad, GstPadProbeInfo* probe, gpointer data);

    bool OnMessage(GstMessage* message);
    void OnWarning(GstMessage* message);
    void OnError(GstMessage* message);
    void OnPrerolled();
    void OnSilence();
    [[nodiscard]] bool CanSeek() const;
    [[nodiscard]] bool CanLoopSegments() const;
    // To the beginning, with GstSeekFlags.
    bool Seek(int flags);
    void OnSegmentDone();
    void OnEndOfStream();
    void OnElementMessage(GstMessage* message);
    void StartWhenReady();
    void Loop(bool isSegment);
    void LoopAfter(std::chrono::milliseconds shortestRound, bool isSegment);
    void OnFirstPicture();
    void Fail(const std::string& reason);
    void OpenAfter(std::chrono::milliseconds delay);
    void ReportWithoutPicture(const std::string& reason);
    void ReportConnection(bool lost);
    // Runs a task on the engine's thread unless the source was closed meanwhile. Any thread of this playback.
    void PostHere(std::function<void(Playback&)> task);
    void PostHereAfter(std::chrono::milliseconds delay, std::function<void(Playback&)> task);
    [[nodiscard]] bool IsNetworkSource() const;
    [[nodiscard]] bool IsCapture() const { return source.makeCapture != nullptr; }

    EngineLoop& loop;
    const PlaybackSource source;
    const PlaybackEvents events;

    Stage stage = Stage::Closed;
    // Counts the openings, so that what an earlier one left behind is not taken for news.
    std::atomic<unsigned> generation = 0;
    bool isWanted = false;
    bool isLive = false;
    bool isSeekable = false;
    bool isLost = false;
    bool reportedWithoutPicture = false;
    bool interruptionWasLogged = false;
    bool warningWasLogged = false;
    unsigned failures = 0;
    unsigned silentOpenings = 0;
    std::atomic<double> gain = 1.0;
    std::chrono::steady_clock::time_point lastLoop;

    const std::shared_ptr<ContainerColor> containerColor = std::make_shared<ContainerColor>();
    VideoSink videoSink;
    AudioSink audioSink;
    std::unique_ptr<ClipSource> clip;
    GstOwned<GstElement> pipeline;
    GstOwned<GSource> watch;

    // Kinds of stream that are connected; claimed by the streaming threads that find them.
    std::atomic<bool> hasVideo = false;
    std::atomic<bool> hasSound = false;
    std::atomic<bool> hasDelivered = false;
    // The stream says that its pictures are to be turned.
    std::atomic<bool> isRotated = false;
    // A part of the source cannot announce the end of a segment.
    std::atomic<bool> isWithoutSegments = false;
};

}  // namespace Corvanta::Engine
