"""Units of both systems, and names of the codes that engines define."""

import os
import subprocess
import unittest

from command_line import TARN, CommandLineTest


class TestUnits(CommandLineTest):
    def test_units_of_both_systems(self):
        told = self.tarn("windows", "new", "Name=A", "Height=1.2m", "GlassThickness(1)=6 mm").stderr
        self.assertIn("set: Height = 3.93701 ft (1.2 m)\n", told)
        self.assertIn("set: GlassThickness(1) = 0.23622 in (6 mm)\n", told)
        self.assertAlmostEqual(self.shown("windows", "1")["Height"], 1.2 / 0.3048, 5)
        self.assertIn("computed: OverallUValue 3.3", self.tarn("--units", "si", "windows", "set", "1", "Width=1.5").stderr)
        shown = self.tarn("--units=SI", "windows", "show", "1").stdout
        for line in (r"Height +1.2 +m *\n", r"Width +1.5 +m *\n", r"OverallUValue +\d\.\d+ +W/\(m2.K\) *\n", r"GlassThickness +6, 2.9972, 0 +mm *\n"):
            self.assertRegex(shown, line)
        self.assertRegex(self.tarn("windows", "list", "--units", "si").stdout, r"fHeight \[m\] +fWidth \[m\] *\n.* 1.2 +1.5 *\n")
        stored = self.tarn("--units", "si", "windows", "show", "1", "--json").stdout
        self.assertEqual(stored, self.tarn("windows", "show", "1", "--json").stdout)
        self.tarn("boilers", "new", "HotWaterFlowUnits=FU_GPM", "HotWaterFlow=2 L/s")
        self.assertRegex(self.tarn("boilers", "show", "1").stdout, r"HotWaterFlow +31.7006 +gpm *\n")
        listed = self.tarn("--units", "si", "windows", "list", "--csv", "--columns", "Name,Height", "--where", "Height<1.3").stdout
        self.assertRegex(listed, r"Name,Height \[m\]\nA,1.2\d*\n")
        self.assertEqual(self.tarn("windows", "list", "--csv", "--columns", "Name", "--where", "Height>1.3m").stdout, "Name\n")
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
        self.assertRegex(self.tarn("describe", "WIN_Window").stdout, r"\n *4 +wood or vinyl")
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


if __name__ == "__main__":
    unittest.main()
