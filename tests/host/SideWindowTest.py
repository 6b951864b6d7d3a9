"""The wall in a window of its own and the own camera's window, by a person's keys on a real display. CORVANTA_ROOM
names the program."""
import ctypes
import os
import subprocess
import unittest

import Png
from RoomDisplay import COLOURS, DEADLINE_SECONDS, PROGRAM, RoomDisplay, is_of


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("padding", ctypes.c_long * 24)]


class SideWindowTest(RoomDisplay):
    def press(self, window, key):
        # Without a window manager nobody else gives a window the keyboard.
        self.do("windowfocus", "--sync", window)
        self.do("key", key)

    def has_strip(self):
        """Every participant has a tile at the top of the room's window."""
        x, y, width, _ = self.geometry(self.room)
        return min(self.shot().shares(x, y, width, 140).values()) > 0.1

    def shows_tiles(self, window, share=0.04):
        return min(self.shot().shares(*self.geometry(window)).values()) > share

    def close(self, window):
        """As the button of a window manager's frame does."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XInternAtom.restype = ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.environment["DISPLAY"].encode()))
        atom = lambda name: x11.XInternAtom(display, name, 0)
        message = ClientMessage(type=33, send_event=1, window=int(window), message_type=atom(b"WM_PROTOCOLS"), format=32)
        message.data[0] = atom(b"WM_DELETE_WINDOW")
        x11.XSendEvent(display, ctypes.c_ulong(int(window)), 0, ctypes.c_long(0), ctypes.byref(message))
        x11.XCloseDisplay(display)

    def test_detaches_the_wall_by_a_key_and_takes_it_back_when_its_window_is_closed(self):
        self.open_room()
        self.until(self.has_strip, "the room shows no strip")
        self.press(self.room, "F8")
        wall = self.window("participants, grid")
        self.until(lambda: self.shows_tiles(wall), "the wall's window shows no tiles")
        self.until(lambda: not self.has_strip(), "the strip stays in the room")
        self.close(wall)
        self.until(lambda: not self.find("participants"), "the wall's window stays open")
        self.until(self.has_strip, "the strip does not come back")

    def test_changes_the_layout_and_the_size_of_the_walls_window(self):
        self.open_room("--detached", "grid", "--camera", "none")
        wall = self.window("participants, grid")
        self.press(wall, "1")
        self.window("participants, strip")
        self.press(self.room, "F9")
        self.window("participants, column")
        # In a window of 300 pixels two of the three tiles of 213 are in sight, in one of 660 all are.
        self.press(wall, "1")
        self.window("participants, strip")
        self.do("windowsize", "--sync", wall, "300", "170")
        # The border of the main video's tile is blue too.
        self.until(lambda: not self.shows_tiles(wall, 0.15), "the window does not get smaller")
        self.do("windowsize", "--sync", wall, "660", "170")
        self.until(lambda: self.shows_tiles(wall, 0.15), "the tiles do not follow the window's size")
        self.press(wall, "F8")
        self.until(self.has_strip, "the strip does not come back")

    def test_opens_and_closes_the_own_cameras_window(self):
        self.open_room()
        self.press(self.room, "F10")
        preview = self.window("own camera")
        self.assertEqual(self.geometry(preview)[2:], (480, 270))
        self.press(preview, "F10")
        self.until(lambda: not self.find("own camera"), "the own camera's window stays open")

    def test_slides_the_strip_out_and_in(self):
        self.open_room()
        self.until(self.has_strip, "the room shows no strip")
        self.press(self.room, "F7")
        self.until(lambda: not self.has_strip(), "the strip stays")
        self.press(self.room, "F7")
        self.until(self.has_strip, "the strip does not come back")

    def test_writes_a_snapshot_of_the_walls_window_too(self):
        done = subprocess.run(
            [PROGRAM, "--headless", "3", "--snapshot", "out.png", "--size", "1000x400", "--detached", "grid", "--preview",
             *self.participants()],
            cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL, capture_output=True, text=True,
            timeout=DEADLINE_SECONDS)
        self.assertEqual(done.returncode, 0, done.stderr)
        wall = Png.read(os.path.join(self.folder, "out-wall.png"))
        self.assertEqual((wall.width, wall.height), (960, 720))
        for name, strongest in COLOURS.items():
            seen = sum(is_of(wall.pixel(x, y), strongest) for y in range(0, 720, 9) for x in range(0, 960, 9))
            self.assertGreater(seen, 300, name)
        room = Png.read(os.path.join(self.folder, "out.png"))
        self.assertEqual((room.width, room.height), (1000, 400))


if __name__ == "__main__":
    unittest.main()
