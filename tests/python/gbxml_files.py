"""What the tests of gbXML share: files, projects, and a count of a file's areas that shares nothing with the library but the file."""

import collections
import json
import math
import sys
import xml.etree.ElementTree as ElementTree

from command_line import EXAMPLES, ROOT, CommandLineTest

sys.path.insert(0, str(EXAMPLES))
import make_house  # noqa: E402

DATA = ROOT.parent / "shared" / "data"
PUBLIC = [DATA / "gbxml" / f"{name}.xml" for name in ("Schedule", "VAVBoxAllVariations", "VentilationAndInfiltration", "VillaSpaces", "chinese_gbxml")] + [DATA / "TestCube.xml"]
SQUARE_FEET = {"SquareFeet": 1.0, "SquareMeters": 1 / 0.3048**2}
FEET = {"Feet": 1.0, "Meters": 1 / 0.3048}


def tag(element):
    return element.tag.split("}")[-1]


def child(element, name):
    return next((part for part in element if tag(part) == name), None)


def area_of(element):
    """By triangles from the first point, in the units of the file."""
    points = [tuple(float(c.text) for c in point) for point in child(child(element, "PlanarGeometry"), "PolyLoop")]
    total = [0.0, 0.0, 0.0]
    for a, b in zip(points[1:], points[2:]):
        u, v = [[p[i] - points[0][i] for i in range(3)] for p in (a, b)]
        for i in range(3):
            total[i] += (u[(i + 1) % 3] * v[(i + 2) % 3] - u[(i + 2) % 3] * v[(i + 1) % 3]) / 2
    return math.sqrt(sum(t * t for t in total))


def drawn(path):
    """Areas in ft2 and numbers by type, floor area, and the kinds of wall beside which a space lies twice."""
    root = ElementTree.parse(path).getroot()
    square = FEET[root.get("lengthUnit")] ** 2
    areas, counts = collections.Counter(), collections.Counter()
    for element in root.iter():
        kind = {"Surface": "surfaceType", "Opening": "openingType"}.get(tag(element))
        if kind:
            areas[element.get(kind)] += area_of(element) * square
            counts[element.get(kind)] += 1
    floor = sum(float(child(space, "Area").text) for space in root.iter() if tag(space) == "Space") * SQUARE_FEET[root.get("areaUnit")]
    return areas, counts, floor


class GbxmlTest(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.file = self.at / "house.xml"
        self.write(make_house.house())

    def write(self, text):
        self.file.write_text(text, encoding="utf-8")

    def imported(self, path=None, *more):
        return json.loads(self.tarn("import", "gbxml", str(path or self.file), "--json", *more).stdout)

    def refused(self, text):
        self.file.write_bytes(text if isinstance(text, bytes) else text.encode())
        run = self.tarn("import", "gbxml", str(self.file), code=3)
        self.assertEqual(json.loads(self.tarn("project", "info", "--json").stdout)["entities"], {})
        return run.stderr

    def all(self, group):
        text = json.loads(self.tarn("export", "json", group).stdout)
        return {entity.get("Name") or entity["Space"]["Name"]: entity for entity in list(text.values())[1] if entity["index"] > 0}

    @staticmethod
    def kinds(account):
        areas = collections.Counter()
        for row in account["areas"]:
            areas[row["kind"]] += row["area"]
        return areas
