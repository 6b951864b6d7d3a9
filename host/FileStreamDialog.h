// The file chooser from which a file is streamed. It stays when the start fails, and says why. Main thread
// only.
#pragma once

#include <QFileDialog>
#include <QLabel>

#include <functional>
#include <optional>
#include <string>

#include "host/StreamDialog.h"

namespace Corvanta::Host {

class FileStreamDialog final : public QFileDialog {
public:
    FileStreamDialog(QWidget* parent, const StreamChoice& choice, StreamDialog::Start start);

    void accept() override;

private:
    void Answer(const std::optional<std::string>& failure);

    const StreamDialog::Start start_;
    bool waiting_ = false;
    QLabel message_;
};

}  // namespace Corvanta::Host
