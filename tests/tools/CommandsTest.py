"""The project's commands refuse what nobody asked for in one line, before they install or build anything."""
import os
import subprocess
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


class Commands(unittest.TestCase):
    def run_command(self, *command):
        return subprocess.run(
            [os.path.join(ROOT, command[0]), *command[1:]],
            capture_output=True,
            text=True,
            stdin=subprocess.DEVNULL,
            timeout=60,
        )

    def test_the_test_command_names_an_unknown_argument(self):
        done = self.run_command("test", "--some")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr.count("\n"), 1)
        self.assertIn("--some", done.stderr)

    def test_the_installer_names_an_unknown_group(self):
        done = self.run_command("tools/install_dependencies", "games")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("games", done.stderr)

    def test_the_installer_is_silent_when_nothing_is_missing(self):
        done = self.run_command("tools/install_dependencies", "build")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))


if __name__ == "__main__":
    unittest.main()
