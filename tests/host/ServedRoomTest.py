"""People in a room that a server carries, each with a program and a window of their own, and a guest without a window.
CORVANTA_ROOM names the program, CORVANTA_GUEST the guest's, CORVANTA_ROOM_SERVER the command that starts the server."""
import os
import subprocess
import unittest

import OwnNetwork
from RoomDisplay import end_with_parent
from RoomsDisplay import CORAL, ROOM, STRIP_HEIGHT, WINDOW_WIDTH, RoomsDisplay, are_same, is_like

WAVE = [(280, 250), (330, 280), (380, 220), (430, 250)]
TOKEN = "open-sesame-4711"


class ServedRoomTest(RoomsDisplay):
    @classmethod
    def setUpClass(cls):
        OwnNetwork.enter()

    def setUp(self):
        super().setUp()
        self.environment["CORVANTA_TOKEN"] = TOKEN
        port = str(OwnNetwork.free_port())
        command = [os.environ["CORVANTA_ROOM_SERVER"], "--port", port, "--address", OwnNetwork.ADDRESS]
        server = subprocess.Popen(command, env=dict(self.environment, TMPDIR=self.folder), preexec_fn=end_with_parent,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.wait)
        # Asked, it takes the server itself with it.
        self.addCleanup(server.terminate)
        said = []
        for line in server.stdout:
            said.append(line)
            if "ready; " in line:
                break
        else:
            self.fail("the server does not start: " + "".join(said))
        self.server = ["--server", f"ws://{OwnNetwork.ADDRESS}:{port}"]

    def invite(self, name, *arguments):
        """A guest, which has no window."""
        guest = subprocess.Popen([os.environ["CORVANTA_GUEST"], "--room", ROOM, "--name", name, *self.server, *arguments],
                                 cwd=self.folder, env=self.environment, preexec_fn=end_with_parent,
                                 stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(guest.wait)
        self.addCleanup(guest.kill)
        return guest

    def test_shows_each_the_other_ones_picture_and_marks(self):
        red, blue = self.enter("red", *self.server), self.enter("blue", *self.server)
        self.meet(red, blue)
        for person in (red, blue):
            person.open_tools()
            person.choose("blue")
        marks = red.draw(WAVE)
        self.until(lambda: are_same(blue.marks(), marks), "blue has other marks")
        red.change_marks("ctrl+z", set())
        self.until(lambda: not blue.marks(), "blue keeps what red has taken back")

    def test_shows_a_guest_and_what_it_draws_until_it_leaves(self):
        guest = self.invite("lime", "--source", self.clip("lime"), "--draw", "1")
        red = self.enter("red", *self.server)
        self.until(lambda: set(red.tiles()) == {"red", "lime"}, "red does not see the guest")
        strip = (0, 2, WINDOW_WIDTH, STRIP_HEIGHT - 4)
        self.until(lambda: len(red.places(lambda pixel: is_like(pixel, CORAL, 12), *strip)) > 30, "the guest does not draw")
        guest.terminate()
        self.assertEqual(guest.wait(timeout=self.patience_seconds), 0)
        self.until(lambda: set(red.tiles()) == {"red"}, "the guest's tile stays")


if __name__ == "__main__":
    unittest.main()
