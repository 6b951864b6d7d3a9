#include "host/SettingsDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

#include "host/KeyButton.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

constexpr const char* kNoDevice = "None";
constexpr const char* kPushToTalkKey = "Device.PushToTalkKey";
constexpr int kWidth = 420;

// Each item's data is the setting's text; empty leaves the choice to the engine.
std::string ChosenIn(const QComboBox& box) {
    return box.currentData().toString().toStdString();
}

void TellCamera(const std::string& name) {
    std::string bytes = name;
    SDLinterface_VideoRoomTriggerDeviceRenegociation(name.empty() ? nullptr : bytes.data(), nullptr, nullptr,
                                                     nullptr);
}

void TellSoundDevices(const std::string&) {
    SDLinterface_VideoRoomAudioDeviceUpdate(false);
}

}  // namespace

SettingsDialog::SettingsDialog(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("Settings"));
    auto* const rows = new QVBoxLayout(this);
    auto* const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    rows->addLayout(form);
    AddDevice(*form, QStringLiteral("&Camera:"), Engine::DeviceKind::Camera, "Device.Camera", TellCamera);
    AddDevice(*form, QStringLiteral("&Microphone:"), Engine::DeviceKind::Microphone, "Device.Microphone",
              TellSoundDevices);
    AddDevice(*form, QStringLiteral("S&peaker:"), Engine::DeviceKind::Speaker, "Device.Speaker",
              TellSoundDevices);
    AddKey(*form);
    AddProgram(*form, QStringLiteral("&DaVinci Resolve runs as:"), "ProcessMonitor.DaVinciResolve",
               QStringLiteral("resolve"));
    AddProgram(*form, QStringLiteral("Autodesk &Flame runs as:"), "ProcessMonitor.AutodeskFlame",
               QStringLiteral("flame"));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QObject::connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    rows->addWidget(buttons);
    resize(kWidth, sizeHint().height());
}

void SettingsDialog::AddDevice(QFormLayout& form, const QString& label, Engine::DeviceKind kind,
                               const std::string& key, std::function<void(const std::string&)> onChosen) {
    auto* const box = new QComboBox(this);
    // A device's long name is cut, rather than widening the dialog.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    form.addRow(label, box);
    devices_.push_back({kind, key, box});
    Fill(devices_.back());
    QObject::connect(box, &QComboBox::activated, this, [box, key, onChosen = std::move(onChosen)] {
        const std::string chosen = ChosenIn(*box);
        if (chosen == Engine::ReadSetting(key)) return;
        Engine::WriteSetting(key, chosen);
        onChosen(chosen);
    });
}

void SettingsDialog::AddKey(QFormLayout& form) {
    auto* const button =
        new KeyButton(this, [](const std::string& key) { Engine::WriteSetting(kPushToTalkKey, key); });
    button->SetKey(Engine::ReadSetting(kPushToTalkKey));
    auto* const clear = new QPushButton(QStringLiteral("C&lear"), this);
    clear->setAutoDefault(false);
    clear->setAccessibleName(QStringLiteral("No key for push-to-talk"));
    QObject::connect(clear, &QPushButton::clicked, this, [button] {
        Engine::WriteSetting(kPushToTalkKey, {});
        button->SetKey({});
    });
    auto* const row = new QHBoxLayout;
    row->addWidget(button, 1);
    row->addWidget(clear);
    auto* const label = new QLabel(QStringLiteral("&Hold to talk:"), this);
    label->setBuddy(button);
    form.addRow(label, row);
}

void SettingsDialog::AddProgram(QFormLayout& form, const QString& label, const std::string& key,
                                const QString& usual) {
    auto* const field = new QLineEdit(QString::fromStdString(Engine::ReadSetting(key)), this);
    field->setPlaceholderText(usual);
    QObject::connect(field, &QLineEdit::editingFinished, this, [field, key] {
        const std::string name = field->text().trimmed().toStdString();
        if (name != Engine::ReadSetting(key)) Engine::WriteSetting(key, name);
    });
    form.addRow(label, field);
}

void SettingsDialog::Fill(const DeviceSetting& device) {
    const QString set = QString::fromStdString(Engine::ReadSetting(device.key));
    QComboBox& box = *device.box;
    box.clear();
    box.addItem(QStringLiteral("Automatic"), QString());
    for (const std::string& name : Engine::ListDevices(device.kind)) {
        const QString text = QString::fromStdString(name);
        box.addItem(text, text);
    }
    box.addItem(QString::fromUtf8(kNoDevice), QString::fromUtf8(kNoDevice));
    if (box.findData(set) < 0) box.addItem(set + QStringLiteral(" (not there)"), set);
    box.setCurrentIndex(box.findData(set));
}

void SettingsDialog::Refresh() {
    for (const DeviceSetting& device : devices_) Fill(device);
}

}  // namespace Corvanta::Host
