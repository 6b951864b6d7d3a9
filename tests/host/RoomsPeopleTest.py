"""People who come to a room, share there, and go by their own will or without a word, on windows side by side. CORVANTA_ROOM
names the program."""
import ctypes
import unittest

from RoomsDisplay import MIDDLE_OF_STRIP, STRIP_HEIGHT, WINDOW_WIDTH, RoomsDisplay, is_like

# Of the test picture as the main video, where the name stands; and of the own tile where there are two.
NAME = (86, 166, 60, 32)
OWN_OF_TWO = 253
# From the middle of a tile: of the bars that open the figures of a connection, and of the figures themselves without their
# names.
BARS = (-86, 141)
FIGURES = (39, 42, 50, 110)
# Of nothing but the display itself.
MAGENTA = (255, 0, 255)
WARNING = (255, 181, 46)


class RoomsPeopleTest(RoomsDisplay):
    def letters(self, person):
        return person.places(lambda pixel: min(pixel) > 190, *NAME)

    def test_shows_each_the_other_ones_test_picture_with_its_name(self):
        one, two = self.enter_as("one"), self.enter_as("two")
        is_settled = lambda: self.share_of_letters(one, two) < 0.4 and len(self.letters(one)) > 50
        self.until(is_settled, "both have the same main video, or none")
        shown = self.letters(one)
        two.click_tile(OWN_OF_TWO)
        self.until(lambda: self.share_of(self.letters(two), shown) > 0.7, "what one has seen is not the picture of two")

    def share_of_letters(self, *people):
        return self.share_of(*map(self.letters, people))

    def share_of(self, letters, others):
        return len(letters & others) / max(1, len(letters | others))

    def test_shows_whoever_comes_late_everybody(self):
        red, blue = self.enter("red"), self.enter("blue")
        self.meet(red, blue)
        lime = self.enter("lime")
        self.meet(red, blue, lime)

    def test_shows_a_shared_file_to_all_others_until_it_is_stopped(self):
        red, blue = self.enter("red", "--share", "file=" + self.clip("lime")), self.enter("blue")
        for person in (red, blue):
            self.until(lambda: set(person.tiles()) == {"red", "blue", "lime"}, f"{person.colour} does not see the file")
        blue.choose("lime")
        # From the room the keyboard's next place is the button of the bar that says what is shared.
        red.press("Tab", "space")
        self.meet(red, blue)

    def test_shows_a_shared_screen_to_the_others(self):
        self.paint_display(MAGENTA)
        self.enter("red", "--share", "screen")
        blue = self.enter("blue")
        # By then the window is painted itself.
        self.until(lambda: {"red", "blue"} <= set(blue.tiles()), "blue does not see red")
        is_screen = lambda: blue.share(lambda pixel: is_like(pixel, MAGENTA, 60), 0, 0, WINDOW_WIDTH, STRIP_HEIGHT) > 0.08
        self.until(is_screen, "blue does not see the screen")

    def paint_display(self, colour):
        x11, display, root = self.screen.x11, self.screen.display, self.screen.root
        red, green, blue = colour
        x11.XSetWindowBackground(display, root, ctypes.c_ulong(red << 16 | green << 8 | blue))
        x11.XClearWindow(display, root)
        x11.XSync(display, 0)

    def test_shows_the_figures_of_somebody_elses_connection(self):
        red, blue = self.enter("red"), self.enter("blue")
        self.meet(red, blue)
        middle = red.tiles()["blue"]
        red.point_at_tile(middle)
        red.move(middle + BARS[0], BARS[1])
        has_panel = lambda: "blue" not in red.tiles()
        self.until(lambda: has_panel() or self.do("click", "1") or red.soon(has_panel), "the figures do not open")
        figures = lambda: red.places(lambda pixel: min(pixel) > 140, middle + FIGURES[0], *FIGURES[1:])
        first = self.until(lambda: self.enough(figures()), "there are no figures")
        # They come from the other's program, again and again.
        self.until(lambda: self.enough(figures() ^ first, 20), "the figures stay the same")

    def enough(self, letters, least=400):
        return letters if len(letters) > least else None

    def test_shows_that_somebody_is_lost_and_then_goes_on_without(self):
        red, blue, lime = self.enter("red"), self.enter("blue"), self.enter("lime")
        self.meet(red, blue, lime)
        blue.kill()
        for person in (red, lime):
            self.until(lambda: self.shows_loss(person), f"{person.colour} is not told of the loss")
        self.meet(red, lime)
        self.assertFalse(self.shows_loss(red) or self.shows_loss(lime))

    def shows_loss(self, person):
        is_warning = lambda pixel: is_like(pixel, WARNING)
        return len(person.places(is_warning, 0, MIDDLE_OF_STRIP - 50, WINDOW_WIDTH, 80)) > 100


if __name__ == "__main__":
    unittest.main()
