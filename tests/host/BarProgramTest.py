"""Every button of the room's bar and every entry of its menus, by a person's mouse on a real display. CORVANTA_ROOM
names the program."""
import glob
import json
import os
import shutil
import subprocess
import time
import unittest

import Png
from RoomDisplay import DEADLINE_SECONDS, RoomDisplay, Screen, run

BLUE = (0, 0, 255)
# The bar is a veil over the main video.
VEILED_BLUE = (0, 0, 155)
TOGGLED = (252, 44, 3)
MENU = (0x42, 0x42, 0x42)
TOOLTIP = (0x6B, 0x6B, 0x6B)
DOT = (244, 67, 54)
SELECTED = (0x21, 0x96, 0xF3)
FIELD = (0x1C, 0x1E, 0x23)
WHITE = (255, 255, 255)
# What lines are drawn in at first.
CORAL = (0xE8, 0x5C, 0x41)
PALETTE_GROUND = (0x12, 0x13, 0x16)
# A bar of the test picture.
YELLOW = (190, 190, 0)

# Middles in a window of 1280x720 whose room is called "Room": the fonts are the program's own, so every machine agrees.
ROW = 670
BUTTONS = {"layout": 54, "draw": 108, "microphone": 294, "camera": 372, "speaker": 450, "mixer": 528, "Elgato": 603,
           "MediaSilo": 674, "DeckLink": 745, "NDI": 813, "URL": 887, "Files": 961, "Other": 1028, "Screen": 1097,
           "full screen": 1165, "options": 1226}
MORE = (204, 685)
LAYOUT_ENTRIES = {"thumbnails": (150, 492), "detach": (150, 540), "toolbar": (150, 588)}
MORE_ENTRIES = {"still": (1050, 396), "brighter": (1050, 444), "darker": (1050, 492), "connection": (1050, 540),
                "leave": (1050, 588)}
OPTIONS_BESIDE_PANEL = 622
# In a window of 1600 pixels.
RESOLVE = 742
# In the palette of drawing tools, which stands where the bar was.
PALETTE = {"line": 325, "undo": 872, "close": 991}
# In the dialog and in the bar above the room, which are the desktop's.
SHARE = (617, 396)
STOP = (298, 14)
DIALOGS = {"Screen": "Share a screen or window", "Other": "Stream a device", "Files": "Stream a file",
           "URL": "Stream from an address", "NDI": "Stream NDI", "DeckLink": "Stream DeckLink",
           "MediaSilo": "Stream a MediaSilo file", "Elgato": "Stream Elgato"}


def is_like(pixel, colour, difference=30):
    return all(abs(value - wanted) <= difference for value, wanted in zip(pixel, colour))


class BarProgramTest(RoomDisplay):
    def setUp(self):
        super().setUp()
        self.pictures = os.path.join(self.folder, "stills")
        with open(os.path.join(self.folder, "user-dirs.dirs"), "w", encoding="utf-8") as file:
            file.write(f'XDG_PICTURES_DIR="{self.pictures}"\n')

    def participants(self):
        """One who never changes, so that every change in the window is the bar's doing."""
        path = os.path.join(self.folder, "blue.mp4")
        run("ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=blue:s=640x360:r=10:d=2", "-pix_fmt", "yuv420p", path,
            stdin=subprocess.DEVNULL)
        return ["--participant", "Blue=" + path]

    def watch_nobody(self):
        """Whoever works on this machine may run the programs that the bar looks for."""
        folder = os.path.join(self.folder, "corvanta")
        os.mkdir(folder)
        values = {"ProcessMonitor.DaVinciResolve": "/", "ProcessMonitor.AutodeskFlame": "/"}
        with open(os.path.join(folder, "configuration.json"), "w", encoding="utf-8") as file:
            json.dump({"format": "corvanta-configuration", "version": 1, "values": values}, file)

    def open_bar(self, *arguments, size="1280x720", bar=(1125, 640)):
        self.open_room("--size", size, *arguments)
        self.left, self.top, self.width, self.height = self.geometry(self.room)
        self.screen = Screen(self.environment["DISPLAY"])
        self.addCleanup(self.screen.close)
        self.move_off()
        if bar is not None:
            self.until(lambda: self.share(VEILED_BLUE, *bar) > 0.9, "the main video and the bar do not come")

    def pixels(self, x, y, width, height):
        return self.screen.pixels(self.left + x, self.top + y, width, height)

    def share(self, colour, x, y, width=8, height=8):
        """Of the pixels around a point, those of that colour."""
        rows = self.pixels(x - width // 2, y - height // 2, width, height)
        return sum(is_like(pixel, colour) for row in rows for pixel in row) / (width * height)

    def move(self, x, y):
        self.do("mousemove", str(self.left + x), str(self.top + y))

    def move_off(self):
        self.move(self.width // 2, self.height // 2)

    def point_at(self, x, y, shows_pointer):
        """A press counts where the tick before saw the pointer, so waits until that is seen."""
        self.move_off()
        self.until(lambda: not shows_pointer(), f"what stands at {x}, {y} does not come to rest")
        self.move(x, y)
        self.until(shows_pointer, f"nothing at {x}, {y} shows the pointer")

    def point_at_button(self, x, row=ROW):
        # A filled button looks the same under the pointer; its tooltip lies over the bar's upper edge.
        self.point_at(x, row, lambda: self.share(TOOLTIP, x, row - 48, 40, 16) > 0.15)

    def click_button(self, name):
        self.point_at_button(BUTTONS[name])
        self.do("click", "1")

    def is_toggled(self, x, row=ROW):
        return self.share(TOGGLED, x, row - 20, 40, 6) > 0.9

    def toggle(self, x, row=ROW):
        """Clicks, and returns the other state once the button has it."""
        self.point_at_button(x, row)
        # Here the bar has come back if it had slid away.
        before = self.is_toggled(x, row)
        self.do("click", "1")
        self.until(lambda: self.is_toggled(x, row) != before, f"the button at {x} does not change")
        return not before

    def has_menu(self, entries):
        first, top = next(iter(entries.values()))
        return self.share(MENU, first, top - 28, 60, 4) > 0.9

    def open_menu(self, entries):
        if entries is LAYOUT_ENTRIES:
            self.click_button("layout")
        else:
            self.point_at(*MORE, lambda: self.share(WHITE, MORE[0], MORE[1] + 8, 20, 4) > 0.2)
            self.do("click", "1")
        self.until(lambda: self.has_menu(entries), "the menu does not open")

    def point_at_entry(self, entries, name):
        self.open_menu(entries)
        x, y = entries[name]
        self.point_at(x, y, lambda: not is_like(self.pixels(x + 180, y, 1, 1)[0][0], MENU, 6))

    def choose(self, entries, name):
        self.point_at_entry(entries, name)
        self.do("click", "1")
        self.until(lambda: not self.has_menu(entries), "the menu stays open")

    def press(self, window, *keys):
        # Without a window manager nobody else gives a window the keyboard.
        self.do("windowfocus", "--sync", window)
        self.do("key", "--delay", "60", *keys)

    def has_bar(self):
        return self.share(VEILED_BLUE, 1125, 640) > 0.9

    def has_strip(self):
        # Without it the main video is as wide as the window.
        return self.share(BLUE, 60, 300) < 0.1

    def has_own_picture(self, x=450, y=100):
        return self.share(YELLOW, x, y, 12, 12) > 0.9

    def is_main_video_blue(self):
        return self.share(BLUE, 240, 400) > 0.9

    def has_panel(self):
        return self.share(FIELD, self.width - 150, 300, 100, 100) > 0.7

    def has_dot(self):
        # At a corner of the options button, beside the main video.
        rows = self.pixels(1226, 640, 40, 30)
        return sum(is_like(pixel, DOT, 8) for row in rows for pixel in row) > 30

    def rests(self, look):
        """What it sees, if that is the same a moment later."""
        first = look()
        time.sleep(0.5)
        return first if look() == first else None

    def test_does_what_the_layout_menu_says(self):
        self.watch_nobody()
        self.open_bar()
        self.choose(LAYOUT_ENTRIES, "thumbnails")
        self.until(lambda: not self.has_strip(), "the thumbnails stay")
        self.choose(LAYOUT_ENTRIES, "thumbnails")
        self.until(self.has_strip, "the thumbnails do not come back")
        self.choose(LAYOUT_ENTRIES, "detach")
        wall = self.window("participants")
        # Without a window manager it lies over the room.
        self.do("windowmove", "--sync", wall, "1400", "100")
        self.until(lambda: not self.has_strip(), "the thumbnails are in two windows")
        self.choose(LAYOUT_ENTRIES, "detach")
        self.until(lambda: not self.find("participants"), "the wall's window stays")
        self.until(self.has_strip, "the thumbnails do not come back from their window")
        self.choose(LAYOUT_ENTRIES, "toolbar")
        self.until(lambda: self.share(BLUE, 1125, 640) > 0.9, "the bar stays")
        self.move(640, 700)
        self.until(self.has_bar, "the pointer does not bring the bar back")

    def test_switches_the_own_devices(self):
        self.watch_nobody()
        self.open_bar()
        self.until(self.has_own_picture, "the own camera is not shown")
        self.assertTrue(self.toggle(BUTTONS["camera"]))
        self.until(lambda: not self.has_own_picture(), "the own camera is shown though it is off")
        self.assertFalse(self.toggle(BUTTONS["camera"]))
        self.until(self.has_own_picture, "the own camera does not come back")
        for name in ("microphone", "speaker"):
            first = self.toggle(BUTTONS[name])
            self.assertNotEqual(self.toggle(BUTTONS[name]), first, name)

    def has_palette(self):
        return self.share(PALETTE_GROUND, 600, 652, 400, 4) > 0.9

    def open_palette(self):
        self.watch_nobody()
        self.open_bar()
        self.click_button("draw")
        self.until(self.has_palette, "the drawing tools do not come")

    def press_tool(self, name):
        self.move(PALETTE[name], ROW)
        self.do("click", "1")

    def test_has_the_drawing_tools_in_the_place_of_the_bar(self):
        self.open_palette()
        self.until(lambda: self.share(BLUE, 1125, 640) < 0.1, "no place is made for the tools")
        self.press_tool("close")
        self.until(lambda: not self.has_palette(), "the tools stay")
        self.move(640, 700)
        self.until(self.has_bar, "the bar does not come back")

    def test_draws_on_the_main_video_and_takes_it_back(self):
        self.open_palette()
        self.press_tool("line")
        self.until(lambda: self.share(SELECTED, PALETTE["line"] - 12, ROW) > 0.9, "the line is not chosen")
        has_line = lambda: self.share(CORAL, 600, 400, 4, 4) > 0.9
        self.move(400, 400)
        self.do("mousedown", "1")
        for x in range(450, 801, 50):
            self.move(x, 400)
            time.sleep(0.05)
        self.until(has_line, "the line does not follow the pointer")
        self.do("mouseup", "1")
        self.move(700, 250)
        time.sleep(0.5)
        self.assertTrue(has_line(), "the line goes when the button is let go")
        self.press_tool("undo")
        self.until(lambda: not has_line(), "the line is not taken back")
        self.press(self.room, "ctrl+shift+z")
        self.until(has_line, "the line is not brought again by the key")

    def test_opens_and_closes_what_stands_beside_the_room(self):
        self.watch_nobody()
        self.open_bar()
        self.assertTrue(self.toggle(BUTTONS["mixer"]))
        mixer = self.window("^Audio mixer$")
        self.do("windowmove", "--sync", mixer, "1400", "100")
        self.assertFalse(self.toggle(BUTTONS["mixer"]))
        self.until(lambda: not self.find("^Audio mixer$"), "the mixer stays open")
        self.assertTrue(self.toggle(BUTTONS["full screen"]))
        self.press(self.room, "Escape")
        self.until(lambda: not self.is_toggled(BUTTONS["full screen"]), "Escape does not leave the full screen")

    def test_opens_the_panel_and_closes_it(self):
        self.watch_nobody()
        self.open_bar()
        self.click_button("options")
        self.until(self.has_panel, "the panel does not open")
        # Beside the panel the room is too narrow for the whole bar, and its few buttons stand elsewhere.
        self.point_at_button(OPTIONS_BESIDE_PANEL)
        self.until(lambda: self.is_toggled(OPTIONS_BESIDE_PANEL), "the button does not say that the panel is open")
        self.do("click", "1")
        self.until(lambda: not self.has_panel(), "the panel stays open")
        # Whoever had come by then has been seen.
        self.point_at_button(BUTTONS["options"])
        self.assertFalse(self.has_dot())

    def test_saves_a_still_and_leaves_the_room(self):
        self.watch_nobody()
        self.open_bar()
        self.choose(MORE_ENTRIES, "still")
        stills = lambda: glob.glob(os.path.join(self.pictures, "Room *.png"))
        self.until(stills, "there is no still")
        still = Png.read(stills()[0])
        self.assertEqual((still.width, still.height), (640, 360))
        for name in ("brighter", "darker"):
            self.choose(MORE_ENTRIES, name)
        self.until(self.has_own_picture, "the own camera is not shown")
        self.choose(MORE_ENTRIES, "connection")
        self.until(lambda: not self.has_own_picture(), "the figures of the connection do not come")
        self.point_at_entry(MORE_ENTRIES, "leave")
        self.do("click", "1")
        self.assertEqual(self.program.wait(timeout=DEADLINE_SECONDS), 0)

    def test_offers_every_kind_of_stream(self):
        self.watch_nobody()
        self.open_bar()
        for name, title in DIALOGS.items():
            self.click_button(name)
            dialog = self.window("^" + title)
            self.press(dialog, "Escape")
            self.until(lambda: not self.find("^" + title), f"the dialog {title} stays open")

    def test_shares_a_device_until_its_stop_is_clicked(self):
        self.watch_nobody()
        self.open_bar()
        self.click_button("Other")
        dialog = self.window("^Stream a device")
        self.until(lambda: self.share(SELECTED, 700, 259, 20, 8) > 0.9, "the dialog offers no device")
        self.move(*SHARE)
        self.do("click", "1")
        self.until(lambda: not self.find("^Stream a device"), "the dialog stays open")
        self.until(lambda: self.has_own_picture(370, 400), "the device does not become the main video")
        self.point_at_button(BUTTONS["Other"])
        self.until(lambda: self.is_toggled(BUTTONS["Other"]), "the button does not say that a device is shared")
        self.move(*STOP)
        self.do("click", "1")
        self.until(self.is_main_video_blue, "the main video is not given back")
        self.point_at_button(BUTTONS["Other"])
        self.until(lambda: not self.is_toggled(BUTTONS["Other"]), "the button says that a device is shared")

    def test_has_a_button_for_a_program_as_long_as_it_runs(self):
        self.open_bar(size="1600x720", bar=(1200, 640))
        # On the bar, which thereby stays, but on none of its buttons.
        self.move(300, 710)
        bar = lambda: self.pixels(0, 640, self.width, 60)
        without = self.until(lambda: self.rests(bar), "the bar does not come to rest")
        program = shutil.copy("/bin/sleep", os.path.join(self.folder, "resolve"))
        resolve = subprocess.Popen([program, "1000"])
        self.addCleanup(resolve.wait)
        self.addCleanup(resolve.kill)
        self.until(lambda: bar() != without, "the bar does not change")
        self.point_at_button(RESOLVE)
        self.do("click", "1")
        has_menu = lambda: self.share(MENU, RESOLVE, 614, 60, 4) > 0.9
        self.until(has_menu, "the button has no menu")
        self.do("click", "1")
        self.until(lambda: not has_menu(), "the menu stays open")
        resolve.kill()
        resolve.wait(timeout=DEADLINE_SECONDS)
        self.move(300, 710)
        self.until(lambda: bar() == without, "the button stays")

    def test_has_only_the_most_needed_buttons_in_a_narrow_window(self):
        self.watch_nobody()
        self.open_bar(size="640x480", bar=(100, 400))
        row = 430
        for x in (218, 374):
            first = self.toggle(x, row)
            self.assertNotEqual(self.toggle(x, row), first)
        self.assertTrue(self.toggle(296, row))
        self.assertFalse(self.toggle(296, row))
        # None of the others, whose pictures are white.
        for left, right in ((40, 180), (490, 600)):
            self.assertEqual(self.share(WHITE, (left + right) // 2, row, right - left, 60), 0)


if __name__ == "__main__":
    unittest.main()
