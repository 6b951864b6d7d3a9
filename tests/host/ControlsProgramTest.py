"""The program's own bar, panel, mixer and settings, by a person's keys on a real display. CORVANTA_ROOM names the
program."""
import contextlib
import glob
import os
import re
import sqlite3
import time
import unittest

from RoomDisplay import RoomDisplay

WINDOW = (0x12, 0x13, 0x16)
FIELD = (0x1C, 0x1E, 0x23)


def is_like(pixel, colour, difference=3):
    return all(abs(value - wanted) <= difference for value, wanted in zip(pixel, colour))


class ControlsProgramTest(RoomDisplay):
    def press(self, window, *keys):
        # Without a window manager nobody else gives a window the keyboard.
        self.do("windowfocus", "--sync", window)
        self.do("key", "--delay", "60", *keys)

    def lit(self, mixer):
        """The pixels of the sliders below their volumes, which are blue."""
        left, top, width, height = self.geometry(mixer)
        shot = self.shot()
        return sum(blue > red + 80 for red, _, blue in
                   (shot.pixel(x, y) for y in range(top, top + height) for x in range(left, left + width)))

    def has_bar(self):
        """Above the room the bar has its own colour from edge to edge."""
        left, top, width, _ = self.geometry(self.room)
        shot = self.shot()
        return all(is_like(shot.pixel(x, top + 1), WINDOW) for x in range(left, left + width, 10))

    def has_panel(self):
        """The page of the chat is a field, and nothing in the room has its colour."""
        left, top, width, height = self.geometry(self.room)
        shot = self.shot()
        places = [(x, y) for y in range(top + 60, top + height - 140, 10)
                  for x in range(left + width - 270, left + width - 30, 10)]
        return sum(is_like(shot.pixel(x, y), FIELD) for x, y in places) > 0.7 * len(places)

    def test_shares_a_file_from_the_start_until_the_person_stops_it(self):
        self.open_room("--camera", "none", "--share", "file=lime.mp4")
        self.until(self.has_bar, "nothing says that a file is shared")
        # From the room the keyboard's next place is the button.
        self.press(self.room, "Tab", "space")
        self.until(lambda: not self.has_bar(), "the file is still shared")

    def test_opens_and_closes_the_panel(self):
        self.open_room("--camera", "none")
        self.assertFalse(self.has_panel())
        self.press(self.room, "F2")
        self.until(self.has_panel, "the panel does not open")
        self.press(self.room, "F2")
        self.until(lambda: not self.has_panel(), "the panel stays open")

    def test_keeps_the_notes_for_the_next_time(self):
        self.open_room("--camera", "none")
        self.press(self.room, "F2")
        self.until(self.has_panel, "the panel does not open")
        self.press(self.room, "alt+n")
        self.press(self.room, *"abc")
        self.until(lambda: self.kept_notes() == ["abc"], "what is written is not kept meanwhile")
        # What the room's service cannot take in time is kept beside it, and goes to it when the room is open again.
        self.press(self.room, *"def", "ctrl+q")
        self.program.wait(timeout=40)
        self.open_room("--camera", "none")
        self.until(lambda: self.kept_notes() == ["abcdef"], "the last words are lost")

    def kept_notes(self):
        """As the room's service has them."""
        database = os.path.join(self.folder, "corvanta", "room-service.sqlite")
        # It may be there before its tables are.
        with contextlib.suppress(sqlite3.OperationalError):
            with contextlib.closing(sqlite3.connect(f"file:{database}?mode=ro", uri=True)) as kept:
                return [text for text, in kept.execute("SELECT text FROM notes")]
        return None

    def test_takes_the_key_to_talk_in_the_settings(self):
        self.open_room("--camera", "none")
        self.press(self.room, "ctrl+comma")
        settings = self.window("^Settings$")
        # The button is pressed a moment after its shortcut; until then it takes no key.
        self.press(settings, "alt+h")
        self.until(lambda: self.press(settings, "t") or self.has_key_to_talk("T"), "the key is not taken")
        self.press(settings, "Escape")
        self.until(lambda: not self.find("^Settings$"), "the settings stay open")
        self.press(self.room, "ctrl+q")
        self.program.wait(timeout=40)
        self.assertTrue(self.has_key_to_talk("T"))

    def test_keeps_the_volumes_of_the_mixer(self):
        self.open_room("--camera", "none")
        self.press(self.room, "F3")
        mixer = self.window("^Audio mixer$")
        lit = lambda: self.lit(mixer)
        before = self.until(lambda: lit() > 500 and lit(), "there are no sliders")
        sliders = 5
        self.press(mixer, *["Home", "Tab"] * sliders)
        self.until(lambda: lit() < before / 4, "the sliders do not move")
        # By then the room's own volumes have come back.
        time.sleep(2)
        self.assertLess(lit(), before / 4)
        self.press(mixer, "Escape")
        self.until(lambda: not self.find("^Audio mixer$"), "the mixer stays open")

    def has_key_to_talk(self, key):
        return re.search(rf'"Device\.PushToTalkKey"\s*:\s*"{key}"', self.configuration()) is not None

    def configuration(self):
        files = [path for path in glob.glob(os.path.join(self.folder, "**", "*"), recursive=True)
                 if os.path.isfile(path) and not path.endswith(".mp4")]
        texts = []
        for path in files:
            # Files are written beside their places and then moved there.
            with contextlib.suppress(FileNotFoundError), open(path, encoding="utf-8", errors="replace") as file:
                texts.append(file.read())
        return "\n".join(texts)


if __name__ == "__main__":
    unittest.main()
