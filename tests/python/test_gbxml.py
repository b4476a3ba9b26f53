"""Buildings that come in from gbXML. What the import counts is compared with a count of the tests' own."""

import json
import math
import re
import unittest

import tarn

from command_line import reads
from gbxml_files import PUBLIC, GbxmlTest, drawn, make_house


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
        for row in account["elements"]:
            if "/" in row["element"]:  # a child, taken or told with its reason
                self.assertEqual(row["found"], row["taken"] + sum(each["count"] for each in account["left"] if each["element"] == row["element"]), row["element"])
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

    def test_children_that_have_no_place_are_told(self):
        house = re.sub(r'(<Zone id="zone-1"[^>]*>)', r'\1<OAFlowPerZone unit="CFM">9</OAFlowPerZone>', make_house.house())
        house = re.sub(r'(<Construction id="con-wall"[^>]*>)', r'\1<Roughness value="Rough"/><Absorptance type="ExtIR" unit="Fraction">0.9</Absorptance>', house)
        self.write(house)
        account = self.imported()
        elements = {row["element"]: (row["found"], row["taken"]) for row in account["elements"]}
        self.assertEqual([elements[name] for name in ("Zone/Name", "Zone/OAFlowPerZone", "Construction/Roughness", "Construction/LayerId")], [(1, 1), (1, 0), (1, 0), (1, 1)])
        left = {row["element"]: row["reason"] for row in account["left"]}
        self.assertEqual(left["Zone/OAFlowPerZone"], "outdoor air is by person, by area or by air changes, of each space")
        self.assertEqual(left["Construction/Roughness"], "a construction has no place for it")
        self.assertIn("of walls and roofs", left["Construction/Absorptance"])

    def test_a_copy_of_the_project_knows_the_ids(self):
        made = self.imported()["made"]
        self.tarn("project", "copy", str(self.at / "variant"))
        run = self.tarn("import", "gbxml", str(self.file), "--json", project=self.at / "variant")
        self.assertEqual(json.loads(run.stdout)["unchanged"], made)

    def test_a_dry_run_changes_nothing(self):
        self.assertGreater(self.imported(None, "--dry-run")["made"], 5)
        self.assertEqual(json.loads(self.tarn("project", "info", "--json").stdout)["entities"], {})
        self.assertFalse((self.at / "MALLGBXML.JSON").exists())

    def test_design_weather(self):
        weather = '<Weather id="w"><DDDBCool>33</DDDBCool><DDDBRangeCool>10</DDDBRangeCool><DDDBHeat unit="F">-2</DDDBHeat></Weather></gbXML>'
        self.write(make_house.house().replace("</gbXML>", weather))
        self.imported()
        with tarn.Project(self.at) as project:
            found = project.weather
            self.assertEqual((found.des_city_name.strip(), found.des_state_name.strip()), ("Golden", "Colorado"))
            for value, expected in ((found.summer_db, 91.4), (found.daily_range, 18), (found.winter_db, -2), (found.des_tz_meridian, -105), (found.des_elevation, 5675.853)):
                self.assertAlmostEqual(value, expected, places=2)

    def test_north_of_the_drawing(self):
        self.write(make_house.house().replace("<CADModelAzimuth>0<", "<CADModelAzimuth>90<"))
        self.imported()
        exposures = {wall["Exposure"] for wall in self.all("spaces")["Kitchen"]["Wall"] if wall["GrossArea"] > 0}
        self.assertEqual(exposures, {5, 13, 1})  # north, south and west of the drawing


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


if __name__ == "__main__":
    unittest.main()
