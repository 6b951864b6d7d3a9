"""Several people in one room, each with a program and a window of their own, side by side on one private display. There
is one mouse, which they use in turn. CORVANTA_ROOM names the program."""
import signal
import subprocess
import time

from RoomDisplay import COLOURS, PROGRAM, RoomDisplay, Screen, end_with_parent, is_of

ROOM = "review"
# Three in a row, in two rows.
WINDOW_WIDTH, WINDOW_HEIGHT = 720, 480
COLUMNS = 3
# Of the strip of tiles, below which the main video begins. No overlay of a resting tile stands in the row.
STRIP_HEIGHT = 160
MIDDLE_OF_STRIP = 80
LEAST_TILE = 60
# Where the main video is beside the drawing tools, left, top, width and height, and what surely is the tools'.
DRAWN_ON = (165, 165, 390, 205)
TOOLS = (20, 455, 60, 8)
TOOLS_GROUND = (0x12, 0x13, 0x16)
# The pencil's colour of the first time, which no camera here has.
CORAL = (0xE8, 0x5C, 0x41)
# Of the page that is open in the panel, and the page's own colour.
PANEL = (450, 38, 240, 320)
FIELD = (0x1C, 0x1E, 0x23)


def is_like(pixel, colour, difference=24):
    return all(abs(value - wanted) <= difference for value, wanted in zip(pixel, colour))


def colour_of(pixel):
    """Of a participant, if it is one's."""
    return next((name for name, strongest in COLOURS.items() if is_of(pixel, strongest)), None)


def are_same(marks, others):
    """At the same places, but for what the pictures below do to their edges."""
    return len(marks & others) >= 0.9 * len(marks | others)


class Person:
    """Somebody in the room: a program, its window, and what the mouse and the keys do there. All places are the window's
    own."""

    def __init__(self, test, program, slot, colour):
        self.test, self.program, self.colour = test, program, colour
        # Whoever has gone on purpose need not run.
        self.is_here = True
        self.left, self.top = slot % COLUMNS * WINDOW_WIDTH, slot // COLUMNS * WINDOW_HEIGHT

    def place_window(self, title, size=(WINDOW_WIDTH, WINDOW_HEIGHT)):
        self.room = self.until(lambda: self.test.find_of(self.program, title), "the window does not open")[0]
        self.test.do("windowmove", self.room, str(self.left), str(self.top))
        self.until(lambda: self.test.geometry(self.room) == (self.left, self.top, *size), "the window keeps its place")

    def until(self, look, what):
        return self.test.until(look, what)

    def pixels(self, left, top, width, height):
        """Rows of colours."""
        return self.test.screen.pixels(self.left + left, self.top + top, width, height)

    def judged(self, judge, left, top, width, height):
        """Rows of what a function says of each pixel's colour."""
        return self.test.screen.judged(judge, self.left + left, self.top + top, width, height)

    def share(self, is_wanted, *rectangle):
        """Of the pixels of a rectangle (left, top, width, height), those that are as wanted."""
        rows = self.judged(is_wanted, *rectangle)
        return sum(map(sum, rows)) / sum(map(len, rows))

    def places(self, is_wanted, left, top, width, height):
        """Those of the pixels that are as wanted."""
        rows = self.judged(is_wanted, left, top, width, height)
        return {(x, y) for y, row in enumerate(rows, top) if any(row) for x, is_one in enumerate(row, left) if is_one}

    # The mouse and the keys.

    def press(self, *keys):
        # Without a window manager nobody else gives a window the keyboard.
        self.test.do("windowfocus", "--sync", self.room)
        self.test.do("key", "--delay", "60", *keys)

    def move(self, x, y):
        self.test.do("mousemove", str(self.left + x), str(self.top + y))

    def drag(self, points):
        self.move(*points[0])
        # A press counts where the tick before saw the pointer, and the pencil takes a point in 21 ms.
        time.sleep(0.3)
        self.test.do("mousedown", "1")
        for point in points[1:]:
            self.move(*point)
            time.sleep(0.1)
        self.test.do("mouseup", "1")
        time.sleep(0.2)

    # The tiles and the main video.

    def tiles(self):
        """The middle of each coloured tile in sight. A mark is no reason not to see one."""
        rows = self.judged(colour_of, 0, MIDDLE_OF_STRIP - 48, WINDOW_WIDTH, 96)[::8]
        columns = list(zip(*rows))
        found = {}
        for colour in COLOURS:
            places = [x for x, column in enumerate(columns) if column.count(colour) > len(column) / 2]
            if len(places) >= LEAST_TILE:
                found[colour] = places[len(places) // 2]
        return found

    def sees(self, *people):
        """Whether these have tiles with pictures, and nobody else of the coloured ones."""
        return set(self.tiles()) == {person.colour for person in people}

    def choose(self, colour):
        """Its tile is clicked, and its picture becomes the main video."""
        self.click_tile(self.until(lambda: self.tiles().get(colour), f"there is no tile of {colour}"))
        self.until(lambda: self.has_main_video(colour), f"{colour} does not become the main video")

    def click_tile(self, x):
        self.point_at_tile(x)
        self.test.do("click", "1")
        self.move_off()

    def point_at_tile(self, x):
        self.move_off()
        is_bright = lambda: max(self.pixels(x, 3, 1, 1)[0][0]) > 140
        self.until(is_bright, "the tile does not come to rest")
        self.move(x, MIDDLE_OF_STRIP)
        # A press counts where the tick before saw the pointer.
        self.until(lambda: not is_bright(), "the tile under the pointer does not get darker")

    def move_off(self):
        """To the main video, where no tile is hovered."""
        self.move(WINDOW_WIDTH // 2, 300)

    def has_main_video(self, colour):
        return self.share(lambda pixel: is_of(pixel, COLOURS[colour]), *DRAWN_ON) > 0.9

    # The drawing tools.

    def has_tools(self):
        return self.share(lambda pixel: is_like(pixel, TOOLS_GROUND, 3), *TOOLS) > 0.9

    def open_tools(self):
        self.press("F4")
        self.until(self.has_tools, "the drawing tools do not open")

    def marks(self):
        """Of the pencil, on the main video beside the tools."""
        return self.places(lambda pixel: is_like(pixel, CORAL), *DRAWN_ON)

    def draw(self, points):
        """On a busy machine a gesture can be lost, and is made again."""
        before = len(self.marks())
        is_there = lambda: len(self.marks()) > before + 100
        self.until(lambda: self.drag(points) or self.soon(is_there), "there is no stroke")
        return self.marks()

    def change_marks(self, key, marks):
        """As often as the gestures were made."""
        look = lambda: are_same(self.marks(), marks)
        self.until(lambda: self.press(key) or self.soon(look), f"{self.colour} cannot change the marks by {key}")

    def soon(self, look):
        end = time.monotonic() + 2
        while not look():
            if time.monotonic() > end:
                return False
            time.sleep(0.05)
        return True

    # The panel.

    def has_panel(self):
        return self.share(lambda pixel: is_like(pixel, FIELD, 3), *PANEL) > 0.7

    def toggle_panel(self):
        before = self.has_panel()
        self.press("F2")
        self.until(lambda: self.has_panel() != before, "the panel stays as it is")

    # The end.

    def leave(self):
        """By the key that ends the program."""
        self.is_here = False
        self.press("ctrl+q")
        self.test.assertEqual(self.program.wait(timeout=self.test.patience_seconds), 0)

    def kill(self):
        self.is_here = False
        self.program.send_signal(signal.SIGKILL)
        self.program.wait()


class RoomsDisplay(RoomDisplay):
    # Several programs with videos take their time on a busy machine.
    patience_seconds = 120

    def setUp(self):
        super().setUp()
        self.people = []
        self.open_display()
        self.screen = Screen(self.environment["DISPLAY"])
        self.addCleanup(self.screen.close)

    def start(self, *arguments, size=(WINDOW_WIDTH, WINDOW_HEIGHT)):
        program = subprocess.Popen([PROGRAM, "--size", "{}x{}".format(*size), *arguments], cwd=self.folder,
                                   env=self.environment, preexec_fn=end_with_parent, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        return program

    def enter(self, colour, *arguments):
        """Somebody comes with a camera of that colour, and is named by it."""
        return self.enter_as(colour, "--camera", self.clip(colour), *arguments)

    def enter_as(self, name, *arguments):
        """Somebody comes, to the next place on the display."""
        program = self.start("--room", ROOM, "--name", name, *arguments)
        person = Person(self, program, len(self.people), name)
        self.people.append(person)
        person.place_window(f"^{ROOM} - Corvanta$")
        return person

    def meet(self, *people):
        """Waits until all of these see each other."""
        for person in people:
            self.until(lambda: person.sees(*people), f"{person.colour} does not see {[other.colour for other in people]}")

    def assert_runs(self):
        for person in self.people:
            if person.is_here:
                self.assertIsNone(person.program.poll(), "a program has ended")

    def find_of(self, program, title):
        """The windows of that program alone."""
        try:
            return self.do("search", "--all", "--onlyvisible", "--pid", str(program.pid), "--name", title).split()
        except subprocess.CalledProcessError:
            return []
