"""The command line, run as a user runs it."""

import contextlib
import itertools
import json
import math
import os
import pathlib
import re
import sqlite3
import struct
import subprocess
import sys
import tempfile
import unittest
from xml.etree import ElementTree

import tarn

TARN = os.environ["TARN_CLI"]
ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
CHILLER = ROOT.parent / "shared" / "data" / "ASHRAE90-1-2022-AppJ-Curve-Set-A.RS0001.a205.json"
GOLDEN = ROOT.parent / "shared" / "data" / "USA_CO_Golden-NREL.724666_TMY3-noleapday.epw"


def reads(path):
    """For a test that reads a public file where it lies, beside the repository: without it, the test says so; under CI it fails."""
    def decorate(test):
        if path.exists():
            return test
        if os.environ.get("CI") == "true":
            return lambda self: self.fail(f"{path} is not there")
        return unittest.skip(f"{path} is not there")(test)
    return decorate


class TestCommandLine(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.at = pathlib.Path(self.folder.name)
        self.tarn("project", "new", project=self.at / "MALL")

    def tarn(self, *words, project=None, code=0):
        run = subprocess.run([TARN, "-p", str(project or self.at), *words], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, code, run.stderr)
        return run

    def rows(self):
        return json.loads(self.tarn("windows", "list", "--json").stdout)

    def test_a_windows_life(self):
        self.tarn("windows", "new", "Name=Küche", "Height=3", "GlassTrans(2)=0.5")
        self.tarn("windows", "clone", "1", "Name=other")
        computed = self.tarn("windows", "set", "1", "FrameType=0").stderr
        self.assertIn("computed: OverallUValue", computed)
        shown = json.loads(self.tarn("windows", "show", "1", "--json").stdout)
        self.assertEqual((shown["class"], shown["index"], shown["Name"], shown["GlassTrans"][1]), ("WIN_Window", 1, "Küche", 0.5))
        self.tarn("windows", "set", "1", "OverallUValue=0.25")
        self.assertEqual([(r["nIndex"], r["szName"], r["fOverallUValue"]) for r in self.rows()][0], (1, "Küche", 0.25))
        self.tarn("windows", "delete", "1")
        self.assertEqual([r["szName"] for r in self.rows()], ["other"])
        self.assertIn("windows: 1", self.tarn("project", "info").stdout)

    def test_check_and_repair(self):
        self.tarn("windows", "new", "Name=South")
        self.assertEqual(self.tarn("project", "check").stdout, "no findings\n")
        with contextlib.closing(sqlite3.connect(self.at / "MALLINX.MDB")) as other, other:
            other.execute("INSERT INTO WindowIndex (nIndex, szName) VALUES (-5, 'low'), (65537, 'high')")
        for verb in ("show", "delete"):
            self.assertIn("There is no window 65537; indexes are 1 to 32767.", self.tarn("windows", verb, "65537", code=2).stderr)
        exported = self.tarn("project", "export", "windows")
        self.assertEqual([each["index"] for each in json.loads(exported.stdout)["WIN_Window"]], [0, 1])
        self.assertIn("WindowIndex has a row of index -5", exported.stderr)
        told = json.loads(self.tarn("project", "check", "--json", code=1).stdout)
        self.assertEqual([(f["severity"], f["kind"], f["index"], f["repairable"]) for f in told],
                         [("error", "Window", -5, True), ("error", "Window", 65537, True)])
        self.assertIn("of which repair mends 2; nothing was changed", self.tarn("project", "repair", "--dry-run", code=1).stdout)
        self.assertIn("2 findings repaired, 0 left\nthe project as it was: ", self.tarn("project", "repair").stdout)
        self.assertEqual(self.tarn("project", "check").stdout, "no findings\n")
        self.assertIn("--dry-run goes with project repair.", self.tarn("project", "check", "--dry-run", code=2).stderr)
        (self.at / "MALLINX.MDB").unlink()
        self.tarn("project", "repair", "--rebuild-index", project=self.at / "MALL")
        self.assertEqual([row["szName"] for row in self.rows()], ["South"])

    def test_enumerations_are_described(self):
        codes = json.loads(self.tarn("describe", "BLD_EnergyCategories", "--json").stdout)["codes"]
        self.assertEqual((len(codes), codes[0]["name"], codes[0]["value"]), (13, "EC_HVAC_ELECTRIC", 1))
        self.assertRegex(self.tarn("describe", "AS_ConstituentMasks").stdout, "67633150 +CCM_INPUTMASK +inputs and zones")

    def test_numbers_may_begin_or_end_with_the_point(self):
        for word, value in [(".1", 0.1), ("5.", 5), ("+2", 2), ("-.5", -0.5), ("1e-2", 0.01)]:
            self.tarn("electric-rates", "new", f"Name=Rate {word}", f"FlatRate={word}")
            shown = json.loads(self.tarn("electric-rates", "list", "--json").stdout)[-1]["nIndex"]
            self.assertEqual(json.loads(self.tarn("electric-rates", "show", str(shown), "--json").stdout)["FlatRate"], value, word)
        self.tarn("electric-rates", "new", "FlatRate=.", code=2)

    def test_nothing_is_told_of_a_save_that_fails(self):
        self.tarn("windows", "new", "Height=3", "Width=3")
        with contextlib.closing(sqlite3.connect(self.at / "MALLINX.MDB", isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            run = self.tarn("windows", "set", "1", "FrameType=2", "Height=4", code=3)
        self.assertNotIn("computed", run.stderr)
        self.assertEqual(run.stdout, "")
        self.assertIn("computed: ", self.tarn("windows", "set", "1", "FrameType=2", "Height=4").stderr)

    def test_notes_that_say_the_same_come_once(self):
        year = self.at / "headers.epw"
        lines = self.made_year().read_text().splitlines(keepends=True)
        year.write_text("".join([lines[0], *["REMARK,none\n"] * 5, *lines[1:]]))
        notes = [line for line in self.tarn("weather", "show", str(year)).stderr.splitlines() if "REMARK" in line]
        self.assertEqual(len(notes), 1, notes)
        self.assertIn("(5 times)", notes[0])

    def test_a_wall_without_transfer_functions_is_shown_whole(self):
        self.tarn("walls", "new", "Name=Brick")
        walls = json.loads(self.tarn("project", "export", "walls").stdout)
        for wall in walls["CA_ConstructionAssly.Wall"]:
            for layer in wall["Layer"]:
                layer["LayerUsed"] = False
        (self.at / "wall.json").write_text(json.dumps(walls))
        run = self.tarn("project", "import", str(self.at / "wall.json"))
        self.assertIn("has no transfer functions: no layer is used. Its coefficients are 0.", run.stderr)
        shown = self.tarn("walls", "show", "2").stdout
        self.assertIn("The layers have no transfer functions: no layer is used.\n", shown)
        self.assertNotIn("by at most", shown)

    def test_exchange(self):
        self.tarn("doors", "new", "Name=O'Hara", "AreaSpec=DAS_HEIGHT_AND_WIDTH", "Height=7")
        self.tarn("shades", "new", "OvhgExt=2.5")
        text = self.tarn("project", "export").stdout
        (self.at / "all.json").write_text(text)
        other = self.at / "other"
        other.mkdir()
        self.tarn("project", "new", project=other / "COPY")
        self.assertEqual(self.tarn("project", "import", str(self.at / "all.json"), project=other).stdout, "imported 17 entities\n")
        self.tarn("project", "export", "--output", str(self.at / "copy.json"), project=other)
        self.assertEqual((self.at / "copy.json").read_text(), text)
        self.assertEqual(list(json.loads(self.tarn("project", "export", "doors").stdout)), ["tarn", "DOR_Door"])
        (self.at / "bad.json").write_text(text.replace('"OvhgExt": 2.5', '"OvhgExt": "far"'))
        refused = self.tarn("project", "import", str(self.at / "bad.json"), project=other, code=2).stderr
        self.assertIn("/SHD_Shade/1/OvhgExt: SHD_Shade.OvhgExt: found the text \"far\"", refused)
        self.assertEqual(self.tarn("project", "export", project=other).stdout, text)
        self.assertIn("did you mean doors?", self.tarn("project", "export", "dors", code=2).stderr)
        self.tarn("project", "import", "none.json", code=3)

    def test_walls_schedules_and_spaces(self):
        computed = self.tarn("walls", "new", "Name=Brick", "Layer(3).Thickness=2").stderr
        self.assertIn("computed: OverallUValue 0.0600482 -> 0.0844189", computed)
        shown = self.tarn("walls", "show", "1").stdout
        for text in ("outside\n", "4 in brick", "0.0844189 Btu/(hr.ft2.F), as computed from the layers", "The 12 terms hold the exact response"):
            self.assertIn(text, shown)
        self.tarn("walls", "set", "1", "OverallUValue=0.5")
        self.assertIn("0.5 Btu/(hr.ft2.F) stored, 0.0844189 computed from the layers", self.tarn("walls", "show", "1").stdout)
        self.assertRegex(self.tarn("walls", "show", "1").stdout, r"The stored U-value is 492 % off that of the transfer functions, 0.08441\d* Btu")
        self.assertNotIn("% off", self.tarn("roofs", "new") and self.tarn("roofs", "show", "1").stdout)
        self.tarn("walls", "set", "1", "Layer(3).LayerUsed=false")
        self.assertIn("computed", self.tarn("walls", "set", "1", "Layer(4).Thickness=1").stderr)
        unused = json.loads(self.tarn("walls", "show", "1", "--json").stdout)["Layer"][2]
        self.assertEqual((unused["Name"], unused["Thickness"], unused["ThermalResistance"]), ("Not used", 0.0, 0.0))
        self.tarn("schedules", "new", "Name=Hours", "HourlyValue(1,0)=0")
        self.assertIn("100 %  |  ####", self.tarn("schedules", "show", "1").stdout)
        self.tarn("spaces", "new", "Space.Name=Office", "Wall(2).WallType=1", "People.Schedule=1")
        space = self.tarn("spaces", "show", "1").stdout
        self.assertRegex(space, r"WallType +1  Brick")
        self.assertRegex(space, r"Schedule +1  Hours")
        self.assertEqual(json.loads(self.tarn("spaces", "show", "1", "--json").stdout)["Wall"][1]["WallType"], 1)
        for words, says in [(["walls", "set", "1", "Layr(2).Thickness=1"], "did you mean Layer?"),
                            (["walls", "set", "1", "Layer(11).Thickness=1"], "takes a number from 1 to 10"),
                            (["walls", "set", "1", "Layer(2).Thicknes=1"], "did you mean Thickness?"),
                            (["spaces", "set", "1", "Wall(1).WallType=9"], "There is no Wall 9 to refer to; the nearest is 1."),
                            (["walls", "set", "1", "Layer(2).Density=-1"], "CA_Layer.Density: found -1 lb/ft3; allowed are 0 lb/ft3 and above"),
                            (["walls", "set", "1", "Layer(2).Conductivity=NaN"], "found NaN; allowed are finite numbers"),
                            (["spaces", "set", "1", "Wall(1).Exposure=99"], "SPC_WallWindow.Exposure: found 99; allowed are 0 to 17"),
                            (["schedules", "set", "1", "ScheduleType=ST_RAT"], "did you mean ST_RATE?"),
                            (["spaces", "set", "1", "Floor(1).Area=1"], "takes no number"),
                            (["walls", "set", "1", "Layer(2).Conductivity=0", "Layer(2).ThermalResistance=0"], "neither conductivity nor thermal resistance")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn(*words, code=2).stderr)

    def test_layers_and_a_picture_of_a_wall(self):
        self.tarn("walls", "new", "Name=Brick")
        before = self.tarn("walls", "show", "1", "--json").stdout
        self.assertIn("M01 4 in brick", self.tarn("walls", "layer", "materials").stdout)
        self.assertIn("I02 2 in insulation board inserted, slot 2", self.tarn("walls", "layer", "insert", "1", "2", "--material", "i02").stdout)
        self.assertIn("moved, slot 3", self.tarn("walls", "layer", "move", "1", "2", "3").stdout)
        moved = json.loads(self.tarn("walls", "show", "1", "--json").stdout)["Layer"][2]
        self.assertEqual((moved["Name"], moved["Thickness"], moved["Conductivity"]), ("I02 2 in insulation board", 2.0, 0.0173337))
        self.assertIn("removed", self.tarn("walls", "layer", "remove", "1", "3").stdout)
        self.assertEqual(json.loads(self.tarn("walls", "show", "1", "--json").stdout)["BTrans"], json.loads(before)["BTrans"])
        for words, message in ((("insert", "1", "1"), "give a slot from 2 to 9"), (("remove", "1", "9"), "Slot 9 has no layer"),
                               (("insert", "1", "2", "--material", "M99"), "did you mean M09"), (("turn", "1"), "layer move N SLOT TO")):
            self.assertIn(message, self.tarn("walls", "layer", *words, code=2).stderr)
        brought = json.loads(self.tarn("project", "export", "walls").stdout)
        wall = next(w for w in brought["CA_ConstructionAssly.Wall"] if w["index"] == 1)
        wall["BTrans"] = [1.005 * term for term in wall["BTrans"]]
        (self.at / "worse.json").write_text(json.dumps(brought))
        told = "hold the response of the layers to 0.5 % only; what slows it most: layer 2 (4 in brick)."
        self.assertIn(told, self.tarn("project", "import", str(self.at / "worse.json")).stderr)
        self.assertIn(told, self.tarn("walls", "list").stdout)
        self.assertAlmostEqual(json.loads(self.tarn("walls", "list", "--json").stdout)[-1]["transfer_function_error"], 0.005, 5)
        last = str(json.loads(self.tarn("walls", "list", "--json").stdout)[-1]["nIndex"])
        self.assertIn(told, self.tarn("walls", "show", last).stdout)
        shown = json.loads(self.tarn("walls", "show", last, "--json").stdout)
        self.assertIn(told, shown["transfer_function_message"])
        self.assertNotIn("transfer_function_error", json.loads(self.tarn("walls", "show", "1", "--json").stdout))
        picture = self.at / "wall.svg"
        self.tarn("walls", "show", "1", "--svg", str(picture))
        text = picture.read_text()
        for part in ("outside", ">4 in brick<", ">4.00<", "R-value", "design day", "Heat at the inside after a one-hour pulse"):
            self.assertIn(part, text)

    def test_air_systems(self):
        self.tarn("spaces", "new", "Name=Office")
        self.tarn("air-systems", "new", "--type", "vav", "Name=VAV-1", "ZoneData(1).SpaceID(1)=1", "ZoneData(1).TotalSpacesInZone=1")
        self.tarn("air-systems", "set", "1", "HeatSys.Used=true", "HeatSys.Source=ST_HOT_WATER")
        shown = self.tarn("air-systems", "show", "1").stdout
        for text in (r"SystemType +8\. VAV", r"Source +7  ST_HOT_WATER", r"HWCoilsExists +true", r"SpaceID +1  Office +\n"):
            self.assertRegex(shown, text)
        self.tarn("air-systems", "clone", "1", "Name=VAV-2")
        rows = json.loads(self.tarn("air-systems", "list", "--json").stdout)
        self.assertEqual([(r["szName"], r["nSystemType"], r["bHWCoilsExist"]) for r in rows], [("VAV-1", 8, -1), ("VAV-2", 8, -1)])
        for words, says in [(["new", "--type", "VAW"], "did you mean VAV?"), (["new", "--type", "17"], "System type 17 is no longer used."),
                            (["set", "2", "Name=VAV-1"], "Duplicate air system name detected"),
                            (["set", "2", "ZoneData(3).Name=x"], "takes a number from 1 to 1"),
                            (["set", "2", "NumZones=5"], "To make the next one, set a property of it: ZoneData(2).Name="),
                            (["set", "2", "AirSizing.VentCFM=5"], "AirSizing.VentCFM is a result of calculations"),
                            (["set", "2", "CoilSize.MaxPrecool=5"], "has no CoilSize yet; it comes with results"), (["set", "1", "WCSystemData.TowerID=9"], "no Tower to refer to"),
                            (["new", "--type", "VAV", "Name=VAV-1"], "Another air system has that name"),
                            (["set", "1", "ZoneSchedule.TstatSchedule=4"], "no Schedule to refer to yet")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn("air-systems", *words, code=2).stderr)
        self.tarn("air-systems", "delete", "1")
        self.assertFalse((self.at / "MALLA01.DAT").exists())

    def test_choices_of_air_sizing_are_inputs(self):
        self.make_system()
        project = tarn.COM_ProjectData()
        project.WorkPath, project.FilePrefix = str(self.at), "MALL"
        system = project.NewAirSystem()
        system.Load(1)
        system.GetAirSizing().VentCFM, system.GetCoilSize().MaxPrecool, system.GetAirSystem().Sized = 500, 9, True
        system.Save(True)
        self.assertEqual(json.loads(self.tarn("air-systems", "show", "1", "--json").stdout)["CoilSize"]["MaxPrecool"], 9)
        self.tarn("air-systems", "set", "1", "AirSizing.SizingMethod=2", "AirSizing.CWDeltaT=12.5")
        self.tarn("air-systems", "set", "1", "AirSizing.SDLSHour=15")
        shown = json.loads(self.tarn("air-systems", "show", "1", "--json").stdout)
        sizing = shown["AirSizing"]
        self.assertEqual([sizing["SizingMethod"]["code"]] + [sizing[name] for name in ("CWDeltaT", "HWDeltaT", "SDLSHour", "VentCFM")], [2, 12.5, 20, 15, 0])
        self.assertEqual((shown["AirSystem"]["Sized"], shown.get("CoilSize")), (False, None))

    def test_a_published_chiller_map(self):
        if not CHILLER.exists():
            (self.fail if os.environ.get("CI") == "true" else self.skipTest)(f"the published chiller map is not at {CHILLER}")
        run = self.tarn("chillers", "import", str(CHILLER))
        # The description states 2.96 COP and 4.02 IPLV; its highest stage gives half of the 150 tons of its range.
        for line in (r"\AFull load by the map: 75\.0 tons, 89\.3 kW, COP 2\.954; the stated COP is 2\.96 \(map -0\.2 %\)\.\n",
                     r"\nIPLV: 0\.8748 kW/ton, from the description: 4\.02; the map gives a COP of 4\.0\d\d \((0\.0|[+-]0\.[1-4]) %\)\.\n",
                     r"\nOther leaving water, 36 to 70 F: .* within 0\.\d % of the map's capacity and [01]\.\d % of its power\.\n",
                     r"\nNot carried over: [^\n]*ambient_pressure \(held at 101325\)[^\n]*\.\n\Z"):
            self.assertRegex(run.stderr, line)
        (self.at / "sorted.json").write_text(json.dumps(json.loads(CHILLER.read_text()), sort_keys=True))
        made = json.loads(self.tarn("chillers", "import", str(self.at / "sorted.json"), "--json").stdout)
        self.assertEqual(made["notes"], run.stderr.splitlines())
        first, second = (json.loads(self.tarn("chillers", "show", index, "--json").stdout) for index in "12")
        self.assertEqual({**first, "index": 2}, second)
        self.assertEqual(first["Name"], "Appendix J curve set 'A'")

    def test_units_of_chillers_follow_their_energy(self):
        for kind, units in (("1", ("kW", "kW/ton")), ("6", ("MBH", "MBH/ton"))):
            self.tarn("chillers", "new", "--type", kind)
            shown = self.tarn("chillers", "show", "1").stdout
            for line in (rf"IPLV +[\d.]+ +{units[1]} *\n", r"FLCapacity +\d+ +tons *\n", rf"FLPower +[\d.]+ +{units[0]} *\n",
                         rf"MapPower +.* {units[0]} *\n", rf"\npower, {units[0]}\n", r"\ncapacity, tons\n"):
                self.assertRegex(shown, line)
            self.assertEqual(re.search(r"\bkW\b(?!/ton)", shown) is None, kind == "6")
            self.tarn("chillers", "delete", "1")

    def test_units_of_both_systems(self):
        told = self.tarn("windows", "new", "Name=A", "Height=1.2m", "GlassThickness(1)=6 mm").stderr
        self.assertIn("set: Height = 3.93701 ft (1.2 m)\n", told)
        self.assertIn("set: GlassThickness(1) = 0.23622 in (6 mm)\n", told)
        self.assertAlmostEqual(json.loads(self.tarn("windows", "show", "1", "--json").stdout)["Height"], 1.2 / 0.3048, 5)
        self.assertIn("computed: OverallUValue 3.3", self.tarn("--units", "si", "windows", "set", "1", "Width=1.5").stderr)
        shown = self.tarn("--units=SI", "windows", "show", "1").stdout
        for line in (r"Height +1.2 +m *\n", r"Width +1.5 +m *\n", r"OverallUValue +\d\.\d+ +W/\(m2.K\) *\n", r"GlassThickness +6, 2.9972, 0 +mm *\n"):
            self.assertRegex(shown, line)
        self.assertRegex(self.tarn("windows", "list", "--units", "si").stdout, r"fHeight, m +fWidth, m *\n.* 1.2 +1.5 *\n")
        stored = self.tarn("--units", "si", "windows", "show", "1", "--json").stdout
        self.assertEqual(stored, self.tarn("windows", "show", "1", "--json").stdout)
        self.tarn("boilers", "new", "HotWaterFlowUnits=FU_GPM", "HotWaterFlow=2 L/s")
        self.assertRegex(self.tarn("boilers", "show", "1").stdout, r"HotWaterFlow +31.7006 +gpm *\n")
        for words, told in ((("Height=1.2 kg",), 'Height=1.2 kg: "kg" is not a unit for a value in ft; units that fit are ft, m, in, '),
                            (("GlassTrans(2)=0.5 m",), 'GlassTrans(2) has no unit; found "0.5 m".'),
                            (("--units", "metric", "Height=1"), '--units is "metric"; it is ip or si.')):
            self.assertIn(told, self.tarn("windows", "set", "1", *words, code=2).stderr)
        self.assertEqual(stored, self.tarn("windows", "show", "1", "--json").stdout)

    def test_codes_have_names(self):
        self.tarn("spaces", "new", "Wall(1).Exposure=ne", "Light.OverheadSpec=W/ft2", "Light.OverheadWatt=10 W/m2")
        self.tarn("windows", "new", "FrameType=wood or vinyl", "ShadeType=99")
        shown = self.tarn("spaces", "show", "1").stdout
        self.assertRegex(shown, r"Exposure +3  NE *\n")
        self.assertRegex(shown, r"OverheadWatt +0.92903 +W/ft2 *\n")
        window = self.tarn("windows", "show", "1").stdout
        self.assertRegex(window, r"FrameType +4  wood or vinyl *\n")
        self.assertRegex(window, r"ShadeType +99 *\n")
        self.assertIn("FrameType: found \"steel\"; did you mean ", self.tarn("windows", "set", "1", "FrameType=steel", code=2).stderr)
        self.assertIn("4 wood or vinyl", self.tarn("describe", "WIN_Window").stdout)
        own = self.at / "codes.json"
        own.write_text('{"frames": {\n"properties": ["WIN_Window.FrameType"],\n"names": {"4": "oak"}}}')
        run = subprocess.run([TARN, "-p", str(self.at), "windows", "show", "1"], capture_output=True, text=True, check=True,
                             env={**os.environ, "TARN_CODES": str(own)})
        self.assertRegex(run.stdout, r"FrameType +4  oak *\n")
        own.write_text('{"frames": {\n"properties": ["WIN_Window.Frame"],\n"names": {"4": "oak"}}}')
        run = subprocess.run([TARN, "-p", str(self.at), "windows", "show", "1"], capture_output=True, text=True, check=False,
                             env={**os.environ, "TARN_CODES": str(own)})
        self.assertEqual(run.returncode, 2)
        self.assertIn(f"The code catalogue {own}, line 2: WIN_Window has no member Frame; did you mean FrameType?", run.stderr)

    def test_plants_and_their_equipment(self):
        self.tarn("chillers", "new", "--type", "water_cooled_packaged_screw")
        self.tarn("chillers", "new", "--type", "10", "Name=On the roof", "CoolingMode.FLCapacity=150")
        self.assertRegex(self.tarn("chillers", "show", "2").stdout, r"\n +95 +20 +40 .*\n")
        self.tarn("boilers", "new", "BoilerOutput=500")
        self.tarn("towers", "new")
        piece = "Details.CoolingEqpt.Equipment({}).".format
        self.tarn("plants", "new", "Name=North", piece(1) + "LibraryID=LIB_CHILLERS", piece(1) + "EquipmentID=2",
                  piece(2) + "LibraryID=10", piece(2) + "EquipmentID=1", "Details.TowerID=1")
        self.tarn("plants", "new", "--type", "hot_water")
        shown = self.tarn("plants", "show", "1").stdout
        for text in (r"North  4  chiller plant\n", r"\n +1  10  chillers  2  On the roof ", r"\n +2 .*Packaged screw, water-cooled",
                     r"CondenserWaterLoop Pump 1 +1|CondenserWaterLoop", r"TowerID +1  Tower  1", r"not used: ChilledWaterSecondaryLoop"):
            self.assertRegex(shown, text)
        self.assertIn("not used: ChilledWaterPrimaryLoop", self.tarn("plants", "show", "2").stdout)
        self.assertEqual(json.loads(self.tarn("plants", "show", "1", "--json").stdout)["Details"]["CoolingEqpt"]["Equipment"][1]["EquipmentID"], 1)
        for words, says in [(["plants", "new", "--type", "hot_watr"], "did you mean HOT_WATER?"),
                            (["plants", "set", "1", "Name=Plant  2"], "A plant already exists with the name [Plant  2]"),
                            (["plants", "set", "1", "Details.CondenserWaterLoop.NumPumps=0"], "must have NumPumps >=1"),
                            (["plants", "set", "1", "Details.SourceWaterLoop.NumPumps=14"], "NumPumps value is out of range: [14 > 13]"),
                            (["plants", "set", "1", piece(3) + "LibraryID=20", piece(3) + "EquipmentID=7"], "There is no Boiler 7 to refer to"),
                            (["plants", "new", piece(1) + "EquipmentID=1"], "set that too. Its codes are"),
                            (["plants", "set", "1", "PlantType=99"], "found code 99; the codes are 1 "),
                            (["plants", "set", "1", piece(1) + "LibraryID=20"], "There is no Boiler 2 to refer to"),
                            (["plants", "set", "1", "SystemSelect.NumSystems=251"], "allowed are 0 to 250"),
                            (["boilers", "set", "1", "FuelType=9"], "BLR_Boiler.FuelType: found code 9; the codes are 3 "),
                            (["chillers", "import"], "Which file?")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn(*words, code=2).stderr)
        self.tarn("chillers", "delete", "2")
        self.assertNotIn("On the roof", self.tarn("plants", "show", "1").stdout)

    def test_mistakes_name_the_right_word_and_change_nothing(self):
        self.tarn("windows", "new", "Name=A")
        before = {p.name: p.read_bytes() for p in self.at.iterdir()}
        for words, code, says in [
                (["windos", "list"], 2, "did you mean windows?"), (["windows", "lits"], 2, "did you mean list?"),
                (["windows", "show", "3"], 2, "the nearest is 1"), (["windows", "set", "1", "Heigth=3"], 2, "did you mean Height?"),
                (["windows", "set", "1", "Height=tall"], 2, "WIN_Window.Height: found the text \"tall\""),
                (["windows", "set", "1", "FrameType=70000"], 2, "found 70000; allowed are 0 to 4"), (["windows", "set", "1", "ShadeType=70000"], 2, "Overflow"), (["windows", "set", "1", "GlassTrans(4)=1"], 2, "allowed are 1 to 3"),
                (["windows", "set", "1", "GlassTrans=1"], 2, "0 subscripts, wanted 1"), (["windows", "set", "1", "Name=日"], 2, "U+65E5"),
                (["windows", "set", "1", "Name=" + "x" * 256], 2, "256 characters, allowed are 255"),
                (["windows", "set", "1", "Index=4"], 2, "no property Index"), (["describe", "WIN_Windw"], 2, "did you mean WIN_Window?"),
                (["windows", "set", "1", "GlassTrans(2=1"], 2, "cannot be read"), (["windows", "set", "1", "Height=0"], 2, "no area"),
                (["windows", "delete", "1", "2"], 2, "one word too many"), (["windows", "list", "-o", "x"], 2, "--output goes with project export and weather import."),
                (["windows", "new", "--type", "VAV"], 2, "--type goes with chillers new, air-systems new and plants new."),
                (["describe", "WIN_Window", "list"], 2, "\"list\" is one word too many"), (["windows"], 2, "What to do with windows?"),
                (["project", "import", str(self.at)], 3, "is a folder"), (["--jsn"], 2, "--jsn")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn(*words, code=code).stderr)
        self.assertEqual({p.name: p.read_bytes() for p in self.at.iterdir()}, before)
        self.tarn("project", "new", project=self.at / "MALL", code=3)
        self.tarn("windows", "list", project=self.at / "NONE", code=3)
        self.tarn("windows", "list", project=self.at / "nowhere" / "MALL", code=3)

    def made_year(self):
        path = self.at / "year.epw"
        subprocess.run([sys.executable, EXAMPLES / "make_year.py", path], check=True)
        return path

    def test_weather(self):
        year = self.made_year()
        self.tarn("air-systems", "new", "--type", "VAV")
        run = self.tarn("weather", "import", str(year))
        self.assertIn("every system, plant and building is stale", run.stdout)
        self.assertIn("no readable design conditions", run.stderr)
        info = json.loads(self.tarn("project", "info", "--json").stdout)
        self.assertEqual(info["stale"], {"air systems to size again": 1, "air systems to simulate again": 1})
        self.assertEqual([info["files"][f"MALL{name}.DAT"] for name in ("HW1", "WTD", "WTA")], [70272, 86494, 2595219])
        self.assertIn("nothing found", self.tarn("weather", "check").stdout)
        simulation = self.at / "MALLWTA.DAT"
        whole = simulation.read_bytes()
        simulation.write_bytes(whole[:2000000])
        self.assertIn("cut short: 2000000 of 2595219 bytes", self.tarn("weather", "check", code=1).stdout)
        simulation.write_bytes(whole)
        shown = json.loads(self.tarn("weather", "show", "--json").stdout)
        self.assertEqual(shown["header"]["CityName"], "Tarnwater")
        self.assertEqual(len(shown["statistics"]["AvgDB"]), 12)

        svg = self.at / "year.svg"
        self.tarn("weather", "show", str(year), "--svg", str(svg))
        texts = [t.text for t in ElementTree.parse(svg).iter("{http://www.w3.org/2000/svg}text")]
        for word in ("Tarnwater, IL", "Dry-bulb", "F", "C", "lb/lb", "g/kg", "Jan", "Dec"):
            self.assertIn(word, texts)

        hourly = self.at / "CITY.HW1"
        self.tarn("weather", "import", str(year), "--output", str(hourly))
        before = year.read_bytes()
        self.tarn("weather", "import", str(year), "--output", str(year), code=3)
        self.assertEqual(year.read_bytes(), before)
        damaged = bytearray(hourly.read_bytes())
        damaged[192 * 200:192 * 200 + 4] = b"\xff\x7f\x00\x00"
        hourly.write_bytes(damaged[:60000])
        found = self.tarn("weather", "check", str(hourly), code=1)
        self.assertIn("19 July hour 1, 3276.7 F", found.stdout)
        self.assertIn("60000 of its 70,272 bytes", found.stderr)
        self.tarn("weather", "import", str(hourly), code=3)
        self.tarn("weather", "check", str(self.at / "none.HW1"), code=3)

    def make_system(self):
        """An air system of two zones."""
        for name in ("Shop", "Store"):
            self.tarn("spaces", "new", f"Space.Name={name}")
        zones = [f"ZoneData({n}).{field}" for n in (1, 2) for field in (f"SpaceID(1)={n}", f"Name=Zone {n}", "TotalSpacesInZone=1")]
        self.tarn("air-systems", "new", "--type", "VAV", "Name=VAV-1", *zones)

    def make_results(self):
        """The results of its design; those of zone 1 and its one space are alike."""
        project = tarn.COM_ProjectData()
        project.WorkPath, project.FilePrefix = str(self.at), "MALL"
        system, results = project.NewAirSystem(), project.NewAirSystemDesign()
        system.Load(1)
        results.AirSystem = system
        coil = results.SSAir
        coil.ClgPeakMonth, coil.ClgPeakHour, coil.ClgCoilTotal, coil.ClgEnteringDB, coil.HtgCoilLoad = 7, 15, 1234567, 79.96, -0.2
        loads, walls, people, ducts = results.DLAir, 1, 14, 20
        loads.ClgPeakMonth, loads.ClgPeakHour, loads.ClgTotalSensible, loads.ClgTotalLatent = 7, 15, 14001, 900
        loads.ClgDetail[walls], loads.ClgSensible[walls], loads.ClgSensible[people], loads.ClgSensible[ducts] = 1000, 10000.5, 2999.4, 1000.4
        loads.ClgDetail[people], loads.ClgLatent[people], loads.HtgSensible[walls], loads.HtgTotalSensible = 4, 900, 7000, 8000
        results.HLAir.CentCoolTot[7, 15], results.HLAir.AirFlow[7, 12] = 1234567, 5000
        air = results.SPAir.SPAirClg(7, 15)
        for point, bulb, ratio in ((1, 95, 0.015), (4, 77, 0.00988), (5, 55, 0.0088), (8, 57, 0.0088), (9, 57.5, 0.0088), (10, 75, 0.0093), (12, 76, 0.0093)):
            air.DryBulb[point], air.HumidityRatio[point], air.Airflow[point] = bulb, ratio, 5000
        sizing = results.TSZone(1).TerminalSizing
        sizing.PeakMonth, sizing.PeakHour, sizing.PeakSensible, sizing.AirflowPerArea = 9, 16, 43210, 1.5
        zone = results.DLZone(1)
        zone.LoadDetails.PeakMonth, zone.LoadDetails.PeakHour = 9, 16
        zone.CoolingLoads(9, 16).Sensible[people] = zone.CoolingLoads(9, 16).TotalSensible = 555
        space = zone.DLSpace(1)
        space.SpaceID, space.Name, space.Multiplier = 1, "Shop", 3
        space.ClgSensible[people] = space.ClgTotalSensible = 555
        results.Save(1)

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
        for words, says in [(["show"], "tarn results show N"), (["show", "4"], "the nearest is 1"), (["show", "x"], "give a number"),
                            (["show", "1", "3"], "the nearest is 2"), (["show", "1", "2", "3"], "one word too many"), (["shw"], "did you mean show?"),
                            (["show", "1", "1", "--svg", "x"], "leave the zone out"), (["list", "--svg", "x"], "--svg goes with")]:
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

    @reads(GOLDEN)
    def test_a_real_year_is_converted_within_one_unit(self):
        def pressure(t):  # of saturation, Pa; other fits than the layer's: over water Wagner and Pruss, over ice Murphy and Koop
            k = t + 273.15
            if t < 0:
                return math.exp(9.550426 - 5723.265 / k + 3.53068 * math.log(k) - 0.00728332 * k)
            tau = 1 - k / 647.096
            terms = zip((-7.85951783, 1.84408259, -11.7866497, 22.6807411, -15.9618719, 1.80122502), (1, 1.5, 3, 3.5, 4, 7.5))
            return 22.064e6 * math.exp(647.096 / k * sum(a * tau**power for a, power in terms))

        self.tarn("weather", "import", str(GOLDEN), "--output", str(self.at / "G.HW1"))
        stored = struct.unpack(f"<{96 * 366}h", (self.at / "G.HW1").read_bytes())[96:]
        rows = [line.split(",") for line in GOLDEN.read_text().splitlines() if line[0].isdigit()]
        self.assertEqual(len(rows), 8760)
        for place, row in enumerate(rows):
            dry_bulb, dew_point, station, direct, diffuse = (float(row[i]) for i in (6, 7, 9, 14, 15))
            ratio = 0.621945 * pressure(dew_point) / (station - pressure(dew_point))
            wanted = ((dry_bulb * 1.8 + 32) * 10, ratio / (1 + ratio) * 1e5, direct * 3.16998, diffuse * 3.16998)
            day, hour = divmod(place, 24)
            for quantity, value in enumerate(wanted):
                self.assertLess(abs(stored[96 * day + 24 * quantity + hour] - value), 1, row[:5])

    def test_reading_creates_nothing(self):
        self.tarn("windows", "new", "Name=A")
        (self.at / "MALLWIN.DAT").unlink()
        names = sorted(p.name for p in self.at.iterdir())
        for words, code in ((["windows", "list"], 0), (["windows", "show", "1"], 3), (["project", "info"], 0)):
            said = self.tarn(*words, code=code)
            if code:
                self.assertIn("MALLWIN.DAT, which has record 1, is not there", said.stderr)
        self.assertEqual(sorted(p.name for p in self.at.iterdir()), names)


if __name__ == "__main__":
    unittest.main()
