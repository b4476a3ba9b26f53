"""Projects that go out as gbXML: valid by the schema, and the same when they come in again."""

import shutil
import subprocess
import unittest

import tarn

from command_line import reads
from gbxml_files import DATA, PUBLIC, GbxmlTest


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

    def test_python_has_both_ways(self):
        told = []
        with tarn.Project(self.at) as project:
            account = project.import_gbxml(self.file, lambda done, total: told.append((done, total)))
            text, notes = project.export_gbxml(self.at / "out.xml")
        self.assertEqual((told, account.left != []), ([(1, 3), (2, 3), (3, 3)], True))
        self.assertEqual((self.at / "out.xml").read_text(), text)
        self.assertTrue(any("gbXML" in note for note in notes))


if __name__ == "__main__":
    unittest.main()
