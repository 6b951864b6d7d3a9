// Opens the dialog for a kind of stream and starts what is chosen there. One dialog at a time: a further wish
// brings the open one to the front. Main thread only.
#pragma once

#include <QDialog>
#include <QPointer>

#include <cstdint>
#include <string>

#include "host/StreamDialog.h"
#include "host/StreamSharing.h"

namespace Corvanta::Host {

class StreamDialogs final {
public:
    // Both must outlive this object.
    StreamDialogs(QWidget& parent, StreamSharing& sharing);
    ~StreamDialogs();
    StreamDialogs(const StreamDialogs&) = delete;
    StreamDialogs& operator=(const StreamDialogs&) = delete;

    // Nothing for a camera, and for a number that is no kind of stream.
    void Open(StreamType type);
    void OpenMediaSilo();
    // As a screen share, the window of that program without a question, if it has one.
    void StartApplication(StreamType type, std::int32_t processId);
    // The cameras that there are have changed.
    void RefreshDevices();

private:
    [[nodiscard]] bool IsOpen() const;
    // True when one is open, which has come to the front.
    bool RaiseOpenOne();
    // failure: of a start without a dialog, for which this one is opened instead.
    void Open(const StreamChoice& choice, const std::string& failure = {});
    void Show(QDialog* dialog);

    QWidget& parent_;
    StreamSharing& sharing_;
    QPointer<QDialog> open_;
};

}  // namespace Corvanta::Host
