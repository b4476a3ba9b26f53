"""The reference site: every link leads to something, every page is fit to read by ear and by eye, and the search knows what there is.

site_is_whole.py MAKE_SITE SOURCE
"""

import html.parser
import json
import pathlib
import posixpath
import re
import subprocess
import sys
import tempfile
import unittest

import tarn

MAKE_SITE, SOURCE = sys.argv[1], pathlib.Path(sys.argv[2])


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.places, self.links, self.headings, self.marks, self.pictures = [], [], [], [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        self.marks.append(tag)
        if "id" in given:
            self.places.append(given["id"])
        self.links += [given[name] for name in ("href", "src") if name in given]
        if re.fullmatch("h[1-6]", tag):
            self.headings.append(int(tag[1]))
        if tag == "img":
            self.pictures.append(given.get("alt"))


class TestSite(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.at = pathlib.Path(cls.folder.name) / "site"
        subprocess.run([sys.executable, MAKE_SITE, SOURCE, cls.at, "1.2.3"], check=True, stdout=subprocess.DEVNULL)
        cls.pages = {str(path.relative_to(cls.at)): Page(path.read_text()) for path in cls.at.rglob("*.html")}
        cls.index = json.loads((cls.at / "search-index.js").read_text().removeprefix("window.searchIndex = ").rstrip(";\n"))

    def broken(self, page, link):
        """Why a link of a page leads nowhere; empty where it leads somewhere."""
        if re.match(r"\w+:", link):
            return "leaves the site"
        address, _, place = link.partition("#")
        target = posixpath.normpath(posixpath.join(posixpath.dirname(page), address)) if address else page
        if not (self.at / target).is_file():
            return "no file"
        return "no such place" if place and place not in self.pages[target].places else ""

    def test_every_link_leads_somewhere(self):
        faults = [(name, link, why) for name, page in self.pages.items() for link in page.links if (why := self.broken(name, link))]
        self.assertEqual(faults, [])
        self.assertEqual([entry[2] for entry in self.index if self.broken("index.html", entry[2])], [])

    def test_pages_are_fit_to_read(self):
        for name, page in self.pages.items():
            with self.subTest(page=name):
                self.assertEqual((page.headings.count(1), page.headings[0], page.marks.count("main")), (1, 1, 1))
                self.assertEqual([pair for pair in zip(page.headings, page.headings[1:]) if pair[1] > pair[0] + 1], [])
                self.assertEqual(sorted(page.places), sorted(set(page.places)))
                self.assertTrue(all(page.pictures))
                self.assertEqual(page.links[page.links.index("#main")], page.links[1])  # the first after the style

    def test_everything_is_there(self):
        titles = {entry[0] for entry in self.index}
        for name in tarn.classes():
            self.assertIn(f"classes/{name}.html", self.pages)
            missing = [member.name for member in tarn.members(name) if f"{name}.{member.name}" not in titles]
            self.assertEqual(missing, [], name)
        for wanted in ("AS_ConstituentMasks.CCM_INPUTMASK", "tarn windows list", "Topic: staleness", "The index database"):
            self.assertIn(wanted, titles)
        window = (self.at / "classes/WIN_Window.html").read_text()
        self.assertRegex(window, r'<tr id="Height">\s*<td><code>Height</code></td>\s*<td>R4</td>\s*<td>ft</td>\s*<td>0 and above</td>')
        self.assertRegex(window, r"Record, 555 bytes[^$]*<td>257</td>\s*<td>4</td>\s*<td><code>Height</code>")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
