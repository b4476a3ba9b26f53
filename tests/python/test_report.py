"""The report as a page: well-formed, in order, self-contained; and, where there is a browser, as it looks."""

import html
import html.parser
import json
import os
import pathlib
import re
import shutil
import subprocess
import unittest
from xml.etree import ElementTree

import tarn

from command_line import CommandLineTest

BROWSER = shutil.which("chromium")
LOOK = pathlib.Path(__file__).with_name("report_look.js")
AXE = pathlib.Path(__file__).parents[2] / "build" / "browser" / "axe.min.js"
VOID = {"meta", "input", "br", "hr"}


class Page(html.parser.HTMLParser):
    """What a page consists of; fails where an element is not closed."""

    def __init__(self, text):
        super().__init__()
        self.open, self.headings, self.tables, self.loose_heads, self.outside, self.ids, self.links = [], [], 0, 0, [], [], []
        self.captions = self.landmarks = 0
        self.feed(text)
        assert not self.open, self.open

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        self.headings += [int(tag[1])] if re.fullmatch("h[1-6]", tag) else []
        self.tables += tag == "table"
        self.captions += tag == "caption"
        self.loose_heads += tag == "th" and "scope" not in given
        self.landmarks += tag in ("header", "nav", "main", "footer")
        self.ids += [given["id"]] if "id" in given else []
        self.links += [given["href"]] if "href" in given else []
        self.outside += [value for name, value in attributes if name in ("src", "srcset", "data", "action")]
        if tag not in VOID:
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        pass

    def handle_endtag(self, tag):
        assert self.open and self.open.pop() == tag, (tag, self.open[-3:], self.getpos())


class TestReport(CommandLineTest):
    def setUp(self):
        super().setUp()
        for group in ("windows", "walls", "schedules", "chillers", "boilers", "towers"):
            self.tarn(group, "new", f"Name={group} <&>")
        self.make_system()
        self.make_results()
        self.tarn("weather", "import", str(self.made_year()))
        self.file = self.at / "report.html"

    def test_page_is_well_formed_in_order_and_self_contained(self):
        self.assertEqual(self.tarn("report", str(self.file)).stdout, "")
        page = Page(self.file.read_text(encoding="utf-8"))
        self.assertEqual(page.headings[:2], [1, 2])
        self.assertTrue(all(after <= before + 1 for before, after in zip(page.headings, page.headings[1:])), "a level is left out")
        self.assertEqual((page.tables, page.loose_heads, page.landmarks), (page.captions, 0, 4))
        self.assertGreater(page.tables, 10)
        self.assertEqual(len(page.ids), len(set(page.ids)))
        self.assertEqual([link for link in page.links if link[1:] not in page.ids], [])
        self.assertEqual(page.outside, [])

    def test_every_face_gives_the_page(self):
        told = self.tarn("--units", "si", "report", "-").stdout
        self.assertIn("Values are in SI units", told)
        with tarn.Project(self.at / "MALL") as project:
            steps = []
            page = project.report(self.file, units="si", progress=lambda *step: steps.append(step))
            when = re.compile(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d UTC")
            self.assertEqual(when.sub("", page), when.sub("", told))
            self.assertEqual((self.file.read_text(encoding="utf-8"), steps[-1][0]), (page, steps[-1][1]))
            with self.assertRaisesRegex(Exception, 'give "ip" or "si"'):
                project.report(units="metric")
        self.assertIn("Which file?", self.tarn("report", code=2).stderr)
        self.assertIn(str(self.at / "none"), self.tarn("report", str(self.at / "none" / "page.html"), code=3).stderr)

    def test_pictures_one_by_one(self):
        for group in ("walls", "schedules", "chillers", "boilers"):
            with self.subTest(group):
                picture = self.at / f"{group}.svg"
                self.tarn(group, "show", "1", "--svg", str(picture))
                texts = [text.text for text in ElementTree.parse(picture).getroot().iter("{http://www.w3.org/2000/svg}text")]
                self.assertIn(f"{group} <&>", texts)

    def browse(self, address, *options):
        """What a browser without a screen writes on a page."""
        calm = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}  # a sanitizer is not for the browser
        run = subprocess.run([BROWSER, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", f"--user-data-dir={self.at}/profile",
                              "--virtual-time-budget=60000", *options, address], capture_output=True, text=True, env=calm, timeout=120)
        return run.stdout

    @unittest.skipUnless(BROWSER and AXE.exists(), "no browser, or no axe-core; scripts/setup test brings both")
    def test_page_in_a_browser(self):
        if "there" not in self.browse("data:text/html,<p>there</p>", "--dump-dom"):
            self.skipTest("the browser does not start")
        self.tarn("report", str(self.file))
        watched = f"<script>{AXE.read_text(encoding='utf-8')}</script><script>{LOOK.read_text(encoding='utf-8')}</script></body>"
        (self.at / "watched.html").write_text(self.file.read_text(encoding="utf-8").replace("</body>", watched), encoding="utf-8")
        frames = "".join(f'<iframe src="watched.html" width="{width}" height="900"></iframe>' for width in (1280, 400))
        (self.at / "frames.html").write_text(f"""<!DOCTYPE html><title>[]</title><script>const seen = [];
            onmessage = (told) => {{ seen.push(told.data); document.title = JSON.stringify(seen); }}</script>{frames}""", encoding="utf-8")
        for scheme, dark in (("1", False), ("0", True)):
            told = self.browse(f"file://{self.at}/frames.html", "--dump-dom", f"--blink-settings=preferredColorScheme={scheme}")
            seen = json.loads(html.unescape(re.search(r"<title>(.*?)</title>", told, re.S)[1]))
            self.assertEqual({each["width"] for each in seen}, {1280, 400})
            for each in seen:
                with self.subTest(width=each["width"], dark=dark):
                    self.assertEqual((each["beyond"], each["asked"], each["overlaps"], each["violations"], each["dark"]), (0, [], [], [], dark))
                    self.assertGreater(each["sorters"], 20)
        self.browse(f"file://{self.file}", "--no-pdf-header-footer", f"--print-to-pdf={self.at}/paper.pdf")
        sizes = re.findall(rb"MediaBox *\[0 0 ([0-9.]+) ([0-9.]+)\]", (self.at / "paper.pdf").read_bytes())
        self.assertGreater(len(sizes), 1)
        self.assertEqual({(round(float(width)), round(float(height))) for width, height in sizes}, {(595, 842)}, "A4, in points")


if __name__ == "__main__":
    unittest.main()
