"""The export check tells an exact match from a name too many and a missing one, on a small library of its own."""
import os
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "check_exports")
COMPILER = os.environ.get("CORVANTA_C_COMPILER", "cc")

SOURCE = "int First(void) { return 1; }\nint Second(void) { return 2; }\n__attribute__((weak)) int Weak(void) { return 3; }\n"


class Exports(unittest.TestCase):
    def check(self, visible, listed):
        """Builds a library that shows some of its three functions and compares it with a list."""
        with tempfile.TemporaryDirectory() as folder:
            files = {
                "library.c": SOURCE,
                "version.map": "VERSION_1 { global: " + " ".join(f"{name};" for name in visible) + " local: *; };\n",
                "exports.txt": "\n".join(listed) + "\n",
            }
            for name, text in files.items():
                with open(os.path.join(folder, name), "w", encoding="ascii") as file:
                    file.write(text)
            library = os.path.join(folder, "library.so")
            subprocess.run(
                [COMPILER, "-shared", "-fPIC", "-Wl,--version-script=" + os.path.join(folder, "version.map"),
                 os.path.join(folder, "library.c"), "-o", library],
                check=True,
            )
            done = subprocess.run(
                [sys.executable, TOOL, library, os.path.join(folder, "exports.txt")], capture_output=True, text=True
            )
        return done.returncode, done.stdout

    def test_an_exact_match_passes(self):
        code, output = self.check(["First", "Second"], ["Second", "First"])
        self.assertEqual(code, 0, output)

    def test_a_name_too_many_is_found(self):
        code, output = self.check(["First", "Second"], ["First"])
        self.assertEqual((code, "Second is exported and not listed" in output), (1, True), output)

    def test_a_weak_name_too_many_is_found(self):
        code, output = self.check(["First", "Weak"], ["First"])
        self.assertEqual((code, "Weak is exported and not listed" in output), (1, True), output)

    def test_a_missing_name_is_found(self):
        code, output = self.check(["First"], ["First", "Second"])
        self.assertEqual((code, "Second is listed and not exported" in output), (1, True), output)

    def test_a_name_listed_twice_is_found(self):
        code, output = self.check(["First"], ["First", "First"])
        self.assertEqual((code, "First is listed twice" in output), (1, True), output)


if __name__ == "__main__":
    unittest.main()
