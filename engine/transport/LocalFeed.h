// Where the pictures and the sound of one of the local user's streams go to reach the others.
#pragma once

#include <gst/gst.h>

#include <memory>
#include <mutex>

#include "engine/webrtc/MappedPicture.h"

namespace Corvanta::Engine {

// Any thread, but one at a time for each of the two; both return soon. What comes after the stream was
// unpublished goes nowhere.
class LocalFeed {
public:
    LocalFeed() = default;
    virtual ~LocalFeed() = default;
    LocalFeed(const LocalFeed&) = delete;
    LocalFeed& operator=(const LocalFeed&) = delete;

    virtual void PushPicture(std::shared_ptr<const MappedPicture> picture) = 0;
    // In the format that SoundMixer::Format says. `due`: when it belongs to what is seen, on the clock of
    // GStreamer's system; GST_CLOCK_TIME_NONE: at once.
    virtual void PushSound(GstBuffer* samples, GstClockTime due) = 0;
};

// The end of a local source at which a feed may hang or not. Any thread.
class FeedOutlet final {
public:
    // Null for none. What is being pushed at this moment may still come to the one before.
    void Set(std::shared_ptr<LocalFeed> taker) {
        const std::lock_guard lock(feedMutex);
        feed.swap(taker);
    }

    void PushPicture(const std::shared_ptr<const MappedPicture>& picture) const {
        if (const auto current = Current()) current->PushPicture(picture);
    }
    void PushSound(GstBuffer* samples, GstClockTime due) const {
        if (const auto current = Current()) current->PushSound(samples, due);
    }

private:
    [[nodiscard]] std::shared_ptr<LocalFeed> Current() const {
        const std::lock_guard lock(feedMutex);
        return feed;
    }

    mutable std::mutex feedMutex;  // guards: feed
    std::shared_ptr<LocalFeed> feed;
};

}  // namespace Corvanta::Engine
