"""The icon check speaks up about each fault it exists for. Run as: check_icons_test.py PATH_OF_CHECK_ICONS"""

import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

CHECK_ICONS = None
ROOM_GREY = (0x1B, 0x1B, 0x1B, 255)
WHITE = (255, 255, 255, 255)
CLEAR = (0, 0, 0, 0)


def png(width, height, pixel):
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    rows = (b"\0" + bytes(pixel) * width) * height
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


class CheckIcons(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.write("icons/names.txt", "pin glyph 8 8 menu row\nplay glyph 8 8 bar\nplate plate 8 8 under a name\n")
        for name in ("pin", "play", "plate"):
            self.write(f"icons/src/{name}.svg", '<svg viewBox="0 0 24 24"></svg>')
        self.picture("pin", WHITE)
        self.picture("play", WHITE)
        self.picture("plate", (60, 60, 60, 200))
        self.write("ui/Row.cpp", 'auto icon = "icons/pin.png";\n')

    def write(self, path, text):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def picture(self, name, pixel, width=8, height=8):
        (self.root / "bin").mkdir(exist_ok=True)
        (self.root / "bin" / f"{name}.png").write_bytes(png(width, height, pixel))

    def check(self):
        result = subprocess.run(
            [sys.executable, CHECK_ICONS, "--pictures", str(self.root / "bin"), str(self.root)],
            capture_output=True, text=True, check=False)
        self.assertEqual(result.stderr, "")
        return result

    def assert_fault(self, text):
        result = self.check()
        self.assertEqual(result.returncode, 1)
        self.assertIn(text, result.stdout)

    def test_passes_a_complete_set(self):
        result = self.check()
        self.assertEqual((result.returncode, result.stdout), (0, "check_icons: 3 icons, all there and visible\n"))

    def test_notices_a_missing_source(self):
        (self.root / "icons/src/pin.svg").unlink()
        self.assert_fault("icons/src/pin.svg is missing")

    def test_notices_a_source_without_a_row(self):
        self.write("icons/src/extra.svg", '<svg viewBox="0 0 1 1"></svg>')
        self.assert_fault("icons/src/extra.svg has no row")

    def test_notices_a_source_of_another_shape_than_its_picture(self):
        self.write("icons/src/pin.svg", '<svg viewBox="0 0 48 24"></svg>')
        self.assert_fault("icons/src/pin.svg would be distorted")

    def test_notices_a_row_it_cannot_read(self):
        self.write("icons/names.txt", "pin glyph 8\n")
        self.assert_fault("names.txt:1: cannot read this row")

    def test_notices_a_name_in_the_code_that_no_icon_has(self):
        self.write("video/Tile.h", '\nconst char* kIcon = "icons/pinn.png";\n')
        self.assert_fault("video/Tile.h:2: there is no icon icons/pinn.png")

    def test_notices_a_name_in_the_code_without_its_ending(self):
        self.write("video/Tile.h", 'const char* kIcon = "icons/pin";\n')
        self.assert_fault("video/Tile.h:1: there is no icon icons/pin")

    def test_notices_a_picture_that_was_not_produced(self):
        (self.root / "bin/play.png").unlink()
        self.assert_fault("play.png was not produced")

    def test_notices_a_picture_of_the_wrong_size(self):
        self.picture("play", WHITE, width=9)
        self.assert_fault("play.png is 9 x 8")

    def test_notices_a_damaged_picture(self):
        path = self.root / "bin/play.png"
        whole = path.read_bytes()
        for broken in (b"", whole[:-20], whole[:40] + b"?" + whole[41:], b"GIF89a"):
            path.write_bytes(broken)
            self.assert_fault("play.png does not decode")

    def test_notices_an_empty_picture(self):
        self.picture("play", CLEAR)
        self.assert_fault("play.png is empty")

    def test_notices_a_glyph_in_the_colour_of_the_ground(self):
        self.picture("play", ROOM_GREY)
        self.assert_fault("play.png cannot be seen on the ground #1b1b1b")

    def test_notices_a_plate_too_light_for_white_text(self):
        self.picture("plate", (0, 0, 0, 70))
        self.assert_fault("plate.png does not carry white text")

    def test_notices_a_plate_in_the_colour_of_the_ground(self):
        self.picture("plate", ROOM_GREY)
        self.assert_fault("plate.png cannot be told from the room's ground")


if __name__ == "__main__":
    CHECK_ICONS = sys.argv.pop()
    unittest.main()
