"""The check of what the pages name notices what is not there."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[3] / ".ci" / "check-docs"

PAGE = """# The page

[A heading](#what-it-is-good-for), [another page](docs/other.md#its-first-heading) and
[the world](https://example.org/) are linked; `core/Timer.h`, `core/Timer`, `core/Timer.{h,cpp}`,
`core/`, `core/YourOwn.h` and `elsewhere/thing.h` are named.

## What it is good for
"""


class CheckDocsTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quorvane-check-docs-"))
        self.addCleanup(shutil.rmtree, self.folder)
        for name in (".ci", "core", "docs"):
            (self.folder / name).mkdir()
        shutil.copy(CHECK, self.folder / ".ci")
        for name in ("core/Timer.h", "core/Timer.cpp"):
            (self.folder / name).touch()
        (self.folder / "docs" / "other.md").write_text("# Its first heading\n", encoding="utf-8")

    def check(self, text):
        (self.folder / "README.md").write_text(text, encoding="utf-8")
        for command in (["init", "-q"], ["add", "-A"]):
            subprocess.run(["git", *command], cwd=self.folder, check=True)
        done = subprocess.run([str(self.folder / ".ci" / "check-docs")], capture_output=True,
                              text=True, check=False)
        return done.returncode, done.stdout

    def assert_missed(self, text, complaint):
        self.assertEqual(self.check(text), (1, f"README.md {complaint}\n"))

    def test_page_whose_names_are_there_passes(self):
        self.assertEqual(self.check(PAGE), (0, "Everything that the pages name is there.\n"))

    def test_missing_page(self):
        self.assert_missed(PAGE + "[gone](docs/gone.md)\n",
                           "links to docs/gone.md, which is not there")

    def test_missing_heading(self):
        self.assert_missed(PAGE + "[gone](docs/other.md#gone)\n",
                           "links to docs/other.md#gone: there is no such heading")
        self.assert_missed(PAGE + "[gone](#gone)\n", "links to #gone: there is no such heading")

    def test_comment_in_a_block_of_commands_is_no_heading(self):
        self.assert_missed(PAGE + "```\n# gone\n```\n[gone](#gone)\n",
                           "links to #gone: there is no such heading")

    def test_missing_file(self):
        self.assert_missed(PAGE + "`core/Clock.h`\n", "names core/Clock.h, which is not there")

    def test_missing_folder(self):
        self.assert_missed(PAGE + "`core/clocks/`\n", "names core/clocks/, which is not there")


if __name__ == "__main__":
    unittest.main()
