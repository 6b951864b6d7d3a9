"""The program by itself, with the guests that it invites, on a private display. CORVANTA_ROOM names the program."""
import unittest

from RoomsDisplay import CORAL, MIDDLE_OF_STRIP, Person, RoomsDisplay, is_like

SIZE = (1000, 480)
# Of the tiles of the guests, beside the person's own, which comes first.
GUESTS = (393, 606, 819)
TILES = (287, 2, 639, 156)


class RoomsGuestsTest(RoomsDisplay):
    def test_shows_every_guest_and_what_they_draw(self):
        person = Person(self, self.start(size=SIZE), 0, "")
        self.people.append(person)
        person.place_window("^Room - Corvanta$", SIZE)
        for x in GUESTS:
            self.until(lambda: self.has_picture(person, x), f"the guest at {x} has no picture")
        first = [person.pixels(x - 60, 20, 120, 100) for x in GUESTS]
        for x, before in zip(GUESTS, first):
            self.until(lambda: person.pixels(x - 60, 20, 120, 100) != before, f"the guest at {x} does not move")
        # Of the first of them.
        self.until(lambda: len(person.places(lambda pixel: is_like(pixel, CORAL, 12), *TILES)) > 60, "no guest draws")

    def has_picture(self, person, x):
        """Instead of the grey of somebody who has none yet."""
        is_coloured = lambda pixel: max(pixel) - min(pixel) > 24
        return person.share(is_coloured, x - 60, MIDDLE_OF_STRIP - 50, 120, 60) > 0.7


if __name__ == "__main__":
    unittest.main()
