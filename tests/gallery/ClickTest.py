"""A person's click in the gallery's window: what the X server shows changes under the pointer, and only then."""

import os
import signal
import subprocess
import time
import unittest

GALLERY = os.environ.get("CORVANTA_GALLERY", "")
DEADLINE_SECONDS = 20


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, timeout=DEADLINE_SECONDS, **options).stdout


class Display:
    def __enter__(self):
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as channel:
            self.name = ":" + channel.readline().strip()
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()


class Gallery:
    def __init__(self, display):
        self.environment = dict(os.environ, DISPLAY=display.name)
        self.program = subprocess.Popen([GALLERY], env=self.environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.program.send_signal(signal.SIGTERM)
        self.program.wait()

    def picture(self):
        return run("ffmpeg", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size", "1280x800", "-i",
                   self.environment["DISPLAY"], "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-")

    def do(self, *words):
        run("xdotool", *words, env=self.environment)

    def wait_until(self, condition):
        end = time.monotonic() + DEADLINE_SECONDS
        picture = self.picture()
        while not condition(picture) and time.monotonic() < end:
            time.sleep(0.05)
            picture = self.picture()
        return picture

    def settled(self):
        """A picture that has stayed the same for a while and is not empty."""
        last = [b""]

        def same(picture):
            result = picture == last[0] and len(set(picture[::997])) > 3
            last[0] = picture
            return result

        return self.wait_until(same)


def red_pixels(picture):
    """How many pixels have the colour of what is switched on."""
    return sum(1 for at in range(0, len(picture), 3) if picture[at:at + 3] == b"\xfc\x2c\x03")


class RealClick(unittest.TestCase):
    def test_switches_a_toggle_on_and_off(self):
        x, y = (int(word) for word in os.environ["CORVANTA_TOGGLE_AT"].split(","))
        with Display() as display, Gallery(display) as gallery:
            # The longer of its two labels widens a button for good, so both are shown once before it is watched.
            gallery.settled()
            gallery.do("mousemove", str(x), str(y), "sleep", "0.3", "click", "1", "sleep", "0.3", "click", "1")
            gallery.do("mousemove", "1270", "790")
            idle = gallery.settled()
            gallery.do("mousemove", str(x), str(y))
            hovered = gallery.wait_until(lambda picture: picture != idle)
            self.assertNotEqual(hovered, idle, "the pointer over a button changes nothing")
            before = red_pixels(gallery.settled())
            gallery.do("click", "1")
            clicked = gallery.wait_until(lambda picture: red_pixels(picture) > before)
            self.assertGreater(red_pixels(clicked), before, "the click does not switch the toggle on")
            gallery.do("click", "1")
            again = gallery.wait_until(lambda picture: red_pixels(picture) == before)
            self.assertEqual(red_pixels(again), before, "the second click does not switch it off")
            gallery.do("mousemove", "1270", "790")
            self.assertEqual(gallery.wait_until(lambda picture: picture == idle), idle,
                             "leaving the button does not bring the idle picture back")

    def test_changes_the_scale_by_keys(self):
        with Display() as display, Gallery(display) as gallery:
            idle = gallery.settled()
            gallery.do("mousemove", "640", "790")
            gallery.do("key", "4")
            self.assertNotEqual(gallery.wait_until(lambda picture: picture != idle), idle)


if __name__ == "__main__":
    unittest.main()
