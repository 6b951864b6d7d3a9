// The bar above the room that says what is being shared, with a button to stop each. Main thread only.
#pragma once

#include <QHBoxLayout>
#include <QWidget>

#include <functional>
#include <vector>

#include "host/StreamSharing.h"

namespace Corvanta::Host {

class SharingBar final : public QWidget {
public:
    SharingBar(QWidget* parent, std::function<void(StreamType)> onStop);

    void SetShared(const std::vector<SharedStream>& shared);

private:
    void AddEntry(const SharedStream& stream);

    const std::function<void(StreamType)> onStop_;
    QHBoxLayout layout_;
    std::vector<QWidget*> entries_;  // children of this widget
};

}  // namespace Corvanta::Host
