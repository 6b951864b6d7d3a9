#include "drawing/DrawingHistory.h"

#include <algorithm>
#include <cassert>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace Corvanta::Drawing {

namespace {

using DrawingAction::BaseAction;
using DrawingAction::ClearAll;
using DrawingAction::CreateShape;
using DrawingAction::DeleteShape;

// Null when the action is of another type.
template <typename Action>
const Action* As(const std::shared_ptr<BaseAction>& action) {
    return action->Type() == Action::kType ? static_cast<const Action*>(action.get()) : nullptr;
}

bool IsCreationOf(const std::shared_ptr<BaseAction>& action, const std::string& controlId) {
    const auto* const creation = As<CreateShape>(action);
    return creation != nullptr && creation->shape->controlId == controlId;
}

bool IsDeletionOf(const std::shared_ptr<BaseAction>& action, const std::string& controlId) {
    const auto* const deletion = As<DeleteShape>(action);
    return deletion != nullptr && deletion->controlId == controlId;
}

auto At(const std::vector<std::shared_ptr<BaseAction>>& actions, size_t index) {
    return actions.begin() + static_cast<std::ptrdiff_t>(index);
}

}  // namespace

bool DrawingHistory::RecordClear() {
    if (cursor > 0 && actions[cursor - 1]->Type() == ClearAll::kType) return false;
    Push(std::make_shared<ClearAll>());
    firstVisible = cursor;
    Validate();
    return true;
}

bool DrawingHistory::RecordCreate(std::shared_ptr<Shape> shape) {
    if (shape == nullptr) return false;
    const auto isSame = [&](const auto& action) { return IsCreationOf(action, shape->controlId); };
    if (std::any_of(At(actions, firstVisible), At(actions, cursor), isSame)) return false;
    Push(std::make_shared<CreateShape>(std::move(shape)));
    return true;
}

bool DrawingHistory::RecordDelete(const std::string& controlId) {
    const auto first = At(actions, firstVisible);
    const auto last = At(actions, cursor);
    const auto creates = [&](const auto& action) { return IsCreationOf(action, controlId); };
    const auto deletes = [&](const auto& action) { return IsDeletionOf(action, controlId); };
    if (std::none_of(first, last, creates) || std::any_of(first, last, deletes)) return false;
    Push(std::make_shared<DeleteShape>(controlId));
    return true;
}

bool DrawingHistory::Undo() {
    if (!CanUndo()) return false;
    --cursor;
    if (actions[cursor]->Type() == ClearAll::kType) {
        size_t index = cursor;
        while (index > 0 && actions[index - 1]->Type() != ClearAll::kType) --index;
        firstVisible = index > 0 ? index - 1 : 0;
    }
    Validate();
    return true;
}

bool DrawingHistory::Redo(int& type) {
    if (!CanRedo()) return false;
    ++cursor;
    type = actions[cursor - 1]->Type();
    if (type == ClearAll::kType) firstVisible = cursor - 1;
    Validate();
    return true;
}

std::vector<std::shared_ptr<Shape>> DrawingHistory::VisibleShapes() const {
    std::unordered_set<std::string_view> deleted;
    for (auto action = At(actions, firstVisible); action != At(actions, cursor); ++action) {
        if (const auto* const deletion = As<DeleteShape>(*action)) deleted.insert(deletion->controlId);
    }
    std::vector<std::shared_ptr<Shape>> shapes;
    shapes.reserve(cursor - firstVisible);
    for (auto action = At(actions, firstVisible); action != At(actions, cursor); ++action) {
        const auto* const creation = As<CreateShape>(*action);
        if (creation != nullptr && !deleted.contains(creation->shape->controlId)) {
            shapes.push_back(creation->shape);
        }
    }
    return shapes;
}

void DrawingHistory::Push(std::shared_ptr<BaseAction> action) {
    actions.resize(cursor);
    actions.push_back(std::move(action));
    cursor = actions.size();
    Validate();
}

void DrawingHistory::Validate() const {
    assert(firstVisible <= cursor);
    assert(cursor <= actions.size());
}

}  // namespace Corvanta::Drawing
