#include "host/StreamSharing.h"

#include <QMetaObject>

#include <chrono>
#include <utility>

namespace Corvanta::Host {
namespace {

constexpr std::chrono::milliseconds kLookEvery{250};

}  // namespace

StreamSharing::StreamSharing() {
    starter_.setMaxThreadCount(1);
    timer_.callOnTimeout([this] { Look(); });
    timer_.start(kLookEvery);
}

StreamSharing::~StreamSharing() {
    starter_.waitForDone();
}

void StreamSharing::Share(StreamType type, const std::string& source, const QString& title, Done done) {
    starter_.start([this, type, source, title, done = std::move(done)] {
        const std::optional<std::string> failure = Engine::ShareStream(type, source);
        QMetaObject::invokeMethod(
            this,
            [this, type, title, done, failure] {
                if (!failure) titles_[type] = title;
                Look();
                done(failure);
            },
            Qt::QueuedConnection);
    });
}

void StreamSharing::Stop(StreamType type) {
    Engine::StopSharing(type);
    Look();
}

void StreamSharing::Look() {
    std::vector<SharedStream> shared;
    for (const StreamType type : Engine::SharedStreams()) {
        const auto title = titles_.find(type);
        shared.push_back({type, title == titles_.end() ? QString() : title->second});
    }
    if (shared == shared_) return;
    shared_ = std::move(shared);
    if (onChanged_) onChanged_();
}

}  // namespace Corvanta::Host
