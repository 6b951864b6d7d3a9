// The window of the room's sound: a slider for all participants, one for all other streams, and one for each
// participant with a meter beside it. Main thread only.
#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "engine/Engine.h"

class QSlider;
class QVBoxLayout;
class QScrollArea;

namespace Corvanta::Host {

class VolumeRow;

class AudioMixer final : public QWidget {
public:
    // A window of its own beside the parent's. onClosed: the person has closed it, in the midst of an event
    // of it.
    AudioMixer(QWidget* parent, std::function<void()> onClosed);

    void Open();
    // With this stream's slider in focus; one that is no participant's, such as the user's own, gets a slider
    // until the window closes.
    void OpenAt(const std::string& streamId, const std::string& name, double volume);
    void Close();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    struct Entry {
        VolumeRow* row = nullptr;  // child of this window
        bool isExtra = false;
    };

    VolumeRow* AddRow(const std::string& streamId, const QString& name, double volume);
    void Remove(std::map<std::string, Entry>::iterator entry);
    void Look();
    void End();

    const std::function<void()> onClosed_;
    QScrollArea* scroll_ = nullptr;
    QVBoxLayout* rows_ = nullptr;
    std::map<std::string, Entry> entries_;
    QTimer timer_;
};

}  // namespace Corvanta::Host
