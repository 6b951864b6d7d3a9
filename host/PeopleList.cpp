#include "host/PeopleList.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/ShownName.h"

namespace Corvanta::Host {
namespace {

constexpr int kMeterSteps = 100;
constexpr int kMeterHeight = 4;

int MeterStep(double loudness) {
    return loudness > 0.0 ? static_cast<int>(std::lround(std::min(loudness, 1.0) * kMeterSteps)) : 0;
}

}  // namespace

PeopleList::PeopleList(QWidget* parent, OnRemove onRemove)
    : QScrollArea(parent), onRemove_(std::move(onRemove)) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    // The keyboard goes from button to button.
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* const content = new QWidget;
    rows_ = new QVBoxLayout(content);
    rows_->addStretch();
    setWidget(content);
}

PeopleList::Row PeopleList::AddRow(const Engine::ParticipantInfo& person) {
    auto* const whole = new QWidget(widget());
    auto* const grid = new QGridLayout(whole);
    grid->setContentsMargins({});
    auto* const name = new QLabel(whole);
    name->setTextFormat(Qt::PlainText);
    name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* const remove = new QPushButton(QStringLiteral("Remove"), whole);
    remove->setAccessibleName(QStringLiteral("Remove ") + ShownName(person.name));
    QObject::connect(remove, &QPushButton::clicked, this,
                     [this, id = person.streamId, called = person.name] { onRemove_(id, called); });
    auto* const loudness = new QProgressBar(whole);
    loudness->setRange(0, kMeterSteps);
    loudness->setTextVisible(false);
    loudness->setFixedHeight(kMeterHeight);
    grid->addWidget(name, 0, 0);
    grid->addWidget(remove, 0, 1, 2, 1);
    grid->addWidget(loudness, 1, 0);
    grid->setColumnStretch(0, 1);
    rows_->insertWidget(rows_->count() - 1, whole);
    return {whole, name, loudness};
}

void PeopleList::SetPeople(std::span<const Engine::ParticipantInfo> people) {
    std::map<std::string, Row> gone = shown_;
    for (const Engine::ParticipantInfo& person : people) {
        gone.erase(person.streamId);
        auto found = shown_.find(person.streamId);
        if (found == shown_.end()) found = shown_.emplace(person.streamId, AddRow(person)).first;
        const Row& row = found->second;
        QString name = ShownName(person.name);
        if (person.isSpeaking) name += QStringLiteral(" (speaking)");
        if (row.name->text() != name) {
            row.name->setText(name);
            QFont font = row.name->font();
            font.setBold(person.isSpeaking);
            row.name->setFont(font);
        }
        row.loudness->setValue(MeterStep(person.loudness));
    }
    for (const auto& [id, row] : gone) {
        shown_.erase(id);
        row.whole->hide();
        // Its own button may be what led here.
        row.whole->deleteLater();
    }
}

}  // namespace Corvanta::Host
