// Any JSON for a shape: reading it throws what it promises or gives a shape, which writes itself, and reads
// back as it was written unless it is a text: a font may say less than it takes to be read.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "drawing/ShapeReader.h"
#include "drawing/TextBox.h"
#include "fuzz/DrawingInput.h"

using namespace Corvanta::Drawing;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    nlohmann::json element = nlohmann::json::parse(data, data + size, nullptr, false);
    if (element.is_discarded()) return 0;
    std::shared_ptr<Shape> shape;
    if (!Reads([&] { shape = ReadShape(std::move(element)); }) || !shape) return 0;
    nlohmann::json written = shape->ToJson();
    const std::string text = written.dump();
    if (std::dynamic_pointer_cast<TextBox>(shape)) return 0;
    if (ReadShape(std::move(written))->ToJson().dump() != text) std::abort();
    return 0;
}
