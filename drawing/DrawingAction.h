// What the local user can do to a drawing. Values of the history.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "drawing/Shape.h"

namespace Corvanta::Drawing::DrawingAction {

class BaseAction {
public:
    virtual ~BaseAction() = default;
    // 0 clear, 1 create, 2 delete.
    [[nodiscard]] virtual int Type() const = 0;
};

class ClearAll final : public BaseAction {
public:
    static constexpr int kType = 0;
    [[nodiscard]] int Type() const override { return kType; }
};

class CreateShape final : public BaseAction {
public:
    static constexpr int kType = 1;
    explicit CreateShape(std::shared_ptr<Shape> created) : shape(std::move(created)) {}
    [[nodiscard]] int Type() const override { return kType; }

    const std::shared_ptr<Shape> shape;
};

class DeleteShape final : public BaseAction {
public:
    static constexpr int kType = 2;
    explicit DeleteShape(std::string deleted) : controlId(std::move(deleted)) {}
    [[nodiscard]] int Type() const override { return kType; }

    const std::string controlId;
};

}  // namespace Corvanta::Drawing::DrawingAction
