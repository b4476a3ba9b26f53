"""Projects from the command line: check and repair, exchange, and what a mistake leaves untouched."""

import contextlib
import json
import sqlite3
import unittest

from command_line import CommandLineTest


class TestProject(CommandLineTest):
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
        self.assertIn("--dry-run goes with new, import, adopt, repair,", self.tarn("project", "check", "--dry-run", code=2).stderr)
        (self.at / "MALLINX.MDB").unlink()
        self.tarn("project", "repair", "--rebuild-index", project=self.at / "MALL")
        self.assertEqual([row["szName"] for row in self.rows()], ["South"])

    def test_exchange(self):
        self.tarn("doors", "new", "Name=O'Hara", "AreaSpec=DAS_HEIGHT_AND_WIDTH", "Height=7")
        self.tarn("shades", "new", "OvhgExt=2.5")
        text = self.tarn("project", "export").stdout
        (self.at / "all.json").write_text(text)
        other = self.at / "other"
        other.mkdir()
        self.tarn("project", "new", project=other / "COPY")
        self.assertEqual(self.tarn("project", "import", str(self.at / "all.json"), project=other).stdout, "imported 2 entities and 15 defaults\n")
        self.tarn("project", "export", "--output", str(self.at / "copy.json"), project=other)
        self.assertEqual((self.at / "copy.json").read_text(), text)
        self.assertEqual(list(json.loads(self.tarn("project", "export", "doors").stdout)), ["tarn", "DOR_Door"])
        (self.at / "bad.json").write_text(text.replace('"OvhgExt": 2.5', '"OvhgExt": "far"'))
        refused = self.tarn("project", "import", str(self.at / "bad.json"), project=other, code=2).stderr
        self.assertIn("/SHD_Shade/1/OvhgExt: SHD_Shade.OvhgExt: found the text \"far\"", refused)
        self.assertEqual(self.tarn("project", "export", project=other).stdout, text)
        self.assertIn("did you mean doors?", self.tarn("project", "export", "dors", code=2).stderr)
        self.tarn("project", "import", "none.json", code=3)

    def test_enumerations_are_described(self):
        codes = json.loads(self.tarn("describe", "BLD_EnergyCategories", "--json").stdout)["codes"]
        self.assertEqual((len(codes), codes[0]["name"], codes[0]["value"]), (13, "EC_HVAC_ELECTRIC", 1))
        self.assertRegex(self.tarn("describe", "AS_ConstituentMasks").stdout, "67633150 +CCM_INPUTMASK +inputs and zones")

    def test_reading_creates_nothing(self):
        self.tarn("windows", "new", "Name=A")
        (self.at / "MALLWIN.DAT").unlink()
        names = sorted(p.name for p in self.at.iterdir())
        for words, code in ((["windows", "list"], 0), (["windows", "show", "1"], 3), (["project", "info"], 0)):
            said = self.tarn(*words, code=code)
            if code:
                self.assertIn("MALLWIN.DAT, which has record 1, is not there", said.stderr)
        self.assertEqual(sorted(p.name for p in self.at.iterdir()), names)

    def test_mistakes_name_the_right_word_and_change_nothing(self):
        self.tarn("windows", "new", "Name=A")
        before = {p.name: p.read_bytes() for p in self.at.iterdir()}
        for words, code, says in [
                (["windos", "list"], 2, "did you mean windows?"), (["windows", "lits"], 2, "did you mean list?"),
                (["windows", "show", "3"], 2, "the nearest is 1"), (["windows", "set", "1", "Heigth=3"], 2, "did you mean Height?"),
                (["windows", "set", "1", "Height=tall"], 2, "WIN_Window.Height: found the text \"tall\""),
                (["windows", "set", "1", "FrameType=70000"], 2, "found 70000; allowed are 0 to 4"), (["windows", "set", "1", "ShadeType=70000"], 2, "Overflow"), (["windows", "set", "1", "GlassTrans(4)=1"], 2, "allowed are 1 to 3"),
                (["windows", "set", "1", "GlassTrans=1"], 2, "GlassTrans needs its subscript: GlassTrans(1 to 3)=value"), (["windows", "set", "1", "Name=日"], 2, "U+65E5"),
                (["windows", "set", "1", "Name=" + "x" * 256], 2, "256 characters, allowed are 255"),
                (["windows", "set", "1", "Index=4"], 2, "no property Index"), (["describe", "WIN_Windw"], 2, "did you mean WIN_Window?"),
                (["windows", "set", "1", "GlassTrans(2=1"], 2, "cannot be read"), (["windows", "set", "1", "Height=0"], 2, "no area"),
                (["windows", "delete", "1", "2"], 2, "one word too many"), (["windows", "list", "-o", "x"], 2, "--output goes with project export, report-options show, export json, export gbxml and weather import."),
                (["windows", "new", "--type", "VAV"], 2, "--type goes with chillers new, air-systems new and plants new."),
                (["describe", "WIN_Window", "list"], 2, "\"list\" is one word too many"), (["windows"], 2, "What to do with windows?"),
                (["project", "import", str(self.at)], 3, "is a folder"), (["--jsn"], 2, "--jsn")]:
            with self.subTest(words):
                self.assertIn(says, self.tarn(*words, code=code).stderr)
        self.assertEqual({p.name: p.read_bytes() for p in self.at.iterdir()}, before)
        self.tarn("project", "new", project=self.at / "MALL", code=3)
        self.tarn("windows", "list", project=self.at / "NONE", code=3)
        self.tarn("windows", "list", project=self.at / "nowhere" / "MALL", code=3)

    def test_nothing_is_told_of_a_save_that_fails(self):
        self.tarn("windows", "new", "Height=3", "Width=3")
        with contextlib.closing(sqlite3.connect(self.at / "MALLINX.MDB", isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            run = self.tarn("windows", "set", "1", "FrameType=2", "Height=4", code=3)
        self.assertNotIn("computed", run.stderr)
        self.assertEqual(run.stdout, "")
        self.assertIn("computed: ", self.tarn("windows", "set", "1", "FrameType=2", "Height=4").stderr)


if __name__ == "__main__":
    unittest.main()
