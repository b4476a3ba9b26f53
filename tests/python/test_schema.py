"""The JSON Schema of the exchange text: an export of everything passes it, and what it refuses an import refuses too."""

import copy
import json
import subprocess
import unittest

import jsonschema

from command_line import ROOT, TARN, CommandLineTest

SCHEMA = jsonschema.Draft202012Validator(json.loads((ROOT / "docs/reference/exchange.schema.json").read_text()))

NEW = ["windows", "doors", "shades", "walls", "roofs", "schedules", "spaces", "boilers", "towers", "electric-rates", "fuel-rates", "buildings"]


class TestSchema(CommandLineTest):
    def exported(self):
        for group in NEW:
            self.tarn(group, "new")
        for group, kind in (("chillers", "WATER_COOLED_CENTRIFUGAL"), ("plants", "HOT_WATER"), ("plants", "CHILLER")):
            self.tarn(group, "new", "--type", kind)
        self.make_system()
        self.tarn("preferences", "set", "CurrencyUnits=EUR")
        (self.at / "options.dat").write_bytes(b"\x00\xff")
        self.tarn("report-options", "set", str(self.at / "options.dat"))
        return json.loads(self.tarn("export", "json").stdout)

    def imported(self, text):
        run = subprocess.run([TARN, "-p", self.at, "import", "json", "-"], input=json.dumps(text), capture_output=True, text=True, check=False)
        return run.returncode == 0, run.stderr

    def test_an_export_passes(self):
        text = self.exported()
        self.assertEqual(set(SCHEMA.schema["properties"]) - set(text), set())
        self.assertEqual([f"{error.json_path}: {error.message[:200]}" for error in SCHEMA.iter_errors(text)], [])

    def test_what_it_refuses_an_import_refuses(self):
        window, door = ({"tarn": 1, name: [{"index": 1, "Name": "One"}]} for name in ("WIN_Window", "DOR_Door"))
        good = [(window, "Height", 4), (window, "GlassTrans", [0.5, 0.5, 0.5]), (window, "GlassNameEnglish", [None, "clear", ""]), (window, "FrameType", 4),
                (door, "AreaSpec", "DAS_HEIGHT_AND_WIDTH"), (door, "AreaSpec", {"code": 1})]
        bad = [(window, "Height", -1), (window, "Height", "NaN"), (window, "Height", "tall"), (window, "Heigt", 4), (window, "GlassTrans", [0.5, 0.5]),
               (window, "GlassTrans", 0.5), (window, "Name", "x" * 256), (window, "FrameType", 5), (window, "GapTypeID", 40000), (window, "GapTypeID", 1.5),
               (window, "WindowType", 1), (window, "index", -1), (window, "index", 40000), (door, "AreaSpec", "DAS_NOTHING"), (door, "AreaSpec", 77),
               (door, "AreaSpec", {"code": 1, "name": "x"})]
        for cases, fits in ((good, True), (bad, False)):
            for text, key, value in cases:
                with self.subTest(key=key, value=value):
                    tried = copy.deepcopy(text)
                    next(iter(list(tried.values())[1:]))[0][key] = value
                    imported, why = self.imported(tried)
                    self.assertEqual((SCHEMA.is_valid(tried), imported), (fits, fits), why)
        for text in ({}, {"tarn": 2}, {"tarn": 1, "WIN_Windows": []}, {"tarn": 1, "WIN_Window": {}}, {"tarn": 1, "WIN_Window": [{"Name": "x"}]}):
            with self.subTest(text=text):
                self.assertEqual((SCHEMA.is_valid(text), self.imported(text)[0]), (False, False))


if __name__ == "__main__":
    unittest.main()
