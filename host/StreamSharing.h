// What the person shares: started off the event loop, since a file's beginning is read first, and watched for
// an end that comes by itself, such as that of a shared window. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/Engine.h"

namespace Corvanta::Host {

struct SharedStream {
    StreamType type;
    QString title;

    bool operator==(const SharedStream&) const = default;
};

class StreamSharing final : public QObject {
public:
    // Nothing when it has started, else why not.
    using Done = std::function<void(const std::optional<std::string>&)>;

    StreamSharing();
    // Waits for a start that is under way; its end is told to nobody.
    ~StreamSharing() override;
    StreamSharing(const StreamSharing&) = delete;
    StreamSharing& operator=(const StreamSharing&) = delete;

    // done is called on the event loop. title is what the person knows the source by.
    void Share(StreamType type, const std::string& source, const QString& title, Done done);
    void Stop(StreamType type);

    // In the order of their start.
    [[nodiscard]] const std::vector<SharedStream>& Shared() const { return shared_; }
    // Called when what is shared has changed.
    void SetOnChanged(std::function<void()> onChanged) { onChanged_ = std::move(onChanged); }

private:
    void Look();

    std::map<StreamType, QString> titles_;
    std::vector<SharedStream> shared_;
    std::function<void()> onChanged_;
    QTimer timer_;
    QThreadPool starter_;
};

}  // namespace Corvanta::Host
