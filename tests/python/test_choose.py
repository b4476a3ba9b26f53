"""Entities chosen by number, name or pattern; lists by condition; what is shown is imported again."""

import csv
import json
import unittest

from command_line import CommandLineTest


class TestChoose(CommandLineTest):
    def setUp(self):
        super().setUp()
        for name, height in (("South 4x5", 4), ("South 6x5", 6), ("south 6x5", 6.3), ("Küche", 3), ("12", 2)):
            self.tarn("windows", "new", f"Name={name}", f"Height={height}", "Width=5")

    def test_by_number_name_or_pattern(self):
        for word, index in (("2", 2), ("South 6x5", 2), ("south 6x5", 3), ("SOUTH 4X5", 1), ("kÜCHE", 4), ("K?che", 4), ("*[45]x5", 1), ("[!s]*e", 4), ("1[2]", 5)):
            with self.subTest(word):
                self.assertEqual(self.shown("windows", word)["index"], index)
        for word, says in (("SOUTH 6X5", 'names 2 windows: 2 South 6x5, 3 south 6x5. Give the number of one.'), ("S*", "names 3 windows: 1 South 4x5, 2"),
                           ("Suoth 4x5", "did you mean South 4x5?"), ("12", "There is no window 12; the nearest is 5."), ("North*", "There is no window"), ("-1", "indexes are 1 to 32767")):
            with self.subTest(word):
                self.assertIn(says, self.tarn("windows", "clone", word, code=2).stderr)
        self.assertEqual(self.tarn("windows", "show", "South*").stdout.count("WIN_Window "), 3)
        self.assertIn("has no doors yet", self.tarn("doors", "show", "x", code=2).stderr)

    def test_several_are_changed_all_or_none(self):
        self.assertIn("or --all for all of them", self.tarn("windows", "delete", "s*", code=2).stderr)
        self.assertEqual(self.tarn("windows", "set", "s*", "FrameType=2", "--all").stdout, "window 1 saved\nwindow 2 saved\nwindow 3 saved\n")
        self.tarn("windows", "set", "1", "Width=0", "Height=1", code=2)
        before = self.rows()
        self.assertIn("Nothing", self.tarn("windows", "set", "*", "--all", code=2).stderr)
        refused = self.tarn("windows", "set", "*", "Height=0", "--all", code=2)
        self.assertIn("window 1: Division by zero", refused.stderr)
        self.assertIn("None of the 5 was changed.", refused.stderr)
        self.assertEqual((refused.stdout, self.rows()), ("", before))
        self.assertEqual(json.loads(self.tarn("windows", "delete", "s*", "--all", "--json").stdout), [{"index": 1}, {"index": 2}, {"index": 3}])
        self.assertEqual([row["nIndex"] for row in self.rows()], [4, 5])
        self.assertIn("--all goes with", self.tarn("windows", "show", "s*", "--all", code=2).stderr)

    def names(self, where, kind="windows"):
        return [row["Name"] for row in json.loads(self.tarn(kind, "list", "--columns", "Name", "--where", where, "--json").stdout)]

    def test_conditions(self):
        self.tarn("boilers", "new", "Name=Gas", "FuelType=BFT_NATURAL_GAS", "AutoSize=true")
        self.tarn("boilers", "new", "Name=Oil", "FuelType=BFT_FUEL_OIL", "AutoSize=false")
        self.tarn("walls", "new", "Name=Brick", "Layer(2).Thickness=6")
        self.tarn("air-systems", "new", "--type", "VAV", "Name=One zone", "ZoneData(1).Name=First")
        for where, found in [("Height>4", ["South 6x5", "south 6x5"]), ("height>=4 and Height < 6.3", ["South 4x5", "South 6x5"]), ("Height = 6.3", ["south 6x5"]), ("Height<>6 and Width=5 and not Height>4", ["South 4x5", "Küche", "12"]),
                             ("Name='south 6X5'", ["South 6x5", "south 6x5"]), ("Name~south*", ["South 4x5", "South 6x5", "south 6x5"]), ("Name !~ *x5", ["Küche", "12"]), ("(Name~K* or Name=12) and Height<3", ["12"]),
                             ("Name~K* or Name=12 and Height>9", ["Küche"]), ("GlassTrans(1)>0.8 and Index<=1", ["South 4x5"]), ("fHeight>6", ["south 6x5"]), ("Name>n", ["South 4x5", "South 6x5", "south 6x5"])]:
            with self.subTest(where):
                self.assertEqual(self.names(where), found)
        for kind, where, found in [("boilers", "FuelType=BFT_NATURAL_GAS", ["Gas"]), ("boilers", "FuelType='fuel oil'", ["Oil"]), ("boilers", "FuelType=4", ["Gas"]), ("boilers", "FuelType~*OIL*", ["Oil"]),
                                   ("boilers", "AutoSize=false", ["Oil"]), ("walls", "Layer(2).Thickness>5", ["Brick"]), ("walls", "Layer(2).LayerUsed=yes", ["Brick"]),
                                   ("air-systems", "ZoneData(1).Name=first", ["One zone"]), ("air-systems", "ZoneData(2).Name<>first", []), ("air-systems", "not ZoneData(2).Name=x", ["One zone"])]:
            with self.subTest(where):
                self.assertEqual(self.names(where, kind), found)
        for where, says in [("Heigth>4", "did you mean Height?"), ("Height>", "wanted a value"), ("Height", "wanted = <> < <= > >= ~ or !~ after Height"), ("Height>4 Width>3", 'wanted "and" or "or"'), ("(Height>4", 'wanted ")"'),
                            ("Height>tall", 'Height is a number, not "tall"'), ("GlassTrans>1", "name an element of GlassTrans(1 to 3)"), ("GlassTrans(4)>1", "the subscript 4 is not from 1 to 3"), ("Name='x", "the closing '"), ("WindowType=maybe", "is true or false"),
                            ("Layer(1).Thickness>1", "has no part Layer")]:
            with self.subTest(where):
                self.assertIn(says, self.tarn("windows", "list", "--where", where, code=2).stderr)
        self.tarn("chillers", "new", "Name=Oil")
        for plant, pieces in [("Heating", ["boiler:Oil"]), ("Both", ["boiler:Gas", "chiller:Oil"])]:
            self.tarn("plants", "new", f"Name={plant}")
            for piece in pieces:
                self.tarn("plants", "equipment", "add", plant, "heating" if piece.startswith("boiler") else "cooling", piece)
        heating, cooling = "Details.HeatingEqpt.Equipment(1).EquipmentID", "Details.CoolingEqpt.Equipment(1).EquipmentID"
        for where, found in [(f"{heating}=oil", ["Heating"]), (f"{heating}=Gas", ["Both"]), (f"{heating}=1", ["Both"]), (f"{cooling}=Oil", ["Both"]), (f"{cooling}<>Oil", [])]:
            with self.subTest(where):
                self.assertEqual(self.names(where, "plants"), found)
        self.assertIn('There is no chiller or boiler "Ol"; did you mean Oil?', self.tarn("plants", "list", "--where", f"{heating}=Ol", code=2).stderr)
        self.tarn("air-systems", "new", "--type", "VAV", "Name=Wide", "ZoneData(1).TstatRange=9")
        for where, found in [("Layer(2).Conductivity > 0.04 W/m K and Layer(2).Thickness>5 in", ["Brick"]), ("(Layer(2).Conductivity>0.01 Btu/(hr ft F))", ["Brick"]),
                             ("Layer(2).Thickness>5in", ["Brick"]), ("Layer(2).Conductivity > 400 W / m K", [])]:
            with self.subTest(where):
                self.assertEqual(self.names(where, "walls"), found)
        self.assertEqual([self.names(f"ZoneData(1).TstatRange>{over}", "air-systems") for over in ("8 delta F", "8delta F and Name~W*", "6 K")], [["Wide"], ["Wide"], []])
        self.assertIn("did you mean BFT_FUEL_OIL?", self.tarn("boilers", "list", "--where", "FuelType=BFT_FULE_OIL", code=2).stderr)

    def test_references_and_ranges(self):
        self.tarn("walls", "new", "Name=Outer")
        self.tarn("walls", "new", "Name=Inner")
        self.tarn("schedules", "new", "Name=Office hours")
        self.assertIn("set: Wall(1 to 2).WallType: 2 values", self.tarn("spaces", "new", "Name=Reception", "People.Schedule=office hours", "Wall(1 to 2).WallType=Outer").stderr)
        self.tarn("schedules", "set", "1", "HourlyValue(1, 8 to 17)=70")
        self.assertEqual([self.shown("spaces", "1")["Wall"][n]["WallType"] for n in range(3)], [1, 1, 0])
        self.assertEqual(self.shown("schedules", "1")["HourlyValue"][0][7:19], [100, *10 * [70], 100])
        self.assertRegex(self.tarn("spaces", "show", "1").stdout, "Schedule +1  Office hours")
        self.assertEqual((self.names("Wall(1).WallType=outer", "spaces"), self.names("Wall(1).WallType=Inner", "spaces")), (["Reception"], []))
        self.assertIn('the walls 1, 3 have the same name, "Outer"', self.tarn("walls", "new", "Name=Outer").stderr)
        for words, says in [(("spaces", "set", "1", "Wall(1).WallType=Outer"), 'WallType: "Outer" names 2 walls: 1 Outer, 3 Outer'), (("spaces", "set", "1", "Wall(1).WallType=Otter"), "There is no wall \"Otter\"; did you mean Outer?"),
                            (("schedules", "set", "1", "HourlyValue(1)=0,0"), "HourlyValue(1, 0 to 23)=value"), (("schedules", "set", "1", "HourlyValue(1, 9 to 3)=0"), "a range that cannot be read"),
                            (("schedules", "set", "1", "Applicable(1,0)=12"), "found 12; allowed are 0 to 8"), (("windows", "set", "1", "Height(1)=3"), "Height has no subscripts"),
                            (("walls", "layer", "insert", "1", "2", "--material", "brick"), "did you mean M01 4 in brick?"), (("windows", "set", "1", "glass=3"), "or one of")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn(*words, code=2).stderr)
        self.assertEqual(self.names("Height > 6 ft and Width = 1.524 m"), ["south 6x5"])
        self.tarn("air-systems", "new", "--type", "VAV", "Name=AHU")
        self.assertEqual(self.names("SystemType=VAV", "air-systems"), ["AHU"])

    def test_columns_and_order(self):
        text = self.tarn("windows", "list", "--columns", "Name, Height,GlassTrans(1)", "--sort", "Height,Name", "--reverse", "--csv").stdout
        rows = list(csv.reader(text.splitlines()))
        self.assertEqual(rows[:3], [["Name", "Height [ft]", "GlassTrans(1)"], ["south 6x5", "6.3", "0.837"], ["South 6x5", "6", "0.837"]])
        self.tarn("windows", "set", "5", 'Name=A "large", one')
        self.assertIn('"A ""large"", one",2\n', self.tarn("windows", "list", "--columns", "Name,Height", "--csv").stdout)
        self.tarn("boilers", "new", "FuelType=4")
        [boiler] = json.loads(self.tarn("boilers", "list", "--columns", "FuelType,AutoSize", "--json").stdout)
        self.assertEqual(boiler, {"FuelType": {"code": 4, "text": "natural gas"}, "AutoSize": boiler["AutoSize"]})
        self.assertIn("Height [ft]", self.tarn("windows", "list", "--columns", "Height").stdout)
        self.assertEqual(self.tarn("windows", "list", "--csv").stdout.splitlines()[0], "nIndex,szName,fOverallUValue,fOverallShadeCo,fHeight,fWidth")
        for words, says in [(["--csv", "--json"], "not both"), (["--columns", "Nme"], "did you mean Name?"), (["--columns", "GlassTrans(1"], "not closed"), (["--sort", "x"], "has no property x")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn("windows", "list", *words, code=2).stderr)

    def test_the_index_table_alone_is_read_where_it_has_the_columns(self):
        (self.at / "MALLWIN.DAT").unlink()
        self.assertEqual(self.names("Height>4 and OverallUValue<1"), ["South 6x5", "south 6x5"])
        self.assertIn("MALLWIN.DAT", self.tarn("windows", "list", "--columns", "GlassTrans(1)", code=3).stderr)

    def test_what_is_shown_is_imported_again(self):
        self.tarn("walls", "new", "Name=Brick", "Layer(3).Thickness=2")
        other = self.at / "other"
        other.mkdir()
        self.tarn("project", "new", project=other / "COPY")
        for kind, word in (("windows", "South*"), ("walls", "Brick")):
            (self.at / "some.json").write_text(self.tarn(kind, "show", word, "--json").stdout)
            self.tarn("project", "import", str(self.at / "some.json"), project=other)
            self.assertEqual(self.tarn(kind, "show", word, "--json", project=other).stdout, (self.at / "some.json").read_text())
        whole = json.loads(self.tarn("project", "export", "walls").stdout)
        self.assertEqual(self.shown("walls", "Brick"), whole["CA_ConstructionAssly.Wall"][-1])


if __name__ == "__main__":
    unittest.main()
