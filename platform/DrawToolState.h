/* The drawing tool that the host has chosen, with its settings. A C record in natural alignment, shared with
   the host: the order of its members is part of the interface. Colours are 0xRRGGBBAA, widths and sizes
   canvas units. */
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

/* Values of selectedTool. complexSelectedShape keeps to those from Arrow to Rectangle. */
enum DrawTool {
    DrawToolPencil = 0,
    DrawToolLine = 1,
    DrawToolArrow = 2,
    DrawToolDashedLine = 3,
    DrawToolEllipse = 4,
    DrawToolRectangle = 5,
    DrawToolText = 6,
    DrawToolEraser = 7
};

typedef struct DrawToolState {
    bool enabled;
    uint32_t selectedTool;
    int32_t complexSelectedShape;
    double pencilStrokeWidth;
    double shapeStrokeWidth;
    /* Zero-terminated UTF-8. Loading releases the text that stands here and puts a new one, which is the
       caller's from then on; setting copies it. */
    char* fontFamilyName;
    double fontSize;
    bool useBoldFont;
    bool useItalicizedFont;
    uint32_t primaryColor;
    uint32_t secondaryColor;
    double eraserStrokeWidth;
} DrawToolState;

#if defined(__cplusplus) && UINTPTR_MAX == UINT64_MAX
static_assert(offsetof(DrawToolState, selectedTool) == 4);
static_assert(offsetof(DrawToolState, complexSelectedShape) == 8);
static_assert(offsetof(DrawToolState, pencilStrokeWidth) == 16);
static_assert(offsetof(DrawToolState, shapeStrokeWidth) == 24);
static_assert(offsetof(DrawToolState, fontFamilyName) == 32);
static_assert(offsetof(DrawToolState, fontSize) == 40);
static_assert(offsetof(DrawToolState, useBoldFont) == 48);
static_assert(offsetof(DrawToolState, useItalicizedFont) == 49);
static_assert(offsetof(DrawToolState, primaryColor) == 52);
static_assert(offsetof(DrawToolState, secondaryColor) == 56);
static_assert(offsetof(DrawToolState, eraserStrokeWidth) == 64);
static_assert(sizeof(DrawToolState) == 72);
#endif
