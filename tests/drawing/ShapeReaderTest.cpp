// What is thrown at a shape that cannot be read, and in which order its parts are looked at.
#include "drawing/ShapeReader.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tests/drawing/WireTest.h"
#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Drawing {
namespace {

using namespace Testing;
using Corvanta::Testing::Fake;
using nlohmann::json;
using Texts = std::vector<std::string>;

// A golden shape and its required fields in the order in which they are looked at.
struct ShapeFields {
    const char* golden;
    Texts fields;
};

const std::vector<ShapeFields>& AllFields() {
    static const std::vector<ShapeFields> all = {
        {kRectangle, {"x", "y", "width", "height", "fillColor", "strokeColor", "strokeWidth"}},
        {kEllipse, {"x", "y", "width", "height", "fillColor", "strokeColor", "strokeWidth"}},
        {kLine, {"x1", "x2", "y1", "y2", "color", "endCapShapes", "dash", "strokeWidth"}},
        {kLinePath, {"pointColor", "pointCoordinatePairs", "pointSize"}},
        {kErasedLinePath, {"pointColor", "pointCoordinatePairs", "pointSize"}},
        {kText, {"x", "y", "text", "color", "font"}},
    };
    return all;
}

[[nodiscard]] std::string ThrownAt(json shape) {
    return ThrownBy([&shape] { return ReadShape(std::move(shape)); });
}

[[nodiscard]] std::string ThrownAtField(const char* golden, const std::string& field, const char* value) {
    json shape = json::parse(golden);
    shape["data"][field] = json::parse(value);
    return ThrownAt(std::move(shape));
}

[[nodiscard]] std::string Missing(const std::string& key) {
    std::string text = "out_of_range 403: key '";
    text += key;
    text += "' not found";
    return text;
}

// A JSON value and its type's name as the library gives it.
struct TypedValue {
    const char* text;
    const char* type;
};
constexpr TypedValue kNull{"null", "null"};
constexpr TypedValue kTrue{"true", "boolean"};
constexpr TypedValue kNumber{"1.5", "number"};
constexpr TypedValue kString{R"("1")", "string"};
constexpr TypedValue kArray{"[1,2]", "array"};
constexpr TypedValue kObject{R"({"a":1,"b":2})", "object"};

[[nodiscard]] std::string MustBe(const char* wanted, const TypedValue& value) {
    return std::string("type_error 302: type must be ") + wanted + ", but is " + value.type;
}

[[nodiscard]] std::string NoNumericIndex(const TypedValue& value) {
    return std::string("type_error 305: cannot use operator[] with a numeric argument with ") + value.type;
}

TEST(ShapeReader, RefusesAnElementThatIsNoObject) {
    for (const TypedValue& value : {kNull, kTrue, kNumber, kString, kArray}) {
        EXPECT_EQ(ThrownAt(json::parse(value.text)),
                  std::string("type_error 304: cannot use at() with ") + value.type);
    }
}

TEST(ShapeReader, RefusesDataThatIsNoObject) {
    for (const ShapeFields& shape : AllFields()) {
        for (const TypedValue& value : {kNull, kTrue, kNumber, kString, kArray}) {
            json element = json::parse(shape.golden);
            element["data"] = json::parse(value.text);
            EXPECT_EQ(ThrownAt(std::move(element)),
                      std::string("type_error 304: cannot use at() with ") + value.type);
        }
    }
}

TEST(ShapeReader, LooksAtClassThenDataThenFieldsThenName) {
    json element = json::parse(kRectangle);
    element.erase("controlId");
    EXPECT_EQ(ThrownAt(element), Missing("controlId"));
    element["data"].erase("x");
    EXPECT_EQ(ThrownAt(element), Missing("x"));
    element.erase("data");
    EXPECT_EQ(ThrownAt(element), Missing("data"));
    element.erase("className");
    EXPECT_EQ(ThrownAt(element), Missing("className"));
}

TEST(ShapeReader, RefusesAClassOrANameThatIsNoText) {
    for (const TypedValue& value : {kNull, kTrue, kNumber, kArray, kObject}) {
        for (const char* const key : {"className", "controlId"}) {
            json element = json::parse(kLine);
            element[key] = json::parse(value.text);
            EXPECT_EQ(ThrownAt(std::move(element)), MustBe("string", value)) << key;
        }
    }
}

TEST(ShapeReader, LooksAtFieldsInTheirOrder) {
    for (const ShapeFields& shape : AllFields()) {
        json element = json::parse(shape.golden);
        for (auto field = shape.fields.rbegin(); field != shape.fields.rend(); ++field) {
            element["data"].erase(*field);
            EXPECT_EQ(ThrownAt(element), Missing(*field)) << shape.golden;
        }
    }
}

TEST(ShapeReader, TakesNothingElseForAPosition) {
    const std::pair<const char*, Texts> positions[] = {{kRectangle, {"x", "y", "width", "height"}},
                                                       {kEllipse, {"x", "y", "width", "height"}},
                                                       {kLine, {"x1", "x2", "y1", "y2"}},
                                                       {kText, {"x", "y"}}};
    for (const auto& [golden, fields] : positions) {
        for (const std::string& field : fields) {
            for (const TypedValue& value : {kNull, kTrue, kString, kArray, kObject}) {
                EXPECT_EQ(ThrownAtField(golden, field, value.text), MustBe("number", value)) << field;
            }
        }
    }
}

TEST(ShapeReader, TakesNothingElseForAWidth) {
    const std::pair<const char*, const char*> widths[] = {{kRectangle, "strokeWidth"},
                                                          {kEllipse, "strokeWidth"},
                                                          {kLine, "strokeWidth"},
                                                          {kLinePath, "pointSize"},
                                                          {kErasedLinePath, "pointSize"}};
    for (const auto& [golden, field] : widths) {
        for (const TypedValue& value : {kNull, kString, kArray, kObject}) {
            EXPECT_EQ(ThrownAtField(golden, field, value.text), MustBe("number", value)) << golden;
        }
    }
}

TEST(ShapeReader, TakesNothingElseForAText) {
    const std::pair<const char*, Texts> texts[] = {{kRectangle, {"fillColor", "strokeColor"}},
                                                   {kEllipse, {"fillColor", "strokeColor"}},
                                                   {kLine, {"color"}},
                                                   {kLinePath, {"pointColor"}},
                                                   {kErasedLinePath, {"pointColor"}},
                                                   {kText, {"text", "color", "font"}}};
    for (const auto& [golden, fields] : texts) {
        for (const std::string& field : fields) {
            for (const TypedValue& value : {kNull, kTrue, kNumber, kArray, kObject}) {
                EXPECT_EQ(ThrownAtField(golden, field, value.text), MustBe("string", value)) << field;
            }
        }
    }
}

TEST(ShapeReader, TakesOnlyAListForThePointsOfAPath) {
    for (const char* const golden : {kLinePath, kErasedLinePath}) {
        for (const TypedValue& value : {kNull, kTrue, kNumber, kString, kObject}) {
            EXPECT_EQ(ThrownAtField(golden, "pointCoordinatePairs", value.text), MustBe("array", value));
        }
    }
}

TEST(ShapeReader, TakesOnlyAListForAPoint) {
    for (const TypedValue& value : {kNull, kTrue, kNumber, kString, kObject}) {
        const std::string points = std::string("[[1,2],") + value.text + "]";
        EXPECT_EQ(ThrownAtField(kLinePath, "pointCoordinatePairs", points.c_str()), NoNumericIndex(value));
    }
}

TEST(ShapeReader, NeedsTwoNumbersForAPoint) {
    EXPECT_EQ(ThrownAtField(kLinePath, "pointCoordinatePairs", "[[]]"), MustBe("number", kNull));
    EXPECT_EQ(ThrownAtField(kLinePath, "pointCoordinatePairs", "[[1]]"), MustBe("number", kNull));
    for (const TypedValue& value : {kNull, kTrue, kString, kArray, kObject}) {
        const std::string first = std::string("[[") + value.text + ",2]]";
        const std::string second = std::string("[[1,") + value.text + "]]";
        EXPECT_EQ(ThrownAtField(kLinePath, "pointCoordinatePairs", first.c_str()), MustBe("number", value));
        EXPECT_EQ(ThrownAtField(kLinePath, "pointCoordinatePairs", second.c_str()), MustBe("number", value));
    }
}

TEST(ShapeReader, TakesOnlyAListForADash) {
    for (const TypedValue& value : {kTrue, kNumber, kString, kObject}) {
        EXPECT_EQ(ThrownAtField(kLine, "dash", value.text), NoNumericIndex(value));
    }
    EXPECT_EQ(ThrownAtField(kLine, "dash", R"("")"), NoNumericIndex(kString));
    EXPECT_EQ(ThrownAtField(kLine, "dash", R"({"a":1})"), NoNumericIndex(kObject));
}

TEST(ShapeReader, TakesOnlyANumberForTheLengthOfADash) {
    for (const TypedValue& value : {kNull, kString, kArray, kObject}) {
        const std::string dash = std::string("[") + value.text + ",2]";
        EXPECT_EQ(ThrownAtField(kLine, "dash", dash.c_str()), MustBe("number", value));
    }
}

TEST(ShapeReader, RefusesEndsOfALineThatAreAnObjectOfMoreThanOneMember) {
    EXPECT_EQ(ThrownAtField(kLine, "endCapShapes", R"({"a":1,"b":2})"), NoNumericIndex(kObject));
}

TEST(ShapeReader, PassesOnWhatTheFontThrows) {
    EXPECT_EQ(ThrownAtField(kText, "font", R"("largepx Arial")"),
              "std::invalid_argument: invalid stoi argument");
    EXPECT_EQ(ThrownAtField(kText, "font", R"("4294967296px Arial")"),
              "std::out_of_range: stoi argument out of range");
    EXPECT_EQ(ThrownAtField(kText, "font", R"("bold 24px")"), "std::length_error: string too long");
}

TEST(ShapeReader, ReadsAnUnreadableColourAsOpaqueBlack) {
    json element = json::parse(kRectangle);
    element["data"]["fillColor"] = "green";
    const auto shape = ReadShape(std::move(element));
    EXPECT_EQ(shape->ToJson()["data"]["fillColor"], "rgba(0, 0, 0, 1.000000)");
}

class UnknownClass : public testing::Test {
protected:
    UnknownClass() { Fake().Reset(); }
};

TEST_F(UnknownClass, IsLoggedAndGivesNoShape) {
    for (const char* const name : {"Polygon", "rectangle", "TextBox", "Rectangle ", ""}) {
        Fake().ClearLogs();
        json element = json::parse(kRectangle);
        element["className"] = name;
        EXPECT_EQ(ReadShape(std::move(element)), nullptr);
        EXPECT_EQ(Fake().LogsOf(3), Texts{std::string("Attempting to draw unsupported type ") + name});
    }
}

TEST_F(UnknownClass, NeedsDataOfAnyKindAndNoName) {
    EXPECT_EQ(ReadShape(json::parse(R"({"className":"Polygon","data":null})")), nullptr);
    Fake().ClearLogs();
    EXPECT_EQ(ThrownAt(json::parse(R"({"className":"Polygon","controlId":"abc"})")), Missing("data"));
    EXPECT_TRUE(Fake().LogsOf(3).empty());
}

}  // namespace
}  // namespace Corvanta::Drawing
