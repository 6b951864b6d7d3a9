#include "host/StreamDialogs.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engine/Engine.h"
#include "host/FileStreamDialog.h"

namespace Corvanta::Host {
namespace {

std::vector<StreamSource> SourcesOf(StreamType type) {
    std::vector<StreamSource> sources;
    if (type == StreamType::Screenshare) {
        for (const Engine::ScreenTarget& target : Engine::ListScreenTargets()) {
            sources.push_back({std::to_string(target.window), QString::fromStdString(target.title)});
        }
    } else {
        for (const std::string& device : Engine::ListDevices(Engine::DeviceKind::Camera)) {
            sources.push_back({device, QString::fromStdString(device)});
        }
    }
    return sources;
}

}  // namespace

StreamDialogs::StreamDialogs(QWidget& parent, StreamSharing& sharing) : parent_(parent), sharing_(sharing) {}

StreamDialogs::~StreamDialogs() {
    delete open_;
}

void StreamDialogs::Open(StreamType type) {
    if (const std::optional<StreamChoice> choice = StreamChoiceOf(type)) Open(*choice);
}

void StreamDialogs::OpenMediaSilo() {
    Open(MediaSiloChoice());
}

void StreamDialogs::StartApplication(StreamType type, std::int32_t processId) {
    if (type == StreamType::Screenshare && !IsOpen()) {
        const std::vector<Engine::ScreenTarget> targets = Engine::ListScreenTargets();
        if (const Engine::ScreenTarget* const window = WindowOfProcess(targets, processId)) {
            sharing_.Share(type, std::to_string(window->window), QString::fromStdString(window->title),
                           [this](const std::optional<std::string>& failure) {
                               if (failure) Open(*StreamChoiceOf(StreamType::Screenshare), *failure);
                           });
            return;
        }
    }
    Open(type);
}

void StreamDialogs::RefreshDevices() {
    if (auto* const dialog = dynamic_cast<StreamDialog*>(open_.data())) dialog->Refresh();
}

bool StreamDialogs::IsOpen() const {
    // One that was closed stays a moment before it goes.
    return open_ != nullptr && open_->isVisible();
}

bool StreamDialogs::RaiseOpenOne() {
    if (!IsOpen()) return false;
    open_->raise();
    open_->activateWindow();
    return true;
}

void StreamDialogs::Open(const StreamChoice& choice, const std::string& failure) {
    if (RaiseOpenOne()) return;
    const StreamDialog::Start start = [&sharing = sharing_, type = choice.type](const StreamSource& chosen,
                                                                                StreamDialog::Done done) {
        sharing.Share(type, chosen.source, chosen.title, std::move(done));
    };
    if (choice.kind == StreamChoice::Kind::File) {
        Show(new FileStreamDialog(&parent_, choice, start));
        return;
    }
    auto* const dialog = new StreamDialog(
        &parent_, choice, [type = choice.type] { return SourcesOf(type); }, start);
    if (!failure.empty()) dialog->ShowFailure(failure);
    Show(dialog);
}

void StreamDialogs::Show(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    open_ = dialog;
    dialog->show();
}

}  // namespace Corvanta::Host
