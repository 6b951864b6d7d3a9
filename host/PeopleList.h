// Who is in the room: each with name, a mark while speaking, loudness, and a button to remove. Main thread
// only.
#pragma once

#include <QScrollArea>

#include <functional>
#include <map>
#include <span>
#include <string>

#include "engine/Engine.h"

class QLabel;
class QProgressBar;
class QVBoxLayout;

namespace Corvanta::Host {

class PeopleList final : public QScrollArea {
public:
    // onRemove: the person asks to remove the one of that id and name.
    using OnRemove = std::function<void(const std::string&, const std::string&)>;

    PeopleList(QWidget* parent, OnRemove onRemove);

    void SetPeople(std::span<const Engine::ParticipantInfo> people);

private:
    // Of one participant; all are children of `whole`.
    struct Row {
        QWidget* whole;
        QLabel* name;
        QProgressBar* loudness;
    };

    [[nodiscard]] Row AddRow(const Engine::ParticipantInfo& person);

    const OnRemove onRemove_;
    QVBoxLayout* rows_ = nullptr;
    std::map<std::string, Row> shown_;
};

}  // namespace Corvanta::Host
