"""Verbs beside the life of entities: zones, equipment, methods, preferences, report options, import and export, dry runs."""

import contextlib
import json
import os
import pty
import subprocess
import time
import unittest

from command_line import CommandLineTest, TARN


class TestVerbs(CommandLineTest):
    def files(self):
        return {path.name: path.read_bytes() for path in self.at.iterdir() if path.is_file()}

    def test_zones(self):
        self.tarn("spaces", "new", "Name=Shop")
        self.tarn("air-systems", "new", "--type", "VAV", "Name=One", "ZoneData(1).SpaceID(1)=1", "ZoneData(1).TotalSpacesInZone=1", "ZoneData(1).Name=North")
        zone = lambda *words, code=0: self.tarn("air-systems", "zone", *words, code=code)
        self.assertEqual(self.shown("air-systems", "1")["ZoneData"][0]["SpaceMultiplier"][:2], [1, 0])
        self.assertIn("the 0 given stays", zone("set", "1", "1", "SpaceMultiplier(1)=0").stderr)
        self.assertIn("Space 1 counts 0 times", self.tarn("project", "check", code=1).stdout)
        self.assertEqual(zone("add", "One", "Name=East", "SpaceID(1)=1", "TotalSpacesInZone=1").stdout, "air system 1 saved: zone 2 East made\n")
        self.assertEqual(json.loads(zone("add", "1", "--json").stdout), {"index": 1, "zone": 3})
        zone("set", "1", "east", "SpaceMultiplier(1)=4")
        zone("remove", "1", "North")
        system = self.shown("air-systems", "1")
        self.assertEqual([(each["Name"], each["SpaceMultiplier"][0], each["SpaceID"][0]) for each in system["ZoneData"]], [("East", 4, 1), ("Zone 3", 0, 0)])
        self.tarn("air-systems", "new", "--type", "VAV", "Name=Fresh")
        self.assertEqual({**self.shown("air-systems", "Fresh")["ZoneData"][0], "Name": "Zone 3"}, system["ZoneData"][1])
        for words, says in [(("remove", "1", "West"), "it has 2 zones: did you mean"), (("set", "1", "3", "Name=x"), 'no zone "3"'), (("set", "1", "1"), "zone set N ZONE"), (("turn", "1", "1"), "zone add N"),
                            (("set", "1", "1", "SpaceID(1)=9"), "no Space 9 to refer to")]:
            self.assertIn(says, zone(*words, code=2).stderr)
        zone("remove", "1", "2")
        self.assertIn("has one zone at least", zone("remove", "1", "1", code=2).stderr)

    def test_equipment_and_its_priority(self):
        for name in ("A", "B", "C"):
            self.tarn("chillers", "new", f"Name={name}")
        self.tarn("boilers", "new", "Name=Gas")
        self.tarn("plants", "new", "Name=Plant")
        equipment = lambda *words, code=0: self.tarn("plants", "equipment", *words, code=code)
        for piece in ("chiller:A", "B", "3"):
            equipment("add", "1", "cooling", piece)
        equipment("add", "1", "heating", "boiler:Gas")
        self.assertIn("in the order 3, 1, 2", equipment("order", "1", "cooling", "3").stdout)
        pieces = lambda: [(piece["EquipmentID"], piece["Sequence"]) for piece in self.shown("plants", "1")["Details"]["CoolingEqpt"]["Equipment"]]
        self.assertEqual(pieces(), [(1, 2), (2, 3), (3, 1)])
        equipment("remove", "1", "cooling", "1")
        self.assertEqual(pieces(), [(2, 2), (3, 1)])
        self.assertEqual(self.shown("plants", "1")["Details"]["HeatingEqpt"]["Equipment"][0]["LibraryID"]["text"], "boilers")
        for words, says in [(("remove", "1", "cooling", "3"), "There is no piece 3; the list has 2."), (("order", "1", "coling", "1"), "did you mean cooling?"), (("add", "1", "cooling", "boiler:A"), "There is no boiler \"A\""),
                            (("add", "1", "heating", "Oil"), "did you mean Gas?"), (("add", "1"), "Write tarn plants equipment")]:
            self.assertIn(says, equipment(*words, code=2).stderr)

    def test_methods(self):
        self.tarn("schedules", "new", "Name=Hours", "HourlyValue(1,12)=40")
        self.assertEqual(self.tarn("schedules", "call", "Hours", "GetValue", "1", "1", "12").stdout, "40\n")
        self.tarn("air-systems", "new", "--type", "VAV")
        self.assertEqual(self.tarn("air-systems", "call", "1", "SetToDefaultsByType", "10").stdout, "air system 1 saved\n")
        self.assertEqual(self.shown("air-systems", "1")["AirSystem"]["SystemType"]["code"], 10)
        before = self.files()
        self.assertEqual(json.loads(self.tarn("air-systems", "call", "1", "IsHWCoilUsed", "--json").stdout), {"index": 1, "result": True, "saved": False})
        self.assertEqual(self.files(), before)
        for words, says in [(("Save",), "tarn schedules set does it"), (("GetValu", "1"), "did you mean GetValue?"), (("GetValue", "1"), "with 3 values; 1 are given"), (("GetValue", "1", "x", "2"), 'd: found'), (("GetDBHandle",), "no method GetDBHandle"), ((), "Which method?")]:
            self.assertIn(says, self.tarn("schedules", "call", "1", *words, code=2).stderr)

    def test_preferences_and_report_options(self):
        self.tarn("preferences", "set", "CurrencyUnits=EUR", "LeedVersionCode=3. LEED v4", "VentStandardCode=2")
        shown = self.tarn("preferences", "show", "--json").stdout
        self.assertEqual(json.loads(shown)["PRF_ProjectPrefs"]["LeedVersionCode"], {"code": 3, "text": "LEED v4"})
        self.assertRegex(self.tarn("preferences", "show").stdout, r"CurrencyUnits +EUR")
        for word, says in (("Curency=x", "did you mean CurrencyUnits?"), ("LeedVersionCode=9", "the codes are 0"), ("CurrencyUnits", "write Property=value"), ("CurrencyUnits=toolong", "allowed are 5")):
            self.assertIn(says, self.tarn("preferences", "set", word, code=2).stderr)
        (self.at / "options").write_bytes(bytes(range(256)))
        self.tarn("report-options", "set", str(self.at / "options"))
        options = self.tarn("report-options", "show", "--json").stdout
        self.assertEqual(json.loads(options)["RPT_ReportOptions"]["record"], bytes(range(256)).hex())
        self.tarn("report-options", "show", "--output", str(self.at / "back"))
        self.assertEqual((self.at / "back").read_bytes(), bytes(range(256)))
        self.tarn("project", "new", project=self.at / "other" / "COPY")  # makes the folder
        for text, verb in ((shown, "preferences"), (options, "report-options")):
            (self.at / "some.json").write_text(text)
            self.tarn("import", "json", str(self.at / "some.json"), project=self.at / "other")
            self.assertEqual(self.tarn(verb, "show", "--json", project=self.at / "other").stdout, text)

    def test_new_projects_make_their_folder(self):
        where = self.at / "jobs" / "mall" / "MALL"
        self.assertIn("would make the folder", self.tarn("project", "new", "--dry-run", project=where).stdout)
        self.assertFalse((self.at / "jobs").exists())
        self.assertEqual(self.tarn("project", "new", project=where).stdout, f"made the folder {where.parent}\nmade {where}INX.MDB\n")
        self.assertIn("exists already", self.tarn("project", "new", "--dry-run", project=where, code=3).stderr)
        (self.at / "there").mkdir()
        for word, prefix in (("school", "school"), ("annex/", "annex"), ("there", "there"), ("two/EAST", "EAST")):
            with self.subTest(word):
                self.assertIn(f"{prefix}INX.MDB\n", self.tarn("project", "new", project=word, at=self.at).stdout)
                self.assertTrue((self.at / word.split("/")[0] / f"{prefix}INX.MDB").exists())
        self.assertIn("holds the project school already", self.tarn("project", "new", project="school", at=self.at, code=2).stderr)
        self.assertIn("tarn -p nowhere project new makes it", self.tarn("project", "info", project="nowhere", at=self.at, code=3).stderr)

    def test_import_and_export_by_format(self):
        self.tarn("windows", "new", "Name=South")
        self.tarn("export", "json", "windows", "--output", str(self.at / "w.json"))
        self.assertEqual((self.at / "w.json").read_text(), self.tarn("project", "export", "windows").stdout)
        self.assertEqual(self.tarn("import", "json", str(self.at / "w.json")).stdout, "imported 1 entity\n")
        self.assertIn("tarn import json FILE", self.tarn("import", "json", code=2).stderr)
        self.assertIn("did you mean json?", self.tarn("import", "jsn", "x", code=2).stderr)

    def test_a_dry_run_changes_nothing(self):
        self.tarn("walls", "new", "Name=Brick")
        self.tarn("spaces", "new", "Name=Shop", "Wall(1).WallType=1")
        self.tarn("air-systems", "new", "--type", "VAV", "Name=One", "ZoneData(1).SpaceID(1)=1", "ZoneData(1).TotalSpacesInZone=1")
        year = self.made_year()
        (self.at / "all.json").write_text(self.tarn("project", "export").stdout)
        before = self.files()
        for words, says in [(("walls", "new", "Name=x"), "wall 2 made"), (("walls", "set", "1", "Layer(2).Thickness=8"), "wall 1 saved"), (("walls", "delete", "1", "--force"), "wall 1 deleted"), (("walls", "clone", "1"), "wall 2 made from 1"),
                            (("walls", "layer", "insert", "1", "2"), "inserted"), (("walls", "call", "1", "CalcTransferCoefficients"), "true"), (("air-systems", "new"), "air system 2 made"), (("air-systems", "delete", "1"), "deleted"),
                            (("air-systems", "zone", "add", "1"), "zone 2"), (("preferences", "set", "CurrencyUnits=EUR"), "saved"), (("report-options", "set", str(year)), "saved"), (("weather", "import", str(year)), "made"),
                            (("weather", "import", str(year), "--output", str(self.at / "X.HW1")), "made"), (("import", "json", str(self.at / "all.json")), "imported"), (("project", "import", str(self.at / "all.json")), "imported")]:
            with self.subTest(words):
                run = self.tarn(*words, "--dry-run")
                self.assertIn(says, run.stdout)
                self.assertIn("dry run: this would be done; nothing was changed", run.stderr)
                self.assertEqual(self.files(), before)
        self.assertNotIn("would be done", self.tarn("walls", "delete", "1", "--dry-run", code=2).stderr)
        self.assertIn("did you mean Height?", self.tarn("windows", "new", "Heigth=3", "--dry-run", code=2).stderr)
        self.assertIn("--dry-run goes with", self.tarn("windows", "list", "--dry-run", code=2).stderr)

    def test_a_terminal_sees_work_of_more_than_a_second(self):
        self.tarn("windows", "new", "Name=South")
        text = self.tarn("windows", "show", "1", "--json").stdout
        for wait, bar in ((0, b""), (1.3, b"[" + b"#" * 40 + b"] 1 of 1 imported\r\x1b[K")):
            self.tarn("windows", "delete", "1")
            try:
                terminal, other = pty.openpty()
            except OSError as error:
                self.skipTest(f"this machine has no terminals: {error}")
            with subprocess.Popen([TARN, "-p", str(self.at), "import", "json", "-"], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=other) as run:
                os.close(other)
                time.sleep(wait)  # a text that comes slowly
                run.stdin.write(text.encode())
                run.stdin.close()
                with contextlib.suppress(OSError):  # the other end is closed
                    seen = b""
                    while chunk := os.read(terminal, 65536):
                        seen += chunk
            os.close(terminal)
            self.assertEqual((run.returncode, seen.removeprefix(b"\r\x1b[K")), (0, bar))


if __name__ == "__main__":
    unittest.main()
