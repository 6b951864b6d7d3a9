"""The sum that the test command prints is made of what ctest wrote, and nothing that did not run passes."""
import os
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "count_tests")


class CountTests(unittest.TestCase):
    def count(self, text):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "results.xml")
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
            return subprocess.run([sys.executable, TOOL, path], capture_output=True, text=True)

    def test_each_test_is_counted_once_and_the_failed_are_named(self):
        done = self.count(
            '<testsuite><testcase name="a" status="run"/><testcase name="b" status="run"/>'
            '<testcase name="c" status="fail"><failure message=""/></testcase></testsuite>'
        )
        self.assertEqual((done.returncode, done.stdout), (0, "2 1\nc\n"), done.stderr)

    def test_what_the_failed_said_is_kept_from_where_they_failed(self):
        said = "".join(f"line {number}\n" for number in range(100))
        with tempfile.TemporaryDirectory() as folder:
            results, words = os.path.join(folder, "results.xml"), os.path.join(folder, "words")
            with open(results, "w", encoding="utf-8") as file:
                file.write(
                    '<testsuite><testcase name="a" status="run"><system-out>fine</system-out></testcase>'
                    f'<testcase name="b" status="fail"><system-out>{said}x.cpp:7: Failure\n{said}</system-out></testcase>'
                    f'<testcase name="c" status="fail"><system-out>{said}</system-out></testcase>'
                    '<testcase name="d" status="fail"/></testsuite>'
                )
            for _ in range(2):
                subprocess.run([sys.executable, TOOL, results, words], check=True, capture_output=True)
            with open(words, encoding="utf-8") as file:
                lines = file.read().splitlines()
        once = ["What b said:", "    x.cpp:7: Failure", *(f"    line {number}" for number in range(19))]
        once += ["What c said:", *(f"    line {number}" for number in range(80, 100)), "What d said:"]
        self.assertEqual(lines, once + once)

    def test_what_skipped_itself_counts_as_neither(self):
        done = self.count(
            '<testsuite><testcase name="a" status="notrun"><skipped message="SKIP_RETURN_CODE=77"/></testcase>'
            '<testcase name="b" status="disabled"/></testsuite>'
        )
        self.assertEqual((done.stdout, "skipped: a" in done.stderr), ("0 0\n", True))

    def test_what_could_not_run_has_failed(self):
        done = self.count(
            '<testsuite><testcase name="a" status="notrun"><skipped message="Unable to find executable"/></testcase>'
            "</testsuite>"
        )
        self.assertEqual(done.stdout, "0 1\na\n")

    def test_a_broken_file_is_an_error(self):
        done = self.count("<testsuite><testcase")
        self.assertNotEqual(done.returncode, 0)
        self.assertEqual(done.stdout, "")


if __name__ == "__main__":
    unittest.main()
