"""What CI says about the tests that ran, from a run of ctest's own."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[3] / ".ci" / "check-tests"

TESTS = """
add_test(One.passes "true")
add_test(One.fails "false")
add_test(Two.is_skipped "sh" "-c" "echo skipped")
set_tests_properties(Two.is_skipped PROPERTIES SKIP_REGULAR_EXPRESSION "skipped")
add_test(Three.passes_at_the_second_try "sh" "-c" "test -e {folder}/tried || {{ touch {folder}/tried; false; }}")
"""


class CheckTestsTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quorvane-check-tests-"))
        self.addCleanup(shutil.rmtree, self.folder)
        (self.folder / "CTestTestfile.cmake").write_text(TESTS.format(folder=self.folder),
                                                         encoding="ascii")

    def run_tests(self, name, *arguments):
        """Gives where the results are, and what was printed."""
        results, output = self.folder / f"{name}.xml", self.folder / f"{name}.output"
        with open(output, "w", encoding="ascii") as file:
            subprocess.run(["ctest", "--test-dir", str(self.folder), "--parallel", "2",
                            "--output-junit", str(results), *arguments], check=False, stdout=file,
                           stderr=file, stdin=subprocess.DEVNULL)
        return str(results), str(output)

    def check(self, *arguments):
        done = subprocess.run([str(CHECK), *arguments], capture_output=True, text=True, check=False)
        return done.returncode, done.stdout + done.stderr

    def test_all_have_run_whatever_came_of_them(self):
        results, _ = self.run_tests("all")
        self.assertEqual(self.check("ran", str(self.folder), results),
                         (0, "skipped everywhere: Two.is_skipped\n3 of 4 tests have run\n"))

    def test_one_that_no_run_has_selected_is_a_failure(self):
        first, _ = self.run_tests("first", "-R", "One.passes|Two")
        second, _ = self.run_tests("second", "-R", "One.fails")
        status, output = self.check("ran", str(self.folder), first, second)
        self.assertEqual(status, 1)
        self.assertIn("never run: Three.passes_at_the_second_try\n", output)
        self.assertNotIn("never run: One", output)

    def test_several_runs_count_together(self):
        first, _ = self.run_tests("first", "-R", "One|Two")
        second, _ = self.run_tests("second", "-R", "Three")
        self.assertEqual(self.check("ran", str(self.folder), first, second)[0], 0)

    def test_name_that_begins_no_test_s_is_a_failure(self):
        results, _ = self.run_tests("all")
        self.assertEqual(self.check("named", results, "One", "Three"), (0, ""))
        status, output = self.check("named", results, "One", "Four", "Two")
        self.assertEqual(status, 1)
        self.assertEqual(output, "no test's name that has run begins with Four\n"
                                 "no test's name that has run begins with Two\n")

    def test_those_that_were_tried_again_are_named(self):
        _, output = self.run_tests("again", "--repeat", "until-pass:3")
        self.assertEqual(self.check("retried", output)[1],
                         "run 3 times: One.fails\nrun 2 times: Three.passes_at_the_second_try\n")


if __name__ == "__main__":
    unittest.main()
