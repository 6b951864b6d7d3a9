// What the tests of the wire share: golden texts, and what a call throws, as a text.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace Corvanta::Drawing::Testing {

inline constexpr char kRectangle[] =
    R"j({"className":"Rectangle","controlId":"abc","data":{"fillColor":"rgba(0, 128, 255, 0.501961)",)j"
    R"j("height":-20.5,"strokeColor":"rgba(255, 0, 0, 1.000000)","strokeWidth":4,"width":-100.0,)j"
    R"j("x":640.0,"y":360.25},"id":"abc"})j";

inline constexpr char kEllipse[] =
    R"j({"className":"Ellipse","controlId":"abc","data":{"fillColor":"rgba(0, 0, 0, 0.000000)",)j"
    R"j("height":20.0,"strokeColor":"rgba(1, 2, 3, 0.015686)","strokeWidth":70000,"width":0.125,)j"
    R"j("x":-3.0,"y":0.0},"id":"abc"})j";

inline constexpr char kLine[] =
    R"j({"className":"Line","controlId":"abc","data":{"capStyle":"round","color":"rgba(9, 8, 7, 1.000000)",)j"
    R"j("dash":null,"endCapShapes":[null,null],"strokeWidth":5,"x1":1.0,"x2":3.5,"y1":2.0,"y2":-4.0},)j"
    R"j("id":"abc"})j";

inline constexpr char kArrow[] =
    R"j({"className":"Line","controlId":"abc","data":{"capStyle":"round","color":"rgba(9, 8, 7, 1.000000)",)j"
    R"j("dash":null,"endCapShapes":[null,"arrow"],"strokeWidth":5,"x1":1.0,"x2":3.5,"y1":2.0,"y2":-4.0},)j"
    R"j("id":"abc"})j";

inline constexpr char kDashedLine[] =
    R"j({"className":"Line","controlId":"abc","data":{"capStyle":"round","color":"rgba(9, 8, 7, 1.000000)",)j"
    R"j("dash":[40,80],"endCapShapes":[null,null],"strokeWidth":5,"x1":1.0,"x2":3.5,"y1":2.0,"y2":-4.0},)j"
    R"j("id":"abc"})j";

inline constexpr char kLinePath[] =
    R"j({"className":"LinePath","controlId":"abc","data":{"order":3,"pointColor":"rgba(255, 0, 0, 0.501961)",)j"
    R"j("pointCoordinatePairs":[[10.0,20.0],[10.5,-20.25],[1e+308,0.1]],"pointSize":8,"smooth":true,)j"
    R"j("tailSize":3},"id":"abc"})j";

inline constexpr char kErasedLinePath[] =
    R"j({"className":"ErasedLinePath","controlId":"abc","data":{"order":3,"pointColor":"#000",)j"
    R"j("pointCoordinatePairs":[[10.0,20.0]],"pointSize":30,"smooth":true,"tailSize":3},"id":"abc"})j";

inline constexpr char kText[] =
    R"j({"className":"Text","controlId":"abc","data":{"color":"rgba(255, 255, 255, 1.000000)",)j"
    R"j("font":"italic bold 24px Arial","forcedHeight":0,"forcedWidth":0,"strokeWidth":0,)j"
    R"j("text":"one\ntwo \"ü\"","v":1,"x":5.0,"y":6.5},"id":"abc"})j";

inline constexpr const char* kGoldenShapes[] = {kRectangle,  kEllipse,  kLine,           kArrow,
                                                kDashedLine, kLinePath, kErasedLinePath, kText};

// "type_error 302: type must be string, but is null"; "nothing" when it returns.
template <typename Function>
[[nodiscard]] std::string ThrownBy(Function&& function) {
    const auto described = [](const char* type, const nlohmann::json::exception& thrown) {
        const std::string text = thrown.what();
        std::string description = type;
        description += ' ';
        description += std::to_string(thrown.id);
        description += ": ";
        description += text.substr(text.find("] ") + 2);
        return description;
    };
    const auto plain = [](const char* type, const std::exception& thrown) {
        std::string description = type;
        description += ": ";
        description += thrown.what();
        return description;
    };
    try {
        static_cast<void>(function());
    } catch (const nlohmann::json::parse_error& thrown) {
        return described("parse_error", thrown);
    } catch (const nlohmann::json::type_error& thrown) {
        return described("type_error", thrown);
    } catch (const nlohmann::json::out_of_range& thrown) {
        return described("out_of_range", thrown);
    } catch (const std::invalid_argument& thrown) {
        return plain("std::invalid_argument", thrown);
    } catch (const std::out_of_range& thrown) {
        return plain("std::out_of_range", thrown);
    } catch (const std::length_error& thrown) {
        return plain("std::length_error", thrown);
    }
    return "nothing";
}

}  // namespace Corvanta::Drawing::Testing
