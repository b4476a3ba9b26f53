"""Windows, walls, schedules and spaces from the command line."""

import json
import os
import unittest.mock

import tarn

from command_line import CommandLineTest


class TestEnvelope(CommandLineTest):
    def test_a_windows_life(self):
        self.tarn("windows", "new", "Name=Küche", "Height=3", "GlassTrans(2)=0.5")
        self.tarn("windows", "clone", "1", "Name=other")
        computed = self.tarn("windows", "set", "1", "FrameType=0").stderr
        self.assertIn("computed: OverallUValue", computed)
        shown = self.shown("windows", "1")
        self.assertEqual((shown["index"], shown["Name"], shown["GlassTrans"][1]), (1, "Küche", 0.5))
        self.tarn("windows", "set", "1", "OverallUValue=0.25")
        self.assertEqual([(r["nIndex"], r["szName"], r["fOverallUValue"]) for r in self.rows()][0], (1, "Küche", 0.25))
        self.tarn("windows", "delete", "1")
        self.assertEqual([r["szName"] for r in self.rows()], ["other"])
        self.assertIn("windows: 1", self.tarn("project", "info").stdout)

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

    def test_a_gaps_names_follow_its_type(self):
        self.tarn("windows", "new", "Name=South", "GapTypeID=1")
        gap = lambda: [self.shown("windows", "1")[name] for name in ("GapTypeID", "GapNameEnglish", "GapNameMetric")]
        self.assertEqual(gap(), [1, "1/2 in air", "13 mm air"])
        self.assertIn("computed: GapNameEnglish", self.tarn("windows", "set", "1", "GapTypeID=1/4 in argon").stderr)
        self.assertEqual(gap(), [2, "1/4 in argon", "6 mm argon"])
        self.tarn("windows", "set", "1", "GapTypeID=3", "GapNameEnglish=Sealed unit B", "GapNameMetric=Sealed unit B")
        self.tarn("windows", "set", "1", "GapTypeID=0")
        self.assertEqual(gap(), [0, "Sealed unit B", "Sealed unit B"])
        self.tarn("windows", "set", "1", "GapNameEnglish=1/4 in air", "GapNameMetric=")
        (self.at / "codes.json").write_text(json.dumps({"gap": {"properties": ["WIN_Window.GapTypeID"], "names": {"0": "1/4 in air", "9": "vacuum"}}}))
        with unittest.mock.patch.dict(os.environ, TARN_CODES=str(self.at / "codes.json")):
            self.tarn("windows", "set", "1", "GapTypeID=vacuum")
            self.assertEqual(gap(), [9, "vacuum", ""])
        project = tarn.Project(self.at)
        window = project.windows.new(name="North", gap_type_id=3)
        self.assertEqual((window.gap_name_english, window.gap_name_metric), ("1/2 in argon", "13 mm argon"))
        self.assertEqual(project.windows.save(window, gap_type_id=5).gap_name_metric, "13 mm krypton")

    def test_openings_larger_than_their_wall_are_told(self):
        self.tarn("windows", "new", "Name=South", "Height=5", "Width=10")
        self.tarn("doors", "new", "Name=Front", "GrossArea=21")
        says = "note: Wall(1).GrossArea: The windows and doors have "
        self.assertIn(says + "100 ft2, the wall has 80 ft2.", self.tarn("spaces", "new", "Name=Shop", "Wall(1).Exposure=S", "Wall(1).GrossArea=80", "Wall(1).WindowType(1)=South", "Wall(1).WindowQty(1)=2").stderr)
        self.assertNotIn(says, self.tarn("spaces", "set", "1", "Name=Store").stderr)
        self.assertIn("Wall(1).GrossArea", self.tarn("project", "check", code=1).stdout)
        self.assertNotIn(says, self.tarn("spaces", "set", "1", "Wall(1).GrossArea=100").stderr)
        self.tarn("project", "check")
        self.assertIn(says + "121 ft2", self.tarn("spaces", "set", "1", "Wall(1).DoorType=Front", "Wall(1).DoorQty=1").stderr)

    def test_what_is_computed_is_told(self):
        self.tarn("walls", "new", "Name=Brick")
        for words, says in [(("set", "1", "OverallUValue=3"), "OverallUValue is computed from the other values: 0."), (("set", "1", "Layer(3).ThermalResistance=9"), "the 9 hr.ft2.F/Btu given stays until"),
                            (("layer", "insert", "1", "3", "--material", "I02"), "computed: OverallUValue"), (("layer", "remove", "1", "3"), "computed: OverallUValue"),
                            (("set", "1", "Layer(9).Thickness=2"), "Layer(9) is not used: set Layer(9).LayerUsed=true"), (("set", "1", "Layer(2).Conductivity=0.5W/mK"), "(0.5 W/mK)")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn("walls", *words).stderr)
        self.tarn("walls", "set", "1", "Layer(3).ThermalResistance=9")
        shown = [line for line in self.tarn("walls", "show", "1").stdout.splitlines() if line.startswith("U-value")]
        self.tarn("walls", "call", "1", "ComputeSummary")
        self.assertEqual(shown, [line for line in self.tarn("walls", "show", "1").stdout.splitlines() if line.startswith("U-value")])
        self.assertIn("as computed from the layers", shown[0])

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
        unused = self.shown("walls", "1")["Layer"][2]
        self.assertEqual((unused["Name"], unused["Thickness"], unused["ThermalResistance"]), ("Not used", 0.0, 0.0))
        self.tarn("schedules", "new", "Name=Hours", "HourlyValue(1,0)=0")
        self.assertIn("100 %  |  ####", self.tarn("schedules", "show", "1").stdout)
        self.tarn("spaces", "new", "Space.Name=Office", "Wall(2).WallType=1", "People.Schedule=1")
        space = self.tarn("spaces", "show", "1").stdout
        self.assertRegex(space, r"WallType +1  Brick")
        self.assertRegex(space, r"Schedule +1  Hours")
        self.assertEqual(self.shown("spaces", "1")["Wall"][1]["WallType"], 1)
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
        before = self.shown("walls", "1")
        self.assertIn("M01 4 in brick", self.tarn("walls", "layer", "materials").stdout)
        self.assertIn("I02 2 in insulation board inserted, slot 2", self.tarn("walls", "layer", "insert", "1", "2", "--material", "i02").stdout)
        self.assertIn("moved, slot 3", self.tarn("walls", "layer", "move", "1", "2", "3").stdout)
        moved = self.shown("walls", "1")["Layer"][2]
        self.assertEqual((moved["Name"], moved["Thickness"], moved["Conductivity"]), ("I02 2 in insulation board", 2.0, 0.0173337))
        self.assertIn("removed", self.tarn("walls", "layer", "remove", "1", "3").stdout)
        self.assertEqual(self.shown("walls", "1")["BTrans"], before["BTrans"])
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
        self.assertIn(told, self.tarn("walls", "show", last, "--json").stderr)
        self.assertEqual(self.tarn("walls", "show", "1", "--json").stderr, "")
        picture = self.at / "wall.svg"
        self.tarn("walls", "show", "1", "--svg", str(picture))
        text = picture.read_text()
        for part in ("outside", ">4 in brick<", ">4.00<", "R-value", "design day", "Heat at the inside after a one-hour pulse"):
            self.assertIn(part, text)


if __name__ == "__main__":
    unittest.main()
