#include "ui/GraphicElementInterface.h"

#include <gtest/gtest.h>

namespace Corvanta::UI {
namespace {

class Element final : public GraphicElementInterface {
public:
    void Render(SDL_Renderer*, SDL_Point) override {}
    bool OnClick() override { return false; }
};

bool HoversAt(Element& element, int x, int y) {
    element.OnHover({x, y});
    return element.hovered;
}

TEST(GraphicElement, StartsVisibleWithoutSizeAndNotHovered) {
    const Element element;
    EXPECT_TRUE(element.visible);
    EXPECT_FALSE(element.hovered);
    EXPECT_EQ(element.width, 0);
    EXPECT_EQ(element.height, 0);
    EXPECT_EQ(element.pitch, 0);
    EXPECT_TRUE(SDL_RectEquals(&element.rect, &element.sourceRect));
}

TEST(GraphicElement, IsNeverHoveredBeforeItWasDrawn) {
    Element element;
    element.SetWidth(100);
    element.SetHeight(100);
    EXPECT_FALSE(HoversAt(element, 0, 0));
    EXPECT_FALSE(HoversAt(element, 50, 50));
    EXPECT_FALSE(HoversAt(element, -1, -1));
}

TEST(GraphicElement, IsHitOnItsLeftAndTopEdgeButNotOnItsRightAndBottomEdge) {
    Element element;
    element.rect = {10, 20, 30, 40};
    EXPECT_TRUE(HoversAt(element, 10, 20));
    EXPECT_TRUE(HoversAt(element, 39, 59));
    EXPECT_FALSE(HoversAt(element, 40, 20));
    EXPECT_FALSE(HoversAt(element, 10, 60));
    EXPECT_FALSE(HoversAt(element, 9, 20));
    EXPECT_FALSE(HoversAt(element, 10, 19));
}

TEST(GraphicElement, IsHitLeftOfAndAboveTheOriginToo) {
    Element element;
    element.rect = {-10, -10, 5, 5};
    EXPECT_TRUE(HoversAt(element, -10, -10));
    EXPECT_TRUE(HoversAt(element, -6, -6));
    EXPECT_FALSE(HoversAt(element, -5, -6));
}

TEST(GraphicElement, ForgetsTheHoverWhenThePointerLeaves) {
    Element element;
    element.rect = {0, 0, 2, 2};
    EXPECT_TRUE(HoversAt(element, 1, 1));
    EXPECT_FALSE(HoversAt(element, 2, 1));
}

TEST(GraphicElement, IsHitByWhereItWasDrawnAndNotByTheSizeAskedFor) {
    Element element;
    element.rect = {0, 0, 10, 10};
    element.SetWidth(100);
    element.SetHeight(100);
    EXPECT_FALSE(HoversAt(element, 50, 5));
    element.SetWidth(1);
    EXPECT_TRUE(HoversAt(element, 5, 5));
}

TEST(GraphicElement, IsHoveredAlsoWhileItIsInvisible) {
    Element element;
    element.rect = {0, 0, 10, 10};
    element.SetVisible(false);
    EXPECT_FALSE(element.visible);
    EXPECT_TRUE(HoversAt(element, 5, 5));
}

TEST(GraphicElement, IsNotHitInAnEmptyOrTurnedRectangle) {
    Element element;
    element.rect = {5, 5, 0, 10};
    EXPECT_FALSE(HoversAt(element, 5, 5));
    element.rect = {5, 5, -10, -10};
    EXPECT_FALSE(HoversAt(element, 0, 0));
    EXPECT_FALSE(HoversAt(element, 5, 5));
}

}  // namespace
}  // namespace Corvanta::UI
