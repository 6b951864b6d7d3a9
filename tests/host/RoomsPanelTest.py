"""What people in one room write to each other: the chat and the notes of the panel, on windows side by side. CORVANTA_ROOM
names the program."""
import unittest

from RoomsDisplay import PANEL, WINDOW_HEIGHT, WINDOW_WIDTH, RoomsDisplay, is_like

DOT = (244, 67, 54)
# Where the bar's buttons are while the panel is closed, and where the pointer brings the bar back without being on one.
BAR = (100, 370, 520, 110)
EDGE_OF_BAR = (WINDOW_WIDTH // 2, WINDOW_HEIGHT - 5)
# Pixels of a word of three letters, and more than a cursor has.
LEAST_WORD = 25


def is_same_word(letters, others):
    """But for a pixel aside: after another name the letters begin at another part of a pixel."""
    def covers(some, more):
        return len(some & {(x + step, y) for x, y in more for step in (-1, 0, 1)}) >= 0.95 * len(some)

    return min(len(letters), len(others)) > LEAST_WORD and covers(letters, others) and covers(others, letters)


class RoomsPanelTest(RoomsDisplay):
    def meet_two(self):
        red, blue = self.enter("red"), self.enter("blue")
        self.meet(red, blue)
        return red, blue

    def has_dot(self, person):
        """At the button that opens the panel, which the pointer keeps in sight."""
        person.move(*EDGE_OF_BAR)
        return len(person.places(lambda pixel: is_like(pixel, DOT, 8), *BAR)) > 30

    def letters(self, person):
        # What stands there while nothing is written is darker.
        return person.places(lambda pixel: min(pixel) > 140, *PANEL)

    def end_of_line(self, person):
        """The last letters of the one line there is, from their right edge."""
        letters = self.letters(person)
        edge = max((x for x, _ in letters), default=0)
        return {(x - edge, y) for x, y in letters if x > edge - 26}

    def test_takes_a_line_of_the_chat_to_the_other_who_sees_the_dot(self):
        red, blue = self.meet_two()
        # That blue has come is news too, until the panel has been open.
        for _ in range(2):
            red.toggle_panel()
        self.until(lambda: not self.has_dot(red), "the dot is there before anybody has written")
        blue.toggle_panel()
        blue.press(*"hello", "Return")
        self.until(lambda: self.has_dot(red), "red is not told of the line")
        red.toggle_panel()
        self.until(lambda: self.letters(red), "red does not see the line")
        self.until(lambda: is_same_word(self.end_of_line(red), self.end_of_line(blue)), "red reads another line")
        red.toggle_panel()
        self.until(lambda: not self.has_dot(red), "the dot stays though the line was read")

    def test_shows_everybodys_notes_to_the_other(self):
        red, blue = self.meet_two()
        for person in (red, blue):
            person.toggle_panel()
            person.press("alt+n")
            self.until(lambda: self.has_empty_page(person), f"{person.colour} has notes already, or no page of notes")
        blue.press(*"one", "Return")
        self.until(lambda: self.has_same_notes(red, blue), "red does not see the notes of blue")
        before = len(self.letters(blue))
        red.press("ctrl+End", *"two")
        self.until(lambda: len(self.letters(blue)) > before + LEAST_WORD and self.has_same_notes(red, blue),
                   "blue does not see the notes of red")

    def has_empty_page(self, person):
        return person.has_panel() and len(self.letters(person)) < LEAST_WORD

    def has_same_notes(self, *people):
        # The cursor is in one of them.
        first, second = map(self.letters, people)
        return len(first) > LEAST_WORD and len(first ^ second) < LEAST_WORD


if __name__ == "__main__":
    unittest.main()
