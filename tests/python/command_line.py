"""What the tests of the command line share: a new project, the program, and what is made for it."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

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


class CommandLineTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.at = pathlib.Path(self.folder.name)
        self.tarn("project", "new", project=self.at / "MALL")

    def tarn(self, *words, project=None, code=0, at=None):
        run = subprocess.run([TARN, "-p", str(project or self.at), *words], capture_output=True, text=True, check=False, cwd=at)
        self.assertEqual(run.returncode, code, run.stderr)
        return run

    def rows(self):
        return json.loads(self.tarn("windows", "list", "--json").stdout)

    def shown(self, group, entity):
        """The one entity that `show --json` prints."""
        text = json.loads(self.tarn(group, "show", entity, "--json").stdout)
        self.assertEqual((list(text)[0], len(text)), ("tarn", 2))
        [found] = list(text.values())[1]
        return found

    def made_year(self):
        path = self.at / "year.epw"
        subprocess.run([sys.executable, EXAMPLES / "make_year.py", path], check=True)
        return path

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
