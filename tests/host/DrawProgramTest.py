"""A person's mouse and keys with the drawing tools, over the pictures of the room. CORVANTA_ROOM names the program."""
import time
import unittest

from RoomDisplay import RoomDisplay

WINDOW = (0x12, 0x13, 0x16)
# The pencil's colour of the first time, which no participant has.
CORAL = (232, 92, 65)
# Of the middle of a tool's button from the palette's left edge.
LINE, TEXT, ERASER = 61, 147, 183


def is_like(pixel, colour, difference=24):
    return all(abs(value - wanted) <= difference for value, wanted in zip(pixel, colour))


class DrawProgramTest(RoomDisplay):
    def open_tools(self):
        self.open_room("--camera", "none")
        self.left, self.top, self.width, self.height = self.geometry(self.room)
        self.press("F4")
        self.palette = self.until(self.left_edge_of_palette, "the tools do not open")

    def press(self, *keys):
        self.do("windowfocus", "--sync", self.room)
        self.do("key", "--delay", "60", *keys)

    def left_edge_of_palette(self):
        """In a row through its middle; the strip of the room below the pictures is black."""
        shot = self.shot()
        row = self.top + self.height - 50
        for x in range(self.left, self.left + self.width // 2):
            if all(is_like(shot.pixel(x + i, row), WINDOW, 2) for i in range(2, 6)):
                return x
        return None

    def choose(self, tool):
        self.click(self.palette - self.left + tool, self.height - 50)

    def move(self, x, y):
        self.do("mousemove", str(self.left + x), str(self.top + y))

    def drag(self, points):
        self.move(*points[0])
        # A press counts where the tick before saw the pointer, and the pencil takes a point in 21 ms.
        time.sleep(0.3)
        self.do("mousedown", "1")
        for point in points[1:]:
            self.move(*point)
            time.sleep(0.1)
        self.do("mouseup", "1")
        time.sleep(0.2)

    def click(self, x, y):
        self.drag([(x, y)])

    def marks(self):
        """Pixels of the mark's colour on the main video."""
        shot = self.shot()
        return sum(is_like(shot.pixel(x, y), CORAL) for y in range(self.top + 165, self.top + self.height - 105)
                   for x in range(self.left, self.left + self.width))

    def until_marks(self, condition, act, what):
        """While the bar goes, and on a busy machine, a gesture can be lost, and is made again."""
        counts = []

        def look():
            act()
            counts.append(self.marks())
            return condition(counts[-1])

        self.until(look, what)
        return counts[-1]

    def middle(self, dx, dy):
        return self.width // 2 + dx, 165 + (self.height - 270) // 2 + dy

    def test_draws_a_stroke_that_goes_and_comes_back(self):
        self.open_tools()
        self.assertEqual(self.marks(), 0)
        stroke = [self.middle(-60, 0), self.middle(-20, 20), self.middle(20, -20), self.middle(60, 0)]
        self.until_marks(lambda count: count > 100, lambda: self.drag(stroke), "there is no stroke")
        self.until_marks(lambda count: count == 0, lambda: self.press("ctrl+z"), "the stroke stays")
        self.until_marks(lambda count: count > 100, lambda: self.press("ctrl+shift+z"), "the stroke does not come back")
        self.press("F4")
        self.until(lambda: not self.left_edge_of_palette(), "the tools stay open")
        self.assertGreater(self.marks(), 100)

    def test_writes_a_text_that_a_click_beside_it_finishes(self):
        self.open_tools()
        self.choose(TEXT)

        def write():
            self.click(*self.middle(-60, -10))
            self.press("m", "m", "m")

        self.until_marks(lambda count: count > 20, write, "there is no text")
        self.click(*self.middle(100, 50))
        # What can be taken back was no longer open.
        self.until_marks(lambda count: count == 0, lambda: self.press("ctrl+z"), "the text stays")

    def test_erases_what_the_eraser_goes_over(self):
        self.open_tools()
        self.choose(LINE)
        line = [self.middle(-60, 0), self.middle(60, 0)]
        before = self.until_marks(lambda count: count > 100, lambda: self.drag(line), "there is no line")
        self.choose(ERASER)
        along = [self.middle(0, 0), self.middle(30, 0), self.middle(60, 0)]
        self.until_marks(lambda count: 0 < count < before - 50, lambda: self.drag(along), "nothing is erased")

    def test_knows_the_tool_of_the_last_time(self):
        self.open_tools()
        self.choose(LINE)
        self.press("ctrl+q")
        self.program.wait(timeout=40)
        self.open_tools()
        # Of a line's drag only its ends count.
        bent = [self.middle(-60, 0), self.middle(0, 40), self.middle(60, 0)]
        self.until_marks(lambda count: count > 100, lambda: self.drag(bent), "there is no line")
        self.assertFalse(is_like(self.shot().pixel(*self.on_screen(self.middle(0, 40))), CORAL))

    def on_screen(self, place):
        return self.left + place[0], self.top + place[1]


if __name__ == "__main__":
    unittest.main()
