"""check.py PROGRAM FOLDER   runs an example and compares what it prints with what its folder says.

Standard output has to be output.txt and standard error log.txt, in which every date stands for any; without that file
it has to be empty. The program is run in the folder, and finds its settings there.
"""

import os
import pathlib
import re
import subprocess
import sys
import unittest

PROGRAM, FOLDER = sys.argv[1], pathlib.Path(sys.argv[2])
DATE = re.compile(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} ", re.MULTILINE)


class Example(unittest.TestCase):
    maxDiff = None

    def test_prints_what_the_guide_shows(self):
        settings = {"XDG_CONFIG_HOME": str(FOLDER), "XDG_CONFIG_DIRS": str(FOLDER), "LC_ALL": "C.UTF-8"}
        done = subprocess.run([PROGRAM], cwd=FOLDER, env={**os.environ, **settings}, capture_output=True,
                              encoding="utf-8", timeout=60, check=False)
        log = FOLDER / "log.txt"
        expected = log.read_text(encoding="utf-8") if log.exists() else ""
        self.assertEqual(DATE.sub("DATE ", done.stderr), DATE.sub("DATE ", expected))
        self.assertEqual(done.stdout, (FOLDER / "output.txt").read_text(encoding="utf-8"))
        self.assertEqual(done.returncode, 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
