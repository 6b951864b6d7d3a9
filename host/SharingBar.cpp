#include "host/SharingBar.h"

#include <QLabel>
#include <QPushButton>

#include <utility>

#include "host/StreamChoice.h"

namespace Corvanta::Host {
namespace {

constexpr int kSpace = 6;
constexpr int kWidestTitle = 240;

}  // namespace

SharingBar::SharingBar(QWidget* parent, std::function<void(StreamType)> onStop)
    : QWidget(parent), onStop_(std::move(onStop)), layout_(this) {
    setAutoFillBackground(true);
    layout_.setContentsMargins(kSpace, kSpace / 2, kSpace, kSpace / 2);
    layout_.setSpacing(kSpace);
    layout_.addStretch();
}

void SharingBar::SetShared(const std::vector<SharedStream>& shared) {
    for (QWidget* const entry : entries_) {
        entry->hide();
        // Its own button may be what asked for this.
        entry->deleteLater();
    }
    entries_.clear();
    for (const SharedStream& stream : shared) AddEntry(stream);
}

void SharingBar::AddEntry(const SharedStream& stream) {
    auto* const entry = new QWidget(this);
    auto* const row = new QHBoxLayout(entry);
    row->setContentsMargins({});
    const QString whole = QString::fromStdString(SharedLabel(stream.type, stream.title.toStdString()));
    auto* const label = new QLabel(entry);
    label->setTextFormat(Qt::PlainText);
    label->setText(label->fontMetrics().elidedText(whole, Qt::ElideMiddle, kWidestTitle));
    // A narrow window takes of the text, not of the button.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    label->setMinimumWidth(0);
    label->setToolTip(whole.toHtmlEscaped());
    row->addWidget(label, 1);
    auto* const stop = new QPushButton(QStringLiteral("Stop"), entry);
    stop->setAccessibleName(QStringLiteral("Stop sharing ") + whole);
    QObject::connect(stop, &QPushButton::clicked, this, [this, type = stream.type] { onStop_(type); });
    row->addWidget(stop);
    entry->setMaximumWidth(kWidestTitle + stop->sizeHint().width() + 2 * kSpace);
    layout_.insertWidget(static_cast<int>(entries_.size()), entry, 1);
    entry->show();
    entries_.push_back(entry);
}

}  // namespace Corvanta::Host
