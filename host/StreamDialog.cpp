#include "host/StreamDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace Corvanta::Host {
namespace {

constexpr int kWidth = 420;
constexpr int kListHeight = 200;

QString ToText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// An address may carry a password, which is nobody's to read.
QString AddressTitle(const QString& address) {
    const QUrl url(address);
    return url.isValid() ? url.toDisplayString(QUrl::RemoveUserInfo) : address;
}

}  // namespace

StreamDialog::StreamDialog(QWidget* parent, const StreamChoice& choice, ListSources listSources, Start start)
    : QDialog(parent), listSources_(std::move(listSources)), start_(std::move(start)) {
    setWindowTitle(ToText(choice.title));
    auto* const rows = new QVBoxLayout(this);
    auto* const label = new QLabel(ToText(choice.label), this);
    rows->addWidget(label);
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    if (choice.kind == StreamChoice::Kind::List) {
        list_ = new QListWidget(this);
        label->setBuddy(list_);
        rows->addWidget(list_);
        QObject::connect(list_, &QListWidget::itemActivated, this, [this] { accept(); });
        QObject::connect(list_, &QListWidget::currentRowChanged, this, [this] { LookAtChoice(); });
        QPushButton* const refresh =
            buttons_->addButton(QStringLiteral("&Refresh"), QDialogButtonBox::ActionRole);
        QObject::connect(refresh, &QPushButton::clicked, this, [this] { Refresh(); });
    } else {
        field_ = new QLineEdit(this);
        label->setBuddy(field_);
        rows->addWidget(field_);
        QObject::connect(field_, &QLineEdit::textChanged, this, [this] { LookAtChoice(); });
    }
    message_ = new QLabel(this);
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->hide();
    rows->addWidget(message_);
    rows->addWidget(buttons_);
    buttons_->button(QDialogButtonBox::Ok)->setText(QStringLiteral("&Share"));
    QObject::connect(buttons_, &QDialogButtonBox::accepted, this, &StreamDialog::accept);
    QObject::connect(buttons_, &QDialogButtonBox::rejected, this, &StreamDialog::reject);
    resize(kWidth, list_ != nullptr ? kListHeight : sizeHint().height());
    Refresh();
    LookAtChoice();
}

void StreamDialog::Refresh() {
    if (list_ == nullptr) return;
    const std::optional<StreamSource> before = Chosen();
    sources_ = listSources_();
    list_->clear();
    int chosen = 0;
    for (const StreamSource& source : sources_) {
        list_->addItem(source.title);
        if (before && before->source == source.source) chosen = list_->count() - 1;
    }
    if (!sources_.empty()) list_->setCurrentRow(chosen);
    LookAtChoice();
}

std::optional<StreamSource> StreamDialog::Chosen() const {
    if (list_ != nullptr) {
        const int row = list_->currentRow();
        if (row < 0 || static_cast<std::size_t>(row) >= sources_.size()) return std::nullopt;
        return sources_[static_cast<std::size_t>(row)];
    }
    const QString address = field_->text().trimmed();
    if (address.isEmpty()) return std::nullopt;
    return StreamSource{address.toStdString(), AddressTitle(address)};
}

void StreamDialog::LookAtChoice() {
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(!waiting_ && Chosen().has_value());
}

void StreamDialog::accept() {
    if (waiting_) return;
    const std::optional<StreamSource> chosen = Chosen();
    if (!chosen) return;
    SetWaiting(true);
    start_(*chosen, [self = QPointer(this)](const std::optional<std::string>& failure) {
        if (self) self->Answer(failure);
    });
}

void StreamDialog::SetWaiting(bool waiting) {
    waiting_ = waiting;
    message_->setText(waiting ? QStringLiteral("Starting...") : QString());
    message_->setVisible(waiting);
    LookAtChoice();
}

void StreamDialog::Answer(const std::optional<std::string>& failure) {
    SetWaiting(false);
    if (failure) {
        ShowFailure(*failure);
    } else {
        QDialog::accept();
    }
}

void StreamDialog::ShowFailure(const std::string& line) {
    message_->setText(QString::fromStdString(line));
    message_->show();
}

}  // namespace Corvanta::Host
