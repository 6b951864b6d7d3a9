#include "tests/engine/janus/RoomMemberRig.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <future>
#include <numbers>
#include <utility>

#include "engine/transport/StreamNames.h"
#include "engine/webrtc/SoundMixer.h"
#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

std::vector<std::string> SeenStream::Texts() const {
    const std::lock_guard lock(mutex);
    return texts;
}

Yuv SeenStream::Color() const {
    const std::lock_guard lock(mutex);
    return picture ? MeanColor(*picture) : Yuv{};
}

class RoomMemberRig::Pump final {
public:
    Pump(std::shared_ptr<LocalFeed> fedFeed, Yuv color) {
        thread = std::thread([this, feed = std::move(fedFeed), color] {
            const auto picture = MakePicture(160, 96, color);
            constexpr std::size_t kFrames = SoundMixer::kRate / 10;
            double phase = 0;
            auto next = std::chrono::steady_clock::now();
            while (isRunning) {
                feed->PushPicture(picture);
                const GstOwned<GstBuffer> sound(gst_buffer_new_allocate(
                    nullptr, kFrames * SoundMixer::kChannels * sizeof(float), nullptr));
                GstMapInfo map;
                gst_buffer_map(sound.get(), &map, GST_MAP_WRITE);
                auto* samples = reinterpret_cast<float*>(map.data);
                for (std::size_t frame = 0; frame < kFrames; ++frame) {
                    phase += 2 * std::numbers::pi * 440 / SoundMixer::kRate;
                    samples[2 * frame] = samples[2 * frame + 1] = static_cast<float>(0.5 * std::sin(phase));
                }
                gst_buffer_unmap(sound.get(), &map);
                feed->PushSound(sound.get(), GST_CLOCK_TIME_NONE);
                next += std::chrono::milliseconds(100);
                std::this_thread::sleep_until(next);
            }
        });
    }
    ~Pump() {
        isRunning = false;
        thread.join();
    }

private:
    std::atomic<bool> isRunning = true;
    std::thread thread;
};

RoomMemberRig::RoomMemberRig(JanusOptions options)
    : transport(std::make_unique<JanusTransport>(loop, nullptr, std::move(options))) {
    EXPECT_TRUE(EnsureGStreamer());
}

RoomMemberRig::~RoomMemberRig() {
    Leave();
}

void RoomMemberRig::Start() {
    isRunning = true;
    loop.Start([this] {
        loop.Run();
        for (const auto& stream : All()) stream->media->Close();
        transport->Stop();
    });
    Do([this](JanusTransport& started) {
        started.Start({.entered = [this] { hasEntered = true; },
                       .failed =
                           [this](const std::string& line) {
                               const std::lock_guard lock(mutex);
                               problem = line;
                           },
                       .joined = [this](ParticipantDescription description) { Join(std::move(description)); },
                       .left =
                           [this](const std::string& id, const std::string&) {
                               for (const auto& stream : All()) {
                                   if (stream->id != id || stream->hasLeft) continue;
                                   stream->media->Close();
                                   stream->hasLeft = true;
                               }
                           },
                       .dropped = [this](bool willRetry) { ++(willRetry ? drops : ends); },
                       .ownConnection =
                           [this](bool lost) {
                               ++(lost ? ownLosses : ownReturns);
                               if (!lost) return;
                               loop.Post([this] {
                                   transport->RequestRestart(
                                       StreamIdOf(transport->OwnId(), StreamType::Camera),
                                       {.tracks = {}, .immediately = true});
                               });
                           },
                       .muted = [this] { isMuted = true; }});
    });
}

void RoomMemberRig::Join(ParticipantDescription description) {
    const auto stream = std::make_shared<SeenStream>();
    stream->id = description.id;
    stream->name = description.name;
    stream->memberId = description.memberId;
    stream->type = description.type;
    stream->media = description.media;
    {
        const std::lock_guard lock(mutex);
        seen.push_back(stream);
    }
    SeenStream* const self = stream.get();
    description.media->Open({.picture =
                                 [self](const std::shared_ptr<const MappedPicture>& picture) {
                                     ++self->pictures;
                                     const std::lock_guard lock(self->mutex);
                                     self->picture = picture;
                                 },
                             .loudness = [self](double meanSquare) { self->loudness = meanSquare; },
                             .withoutPicture = [self] { self->isWithoutPicture = true; },
                             .connection =
                                 [this, self, media = description.media.get()](bool lost) {
                                     ++(lost ? self->losses : self->returns);
                                     self->isLost = lost;
                                     if (!lost) return;
                                     loop.Post([self, media] {
                                         if (!self->hasLeft) media->Restart(true);
                                     });
                                 },
                             .channel =
                                 [self](bool isOpen) {
                                     self->hasChannel = isOpen;
                                     if (isOpen) ++self->channels;
                                 },
                             .text =
                                 [self](std::string text) {
                                     const std::lock_guard lock(self->mutex);
                                     self->texts.push_back(std::move(text));
                                 },
                             .ended = [] {}});
    description.media->Play();
}

bool RoomMemberRig::Enters(Yuv color) {
    Start();
    if (!Eventually([this] { return hasEntered.load(); })) return false;
    PublishCamera(color);
    return true;
}

std::string RoomMemberRig::IsRefused() {
    Start();
    std::string line;
    EXPECT_TRUE(Eventually([&] {
        const std::lock_guard lock(mutex);
        line = problem;
        return !line.empty() || hasEntered;
    }));
    return line;
}

void RoomMemberRig::Do(const std::function<void(JanusTransport&)>& task) {
    std::promise<void> done;
    loop.Post([&] {
        task(*transport);
        done.set_value();
    });
    done.get_future().wait();
}

void RoomMemberRig::Say(const std::string& text) {
    Do([&](JanusTransport& speaking) { speaking.SendText(text); });
}

void RoomMemberRig::Leave() {
    camera.reset();
    screen.reset();
    if (!std::exchange(isRunning, false)) return;
    loop.Quit();
    loop.Join();
}

void RoomMemberRig::PublishCamera(Yuv color) {
    std::shared_ptr<LocalFeed> feed;
    Do([&](JanusTransport& publishing) { feed = publishing.PublishCamera({}); });
    if (feed) camera = std::make_unique<Pump>(feed, color);
}

void RoomMemberRig::PublishScreen(Yuv color) {
    std::shared_ptr<LocalFeed> feed;
    Do([&](JanusTransport& publishing) {
        feed = publishing.PublishStream(StreamType::Screenshare, "the screen");
    });
    if (feed) screen = std::make_unique<Pump>(feed, color);
}

void RoomMemberRig::UnpublishScreen() {
    screen.reset();
    Do([](JanusTransport& publishing) { publishing.Unpublish(StreamType::Screenshare); });
}

std::string RoomMemberRig::Id() {
    return transport->OwnId();
}

std::shared_ptr<SeenStream> RoomMemberRig::Sees(RoomMemberRig& other, StreamType type) {
    const std::string id = StreamIdOf(other.Id(), type);
    std::shared_ptr<SeenStream> found;
    const bool isSeen = Eventually([&] {
        for (const auto& stream : All()) {
            if (stream->id == id && !stream->hasLeft) found = stream;
        }
        return found != nullptr;
    });
    return isSeen ? found : nullptr;
}

void RoomMemberRig::ForgetThoseWhoLeft() {
    Do([this](JanusTransport&) {
        const std::lock_guard lock(mutex);
        std::erase_if(seen, [](const auto& stream) { return stream->hasLeft.load(); });
    });
}

std::vector<std::shared_ptr<SeenStream>> RoomMemberRig::All() const {
    const std::lock_guard lock(mutex);
    return seen;
}

}  // namespace Corvanta::Engine
