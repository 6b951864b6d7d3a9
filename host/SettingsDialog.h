// The person's devices, the key for push-to-talk, and the names of the programs that the room watches for.
// What is changed is kept and takes effect at once. Main thread only.
#pragma once

#include <QComboBox>
#include <QDialog>

#include <functional>
#include <string>
#include <vector>

#include "engine/Engine.h"

class QFormLayout;

namespace Corvanta::Host {

class KeyButton;

class SettingsDialog final : public QDialog {
public:
    explicit SettingsDialog(QWidget* parent);

    // The devices that there are have changed.
    void Refresh();

private:
    struct DeviceSetting {
        Engine::DeviceKind kind;
        std::string key;
        QComboBox* box;  // child of this dialog
    };

    void AddDevice(QFormLayout& form, const QString& label, Engine::DeviceKind kind, const std::string& key,
                   std::function<void(const std::string&)> onChosen);
    void AddKey(QFormLayout& form);
    void AddProgram(QFormLayout& form, const QString& label, const std::string& key, const QString& usual);
    static void Fill(const DeviceSetting& device);

    std::vector<DeviceSetting> devices_;
};

}  // namespace Corvanta::Host
