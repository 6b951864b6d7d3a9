#include "drawing/ShapeReader.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include "drawing/Ellipse.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/Line.h"
#include "drawing/LinePath.h"
#include "drawing/Rectangle.h"
#include "drawing/TextBox.h"
#include "drawing/WireValues.h"
#include "platform/Logger.h"

namespace Corvanta::Drawing {

namespace {

template <typename Class>
[[nodiscard]] std::shared_ptr<Shape> Make(const nlohmann::json& data) {
    return std::make_shared<Class>(data);
}

struct ReadableClass {
    const char* name;
    std::shared_ptr<Shape> (*make)(const nlohmann::json& data);
};

constexpr ReadableClass kClasses[] = {
    {"Rectangle", Make<Rectangle>}, {"Line", Make<Line>},    {"Ellipse", Make<Ellipse>},
    {"LinePath", Make<LinePath>},   {"Text", Make<TextBox>}, {"ErasedLinePath", Make<ErasedLinePath>},
};

}  // namespace

std::shared_ptr<Shape> ReadShape(nlohmann::json&& element) {
    const std::string className = TakeText(element.at("className"));
    const nlohmann::json& data = element.at("data");
    const auto* const found =
        std::find_if(std::begin(kClasses), std::end(kClasses),
                     [&className](const ReadableClass& candidate) { return candidate.name == className; });
    if (found == std::end(kClasses)) {
        LOG(kLogWarning, "Attempting to draw unsupported type %s", className.c_str());
        return nullptr;
    }
    std::shared_ptr<Shape> shape = found->make(data);
    shape->controlId = TakeText(element.at("controlId"));
    return shape;
}

}  // namespace Corvanta::Drawing
