"""The tour of README.md works as it stands, line by line, after a build."""

import os
import re
import subprocess
import sys
import unittest

from command_line import ROOT, TARN, CommandLineTest


class TestTour(CommandLineTest):
    def tour(self):
        """Its lines after $, and those after >>>; folders are the test's own."""
        text = (ROOT / "README.md").read_text().partition("\n## A tour\n")[2].partition("\n## ")[0]
        self.make_system()
        self.make_results()
        here = {"build/tour": self.at / "tour", "build/example": self.at, "build/bin/tarn": TARN, "build/python": os.environ["PYTHONPATH"]}
        for written, place in here.items():
            text = text.replace(written, str(place))
        text = re.sub(r"\bpython3(?= |\n)", sys.executable, text)
        return re.findall(r"^    \$ (.*)$", text, re.MULTILINE), re.findall(r"^    >>> (.*)$", text, re.MULTILINE)

    def run_line(self, line, text=""):
        run = subprocess.run(["bash", "-c", line], cwd=ROOT, input=text, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, f"{line}\n{run.stderr}")

    def test_every_line_works(self):
        (*shell, start), python = self.tour()
        self.assertGreater(len(shell), 8)
        for line in shell:
            self.run_line(line)
        self.assertTrue((self.at / "tour" / "year.svg").stat().st_size > 10000)
        self.run_line(start, "\n".join(python))


if __name__ == "__main__":
    unittest.main()
