"""The program on a private display with a person's mouse and keys, and what that display shows. CORVANTA_ROOM names the
program."""
import ctypes
import os
import signal
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["CORVANTA_ROOM"]
DEADLINE_SECONDS = 40
# Room beside the room's window.
WIDTH, HEIGHT = 2200, 1000
# Each participant's colour, and the place of its strongest component.
COLOURS = {"red": 0, "lime": 1, "blue": 2}


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, timeout=DEADLINE_SECONDS, **options).stdout


def end_with_parent():
    """In a new process: however the test ends, nothing that it started stays."""
    kill_on_death_of_parent = 1
    ctypes.CDLL(None).prctl(kill_on_death_of_parent, signal.SIGKILL)


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


class Image(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int), ("format", ctypes.c_int),
                ("data", ctypes.c_void_p), ("byte_order", ctypes.c_int), ("bitmap_unit", ctypes.c_int),
                ("bitmap_bit_order", ctypes.c_int), ("bitmap_pad", ctypes.c_int), ("depth", ctypes.c_int),
                ("bytes_per_line", ctypes.c_int)]


class Answers(dict):
    """What a function says of each colour, by its value in an image."""

    def __init__(self, judge):
        self.judge = judge

    def __missing__(self, value):
        answer = self[value] = self.judge((value >> 16 & 255, value >> 8 & 255, value & 255))
        return answer


class Screen:
    """What a display shows, the pointer left out. Quick, so that a wait may look often."""

    def __init__(self, display):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x11.XGetImage.restype = ctypes.POINTER(Image)
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(display.encode()))
        self.root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))

    def close(self):
        self.x11.XCloseDisplay(self.display)

    def pixels(self, left, top, width, height):
        """Rows of colours."""
        return self.judged(tuple, left, top, width, height)

    def judged(self, judge, left, top, width, height):
        """Rows of what a function says of each colour. It is asked once for each that there is."""
        all_planes, by_pixel = ctypes.c_ulong(0xFFFFFFFF), 2
        image = self.x11.XGetImage(self.display, self.root, left, top, width, height, all_planes, by_pixel)
        stride = image.contents.bytes_per_line
        values = memoryview(ctypes.string_at(image.contents.data, stride * height)).cast("I")
        self.x11.XDestroyImage(image)
        answers = Answers(judge)
        return [list(map(answers.__getitem__, values[start : start + width]))
                for start in range(0, len(values), stride // values.itemsize)]


class RoomDisplay(unittest.TestCase):
    # Of one wait.
    patience_seconds = DEADLINE_SECONDS

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
            arguments += ["--participant", f"{name}={self.clip(name)}"]
        return arguments

    def clip(self, colour):
        """A file with two seconds of nothing but that colour."""
        path = os.path.join(self.folder, colour + ".mp4")
        run("ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"color={colour}:s=640x360:r=10:d=2", "-pix_fmt", "yuv420p", "-y",
            path, stdin=subprocess.DEVNULL)
        return path

    def open_display(self):
        read_end, write_end = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], preexec_fn=end_with_parent, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(write_end)
        with os.fdopen(read_end) as channel:
            self.environment["DISPLAY"] = ":" + channel.readline().strip()

    def open_room(self, *arguments, size="1000x400"):
        self.open_display()
        program = subprocess.Popen([PROGRAM, "--size", size, *self.participants(), *arguments], cwd=self.folder,
                                   env=self.environment, preexec_fn=end_with_parent, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(program.wait)
        self.addCleanup(program.terminate)
        self.program = program
        self.room = self.window("^Room - Corvanta$")

    def do(self, *words):
        return run("xdotool", *words, env=self.environment).decode()

    def find(self, name):
        try:
            return self.do("search", "--onlyvisible", "--name", name).split()
        except subprocess.CalledProcessError:
            return []

    def until(self, look, what):
        end = time.monotonic() + self.patience_seconds
        while time.monotonic() < end:
            found = look()
            if found:
                return found
            self.assert_runs()
            time.sleep(0.1)
        return self.fail(what)

    def assert_runs(self):
        self.assertIsNone(self.program.poll(), "the program has ended")

    def window(self, name):
        return self.until(lambda: self.find(name), f"there is no window {name}")[0]

    def geometry(self, window):
        lines = self.do("getwindowgeometry", "--shell", window).split()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def shot(self):
        return Shot(run("ffmpeg", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size", f"{WIDTH}x{HEIGHT}",
                        "-i", self.environment["DISPLAY"], "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"))
