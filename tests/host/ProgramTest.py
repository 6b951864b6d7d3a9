"""Runs the desktop program as a person would and looks at what it shows. CORVANTA_ROOM names the program."""
import os
import signal
import socket
import subprocess
import tempfile
import time
import unittest

import Png

PROGRAM = os.environ["CORVANTA_ROOM"]
LIMIT_SECONDS = 60


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.environment = dict(os.environ, XDG_CONFIG_HOME=self.folder, XDG_RUNTIME_DIR=self.folder)

    def run_program(self, *arguments, **environment):
        return subprocess.run(
            [PROGRAM, *arguments],
            cwd=self.folder,
            env={**self.environment, **environment},
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=LIMIT_SECONDS,
        )

    def snapshot(self, name, seconds, *arguments):
        done = self.run_program("--headless", str(seconds), "--snapshot", name, *arguments)
        self.assertEqual(done.returncode, 0, done.stderr)
        return Png.read(os.path.join(self.folder, name))

    def assert_one_line(self, done, code, *words):
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertEqual(done.stdout, "")
        lines = [line for line in done.stderr.splitlines() if line.startswith("corvanta-room: ")]
        self.assertEqual(len(lines), 1, done.stderr)
        for word in words:
            self.assertIn(word, lines[0])

    def clip(self, name):
        """Two seconds: the left half red, the right half blue."""
        path = os.path.join(self.folder, name)
        subprocess.run(
            ["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=red:s=320x360:r=30:d=2", "-f", "lavfi", "-i",
             "color=blue:s=320x360:r=30:d=2", "-filter_complex", "hstack", "-pix_fmt", "yuv420p", path],
            check=True,
            stdin=subprocess.DEVNULL,
        )
        return path


class Snapshot(ProgramTest):
    def test_shows_a_picture_of_the_size_asked_for(self):
        picture = self.snapshot("one.png", 3, "--size", "960x540")
        self.assertEqual((picture.width, picture.height), (960, 540))
        self.assertGreater(picture.brightest(), 64)
        self.assertGreater(picture.colours(), 8)

    def test_shows_pictures_that_move(self):
        first = self.snapshot("one.png", 2, "--size", "640x360", "--participant", "one=test")
        second = self.snapshot("two.png", 2.7, "--size", "640x360", "--participant", "one=test")
        self.assertGreater(first.differing(second), 0.002)

    def test_plays_files_relative_to_the_folder_it_is_called_from(self):
        self.clip("halves.mp4")
        picture = self.snapshot("one.png", 2, "--size", "640x360", "--participant", "one=halves.mp4")
        red, _, blue = picture.pixel(160, 180)
        self.assertTrue(red > 200 and blue < 60, picture.pixel(160, 180))
        red, _, blue = picture.pixel(480, 180)
        self.assertTrue(red < 60 and blue > 200, picture.pixel(480, 180))

    def test_shows_the_own_camera_where_nobody_else_is(self):
        alone = ("--size", "640x360", "--participants", "0")
        self.assertGreater(self.snapshot("own.png", 2, *alone).colours(), 8)
        empty = self.snapshot("none.png", 1, *alone, "--camera", "none")
        self.assertEqual(empty.pixel(320, 210), (0, 0, 0))
        self.clip("halves.mp4")
        picture = self.snapshot("file.png", 2, *alone, "--camera", "halves.mp4")
        # Of the main video, between the strip and the bar.
        self.assertGreater(picture.pixel(220, 210)[0], 200)
        self.assertGreater(picture.pixel(420, 210)[2], 200)

    def test_shows_a_participant_rather_than_the_own_camera(self):
        self.clip("halves.mp4")
        picture = self.snapshot(
            "one.png", 2, "--size", "640x360", "--participant", "one=halves.mp4", "--camera", "test"
        )
        self.assertGreater(picture.pixel(220, 210)[0], 200)
        self.assertGreater(picture.pixel(420, 210)[2], 200)

    def test_fills_a_display_of_twice_the_pixels(self):
        self.clip("halves.mp4")
        picture = self.snapshot(
            "one.png", 2, "--size", "640x360", "--scale", "2", "--participant", "one=halves.mp4"
        )
        self.assertEqual((picture.width, picture.height), (1280, 720))
        self.assertGreater(picture.pixel(320, 360)[0], 200)
        self.assertGreater(picture.pixel(960, 360)[2], 200)

    def test_is_taken_when_the_program_is_asked_to_end(self):
        program = subprocess.Popen(
            [PROGRAM, "--snapshot", "end.png", "--size", "640x360"],
            cwd=self.folder,
            env={name: value for name, value in self.environment.items() if name != "DISPLAY"},
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            text=True,
        )
        try:
            time.sleep(6)
            program.send_signal(signal.SIGINT)
            _, errors = program.communicate(timeout=LIMIT_SECONDS)
        finally:
            program.kill()
        self.assertEqual(program.returncode, 0, errors)
        self.assertGreater(Png.read(os.path.join(self.folder, "end.png")).colours(), 8)


class Company(ProgramTest):
    """Others in programs of their own: the guests, and who else enters the room."""

    def setUp(self):
        super().setUp()
        self.environment.pop("DISPLAY", None)

    def start(self, *arguments):
        program = subprocess.Popen(
            [PROGRAM, *arguments],
            cwd=self.folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        return program

    def guests(self):
        """The command lines of those that belong to this test."""
        found = []
        for process in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{process}/environ", "rb") as file:
                    is_ours = b"XDG_RUNTIME_DIR=" + os.fsencode(self.folder) in file.read().split(b"\0")
                with open(f"/proc/{process}/cmdline", "rb") as file:
                    command = file.read()
            except OSError:
                continue
            if is_ours and os.path.basename(command.split(b"\0")[0]) == b"corvanta-guest":
                found.append(command)
        return found

    def until(self, look, what):
        end = time.monotonic() + LIMIT_SECONDS
        while not look():
            self.assertLess(time.monotonic(), end, what)
            time.sleep(0.05)

    def test_shows_a_guest_before_a_short_run_ends(self):
        picture = self.snapshot("one.png", 1, "--size", "640x360", "--camera", "none")
        # Of the main video, between the strip and the bar.
        self.assertGreater(picture.colours(), 64)
        self.assertEqual(self.guests(), [])

    def test_has_as_many_guests_as_are_asked_for_each_in_the_same_room(self):
        self.environment["CORVANTA_TOKEN"] = "open sesame"
        self.start("--guests", "2", "--room", "review", "--name", "Alva")
        self.until(lambda: len(self.guests()) == 2, "two guests")
        for guest in self.guests():
            self.assertNotIn(b"review", guest)
            self.assertNotIn(b"--name=Alva\0", guest)
            self.assertNotIn(b"sesame", guest)

    def test_leaves_no_guest_behind_when_it_ends(self):
        program = self.start()
        self.until(lambda: len(self.guests()) == 3, "three guests")
        program.send_signal(signal.SIGTERM)
        self.assertEqual(program.wait(timeout=LIMIT_SECONDS), 0)
        self.assertEqual(self.guests(), [])

    def test_leaves_no_guest_behind_when_it_is_killed(self):
        program = self.start()
        self.until(lambda: len(self.guests()) == 3, "three guests")
        program.kill()
        program.wait()
        self.until(lambda: not self.guests(), "the guests are still there")

    def test_shows_who_else_enters_the_room(self):
        self.clip("halves.mp4")
        self.start("--room", "review", "--name", "two", "--camera", "halves.mp4", "--size", "320x200")
        picture = self.snapshot(
            "one.png", 9, "--room", "review", "--name", "one", "--camera", "none", "--size", "640x360"
        )
        red, _, blue = picture.pixel(220, 210)
        self.assertTrue(red > 200 and blue < 60, picture.pixel(220, 210))
        red, _, blue = picture.pixel(420, 210)
        self.assertTrue(red < 60 and blue > 200, picture.pixel(420, 210))


class BadInput(ProgramTest):
    def test_names_a_missing_file_in_one_line(self):
        done = self.run_program("--headless", "1", "--participant", "one=missing.mp4")
        self.assert_one_line(done, 1, "no such file", "missing.mp4")
        done = self.run_program("--headless", "1", "--camera", "me.mp4")
        self.assert_one_line(done, 1, "no such file", "me.mp4")

    def test_refuses_a_bad_option_in_one_line(self):
        self.assert_one_line(self.run_program("--colour"), 2, "--colour")
        self.assert_one_line(self.run_program("--size", "big"), 2, "--size", "big")

    def test_refuses_names_that_nobody_can_show_in_one_line(self):
        for option in ("--room", "--name"):
            self.assert_one_line(self.run_program(option, 257 * "x"), 2, option, "256")
            self.assert_one_line(self.run_program(option, "two\nlines"), 2, option)
            self.assert_one_line(self.run_program(option, b"\xff\xfe"), 2, option)

    def test_refuses_what_does_not_go_together_in_one_line(self):
        self.assert_one_line(self.run_program("--participants", "4", "--room", "review"), 2, "--participants", "--room")
        self.assert_one_line(self.run_program("--participant", "one=test", "--guests", "1"), 2, "--participant", "--guests")
        self.assert_one_line(self.run_program("--ca", "ca.pem"), 2, "--ca", "--server")

    def test_says_when_there_is_neither_display_nor_xvfb(self):
        done = self.run_program("--headless", "1", PATH=self.folder)
        self.assert_one_line(done, 1, "Xvfb", "not installed")

    def test_says_when_the_display_does_not_answer(self):
        self.assert_one_line(self.run_program(DISPLAY=":9999"), 1, ":9999")

    def test_says_why_a_server_cannot_be_used(self):
        # A port that nobody has, as long as it is held and not listened to.
        with socket.socket() as held:
            held.bind(("127.0.0.1", 0))
            server = f"ws://127.0.0.1:{held.getsockname()[1]}"
            done = self.run_program("--headless", "1", "--room", "review", "--server", server)
        self.assertEqual(done.returncode, 1)
        last = done.stderr.splitlines()[-1]
        self.assertTrue(last.startswith("corvanta-room: the room cannot be entered: "), done.stderr)
        self.assertIn(server, last)

    def test_goes_on_when_a_file_holds_no_video(self):
        with open(os.path.join(self.folder, "text.mp4"), "w", encoding="utf-8") as file:
            file.write("no video at all\n" * 100)
        done = self.run_program(
            "--headless", "2", "--snapshot", "one.png", "--participant", "one=text.mp4", "--participant", "two=test"
        )
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("text.mp4", done.stderr)


class Soak(ProgramTest):
    def resident_kilobytes(self, process):
        with open(f"/proc/{process}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmRSS:"))

    def test_keeps_its_memory(self):
        program = subprocess.Popen(
            [PROGRAM, "--headless", "75", "--participants", "4"],
            cwd=self.folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        try:
            time.sleep(20)
            early = self.resident_kilobytes(program.pid)
            time.sleep(45)
            late = self.resident_kilobytes(program.pid)
            self.assertEqual(program.wait(timeout=LIMIT_SECONDS), 0)
        finally:
            program.kill()
        self.assertLess(late - early, 24 * 1024, f"{early} kB after 20 s, {late} kB after 65 s")


if __name__ == "__main__":
    unittest.main()
