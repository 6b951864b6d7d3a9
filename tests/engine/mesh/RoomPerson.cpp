#include "tests/engine/mesh/RoomPerson.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/transport/SentStream.h"
#include "engine/transport/StreamNames.h"
#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

namespace {

constexpr int kTolerance = 6;

bool IsNear(Yuv left, Yuv right) {
    return std::abs(left.y - right.y) <= kTolerance && std::abs(left.u - right.u) <= kTolerance &&
           std::abs(left.v - right.v) <= kTolerance;
}

// What pumps into the feed that the transport gave.
std::unique_ptr<FeedPump> Pump(const std::shared_ptr<LocalFeed>& feed, Yuv color, double amplitude) {
    const auto sent = std::dynamic_pointer_cast<SentStream>(feed);
    return sent ? std::make_unique<FeedPump>(sent->Feed(), 320, 180, color, amplitude) : nullptr;
}

}  // namespace

RoomPerson::RoomPerson(const TransportMaker& makeTransport, std::optional<Yuv> color, double amplitude)
    : mixer(std::make_shared<SoundMixer>(running.loop)),
      transport(makeTransport(running.loop, mixer)),
      shownColor(color),
      shownAmplitude(amplitude) {}

RoomPerson::~RoomPerson() {
    Leave();
}

bool RoomPerson::Enters() {
    running.Do([this] { transport->Start(Events()); });
    isInside = true;
    const bool isTold = Eventually([this] {
        const std::lock_guard lock(mutex);
        return entered.has_value();
    });
    const std::lock_guard lock(mutex);
    return isTold && *entered;
}

void RoomPerson::Leave() {
    if (!std::exchange(isInside, false)) return;
    camera.reset();
    shared.clear();
    running.Do([this] {
        {
            const std::lock_guard lock(mutex);
            for (auto& [id, stream] : streams) former.push_back(std::move(stream));
            streams.clear();
        }
        for (auto& stream : former) {
            if (stream.media) stream.media->Close();
        }
        transport->Stop();
    });
    running.Do([this] { transport.reset(); });
}

TransportEvents RoomPerson::Events() {
    return {.entered =
                [this] {
                    if (shownColor)
                        camera = Pump(transport->PublishCamera({.audio = shownAmplitude > 0, .video = true}),
                                      *shownColor, shownAmplitude);
                    const std::lock_guard lock(mutex);
                    entered = true;
                },
            .failed =
                [this](const std::string& line) {
                    const std::lock_guard lock(mutex);
                    problem = line;
                    entered = false;
                },
            .joined = [this](const ParticipantDescription& description) { OnJoined(description); },
            .left =
                [this](const std::string& streamId, const std::string& reason) {
                    std::shared_ptr<ParticipantMedia> media;
                    std::string line;
                    {
                        const std::lock_guard lock(mutex);
                        const auto place = streams.find(streamId);
                        if (place == streams.end()) return;
                        Stream stream = std::move(place->second);
                        streams.erase(place);
                        stream.seen.hasLeft = true;
                        stream.seen.reason = reason;
                        media = stream.media;
                        line = "left " + stream.seen.name + ' ' + StreamWord(stream.seen.type) + ' ' + reason;
                        former.push_back(std::move(stream));
                    }
                    media->Close();
                    Tell(line);
                },
            .dropped =
                [this](bool willRetry) {
                    const std::lock_guard lock(mutex);
                    drops += willRetry ? '1' : '0';
                },
            .muted =
                [this] {
                    const std::lock_guard lock(mutex);
                    ++mutes;
                }};
}

void RoomPerson::OnJoined(const ParticipantDescription& description) {
    const std::string id = description.id;
    const std::string name = description.name;
    const std::string kind = StreamWord(description.type);
    const auto media = description.media;
    {
        const std::lock_guard lock(mutex);
        Stream stream;
        stream.seen.name = name;
        stream.seen.type = description.type;
        stream.media = media;
        stream.joined = std::chrono::steady_clock::now();
        streams[id] = std::move(stream);
    }
    Tell("joined " + name + ' ' + kind);
    media->Open(
        {.picture =
             [this, id, name, kind](const std::shared_ptr<const MappedPicture>& picture) {
                 const Yuv color = MeanColor(*picture);
                 bool isFirst = false;
                 Change(id, [&](Stream& stream) {
                     isFirst = stream.seen.pictures++ == 0;
                     if (isFirst) {
                         stream.seen.firstPicture = std::chrono::duration_cast<std::chrono::milliseconds>(
                             std::chrono::steady_clock::now() - stream.joined);
                     }
                     stream.seen.color = color;
                     stream.seen.width = picture->Width();
                 });
                 if (isFirst) Tell("picture " + name + ' ' + kind);
             },
         .loudness =
             [this, id](double meanSquare) {
                 Change(id, [&](Stream& stream) {
                     stream.seen.loudest = std::max(stream.seen.loudest, std::sqrt(meanSquare));
                 });
             },
         .withoutPicture = [this,
                            id] { Change(id, [](Stream& stream) { stream.seen.isWithoutPicture = true; }); },
         .connection =
             [this, id, name](bool lost) {
                 Change(id, [&](Stream& stream) { ++(lost ? stream.seen.losses : stream.seen.returns); });
                 Tell((lost ? "lost " : "found ") + name);
             },
         .channel =
             [this, id, name](bool isOpen) {
                 if (!isOpen) return;
                 Change(id, [](Stream& stream) { ++stream.seen.channels; });
                 Tell("channel " + name);
             },
         .text =
             [this, id, name](std::string text) {
                 Tell("text " + name + ' ' + text);
                 Change(id, [&](Stream& stream) { stream.seen.texts.push_back(std::move(text)); });
             },
         .ended = [] {}});
    media->SetGain(0.0);
    media->Play();
}

void RoomPerson::Change(const std::string& id, const std::function<void(Stream&)>& change) {
    const std::lock_guard lock(mutex);
    const auto place = streams.find(id);
    if (place != streams.end()) change(place->second);
}

void RoomPerson::Tell(const std::string& line) const {
    if (onLine) onLine(line);
}

void RoomPerson::Say(const std::string& text) {
    Do([&](Transport& way) { way.SendText(text); });
}

void RoomPerson::Do(const std::function<void(Transport&)>& task) {
    running.Do([&] { task(*transport); });
}

void RoomPerson::Share(StreamType type, const std::string& name, Yuv color) {
    running.Do([&] { shared[type] = Pump(transport->PublishStream(type, name), color, 0.1); });
}

void RoomPerson::StopSharing(StreamType type) {
    shared.erase(type);
    Do([&](Transport& way) { way.Unpublish(type); });
}

void RoomPerson::WithMedia(const std::string& streamId, const std::function<void(ParticipantMedia&)>& task) {
    running.Do([&] {
        std::shared_ptr<ParticipantMedia> media;
        Change(streamId, [&](Stream& stream) { media = stream.media; });
        if (media) task(*media);
    });
}

std::string RoomPerson::Id() const {
    return transport ? transport->OwnId() : std::string();
}

std::string RoomPerson::Problem() const {
    const std::lock_guard lock(mutex);
    return problem;
}

std::optional<RoomPerson::Seen> RoomPerson::Sees(const std::string& name, StreamType type) const {
    const std::lock_guard lock(mutex);
    for (const auto& [id, stream] : streams) {
        if (stream.seen.name == name && stream.seen.type == type) return stream.seen;
    }
    for (auto stream = former.rbegin(); stream != former.rend(); ++stream) {
        if (stream->seen.name == name && stream->seen.type == type) return stream->seen;
    }
    return std::nullopt;
}

std::string RoomPerson::StreamId(const std::string& name, StreamType type) const {
    const std::lock_guard lock(mutex);
    for (const auto& [id, stream] : streams) {
        if (stream.seen.name == name && stream.seen.type == type) return id;
    }
    return {};
}

std::vector<RoomPerson::Seen> RoomPerson::Streams() const {
    const std::lock_guard lock(mutex);
    std::vector<Seen> all;
    for (const auto& [id, stream] : streams) all.push_back(stream.seen);
    return all;
}

std::size_t RoomPerson::Present() const {
    const std::lock_guard lock(mutex);
    return streams.size();
}

bool RoomPerson::SeesColor(const std::string& name, Yuv color, StreamType type) const {
    return Eventually([&] {
        const auto seen = Sees(name, type);
        return seen && seen->color && IsNear(*seen->color, color);
    });
}

bool RoomPerson::Hears(const std::string& name, const std::vector<std::string>& texts,
                       std::chrono::milliseconds patience) const {
    return Eventually(
        [&] {
            const auto seen = Sees(name);
            return seen && seen->texts == texts;
        },
        patience);
}

int RoomPerson::Mutes() const {
    const std::lock_guard lock(mutex);
    return mutes;
}

std::string RoomPerson::Drops() const {
    const std::lock_guard lock(mutex);
    return drops;
}

}  // namespace Corvanta::Engine
