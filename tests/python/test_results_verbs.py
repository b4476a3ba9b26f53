"""Design results from the command line."""

import contextlib
import itertools
import json
import re
import sqlite3
import unittest
from xml.etree import ElementTree

from command_line import CommandLineTest


class TestResults(CommandLineTest):
    def test_results_as_a_report(self):
        self.make_system()
        self.make_results()
        self.assertRegex(self.tarn("results", "list").stdout, r" 1  VAV-1  .*MALLD01.DAT  stale")
        shown = self.tarn("results", "show", "1").stdout
        self.assertRegex(shown, r"\Astale: .*run the design calculation again\n")
        for text in (r"coil total +1,234,567 Btu/hr", r"entering DB +80\.0 F", r"coil load +0 Btu/hr", r"not used: precool coil, ",
                     r"\n1  Zone 1  September hour 16 +43,210 +0 +0 +1\.50 ", r"\nWalls +1,000 ft2 +10,000 +7,000\n", r"\nPeople +4 people +2,999 +900 +\n",
                     r"\ntotal +13,999 +900 +7,000\nthe file has 8,000 Btu/hr as the total of heating\ncentral",
                     r"\n 4  Mixed air +77\.0 +64\.2 +0\.00988 +5,000 "):  # 25 C at 50 %: a wet-bulb of 17.9 C
            self.assertRegex(shown, text)
        zone = self.tarn("results", "show", "1", "1").stdout
        for text in (r"zone 1 Zone 1; ", r"peak sensible +43,210 Btu/hr", r"cooling at September hour 16", r"\n1  Shop +none +3 .* 555 +0 +0\n", r"\nspace 1 Shop\n"):
            self.assertRegex(zone, text)
        self.assertEqual(len(re.findall(r"\nPeople +555\ntotal +555\n", zone)), 2)
        self.assertIn("no cooling peak", self.tarn("results", "show", "1", "2").stdout)

    def test_results_as_json_and_picture(self):
        self.make_system()
        self.make_results()
        picture = self.at / "way.svg"
        shown = json.loads(self.tarn("results", "show", "1", "--json", "--svg", str(picture)).stdout)
        self.assertEqual((shown["name"], shown["stale"], shown["SSAir"]["ClgPeakMonth"]), ("VAV-1", True, {"code": 7, "text": "July"}))
        self.assertEqual((shown["HLAir"]["CentCoolTot"][6][15], shown["SPAir"]["DryBulb"][6][15][3]), (1234567, 77))
        self.assertEqual([len(shown[block]) for block in ("TSZones", "HLZones", "DLZones")], [2, 2, 2])
        self.assertEqual(shown["DLZones"][0]["DLSpaces"][0]["Name"], "Shop")
        zone = json.loads(self.tarn("results", "show", "1", "1", "--json").stdout)
        self.assertEqual((zone["zone_name"], zone["DLZone"]), ("Zone 1", shown["DLZones"][0]))

        svg = "{http://www.w3.org/2000/svg}"
        root = ElementTree.parse(picture).getroot()
        texts = [text.text for text in root.iter(svg + "text")]
        for text in ("VAV-1, air system 1", "Design day of July: loads of the central coils", "most 1234.6 MBH (361.8 kW) at hour 15", "most 5000 CFM (2360 L/s) at hour 12",
                     "kW", "L/s", "g/kg", "100 %", "The air at July hour 15", "77.0 F (25.0 C), 0.00988 lb/lb (9.9 g/kg)"):
            self.assertIn(text, texts)
        self.assertEqual(texts.count("Mixed air"), 2)
        self.assertEqual(len(list(root.iter(svg + "circle"))), 7)
        boxes = [[float(box.get(key)) for key in ("x", "y", "width", "height")] for box in root.iter(svg + "rect") if box.get("fill-opacity")]
        self.assertEqual(len(boxes), 5)
        for (x, y, wide, high), (left, top, width, height) in itertools.combinations(boxes, 2):
            self.assertFalse(x < left + width + 2 and left < x + wide + 2 and y < top + height + 2 and top < y + high + 2, "labels touch")

    def test_results_that_are_not_there(self):
        self.assertIn("no air system has design results yet", self.tarn("results", "list").stdout)
        self.assertIn("has no air-systems yet", self.tarn("results", "show", "1", code=2).stderr)
        self.make_system()
        names = sorted(path.name for path in self.at.iterdir())
        self.assertIn("Run the design calculation.", self.tarn("results", "show", "1", code=3).stderr)
        self.assertEqual(json.loads(self.tarn("results", "list", "--json").stdout), [])
        self.assertEqual(sorted(path.name for path in self.at.iterdir()), names)
        (self.at / "MALLD01.DAT").write_bytes(b"short")
        self.assertIn("run the design calculation again", self.tarn("results", "show", "1", code=3).stderr)
        self.make_results()
        for words, says in [(["show"], "tarn results show N"), (["show", "4"], "the nearest is 1"), (["show", "x"], "did you mean VAV-1?"),
                            (["show", "1", "3"], "the nearest is 2"), (["show", "1", "2", "3"], "one word too many"), (["shw"], "did you mean show?"),
                            (["show", "1", "1", "--svg", "x.svg"], "leave the zone out"), (["show", "1", "--svg", "x.png"], "a name that ends in .svg, not x.png"), (["list", "--svg", "x"], "--svg goes with")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn("results", *words, code=2).stderr)

    def test_results_belong_to_their_system(self):
        self.make_system()
        self.make_results()
        self.tarn("air-systems", "set", "1", "Name=VAV-2")
        self.assertRegex(self.tarn("results", "show", "1").stdout, r"\nVAV-2, air system 1; \S+MALLD01.DAT\n")
        with contextlib.closing(sqlite3.connect(self.at / "MALLINX.MDB", isolation_level=None)) as other:
            other.execute("UPDATE AirSystemIndex SET szName = 'Brand new'")
        self.assertIn('has the results of the air system "VAV-2", but air system 1 is "Brand new"', self.tarn("results", "show", "1", code=3).stderr)
        self.assertIn("no air system has design results yet", self.tarn("results", "list").stdout)
        self.tarn("air-systems", "delete", "1")
        self.assertFalse((self.at / "MALLD01.DAT").exists())
        self.make_system()
        self.assertIn("has no design results", self.tarn("results", "show", "1", code=3).stderr)


if __name__ == "__main__":
    unittest.main()
