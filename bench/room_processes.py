"""The processes that bench/rooms measures: people without a window, and the program on a display of its own. Each is ended
by its own id, and dies with this one."""
import ctypes
import json
import os
import re
import select
import signal
import statistics
import subprocess
import time

DEADLINE_SECONDS = 40
PAINT_SECONDS = 3
STAMP_BITS = 20
STAMP_PERIOD = 1 << 16
# Of the room's window: as high as the strip of tiles, in pixels.
STRIP = 160
ALL_PLANES = ctypes.c_ulong(-1)
Z_PIXMAP = 2
# The pencil's colour of the first time.
PENCIL = (232, 92, 65)
PR_SET_PDEATHSIG = 1
TICKS = os.sysconf("SC_CLK_TCK")


def median(values):
    return statistics.median(values)


def percentile(values, share):
    return sorted(values)[min(len(values) - 1, len(values) * share // 100)]


def die_with_parent():
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


def end(process):
    process.terminate()
    try:
        process.wait(DEADLINE_SECONDS)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


class Person:
    """A bench_rooms person, which answers each line with one."""

    def __init__(self, command, environment):
        self.process = subprocess.Popen(command, env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        preexec_fn=die_with_parent)
        try:
            self.read()
        except BaseException:
            self.close()
            raise

    def read(self):
        if not select.select([self.process.stdout], [], [], DEADLINE_SECONDS)[0]:
            raise SystemExit("rooms: a person does not answer")
        line = self.process.stdout.readline()
        if not line:
            raise SystemExit("rooms: a person has ended")
        return json.loads(line)

    def ask(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        return self.read()

    def until_pictures(self, count):
        until(lambda: sum(stream["pictures"] > 0 for stream in self.ask("report")["streams"].values()) >= count,
              "no pictures come")

    def close(self):
        if self.process.poll() is None:
            # It leaves when its input ends.
            self.process.stdin.close()
            try:
                self.process.wait(DEADLINE_SECONDS)
            except subprocess.TimeoutExpired:
                end(self.process)
        self.process.stdout.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class People:
    def __init__(self, programs, folder):
        self.bench = os.path.join(programs, "bench_rooms")
        self.room = os.path.join(programs, "corvanta-room")
        self.folder = folder
        self.environment = dict(os.environ, XDG_RUNTIME_DIR=folder, XDG_CONFIG_HOME=folder)

    def film(self, name, size):
        """A moving picture of that size, 30 times a second, as a camera."""
        path = os.path.join(self.folder, name)
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"testsrc2=s={size}:r=30:d=10", "-pix_fmt", "yuv420p",
                        "-y", path], check=True, stdin=subprocess.DEVNULL, timeout=DEADLINE_SECONDS)
        return path

    def person(self, room, name, *flags):
        return Person([self.bench, "person", "--room", room, "--name", name, *flags], self.environment)

    def run(self, *words):
        result = subprocess.run([self.bench, *words], env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                timeout=300, preexec_fn=die_with_parent)
        if result.returncode != 0:
            raise SystemExit("rooms: bench_rooms " + words[0] + " has failed")
        return json.loads(result.stdout)


def until(look, what):
    deadline = time.monotonic() + DEADLINE_SECONDS
    while not look():
        if time.monotonic() > deadline:
            raise SystemExit("rooms: " + what)
        time.sleep(0.05)


class Screen:
    """A display's pointer, keys and pixels, by the window system's own library: no program is started for a move."""

    def __init__(self, name):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.xtest = ctypes.CDLL("libXtst.so.6")
        for function in (self.x11.XOpenDisplay, self.x11.XGetImage):
            function.restype = ctypes.c_void_p
        self.x11.XGetPixel.restype = ctypes.c_ulong
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(name.encode()))
        if not self.display.value:
            raise SystemExit("rooms: the display does not answer")
        self.root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))

    def close(self):
        self.x11.XCloseDisplay(self.display)

    def move(self, x, y):
        self.xtest.XTestFakeMotionEvent(self.display, -1, x, y, ctypes.c_ulong(0))
        self.x11.XFlush(self.display)

    def button(self, is_down):
        self.xtest.XTestFakeButtonEvent(self.display, 1, is_down, ctypes.c_ulong(0))
        self.x11.XFlush(self.display)

    def pixels(self, columns, y):
        """Red, green and blue of these pixels of a row."""
        left, right = min(columns), max(columns)
        image = ctypes.c_void_p(
            self.x11.XGetImage(self.display, self.root, left, y, right - left + 1, 1, ALL_PLANES, Z_PIXMAP))
        if not image.value:
            raise SystemExit("rooms: the display does not tell its pixels")
        values = [self.x11.XGetPixel(image, x - left, 0) for x in columns]
        self.x11.XDestroyImage(image)
        return [(value >> 16 & 255, value >> 8 & 255, value & 255) for value in values]

    def row(self, x, y, width):
        return self.pixels(range(x, x + width), y)

    def pixel(self, x, y):
        return self.row(x, y, 1)[0]


class Busy:
    """What all programs of the machine compute."""

    def __init__(self):
        self.begin = time.monotonic(), self.seconds()

    def seconds(self):
        with open("/proc/stat") as file:
            user, nice, system, _, _, irq, softirq = (int(word) for word in file.readline().split()[1:8])
        return (user + nice + system + irq + softirq) / TICKS

    def share(self):
        """Per cent of a core since it was made."""
        then, seconds = self.begin
        return 100 * (self.seconds() - seconds) / (time.monotonic() - then)


def is_painted(pixel):
    return all(abs(value - wanted) < 24 for value, wanted in zip(pixel, PENCIL))


def until_paint(screen, x, y, begin):
    """Milliseconds since `begin`, None where there is none in time. It looks a thousand times a second, and leaves the
    machine to the programs between."""
    while not is_painted(screen.pixel(x, y)):
        if time.perf_counter() - begin > PAINT_SECONDS:
            return None
        time.sleep(0.001)
    return 1000 * (time.perf_counter() - begin)


def stamp_now():
    return time.clock_gettime_ns(time.CLOCK_MONOTONIC) // 100_000 % STAMP_PERIOD


def read_stamp(row):
    """The time that the people's pictures carry; None where the pixels have none."""
    block = len(row) / STAMP_BITS
    return read_bits([row[int((bit + 0.5) * block)] for bit in range(STAMP_BITS)])


def read_bits(pixels):
    bits = sum(1 << bit for bit, pixel in enumerate(pixels) if pixel[1] > 128)
    stamp = bits % STAMP_PERIOD
    proof = (stamp ^ stamp >> 4 ^ stamp >> 8 ^ stamp >> 12 ^ 6) & 15
    return stamp if bits >> 16 == proof else None


class Window:
    """The program in a room, on a display of its own."""

    SIZE = (1280, 720)

    def __init__(self, people, room, name, *arguments):
        self.ended = []
        try:
            self.open(people, room, name, arguments)
        except BaseException:
            self.close()
            raise

    def open(self, people, room, name, arguments):
        read_end, write_end = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x720x24", "-nolisten", "tcp",
                                   "-noreset"], pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  preexec_fn=die_with_parent)
        self.ended.append(lambda: end(server))
        os.close(write_end)
        with os.fdopen(read_end) as channel:
            display = ":" + channel.readline().strip()
        configuration = os.path.join(people.folder, name)
        os.makedirs(configuration, exist_ok=True)
        self.environment = dict(people.environment, DISPLAY=display, XDG_CONFIG_HOME=configuration)
        self.program = subprocess.Popen([people.room, "--room", room, "--name", name, "--size", "1280x720", *arguments],
                                        env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, preexec_fn=die_with_parent)
        self.ended.append(lambda: end(self.program))
        self.screen = Screen(display)
        self.ended.append(self.screen.close)
        self.title = "^" + re.escape(room) + " - Corvanta$"
        until(self.find, "no window opens")
        self.window = self.find()

    def find(self):
        if self.program.poll() is not None:
            raise SystemExit("rooms: the program has ended")
        found = self.do("search", "--onlyvisible", "--name", self.title, check=False).split()
        return found[0] if found else None

    def do(self, *words, check=True):
        return subprocess.run(["xdotool", *words], env=self.environment, check=check, capture_output=True,
                              timeout=DEADLINE_SECONDS).stdout.decode()

    def press(self, key):
        self.do("windowfocus", "--sync", self.window)
        self.do("key", key)

    def until_pictures(self):
        """The main video shows a stamp: then its place on the display is known."""
        until(self.find_main_video, "the window shows no picture")

    def find_main_video(self):
        """It stands in the middle under the strip, and the stamp is its uppermost part."""
        width, height = self.SIZE
        for y in range(STRIP + 4, height // 3, 6):
            row = self.screen.row(0, y, width)
            lit = [x for x, pixel in enumerate(row) if max(pixel) > 16]
            if not lit:
                continue
            left, wide = lit[0], lit[-1] - lit[0] + 1
            if wide > width // 3 and self.is_steady(left, y, wide):
                self.main = left, y, wide
                return True
        return False

    def is_steady(self, left, y, wide):
        """A stamp that is read by chance does not grow with time."""
        last = None
        for _ in range(4):
            stamp = read_stamp(self.screen.row(left, y, wide))
            if stamp is None or last is not None and not 0 < (stamp - last) % STAMP_PERIOD < 20_000:
                return False
            last = stamp
            time.sleep(0.2)
        return True

    def watch_stamps(self, deadline, interval, acts):
        """Until the deadline: how many different pictures the main video shows, and how old each is at first sight. Each of
        `acts` is called once in every interval."""
        left, y, wide = self.main
        # A read of a whole row is too much work for a machine that is being measured.
        columns = [left + int((bit + 0.5) * wide / STAMP_BITS) for bit in range(STAMP_BITS)]
        ages, last, begin, due = [], None, time.monotonic(), time.monotonic()
        while time.monotonic() < deadline:
            stamp = read_bits(self.screen.pixels(columns, y))
            if stamp is not None and stamp != last:
                ages.append((stamp_now() - stamp) % STAMP_PERIOD / 10)
                last = stamp
            if time.monotonic() > due:
                due += interval
                for act in acts:
                    act()
            time.sleep(0.004)
        return {"rate": len(ages) / (time.monotonic() - begin), "agesMs": ages}

    def measure_strokes(self, other, count):
        """Short strokes on the main video, each at a place of its own. Milliseconds from the last move of the pointer to the
        paint in this window, and from the release of the button to the paint in the other one."""
        left, top, wide = self.main
        local, remote = [], []
        rows = (wide * 9 // 16 - 150) // 30
        places = [(left + 40 + 90 * column, top + 60 + 30 * row) for row in range(rows) for column in range((wide - 80) // 90)]
        for x, y in places:
            self.screen.move(x, y)
            # A press counts where the tick before saw the pointer.
            time.sleep(0.4)
            self.screen.button(True)
            time.sleep(0.1)
            self.screen.move(x + 20, y)
            time.sleep(0.1)
            begin = time.perf_counter()
            self.screen.move(x + 50, y)
            moved = until_paint(self.screen, x + 46, y, begin)
            is_ahead = is_painted(other.screen.pixel(x + 46, y))
            begin = time.perf_counter()
            self.screen.button(False)
            # On a busy machine a gesture can be lost.
            if moved is None:
                continue
            shown = until_paint(other.screen, x + 46, y, begin)
            if is_ahead or shown is None:
                raise SystemExit("rooms: the other window has paint ahead of the stroke, or none of it")
            local.append(moved)
            remote.append(shown)
            if len(remote) == count:
                return local, remote
        raise SystemExit("rooms: too many gestures are lost")

    def reset_cpu(self):
        self.begin = time.monotonic(), self.cpu_seconds()

    def cpu_share(self):
        """Per cent of a core since reset_cpu."""
        then, seconds = self.begin
        return 100 * (self.cpu_seconds() - seconds) / (time.monotonic() - then)

    def cpu_seconds(self):
        with open(f"/proc/{self.program.pid}/stat") as file:
            fields = file.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / TICKS

    def close(self):
        for ending in reversed(self.ended):
            ending()
        self.ended = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
