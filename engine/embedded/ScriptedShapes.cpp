#include "engine/embedded/ScriptedShapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string_view>
#include <utility>

namespace Corvanta::Engine {

namespace {

using nlohmann::json;

constexpr std::size_t kControlIdLength = 15;
constexpr std::string_view kIdLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

struct Ink {
    const char* strong;
    const char* faint;
};

// Each hand has a colour of its own.
constexpr std::array kInks{
    Ink{"rgba(232, 92, 65, 1.000000)", "rgba(232, 92, 65, 0.349020)"},
    Ink{"rgba(33, 150, 243, 1.000000)", "rgba(33, 150, 243, 0.349020)"},
    Ink{"rgba(102, 187, 106, 1.000000)", "rgba(102, 187, 106, 0.349020)"},
    Ink{"rgba(255, 202, 40, 1.000000)", "rgba(255, 202, 40, 0.349020)"},
};
constexpr const char* kNoFill = "rgba(0, 0, 0, 0.000000)";

// Places are those of a generated person on a canvas of 1280 to 720: the head in the middle, the name at the
// upper left, the clock at the upper right.

json Path(const char* color, json points) {
    return {{"className", "LinePath"},
            {"data",
             {{"order", 3},
              {"tailSize", 3},
              {"smooth", true},
              {"pointCoordinatePairs", std::move(points)},
              {"pointSize", 8U},
              {"pointColor", color}}}};
}

// By hand, so the end passes the beginning a little wide of it.
json RingAroundHead(const Ink& ink) {
    constexpr int kPoints = 48;
    json points = json::array();
    for (int i = 0; i <= kPoints + 2; ++i) {
        const double angle = -1.9 + 2.0 * std::numbers::pi * i / kPoints;
        const double wobble = 1.0 + 0.02 * std::sin(3.0 * angle) + 0.0012 * i;
        points.push_back({std::round(620.0 + 190.0 * wobble * std::cos(angle)),
                          std::round(285.0 + 205.0 * wobble * std::sin(angle))});
    }
    return Path(ink.strong, std::move(points));
}

json Tick(const Ink& ink) {
    json points = json::array();
    constexpr std::array<std::array<double, 2>, 3> kCorners{{{182.0, 470.0}, {232.0, 530.0}, {330.0, 392.0}}};
    constexpr int kSteps = 8;
    points.push_back(kCorners[0]);
    for (std::size_t corner = 1; corner < kCorners.size(); ++corner) {
        const auto& from = kCorners[corner - 1];
        const auto& to = kCorners[corner];
        for (int step = 1; step <= kSteps; ++step) {
            const double part = static_cast<double>(step) / kSteps;
            points.push_back({from[0] + part * (to[0] - from[0]), from[1] + part * (to[1] - from[1])});
        }
    }
    return Path(ink.strong, std::move(points));
}

json ArrowAtFace(const Ink& ink) {
    return {{"className", "Line"},
            {"data",
             {{"x1", 1010.0},
              {"y1", 420.0},
              {"x2", 780.0},
              {"y2", 330.0},
              {"strokeWidth", 10U},
              {"color", ink.strong},
              {"capStyle", "round"},
              {"dash", nullptr},
              {"endCapShapes", {nullptr, "arrow"}}}}};
}

json DashesUnderName(const Ink& ink) {
    return {{"className", "Line"},
            {"data",
             {{"x1", 36.0},
              {"y1", 104.0},
              {"x2", 330.0},
              {"y2", 104.0},
              {"strokeWidth", 6U},
              {"color", ink.strong},
              {"capStyle", "round"},
              {"dash", {18U, 36U}},
              {"endCapShapes", {nullptr, nullptr}}}}};
}

json HighlightOfClock(const Ink& ink) {
    return {{"className", "Ellipse"},
            {"data",
             {{"x", 1056.0},
              {"y", 2.0},
              {"width", 212.0},
              {"height", 108.0},
              {"fillColor", kNoFill},
              {"strokeColor", ink.faint},
              {"strokeWidth", 6U}}}};
}

json Remark(const Ink& ink) {
    return {{"className", "Text"},
            {"data",
             {{"x", 900.0},
              {"y", 450.0},
              {"text", "Brighter here?"},
              {"color", ink.strong},
              {"strokeWidth", 0U},
              {"font", "bold 40px Arial"},
              {"forcedWidth", 0},
              {"forcedHeight", 0},
              {"v", 1}}}};
}

constexpr std::array kDrawers{RingAroundHead, ArrowAtFace, Remark, DashesUnderName, HighlightOfClock, Tick};

std::string MakeControlId(std::mt19937& random) {
    std::string letters(kIdLetters);
    std::ranges::shuffle(letters, random);
    return letters.substr(0, kControlIdLength);
}

}  // namespace

json MakeScriptedShape(std::size_t kind, std::size_t hand, std::mt19937& random) {
    json shape = kDrawers[kind % kDrawers.size()](kInks[hand % kInks.size()]);
    const std::string controlId = MakeControlId(random);
    shape["controlId"] = controlId;
    shape["id"] = controlId;
    return shape;
}

std::string WriteBroadcast(const std::string& streamId, json shapes, ApplyShapes apply) {
    const json message{
        {"type", "draw-canvas-broadcast"},
        {"streamId", streamId},
        {"message", {{"clearCanvas", apply == ApplyShapes::Replace}, {"shapes", std::move(shapes)}}}};
    return message.dump();
}

}  // namespace Corvanta::Engine
