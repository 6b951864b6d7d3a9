"""The wall in a window of its own and the own camera's window, by a person's keys on a real display. CORVANTA_ROOM
names the program."""
import ctypes
import os
import subprocess
import tempfile
import time
import unittest

import Png

PROGRAM = os.environ["CORVANTA_ROOM"]
DEADLINE_SECONDS = 40
# Room beside the room's window.
WIDTH, HEIGHT = 2200, 1000
# Each participant's colour, and the place of its strongest component.
COLOURS = {"red": 0, "lime": 1, "blue": 2}


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, timeout=DEADLINE_SECONDS, **options).stdout


def is_of(pixel, strongest):
    return all(pixel[strongest] > value + 80 for place, value in enumerate(pixel) if place != strongest)


class Shot:
    """What the whole display shows."""

    def __init__(self, data):
        self.data = data

    def pixel(self, x, y):
        start = 3 * (y * WIDTH + x)
        return tuple(self.data[start : start + 3])

    def shares(self, left, top, width, height):
        """The colours of the participants, each with its share of the pixels of that rectangle."""
        pixels = [self.pixel(x, y) for y in range(top, top + height, 7) for x in range(left, left + width, 7)]
        return {name: sum(is_of(p, strongest) for p in pixels) / len(pixels) for name, strongest in COLOURS.items()}


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("padding", ctypes.c_long * 24)]


class SideWindowTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.environment = dict(os.environ, XDG_CONFIG_HOME=self.folder, XDG_RUNTIME_DIR=self.folder)
        self.environment.pop("DISPLAY", None)

    def participants(self):
        """One of each colour, which nobody speaks for."""
        arguments = []
        for name in COLOURS:
            path = os.path.join(self.folder, name + ".mp4")
            run("ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"color={name}:s=640x360:r=10:d=2", "-pix_fmt", "yuv420p",
                path, stdin=subprocess.DEVNULL)
            arguments += ["--participant", f"{name}={path}"]
        return arguments

    def open_display(self):
        read_end, write_end = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(write_end)
        with os.fdopen(read_end) as channel:
            self.environment["DISPLAY"] = ":" + channel.readline().strip()

    def open_room(self, *arguments):
        self.open_display()
        program = subprocess.Popen([PROGRAM, "--size", "1000x400", *self.participants(), *arguments], cwd=self.folder,
                                   env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        self.addCleanup(program.wait)
        self.addCleanup(program.terminate)
        self.program = program
        self.room = self.window("^Room - Corvanta$")

    def do(self, *words):
        return run("xdotool", *words, env=self.environment).decode()

    def press(self, window, key):
        # Without a window manager nobody else gives a window the keyboard.
        self.do("windowfocus", "--sync", window)
        self.do("key", key)

    def find(self, name):
        try:
            return self.do("search", "--onlyvisible", "--name", name).split()
        except subprocess.CalledProcessError:
            return []

    def until(self, look, what):
        end = time.monotonic() + DEADLINE_SECONDS
        while time.monotonic() < end:
            found = look()
            if found:
                return found
            self.assertIsNone(self.program.poll(), "the program has ended")
            time.sleep(0.1)
        return self.fail(what)

    def window(self, name):
        return self.until(lambda: self.find(name), f"there is no window {name}")[0]

    def geometry(self, window):
        lines = self.do("getwindowgeometry", "--shell", window).split()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def shot(self):
        return Shot(run("ffmpeg", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size", f"{WIDTH}x{HEIGHT}",
                        "-i", self.environment["DISPLAY"], "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"))

    def has_strip(self):
        """Every participant has a tile at the top of the room's window."""
        x, y, width, _ = self.geometry(self.room)
        return min(self.shot().shares(x, y, width, 140).values()) > 0.1

    def shows_tiles(self, window):
        return min(self.shot().shares(*self.geometry(window)).values()) > 0.04

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
        self.open_room("--detached", "grid")
        wall = self.window("participants, grid")
        self.press(wall, "1")
        self.window("participants, strip")
        self.press(self.room, "F9")
        self.window("participants, column")
        # In a window of 300 pixels two of the three tiles of 213 are in sight, in one of 660 all are.
        self.press(wall, "1")
        self.do("windowsize", "--sync", wall, "300", "170")
        self.until(lambda: not self.shows_tiles(wall), "the window does not get smaller")
        self.do("windowsize", "--sync", wall, "660", "170")
        self.until(lambda: self.shows_tiles(wall), "the tiles do not follow the window's size")
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
