// A dialog in which the person chooses what to stream: from a list, or by an address. It stays when the start
// fails, and says why. Main thread only.
#pragma once

#include <QDialog>
#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/StreamChoice.h"

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QListWidget;

namespace Corvanta::Host {

struct StreamSource {
    std::string source;  // as the engine takes it
    QString title;       // as the person knows it
};

class StreamDialog final : public QDialog {
public:
    // Nothing when it has started, else why not.
    using Done = std::function<void(const std::optional<std::string>&)>;
    // Asked for when the person has chosen. Done closes the dialog or shows why there is no stream; it may be
    // called when the dialog has gone.
    using Start = std::function<void(const StreamSource&, Done)>;
    // What there is to choose from; asked at first and for "Refresh".
    using ListSources = std::function<std::vector<StreamSource>()>;

    // listSources: for a choice from a list.
    StreamDialog(QWidget* parent, const StreamChoice& choice, ListSources listSources, Start start);

    void ShowFailure(const std::string& line);
    // The list anew; what is chosen stays chosen. Nothing for an address.
    void Refresh();

    void accept() override;

private:
    void Answer(const std::optional<std::string>& failure);
    [[nodiscard]] std::optional<StreamSource> Chosen() const;
    void SetWaiting(bool waiting);
    void LookAtChoice();

    const ListSources listSources_;
    const Start start_;
    bool waiting_ = false;
    std::vector<StreamSource> sources_;
    // Children of this dialog; of list and field one is there.
    QListWidget* list_ = nullptr;
    QLineEdit* field_ = nullptr;
    QLabel* message_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
};

}  // namespace Corvanta::Host
