// Shapes compared by their controlId, for sets of shapes that are borrowed or shared. It does not change
// once a canvas or a source has the shape. Any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "drawing/Shape.h"

namespace Corvanta::Drawing {

struct HashOfId {
    template <typename ShapePointer>
    size_t operator()(const ShapePointer& shape) const {
        return std::hash<std::string>{}(shape->controlId);
    }
};

struct SameId {
    template <typename ShapePointer>
    bool operator()(const ShapePointer& left, const ShapePointer& right) const {
        return left->controlId == right->controlId;
    }
};

}  // namespace Corvanta::Drawing
