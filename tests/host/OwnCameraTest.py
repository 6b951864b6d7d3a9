"""The own camera's picture in its window, on a real display. CORVANTA_ROOM names the program."""
import unittest

from RoomDisplay import RoomDisplay


class OwnCameraTest(RoomDisplay):
    def shares(self):
        return self.shot().shares(*self.geometry(self.preview))

    def open_preview(self, *arguments):
        self.open_room("--preview", *arguments)
        self.preview = self.window("own camera")

    def test_shows_the_test_picture_in_its_window(self):
        self.open_preview()
        # A bar of each colour, one of seven, over four fifths of the height.
        self.until(lambda: all(0.08 < share < 0.16 for share in self.shares().values()), "the window shows no bars")

    def test_shows_a_file_in_its_window(self):
        self.open_preview("--camera", "red.mp4")
        self.until(lambda: self.shares()["red"] > 0.95, "the window does not show the file")


if __name__ == "__main__":
    unittest.main()
