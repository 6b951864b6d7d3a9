"""Marks that people in one room draw for each other, with a real mouse on windows side by side. CORVANTA_ROOM names the
program."""
import unittest

from RoomsDisplay import RoomsDisplay, are_same

WAVE = [(280, 250), (330, 280), (380, 220), (430, 250)]
LOWER_WAVE = [(280, 320), (330, 340), (380, 300), (430, 320)]


class RoomsDrawingTest(RoomsDisplay):
    def look_at(self, colour, *people):
        """All have the same main video, of the same size."""
        for person in people:
            person.open_tools()
            person.choose(colour)

    def until_same(self, marks, *people):
        """Waits until all have these marks."""
        for person in people:
            self.until(lambda: are_same(person.marks(), marks), f"{person.colour} has other marks")

    def test_shows_each_mark_at_the_same_place_in_both_windows(self):
        red, blue = self.enter("red"), self.enter("blue")
        self.meet(red, blue)
        self.look_at("blue", red, blue)
        upper = red.draw(WAVE)
        self.until_same(upper, blue)
        both = blue.draw(LOWER_WAVE)
        self.assertGreater(len(both & upper), 0.9 * len(upper))
        self.until_same(both, red)
        # Everybody takes back the own mark alone.
        lower = both - upper
        red.change_marks("ctrl+z", lower)
        self.until_same(lower, blue)
        blue.change_marks("ctrl+z", set())
        self.until_same(set(), red)
        red.change_marks("ctrl+shift+z", upper)
        self.until_same(upper, blue)

    def test_shows_whoever_comes_late_all_marks(self):
        red, blue = self.enter("red"), self.enter("blue")
        self.meet(red, blue)
        self.look_at("blue", red, blue)
        red.draw(WAVE)
        both = blue.draw(LOWER_WAVE)
        self.until_same(both, red)
        lime = self.enter("lime")
        self.meet(red, blue, lime)
        self.look_at("blue", lime)
        self.until_same(both, lime)

    def test_goes_on_when_the_one_who_opened_the_room_leaves(self):
        red, blue, lime = self.enter("red"), self.enter("blue"), self.enter("lime")
        self.meet(red, blue, lime)
        red.leave()
        self.meet(blue, lime)
        self.look_at("lime", blue, lime)
        marks = blue.draw(WAVE)
        self.until_same(marks, lime)
        marks = lime.draw(LOWER_WAVE)
        self.until_same(marks, blue)


if __name__ == "__main__":
    unittest.main()
