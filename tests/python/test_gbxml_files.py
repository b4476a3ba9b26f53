"""Files of gbXML that are refused, told about, or written in other ways."""

import re
import unittest

from gbxml_files import GbxmlTest, make_house


class TestBadFiles(GbxmlTest):
    def test_what_is_refused_names_line_and_reason(self):
        house = make_house.house()
        bomb = '<?xml version="1.0"?>\n<!DOCTYPE x [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">]>\n<gbXML>&b;</gbXML>'
        cases = {
            "not XML": ("this is no XML", "line 1: this is not XML"),
            "cut off": (house[: len(house) // 2], "this is not XML"),
            "empty": ("", "this is not XML"),
            "another root": ("<ifc/>", 'the root element is "ifc"'),
            "entities": (bomb, "line 2: the file has a document type declaration"),
            "no unit": (house.replace('areaUnit="SquareMeters"', ""), "the attribute areaUnit is missing"),
            "unknown unit": (house.replace('lengthUnit="Meters"', 'lengthUnit="Cubits"'), 'lengthUnit is "Cubits"'),
            "unit of something else": (house.replace('<Thickness unit="Millimeters">100', '<Thickness unit="F">100'), 'the unit "F" is none of gbXML for this'),
            "unit missing": (house.replace('<LightPowerPerArea unit="WattPerSquareMeter">', "<LightPowerPerArea>"), "the unit is missing"),
            "no number": (house.replace("<Area>20<", "<Area>twenty<", 1), 'found "twenty", wanted a number'),
            "too large": (house.replace("<Area>20<", "<Area>1e30<", 1), "found 1e30, wanted a number up to 1e12"),
            "infinite": (house.replace("<Area>20<", "<Area>inf<", 1), 'found "inf", wanted a number'),
            "unknown space": (house.replace('spaceIdRef="sp-1"', 'spaceIdRef="sp-9"', 1), 'refers to the space "sp-9"'),
            "unknown week": (house.replace('weekScheduleIdRef="wk-1"', 'weekScheduleIdRef="wk-9"'), 'refers to the week "wk-9"'),
            "unknown system": (house.replace('airSystemIdRef="ahu-1"', 'airSystemIdRef="ahu-9"'), 'refers to the AirSystem "ahu-9"'),
            "no date": (house.replace("2026-06-30", "June"), "is no date"),
            "unknown type": (house.replace('surfaceType="InteriorWall"', 'surfaceType="Curtain"'), 'the surfaceType "Curtain" is none of gbXML'),
            "two ids": (house.replace('<Space id="sp-2"', '<Space id="sp-1"'), "another space has the same id"),
            "no campus": (make_house.HEAD + "</gbXML>", "there is no Campus"),
            "deep": (make_house.HEAD + "<a>" * 200_000 + "</a>" * 200_000 + "</gbXML>", "there is no Campus"),
            "encoding": ('<?xml version="1.0" encoding="EBCDIC"?><gbXML/>', "encoded as ebcdic"),
            "bytes": (b"<gbXML>\n\xff\xff</gbXML>", "line 2: the text is malformed UTF-8"),
            "half a pair": (b"<gbXML>\n\xed\xa0\x80</gbXML>", "line 2: the text is malformed UTF-8"),
            "no character": (house.replace("Kitchen", "Kitchen&#xD800;"), '"&#xD800" refers to no character'),
        }
        for name, (text, why) in cases.items():
            with self.subTest(name):
                error = self.refused(text)
                self.assertIn(why, error)
                self.assertIn("house.xml, line ", error)
                self.assertIn("Nothing was imported.", error)

    def test_what_is_told(self):
        house = make_house.house()
        flat = '<Surface id="su-0" surfaceType="ExteriorWall" constructionIdRef="con-wall"><AdjacentSpaceId spaceIdRef="sp-1"/>' + make_house.loop([(0, 0, 0), (1, 0, 0), (2, 0, 0)]) + "</Surface></Campus>"
        cases = {
            "zero area": (house.replace("</Campus>", flat), "left", "its area is 0"),
            "not planar": (house.replace(make_house.loop([(0, 4, 0), (0, 0, 0), (0, 0, 3), (0, 4, 3)]), make_house.loop([(0, 4, 0), (0, 0, 0), (1, 0, 3), (0, 4, 3)])), "notes", "do not lie in a plane"),
            "another rectangle": (house.replace("<Height>3</Height><Width>4</Width>", "<Height>3</Height><Width>4.1</Width>", 1), "notes", "differs by more than 1 %"),
            "another direction": (house.replace("<Azimuth>270<", "<Azimuth>260<"), "notes", "differ by more than 3.6 degrees"),
            "missing construction": (house.replace('<Construction id="con-wall"', '<Construction id="con-else"'), "notes", '"con-wall" of surfaces is not in the file'),
            "column": (house.replace('surfaceType="InteriorWall"', 'surfaceType="EmbeddedColumn"'), "left", "columns are no part of the envelope"),
        }
        for name, (text, where, why) in cases.items():
            with self.subTest(name):
                self.write(text)
                account = self.imported(None, "--dry-run")
                said = account["notes"] if where == "notes" else [row["reason"] for row in account["left"]]
                self.assertTrue(any(why in each for each in said), said)

    def test_encodings(self):
        house = make_house.house().replace("Kitchen", "K\u00fcche")
        undeclared = house.replace('encoding="UTF-8"', "")
        for encoding, text in (("utf-16", undeclared), ("utf-16-be", undeclared), ("utf-8-sig", house), ("latin-1", house.replace("UTF-8", "ISO-8859-1"))):
            with self.subTest(encoding):
                self.setUp()
                self.file.write_bytes(text.encode(encoding))
                self.imported()
                self.assertIn("K\u00fcche", self.all("spaces"))

    def test_a_prefix_of_the_namespace(self):
        text = re.sub(r"<(/?)(?=[A-Za-z])", r"<\1g:", make_house.house()).replace("xmlns=", "xmlns:g=")
        self.write(text)
        self.assertEqual(self.kinds(self.imported())["wall"], self.kinds(self.imported(None, "--dry-run"))["wall"])
        self.assertEqual(list(self.all("spaces")), ["Kitchen", "Hall", "Attic"])


if __name__ == "__main__":
    unittest.main()
