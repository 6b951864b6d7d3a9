"""A person's mouse on the strip of tiles in the room's window: clicks, drags and turns of the wheel on a real display.
CORVANTA_ROOM names the program."""
import unittest

from RoomDisplay import COLOURS, RoomDisplay, is_of

# Of a tile of 160 pixels: no overlay of a resting tile stands in this row.
MIDDLE_OF_STRIP = 80
BORDER = (33, 150, 243)
# Pixels of one colour side by side that are a tile, not a letter.
LEAST_WIDTH = 60


class WallProgramTest(RoomDisplay):
    def open_strip(self, others):
        """The coloured participants come first, then that many who move."""
        self.open_room("--participants", str(others))
        self.left, self.top, self.width, self.height = self.geometry(self.room)
        self.move_off()
        return self.until_places(lambda places: len(places) == len(COLOURS), "the strip does not show every colour")

    def places(self):
        """The middle of each coloured tile in sight."""
        shot = self.shot()
        places = {}
        for name, strongest in COLOURS.items():
            columns = [x for x in range(self.width) if self.is_flat(shot, self.left + x, strongest)]
            if len(columns) >= LEAST_WIDTH:
                places[name] = columns[len(columns) // 2]
        return places

    def is_flat(self, shot, x, strongest):
        # The moving clips have patches of such a colour, but not from top to bottom.
        return all(is_of(shot.pixel(x, self.top + y), strongest) for y in range(MIDDLE_OF_STRIP - 25, MIDDLE_OF_STRIP + 26, 5))

    def until_places(self, condition, what):
        def look():
            places = self.places()
            return places if condition(places) else None

        return self.until(look, what)

    def order(self, places):
        return sorted(places, key=places.get)

    def move(self, x, y):
        self.do("mousemove", str(self.left + x), str(self.top + y))

    def move_off(self):
        """To the main video, where no tile is hovered."""
        self.move(self.width // 2, self.height - 10)

    def point_at(self, x):
        """Waits until the tile shows that the pointer is on it: a press counts where the tick before saw the pointer."""
        corner = lambda: self.shot().pixel(self.left + x, self.top + 3)
        before = corner()
        self.move(x, MIDDLE_OF_STRIP)
        self.until(lambda: sum(corner()) < 0.75 * sum(before), "the tile under the pointer does not get darker")

    def has_border(self, x):
        shot = self.shot()
        pixels = [shot.pixel(self.left + x, self.top + y) for y in (0, 1)]
        return all(abs(value - wanted) < 12 for pixel in pixels for value, wanted in zip(pixel, BORDER))

    def bordered(self, places):
        return {name for name, x in places.items() if self.has_border(x)}

    def main_video_is(self, name):
        shares = self.shot().shares(self.left, self.top + 200, self.width, self.height - 200)
        return shares[name] > 0.25

    def test_makes_a_clicked_tile_the_main_video_with_the_blue_border(self):
        places = self.open_strip(5)
        for name in ("lime", "red"):
            self.point_at(places[name])
            self.do("click", "1")
            self.move_off()
            self.until(lambda: self.main_video_is(name), f"{name} does not become the main video")
            self.until(lambda: self.has_border(places[name]), f"the tile of {name} gets no border")
            for other in places.keys() - {name}:
                self.assertFalse(self.has_border(places[other]), f"{other} has a border beside {name}")

    def test_moves_a_dragged_tile_to_another_place(self):
        places = self.open_strip(5)
        first, second, third = self.order(places)
        main = self.bordered(places)
        self.point_at(places[first])
        self.do("mousedown", "1")
        for target in (second, third):
            start = places[first] if target == second else places[second]
            for step in range(1, 5):
                self.move(start + (places[target] - start) * step // 4, MIDDLE_OF_STRIP)
            # The others make room while the tile is still held.
            self.until_places(lambda now: target in now and now[target] < places[target] - 40,
                              f"{target} does not make room")
        self.do("mouseup", "1")
        self.move_off()
        self.until_places(lambda now: self.order(now) == [second, third, first], "the order of the tiles does not change")
        # A drag is no click.
        self.until_places(lambda now: len(now) == len(COLOURS) and self.bordered(now) == main, "another main video is chosen")

    def test_scrolls_the_strip_by_the_wheel(self):
        places = self.open_strip(6)
        self.point_at(places["red"])
        self.until_places(lambda now: self.turn("5") and now.get("blue", 0) < places["blue"] - 150,
                          "the strip does not scroll")
        # The tile under the pointer is dimmed, so its place is not looked at.
        self.until_places(lambda now: self.turn("4") and self.is_near(now, places, "lime"), "the strip does not scroll back")
        self.move_off()
        self.until_places(lambda now: all(self.is_near(now, places, name) for name in COLOURS),
                          "the strip does not end where it began")

    def is_near(self, now, before, name):
        return name in now and abs(now[name] - before[name]) < 3

    def turn(self, button):
        # A step is a few pixels, and of the steps within one tick only the last counts.
        self.do("click", "--repeat", "15", "--delay", "20", button)
        return True


if __name__ == "__main__":
    unittest.main()
