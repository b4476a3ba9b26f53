"""Buildings in gbXML. What the import counts is compared with a count of this file's own, which shares nothing with the library but the file."""

import collections
import json
import math
import re
import shutil
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ElementTree

import tarn

from command_line import EXAMPLES, ROOT, CommandLineTest, reads

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


class TestAreas(GbxmlTest):
    def check_file(self, path):
        account, (areas, counts, floor) = self.imported(path), drawn(path)
        self.assertEqual({row["type"]: row["count"] for row in account["drawn"]}, dict(counts))
        for row in account["drawn"]:
            self.assertAlmostEqual(row["area"] / areas[row["type"]], 1, delta=1e-4, msg=row["type"])
        kinds = self.kinds(account)
        expected = {"wall": ["ExteriorWall"], "roof": ["Roof"], "below-grade wall": ["UndergroundWall"], "door": ["NonSlidingDoor", "SlidingDoor"],
                    "window": ["FixedWindow", "OperableWindow"], "skylight": ["FixedSkylight", "OperableSkylight"]}
        for kind, types in expected.items():
            self.assertAlmostEqual(kinds[kind], sum(areas[each] for each in types), delta=1e-3 * max(kinds[kind], 1), msg=kind)
        self.assertAlmostEqual(account["floor_area"] / floor, 1, delta=1e-3)
        # What the spaces themselves hold.
        spaces = self.all("spaces").values()
        walls = sum(wall["GrossArea"] for space in spaces for wall in space["Wall"])
        roofs = sum(roof["GrossArea"] for space in spaces for roof in space["Roof"])
        self.assertAlmostEqual(walls, areas["ExteriorWall"], delta=1e-3 * areas["ExteriorWall"])
        self.assertAlmostEqual(roofs, areas["Roof"], delta=1e-3 * areas["Roof"])
        surfaces = {row["element"]: row for row in account["elements"]}["Surface"]
        left = sum(row["count"] for row in account["left"] if row["element"].startswith("Surface "))
        self.assertEqual(surfaces["found"], surfaces["taken"] + left)
        return account

    def test_the_house(self):
        account = self.check_file(self.file)
        self.assertAlmostEqual(self.kinds(account)["partition"] * 0.3048**2, 40, places=3)
        # By hand, in W/K: net wall, roof, windows, door; films of the product's walls, 0.685 and 0.333 hr.ft2.F/Btu.
        films = (0.685 + 0.333) * 0.1761102
        wall = 1 / (0.1 / 0.89 + 0.08 / 0.045 + 0.08 + films)
        glass, door, roof = 3 * 1.8, 0.9 * 2.1, 2 * 10 * math.sqrt(8)
        by_hand = wall * (2 * 15 + 2 * 15 + 24 + 8 - glass - door) + 0.4 * roof + 2.8 * glass + 2.2 * door
        self.assertAlmostEqual(account["conductance"] / 1.895634 / by_hand, 1, delta=2e-3)

    def test_public_files(self):
        for path in PUBLIC:
            with self.subTest(path.name):
                self.setUp()
                reads(path)(lambda test: test.check_file(path))(self)


class TestHouse(GbxmlTest):
    def test_spaces(self):
        self.imported()
        spaces = self.all("spaces")
        kitchen, attic = spaces["Kitchen"], spaces["Attic"]
        self.assertEqual(list(spaces), ["Kitchen", "Hall", "Attic"])
        self.assertAlmostEqual(kitchen["Space"]["FloorArea"], 215.278, places=2)
        self.assertAlmostEqual(kitchen["Space"]["AvgHeight"], 9.8425, places=3)
        self.assertEqual((kitchen["Space"]["OAReq1Spec"], kitchen["Space"]["OAReq1Value"]), (5, 0.5))
        self.assertAlmostEqual(kitchen["People"]["SensibleHeat"], 255.91, places=1)
        self.assertAlmostEqual(kitchen["Light"]["OverheadWatt"], 0.74322, places=4)
        self.assertAlmostEqual(kitchen["OtherLoads"]["ElecEqptHeatGain"], 0.46452, places=4)
        self.assertEqual((kitchen["People"]["Occupancy"], attic["People"]["Occupancy"]), (2, 0))
        walls = {wall["Exposure"]: wall for wall in kitchen["Wall"] if wall["GrossArea"] > 0}
        self.assertEqual(set(walls), {1, 9, 13})
        south = walls[9]
        self.assertEqual((south["WindowQty"], south["DoorQty"]), ([2, 0], 1))
        self.assertGreater(south["WindowShade"][0], 0)
        for roof, area in zip(attic["Roof"], (304.447, 304.447, 0, 0)):
            self.assertAlmostEqual(roof["GrossArea"], area, places=2)
        self.assertEqual({(roof["Exposure"], roof["Slope"]) for roof in attic["Roof"] if roof["GrossArea"]}, {(1, 45), (9, 45)})
        self.assertEqual(kitchen["Floor"]["FloorType"], 3)
        self.assertAlmostEqual(kitchen["Floor"]["ExposedPerimeter"], 14 / 0.3048, places=2)
        self.assertAlmostEqual(kitchen["Partition"][1]["Area"], 215.278, places=2)
        self.assertAlmostEqual(kitchen["Partition"][1]["UValue"] / 0.1761102, 0.3, places=4)

    def test_a_third_requirement_of_outdoor_air_is_left(self):
        three = '<OAFlowPerPerson unit="LPerSec">5</OAFlowPerPerson><OAFlowPerArea unit="LPerSecPerSquareM">0.3</OAFlowPerArea></Space>'
        self.write(self.file.read_text().replace("</Space>", three, 1))
        account = self.imported()
        general = self.all("spaces")["Kitchen"]["Space"]
        self.assertEqual((general["OAReq1Spec"], general["OAReq2Spec"]), (3, 2))
        self.assertAlmostEqual(general["OAReq1Value"], 10.594, places=3)
        self.assertEqual({row["element"]: (row["found"], row["taken"]) for row in account["elements"]}["Space/AirChangesPerHour"], (2, 1))

    def test_types(self):
        self.imported()
        wall = self.all("walls")["Brick wall"]
        used = [layer for layer in wall["Layer"] if layer["LayerUsed"]]
        self.assertEqual([layer["Name"] for layer in used], ["Outside surface resistance", "Brick", "Mineral wool", "Gypsum board", "Inside surface resistance"])
        self.assertAlmostEqual(used[1]["Thickness"], 100 / 25.4, places=4)
        self.assertAlmostEqual(used[3]["ThermalResistance"], 0.08 / 0.1761102, places=4)
        self.assertGreater(max(map(abs, wall["BTrans"])), 0)
        self.assertAlmostEqual(sum(wall["BTrans"]) / sum(wall["DTrans"]) / wall["OverallUValue"], 1, places=3)
        [window] = self.all("windows").values()
        self.assertAlmostEqual(window["OverallUValue"] / 0.1761102, 2.8, places=3)
        self.assertAlmostEqual(window["OverallShadeCo"], 0.7, places=4)
        self.assertAlmostEqual(window["Width"] * window["Height"] * 0.3048**2, 1.8, places=3)
        [shade] = self.all("shades").values()
        self.assertAlmostEqual(shade["RevealDepth"] * 304.8, 150, delta=0.2)

    def test_shading_bodies(self):
        """The windows of the kitchen reach from x = 0.5 to 2 m, the higher one from z = 1 to 2.2 m."""
        shade = lambda id, points: f'<Surface id="{id}" surfaceType="Shade" constructionIdRef="con-roof">{make_house.loop(points)}</Surface>'
        bodies = (shade("sh-over", [(0, 0, 2.5), (0, -1, 2.5), (3, -1, 2.5), (3, 0, 2.5)]) + shade("sh-fin", [(2.3, 0, 0), (2.3, -0.6, 0), (2.3, -0.6, 3), (2.3, 0, 3)]) +
                  shade("sh-tree", [(0, -9, 0), (3, -9, 0), (3, -9, 9), (0, -9, 9)]))
        self.write(self.file.read_text().replace("</Campus>", bodies + "</Campus>"))
        account = self.imported()
        [left] = [row for row in account["left"] if row["element"] == "Surface Shade"]
        self.assertEqual(left["count"], 1)
        expected = {"RevealDepth": 0.15, "OvhgExt": 1, "OvhgHeight": 0.3, "OvhgRHExt": 1, "OvhgLHExt": 0.5, "RHFinSep": 0.3, "RHFinExt": 0.6, "RHFinHeight": 3, "LHFinExt": 0}
        kitchen = [wall for wall in self.all("spaces")["Kitchen"]["Wall"] if wall["Exposure"] == 9][0]
        shades = [self.shown("shades", str(index)) for index in kitchen["WindowShade"]]
        [high] = [shade for shade in shades if abs(shade["OvhgHeight"] * 0.3048 - 0.3) < 0.01]
        for name, metres in expected.items():
            self.assertAlmostEqual(high[name] * 0.3048, metres, delta=0.002, msg=name)

    def test_schedule(self):
        self.imported()
        schedule = self.all("schedules")["Daytime"]
        profile = lambda month, day: schedule["HourlyValue"][schedule["Applicable"][month - 1][day] - 1]
        work, off = [0] * 8 + [50] + [100] * 9 + [0] * 6, [10] * 12 + [30] * 12
        for month, day, expected in ((1, 1, work), (1, 6, off), (1, 8, off), (1, 0, work), (6, 5, work), (7, 1, work), (7, 2, off), (12, 0, off)):
            self.assertEqual(profile(month, day), expected, (month, day))

    def test_air_system_and_plant(self):
        self.imported()
        [system] = [self.shown("air-systems", "1")]
        self.assertEqual(system["AirSystem"]["SystemType"]["code"], 8)
        self.assertEqual([system[part]["Source"]["code"] for part in ("CoolSys", "HeatSys")], [3, 7])
        self.assertEqual((system["PreheatCoil"]["Used"], system["VentReclaim"]["ReclaimType"]["code"]), (False, 2))
        [zone] = system["ZoneData"]
        self.assertEqual((zone["Name"], zone["SpaceID"][:3], zone["TermType"]["code"]), ("Ground floor", [1, 2, 0], 4))
        self.assertAlmostEqual(zone["OccCoolSetpt"], 77, places=3)
        [plant] = [self.shown("plants", "1")]
        self.assertEqual((plant["General"]["Name"], plant["General"]["PlantType"]["code"], plant["SystemSelect"]["SystemID"][0]), ("Heating water", 2, 1))

    def test_parts_of_an_air_loop(self):
        loop = """<AirLoop id="ahu-1" systemType="VariableAirVolume"><Name>Air handler</Name><AirLoopEquipment id="p-1" equipmentType="Economizer"/>
            <AirLoopEquipment id="p-2" equipmentType="HeatExchanger"/><AirLoopEquipment id="p-3" equipmentType="Coil"><HydronicLoopId hydronicLoopIdRef="loop-1" hydronicLoopType="HotWater"/></AirLoopEquipment>
            <AirLoopEquipment id="p-4" equipmentType="Duct"/></AirLoop>"""
        text = re.sub(r"<AirSystem .*</AirSystem>", loop, make_house.house()).replace('<AirSystemId airSystemIdRef="ahu-1"/>', '<AirLoopId airLoopIdRef="ahu-1"/>')
        self.write(text)
        account = self.imported()
        system = self.shown("air-systems", "1")
        self.assertEqual((system["Economizer"]["Used"], system["Economizer"]["EconomizerType"]["code"]), (True, 2))
        self.assertEqual((system["VentReclaim"]["Used"], system["VentReclaim"]["ReclaimType"]["code"]), (True, 1))
        self.assertEqual((system["HeatSys"]["Used"], system["HeatSys"]["Source"]["code"], system["AirSystem"]["SystemType"]["code"]), (True, 7, 8))
        self.assertEqual(system["ZoneData"][0]["TermType"]["code"], 4)
        self.assertEqual({row["element"]: (row["found"], row["taken"]) for row in account["elements"]}["AirLoopEquipment"], (4, 3))
        self.assertEqual(self.shown("plants", "1")["SystemSelect"]["SystemID"][0], 1)

    def test_site_only_where_there_is_none(self):
        self.imported()
        self.write(self.file.read_text().replace("Golden, Colorado", "Berlin"))
        left = [row["reason"] for row in self.imported()["left"] if row["element"] == "Location"]
        self.assertEqual(left, ["the project has the weather of Golden already"])

    def test_a_second_import_updates(self):
        first = self.imported()
        again = self.imported()
        self.assertEqual((again["made"], again["updated"], again["unchanged"]), (0, 0, first["made"]))
        self.write(self.file.read_text().replace("<Name>Kitchen<", "<Name>Cookery<").replace('"NumberOfPeople">2', '"NumberOfPeople">3'))
        changed = self.imported()
        self.assertEqual((changed["made"], changed["updated"]), (0, 2))
        self.assertEqual(list(self.all("spaces")), ["Cookery", "Hall", "Attic"])
        self.assertEqual(self.all("spaces")["Hall"]["People"]["Occupancy"], 3)
        self.tarn("spaces", "delete", "Hall", "--force")
        self.assertEqual(self.imported()["made"], 1)
        self.assertEqual(sorted(self.all("spaces")), ["Attic", "Cookery", "Hall"])

    def test_a_dry_run_changes_nothing(self):
        self.assertGreater(self.imported(None, "--dry-run")["made"], 5)
        self.assertEqual(json.loads(self.tarn("project", "info", "--json").stdout)["entities"], {})
        self.assertFalse((self.at / "MALLGBXML.JSON").exists())


class TestExport(GbxmlTest):
    SCHEMA = DATA / "gbxml" / "GreenBuildingXML_Ver6.01.xsd"

    def exported(self):
        path = self.at / "out.xml"
        self.tarn("export", "gbxml", "--output", str(path))
        if self.SCHEMA.exists() and shutil.which("xmllint"):
            check = subprocess.run(["xmllint", "--noout", "--schema", str(self.SCHEMA), str(path)], capture_output=True, text=True, check=False)
            self.assertEqual(check.returncode, 0, check.stderr[:2000])
        return path

    def summary(self):
        """What must come back: areas and U-values of walls, roofs and openings by space and direction, and the values of schedules."""
        u_value = {group: {entity["index"]: entity for entity in self.all(group).values()} for group in ("walls", "roofs", "windows", "doors")}
        rows = []
        for name, space in self.all("spaces").items():
            general = space["Space"]
            rows += [(name, "floor", general["FloorArea"], general["AvgHeight"]), (name, "people", space["People"]["Occupancy"], space["People"]["SensibleHeat"]),
                     (name, "power", space["Light"]["OverheadWatt"], space["OtherLoads"]["ElecEqptHeatGain"])]
            for wall in space["Wall"]:
                if wall["GrossArea"]:
                    rows.append((name, "wall", wall["Exposure"], wall["GrossArea"], u_value["walls"][wall["WallType"]]["OverallUValue"]))
                for kind, count in zip(wall["WindowType"], wall["WindowQty"]):
                    window = u_value["windows"].get(kind)
                    if window and count:
                        rows.append((name, "window", wall["Exposure"], count * window["Height"] * window["Width"], window["OverallUValue"], window["OverallShadeCo"]))
                if wall["DoorQty"]:
                    door = u_value["doors"][wall["DoorType"]]
                    rows.append((name, "door", wall["Exposure"], wall["DoorQty"] * door["GrossArea"], door["SolidUValue"]))
            for roof in space["Roof"]:
                if roof["GrossArea"]:
                    rows.append((name, "roof", roof["Exposure"], roof["Slope"], roof["GrossArea"], u_value["roofs"][roof["RoofType"]]["OverallUValue"]))
            floor = space["Floor"]
            if floor["FloorType"] > 1:
                rows.append((name, "floor", floor["FloorType"], floor["Area"], floor["OverallUValue"], floor["Depth"]))
            rows += [(name, "partition", each["PartitionType"], each["Area"], each["UValue"]) for each in space["Partition"] if each["Area"]]
        schedules = {}
        for name, schedule in self.all("schedules").items():
            is_on_off = schedule["ScheduleType"]["code"] == 1
            days = [[value != 0 if is_on_off else value for value in day] for day in schedule["HourlyValue"]]
            schedules[name] = [[days[profile - 1] for profile in month] for month in schedule["Applicable"]], is_on_off
        return sorted(rows, key=lambda row: [part if isinstance(part, str) else f"{part:9.2f}" for part in row]), schedules

    def check_round_trip(self):
        before = self.summary()
        path = self.exported()
        self.at = self.at / "again"
        self.tarn("project", "new", project=self.at / "MALL")
        self.imported(path)
        after = self.summary()
        for name, values in before[1].items():
            self.assertTrue(values == after[1][name], name)
        self.assertEqual([row[:2] for row in before[0]], [row[:2] for row in after[0]])
        for first, second in zip(before[0], after[0]):
            for a, b in zip(first[2:], second[2:]):
                self.assertAlmostEqual(a, b, delta=1e-3 * max(abs(a), 1e-3), msg=f"{first} {second}")

    def test_the_house_comes_back(self):
        self.imported()
        self.tarn("schedules", "new", "Name=Thermostat", "ScheduleType=1", "HourlyValue(1,8)=-1", "HourlyValue(1,9)=0")
        self.check_round_trip()

    def test_public_files_come_back(self):
        for path in PUBLIC:
            with self.subTest(path.name):
                self.setUp()
                reads(path)(lambda test: (test.imported(path), test.check_round_trip()))(self)

    def test_a_project_without_spaces_is_refused(self):
        self.assertIn("The project has no spaces", self.tarn("export", "gbxml", code=2).stderr)


class TestLimits(GbxmlTest):
    """More than a record holds: areas and conductances stay."""

    def round_room(self, sides, sizes):
        """A room of many sides, a wall each, with windows of many sizes on the first."""
        points = [(10 * math.cos(2 * math.pi * k / sides), 10 * math.sin(2 * math.pi * k / sides)) for k in range(sides)]
        surfaces = []
        for k in range(sides):
            (x, y), (u, v) = points[k], points[(k + 1) % sides]
            inside = ""
            if k == 0:
                at = lambda t, z: (x + (u - x) * t, y + (v - y) * t, z)
                for i in range(sizes):
                    low, high = i / sizes, (i + 0.3 + 0.5 * i / sizes) / sizes
                    inside += make_house.opening(f"op-{i}", "FixedWindow", 'windowTypeIdRef="win-double"', [at(low, 1), at(high, 1), at(high, 2), at(low, 2)])
            surfaces.append(make_house.surface(f"su-{k}", "ExteriorWall", ["sp-1"], "con-wall", [(x, y, 0), (u, v, 0), (u, v, 3), (x, y, 3)], inside))
        campus = f'<Campus id="campus-1"><Building id="b-1">{make_house.space("sp-1", "Round room with a long name", "zone-1", 300, 3, make_house.LOADS)}</Building>{"".join(surfaces)}</Campus>'
        self.write(make_house.HEAD + campus + make_house.LIBRARY + make_house.SYSTEM + "</gbXML>")
        account = self.imported()
        areas = drawn(self.file)[0]
        self.assertAlmostEqual(self.kinds(account)["wall"], areas["ExteriorWall"], delta=1e-3 * areas["ExteriorWall"])
        self.assertAlmostEqual(self.kinds(account)["window"], areas["FixedWindow"], delta=1e-3 * max(areas["FixedWindow"], 1))
        return account, self.all("spaces")

    def test_16_directions_split_the_space(self):
        account, spaces = self.round_room(16, 0)
        self.assertEqual([len(name) for name in spaces], [24, 24])
        self.assertAlmostEqual(sum(space["Space"]["FloorArea"] for space in spaces.values()), 300 / 0.3048**2, places=1)
        self.assertAlmostEqual(sum(space["People"]["Occupancy"] for space in spaces.values()), 2, places=4)
        self.assertTrue(any("split in 2" in note for note in account["notes"]))
        self.assertEqual(self.shown("air-systems", "1")["ZoneData"][0]["SpaceID"][:3], [1, 2, 0])
        account, spaces = self.round_room(8, 0)  # the drawing has become simpler
        self.assertEqual(len(spaces), 1)

    def test_many_sizes_become_a_mean_size(self):
        account, spaces = self.round_room(8, 6)
        self.assertEqual(len(spaces), 1)
        self.assertTrue(any("mean size" in note for note in account["notes"]))
        [window] = self.all("windows").values()
        [wall] = [wall for wall in list(spaces.values())[0]["Wall"] if wall["WindowQty"][0]]
        self.assertEqual(wall["WindowQty"], [6, 0])

    def test_zones_of_more_than_50_spaces(self):
        spaces = "".join(make_house.space(f"sp-{i}", f"Room {i}", "zone-1", 10, 3) for i in range(120))
        self.write(make_house.HEAD + f'<Campus id="c"><Building id="b">{spaces}</Building></Campus>' + make_house.SYSTEM + "</gbXML>")
        self.imported()
        zones = self.shown("air-systems", "1")["ZoneData"]
        self.assertEqual([(zone["Name"], zone["TotalSpacesInZone"]) for zone in zones], [("Ground floor", 50), ("Ground floor 2", 50), ("Ground floor 3", 20)])

    def test_more_than_8_layers_keep_resistance_and_mass(self):
        layers = "".join(f'<MaterialId materialIdRef="mat-{["brick", "wool"][i % 2]}"/>' for i in range(11))
        text = re.sub(r'(<Layer id="lay-wall">).*?(</Layer>)', rf"\1{layers}\2", make_house.house())
        self.write(text)
        self.imported()
        wall = self.all("walls")["Brick wall"]
        self.assertEqual(sum(layer["LayerUsed"] for layer in wall["Layer"]), 10)
        resistance = (6 * 0.1 / 0.89 + 5 * 0.08 / 0.045) / 0.1761102 + 0.685 + 0.333
        self.assertAlmostEqual(wall["OverallUValue"] * resistance, 1, places=3)
        weight = (6 * 0.1 * 1920 + 5 * 0.08 * 30) * 0.3048**2 / 0.45359237
        self.assertAlmostEqual(wall["OverallWeight"] / weight, 1, places=3)


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

    def test_design_weather(self):
        weather = '<Weather id="w"><DDDBCool>33</DDDBCool><DDDBRangeCool>10</DDDBRangeCool><DDDBHeat unit="F">-2</DDDBHeat></Weather></gbXML>'
        self.write(make_house.house().replace("</gbXML>", weather))
        self.imported()
        with tarn.Project(self.at) as project:
            found = project.weather
            self.assertEqual((found.des_city_name.strip(), found.des_state_name.strip()), ("Golden", "Colorado"))
            for value, expected in ((found.summer_db, 91.4), (found.daily_range, 18), (found.winter_db, -2), (found.des_tz_meridian, -105), (found.des_elevation, 5675.853)):
                self.assertAlmostEqual(value, expected, places=2)

    def test_python_has_both_ways(self):
        told = []
        with tarn.Project(self.at) as project:
            account = project.import_gbxml(self.file, lambda done, total: told.append((done, total)))
            text, notes = project.export_gbxml(self.at / "out.xml")
        self.assertEqual((told, account.left != []), ([(1, 3), (2, 3), (3, 3)], True))
        self.assertEqual((self.at / "out.xml").read_text(), text)
        self.assertTrue(any("gbXML" in note for note in notes))

    def test_north_of_the_drawing(self):
        self.write(make_house.house().replace("<CADModelAzimuth>0<", "<CADModelAzimuth>90<"))
        self.imported()
        exposures = {wall["Exposure"] for wall in self.all("spaces")["Kitchen"]["Wall"] if wall["GrossArea"] > 0}
        self.assertEqual(exposures, {5, 13, 1})  # north, south and west of the drawing


if __name__ == "__main__":
    unittest.main()
