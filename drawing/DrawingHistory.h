// What the local user has done on one stream, as actions and a cursor. Undo moves the cursor; what then
// remains is drawn again from VisibleShapes. Nobody else's marks are in it. Render thread.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "drawing/DrawingAction.h"
#include "drawing/Shape.h"

namespace Corvanta::Drawing {

class DrawingHistory final {
public:
    [[nodiscard]] bool CanUndo() const { return cursor > 0; }
    [[nodiscard]] bool CanRedo() const { return cursor < actions.size(); }

    // Each ends what could be redone, and returns false when it records nothing: a clear right after a clear,
    // a shape that is visible already, the deletion of one that is not.
    bool RecordClear();
    bool RecordCreate(std::shared_ptr<Shape> shape);
    bool RecordDelete(const std::string& controlId);

    // False when there is nothing to do.
    bool Undo();
    // type: of the action that is in force again.
    bool Redo(int& type);

    // What is in force, oldest first.
    [[nodiscard]] std::vector<std::shared_ptr<Shape>> VisibleShapes() const;

    // Oldest first.
    std::vector<std::shared_ptr<DrawingAction::BaseAction>> actions;
    // Actions before it lie behind the last clear. firstVisible <= cursor <= actions.size().
    size_t firstVisible = 0;
    // How many actions are in force.
    size_t cursor = 0;

private:
    void Push(std::shared_ptr<DrawingAction::BaseAction> action);
    void Validate() const;
};

}  // namespace Corvanta::Drawing
