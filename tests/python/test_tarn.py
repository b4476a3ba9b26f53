"""The Python package: what a client sees, against the built library."""

import collections
import functools
import itertools
import json
import os
import pathlib
import tempfile
import threading
import unittest

import tarn


class ProjectCase(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.entries = []
        tarn.on_log = self.entries.append
        self.project = tarn.COM_ProjectData()
        self.project.WorkPath, self.project.FilePrefix = self.folder.name, "JOB"
        tarn.create_index(self.project.IndexDBName)
        self.database = tarn.open_database(self.project.IndexDBName)

    def file(self):
        return pathlib.Path(self.project.WindowFilename).read_bytes()


class TestObjects(ProjectCase):
    def test_properties_arrays_and_methods(self):
        window = self.project.NewWindow()
        window.Height, window.width = 4, 5.5
        window.GlassTrans[2] = 0.78
        window.GlassTypeID[:] = [1, 2, 0]
        window.GlassNameEnglish[:] = ["clear", "é", ""]
        window.Name = "Käse"
        self.assertEqual(window.HEIGHT, 4.0)
        self.assertAlmostEqual(window.GlassTrans[:][1], 0.78, 6)
        self.assertEqual(window.GlassTypeID[:], [1, 2, 0])
        self.assertEqual([name.strip() for name in window.GlassNameEnglish[:]], ["clear", "é", ""])
        self.assertEqual(window.Name, "Käse" + " " * 251)
        window.Save()
        self.assertEqual(window.Index, 1)
        self.assertEqual(self.file()[555:560], "Käse ".encode("cp1252"))
        twin = window.CopyInstance()
        self.assertEqual((twin.Index, twin.Height), (1, 4.0))
        self.assertIs(window.IsNameUnique("other"), True)
        self.assertIsNone(window.Delete(nRecNum=1))
        self.assertEqual(window.Index, 0)

    def test_check_and_repair(self):
        window = self.project.NewWindow()
        window.Name, window.Height = "South", 4
        window.Save()
        self.assertEqual(tarn.check(self.project), [])
        self.assertEqual(tarn.repair(self.project).copy, "")
        self.database.execute("UPDATE WindowIndex SET szName = ?", "North")
        [finding] = tarn.check(self.project)
        self.assertEqual((finding.severity, finding.kind, finding.index, finding.property, finding.repairable),
                         ("error", "Window", 1, "szName", True))
        self.assertEqual(finding.what, 'The index row says "North", the record "South".')
        self.assertEqual(tarn.repair(self.project, dry_run=True).left, [finding])
        report = tarn.repair(self.project)
        self.assertEqual((report.found, report.left), ([finding], []))
        self.assertEqual((pathlib.Path(report.copy) / "JOBWIN.DAT").read_bytes(), self.file())
        self.assertEqual(tarn.check(self.project), [])

    def test_failures(self):
        window = self.project.NewWindow()
        with self.assertRaises(AttributeError):
            window.Heigth = 3
        with self.assertRaises(ValueError):
            window.GlassTrans[:] = [1, 2]
        with self.assertRaises(tarn.Error) as wrong:
            tarn.create_index(self.project.IndexDBName)
        self.assertEqual(wrong.exception.number, 3204)
        window.Name = "before"
        window.Name = "日"
        self.assertEqual(window.Name.strip(), "before")
        self.assertEqual(window.GlassTrans[4], 0.0)
        window.SetDBHandle(None)
        window.Save()
        self.assertEqual([(e.kind, e.component, e.class_name, e.procedure) for e in self.entries],
                         [("error", "TarnDataHandler52", "WIN_Window", p)
                          for p in ("Name [PropertyLet]", "GlassTrans [PropertyGet]", "Save()")])

    def test_events(self):
        window = self.project.NewWindow()
        self.database.execute("INSERT INTO AirSystemIndex (nIndex, bDesHasChanged) VALUES (1, 0)")
        self.database.execute("INSERT INTO Space_Window_Links VALUES (9, 1)")
        self.database.execute("INSERT INTO System_Space_Links VALUES (1, 9)")
        asked = []
        window.OnUpdateDependencies = lambda override: asked.append(override) or True
        window.Save()
        marked = "SELECT nIndex FROM AirSystemIndex WHERE bDesHasChanged <> 0"
        self.assertEqual((asked, self.database.rows(marked)), ([False], []))
        window.OnUpdateDependencies = None
        window.Save()
        self.assertEqual(self.database.rows(marked), [{"nIndex": 1}])

    def test_a_failing_handler_undoes_the_save_and_reaches_the_caller(self):
        window = self.project.NewWindow()

        def fails(override):
            raise KeyError("handler")

        for handler, raised in ((fails, KeyError), (lambda override: (True, 1), TypeError)):
            window.OnUpdateDependencies = handler
            with self.assertRaises(raised):
                window.Save()
            self.assertEqual((window.Index, self.database.rows("SELECT * FROM WindowIndex")), (0, []))

    def test_whole_arrays_are_as_careful_as_elements(self):
        window = self.project.NewWindow()
        window.GlassTrans[:] = [0.5, 0.5, 0.5]
        window.GlassTrans[:] = [1e300, 0.25, 0.125]
        self.assertEqual(window.GlassTrans[:], [0.5, 0.25, 0.125])
        window.GlassTypeID[:] = [1.0, 70000, 3]
        self.assertEqual(window.GlassTypeID[:], [1, 0, 3])
        with self.assertRaises(tarn.Error):
            window.GlassTypeID[2**32 + 1]

    def test_results_of_a_design(self):
        system = self.project.NewAirSystem()
        system.GetAirSystem().Name = "AHU"
        system.GetAirSystem().SetNumZones(2)
        system.Save()
        system.GetZoneData(2).TotalSpacesInZone = 3
        design = self.project.NewAirSystemDesign()
        design.AirSystem = system
        self.assertEqual([len(zone.DLSpaces) for zone in design.DLZones], [0, 3])
        self.assertEqual(design.DXXFileHeader.SystemName, "AHU".ljust(32))
        design.HLAir.CentCoolTot[:] = [[100.0 * month + hour for hour in range(24)] for month in range(1, 13)]
        self.assertEqual(design.HLAir.HourlyAir(7, 15).CentCoolTot, 715.0)
        hour = design.DLZone(2).CoolingLoads(12, 23)
        hour.Sensible[14] = 5.0
        self.assertEqual((hour.ComponentName[14], design.DLZone(2).Sensible[12, 23, 14]), ("People", 5.0))
        design.SPAir.SPAirHtg.DryBulb[1] = -10
        design.Save(system.Index)

        again = self.project.NewAirSystemDesign()
        again.AirSystem = system
        again.Load()
        self.assertEqual(again.HLAir.CentCoolTot[:], design.HLAir.CentCoolTot[:])
        self.assertEqual(again.DLZone(2).Sensible[:], design.DLZone(2).Sensible[:])
        self.assertEqual(again.Dump(), design.Dump())
        self.assertIsNone(again.HLAir.HourlyAir(0, 0))
        again.SSAir.CopyFrom(again.HLAir)
        self.assertEqual([(e.class_name, e.procedure) for e in self.entries],
                         [("ADL_HLAir", "HourlyAir()"), ("ADL_SSAir", "CopyFrom()")])

        header, weather = tarn.ADL_DXXFileHeader(), tarn.ADL_Weather()
        path = pathlib.Path(self.folder.name, "JOBD01.DAT")
        with tarn.open_file(path) as file:
            header.Load(file, 1)
            self.assertEqual(file.position, 33)
            weather.Load(file, file.position)
        self.assertEqual((header.SystemName.strip(), file + 0), ("AHU", 1))
        before = path.read_bytes()
        with self.assertRaises(ZeroDivisionError), tarn.open_file(path, write=True) as file:
            weather.Altitude = 5280
            weather.Save(file, 33)
            1 / 0
        self.assertEqual(path.read_bytes(), before)
        with tarn.open_file(path, write=True) as file:
            weather.Save(file, 33)
        self.assertEqual(path.read_bytes()[:32] + path.read_bytes()[2356:], before[:32] + before[2356:])
        self.assertNotEqual(path.read_bytes(), before)
        with self.assertRaises(tarn.Error) as missing, tarn.open_file(path.with_name("none")):
            pass
        self.assertEqual(missing.exception.number, 53)

    def test_weather_moves_as_blocks(self):
        weather = self.project.NewWeather()
        weather.SimDB[:] = [[day + hour / 100 for hour in range(1, 25)] for day in range(1, 366)]
        self.assertAlmostEqual(weather.SimDB[365, 24], 365.24, 3)
        self.assertAlmostEqual(weather.SimDB[:][0][23], 1.24, 6)
        weather.DesIDIFF[12, 24, 17] = 5.5
        whole = weather.DesIDIFF[:]
        self.assertEqual((len(whole), len(whole[0]), len(whole[0][0]), whole[11][23][16]), (12, 24, 17, 5.5))
        weather.Holiday[:] = [day == 0 for day in range(365)]
        self.assertEqual((weather.Holiday[1], weather.Holiday[2]), (True, False))
        self.assertEqual((weather.SourceCode[1], weather.SourceCode[0]), ("", ""))

        reader = tarn.HW1ReaderWriter()
        reader.DB[:] = [[72.25] * 24 for _ in range(365)]
        self.assertEqual(reader.DB[:], [[72.2] * 24 for _ in range(365)])
        refused = [[1.0] * 24 for _ in range(365)]
        refused[200][5] = 4000.0
        with self.assertRaises(tarn.Error) as caught:
            reader.DB[:] = refused
        self.assertEqual((caught.exception.number, caught.exception.source), (6, "HW1ReaderWriter.DB [PropertyLet]"))
        refused[200][5] = None
        with self.assertRaises(tarn.Error):
            reader.DB[:] = refused
        self.assertEqual(reader.DB[1, 1], 72.2)
        self.assertEqual(reader.ValidateHW1File("A.TXT", 0, ""), (False, 3001, "HW1 file format not valid/recognizable."))

    def test_a_meters_profile_moves_as_one_block(self):
        building = self.project.NewBuilding()
        year = [hour / 4 for hour in range(8760)]
        building.GetBuildingProfile(3).Power[:] = year
        building.Save(15)
        loaded = self.project.NewBuilding()
        loaded.Load(8, 1)
        self.assertEqual(loaded.GetBuildingProfile(3).Power[:], year)
        self.assertEqual(set(loaded.GetBuildingProfile(4).Power[:]), {0})
        rate = tarn.URT_UtilityRate()
        for refused in (lambda: rate.Season[:], lambda: rate.Season[13], lambda: rate.Save()):
            with self.assertRaises(tarn.Error) as caught:
                refused()
            self.assertEqual(caught.exception.number, 3001)

    def test_a_lookup_in_another_database_stays_outside_the_transaction(self):
        other = str(pathlib.Path(self.folder.name) / "codes.mdb")
        tarn.create_index(other)
        codes = tarn.open_database(other)
        codes.execute("CREATE TABLE Codes (ID INTEGER, Description TEXT)")
        codes.execute("INSERT INTO Codes VALUES (2, 'second'), (1, 5)")
        weather = self.project.NewWeather()
        with tarn.transaction(self.project):
            self.assertTrue(weather.LoadSourceCodes(other, "Codes"))
            tarn.HW1ReaderWriter().Save(str(pathlib.Path(self.folder.name) / "A.HW1"))
            weather.Save()
        self.assertEqual([weather.SourceCode[i] for i in (1, 2, 3)], ["5", "second", ""])

    def test_other_threads_log_and_may_end_objects(self):
        holder = [self.project.NewWindow()]

        def work():
            holder.clear()
            tarn.COM_ProjectData().WindowFilename

        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
        self.assertEqual([e.text for e in self.entries], ["Invalid/blank working path", "Invalid/blank file prefix"])
        self.project.NewWindow()

    def test_transactions(self):
        self.project.NewWindow().Save()
        before = self.file()
        with self.assertRaises(RuntimeError), tarn.transaction(self.project):
            for _ in range(10):
                self.project.NewWindow().Save()
            raise RuntimeError
        self.assertEqual((self.file(), len(self.database.rows("SELECT * FROM WindowIndex"))), (before, 1))
        with tarn.transaction(self.project):
            self.project.NewWindow().Save()
        self.assertEqual(len(self.file()), 3 * 555)

    def test_defaults_of_kinds_with_files_of_their_own(self):
        for new, letter in ((self.project.NewAirSystem, "A"), (self.project.NewPlant, "P"), (self.project.NewBuilding, "B")):
            one = new()
            if letter == "A":  # which needs no file
                one.CreateDefault()
            one.SaveDefault()
            self.assertTrue(list(pathlib.Path(self.folder.name).glob(f"*{letter}00.DAT")), letter)
            new().CreateDefault()

    def test_parts_collections_and_return_codes(self):
        wall = self.project.NewWall()
        self.assertEqual((wall.Save(0), self.entries[-1].text),
                         (-3, "Wall was not saved, as it has no transfer functions: no layer is used."))
        layer = wall.GetLayer(2)
        layer.LayerUsed, layer.Thickness, layer.Conductivity, layer.Density, layer.SpecificHeat = True, 8, 1.1, 140, 0.2
        turns = []
        tarn.on_yield = lambda: turns.append(1)
        self.assertEqual(wall.Save(-3), 0)
        tarn.on_yield = None
        file, wall.FileName = wall.FileName, ""
        self.assertEqual(wall.Save(0), -4)
        wall.FileName = file
        self.assertEqual(len(turns), 12)
        self.assertEqual((wall.Index, wall.DTrans[1], list(wall.DTransArray)), (1, 1.0, wall.DTrans[:]))
        wall.ComputeSummary()
        self.assertAlmostEqual(wall.OverallUValue, sum(wall.BTrans[:]) / sum(wall.DTrans[:]), places=6)
        wall.BTransArray = [float(i) for i in range(12)]
        self.assertEqual(wall.BTrans[12], 11.0)
        self.assertEqual((wall.InsertLayer(5), wall.GetLayer(3).Name, wall.GetLayer(11)), (3, "New Layer", None))
        space = self.project.NewSpace()
        space.Name = "Office"
        space.FloorArea = 500
        space.GetWall(1).GrossArea, space.GetWall(1).Exposure = 120, 3
        space.GetWall(2).WindowQty[2] = 4
        self.assertEqual((space.GetSpace().FloorArea, space.GetSpace().name, space.GrossWallArea()), (500.0, "Office", 120.0))
        self.assertEqual((list(space.GetWallExposures()), len(space.GetRoofExposures())), ([3], 0))
        part = self.project.NewSpace().GetFloor()
        part.Area = 7  # the space lives on in its part
        self.assertEqual(part.Area, 7.0)
        schedule = self.project.NewSchedule()
        schedule.Applicable[:] = [[2] * 9] * 12
        schedule.HourlyValue[2, 23] = 50
        self.assertEqual((schedule.GetValue(12, 8, 23), 2 in schedule.GetUsedProfiles(True)), (50, True))

    def test_air_systems_raise_and_list(self):
        system = self.project.NewAirSystem()
        with self.assertRaises(tarn.Error) as wrong:
            system.Load(9)
        self.assertEqual((wrong.exception.number, wrong.exception.source), (53, "AS_AirSystem.Load()"))
        system.SetToDefaultsByType(14)
        system.GetAirSystem().SetNumZones(2)
        system.GetZoneData(2).AllSpaces = [0] * 50
        self.assertEqual((system.Save(), system.Index, system.SystemType, len(system.GetCoolSys().Cap1Coeff[:])), (None, 1, 14, 6))
        with self.assertRaises(tarn.Error) as wrong:
            system.GetZoneData(3)
        self.assertEqual(wrong.exception.number, 9)
        defaults = tarn.AS_Dflt_21_IB()
        fan = tarn.AS_FanData()
        defaults.PopulateSupplyFan(fan)
        self.assertAlmostEqual(fan.KWValue[10], 0.77, 6)
        adjustments = tarn.AS_FanPowerAdjustments()
        adjustments.Setup(3)
        self.assertEqual((adjustments.Count, adjustments.Item(9).ID, [a.ID for a in adjustments][7:9]), (19, 9, [9, 14]))

    def test_plants_hand_out_their_parts(self):
        chiller = self.project.NewChiller()
        chiller.CreateDefaultByType(11, tarn.shipped_file("chillers.dat"))
        unit, distances, power, capacity = chiller.GetDXFCDefaults(2, 0, [], [], [])
        self.assertEqual((unit, distances[:3], power[9], capacity[9]), (20, [0.0, 2.0, 4.0], 0.1, 1.0))
        with self.assertRaises(tarn.Error) as caught:
            chiller.GetDXFCDefaults(0, 0, [], [], [])
        self.assertEqual((caught.exception.source, caught.exception.description), ("CHL_Chiller.GetDXFCDefaults()", "Invalid DXFC option"))
        chiller.Save()
        plant = self.project.NewPlant()
        loop = plant.Details.CondenserWaterLoop
        loop.NumPumps, loop.Pumps[13].Flow = 13, 40.0
        self.assertEqual((loop.Pumps[13].Name, plant.Details.CondenserWaterLoop.Pumps[13].Flow), ("CondenserWaterLoop Pump 13", 40.0))
        units = plant.Details.CoolingEqpt
        units.NumEquipment = 1
        units.Equipment[1].LibraryID, units.Equipment[1].EquipmentID = 10, chiller.Index
        plant.General.PlantType = 4
        plant.General.SetFlags()
        plant.Save(508)
        self.assertEqual(plant.FileName, str(pathlib.Path(self.folder.name) / "JOBP01.DAT"))
        other = self.project.NewPlant()
        other.Load(2, 1)
        self.assertEqual((other.Details.CoolingEqpt.NumEquipment, other.General.NumOutputs), (0, 6))
        pump = self.project.NewPlant().Details.SourceWaterLoop.Pumps[2]  # outlives what it was taken from
        self.assertEqual(pump.Name, "SourceWaterLoop Pump 2")
        with self.assertRaisesRegex(tarn.Error, r"NumPumps value is out of range: \[-1 < 0\]"):
            loop.NumPumps = -1
        with self.assertRaisesRegex(tarn.Error, "no.dat"):
            tarn.shipped_file("no.dat")

    def test_chiller_maps_are_imported(self):
        grid = {"evaporator_liquid_leaving_temperature": [275, 285], "condenser_liquid_entering_temperature": [290, 310],
                "compressor_sequence_number": [1, 2]}
        values = {"net_evaporator_capacity": [175842.642, 351685.284] * 4, "input_power": [30000, 60000] * 4}
        text = {"metadata": {"schema": "RS0001", "description": "Even"}, "performance":
                {"performance_map_cooling": {"grid_variables": grid, "lookup_variables": values}}}
        path = pathlib.Path(self.folder.name) / "map.json"
        path.write_text(json.dumps(text))
        chiller = self.project.NewChiller()
        notes = tarn.import_chiller(chiller, path)
        self.assertEqual(notes[0], "Full load by the map: 100.0 tons, 60.0 kW, COP 5.861.")
        self.assertTrue(notes[-1].startswith("Not carried over: ") and len(notes) == 4, notes)
        chiller.Save()
        self.assertEqual((chiller.Index, chiller.Name.strip()), (1, "Even"))
        self.assertAlmostEqual(chiller.CoolingMode.MapPower[2, 1], 30, 5)
        path.write_text("[" * 1000)
        for wrong, says in ((path, "line 1: the text nests deeper than 32 levels."), ("none.json", "Cannot read none.json.")):
            with self.assertRaisesRegex(tarn.Error, says):
                tarn.import_chiller(chiller, wrong)
        with self.assertRaisesRegex(tarn.Error, "The object is no chiller."):
            tarn.import_chiller(self.project.NewWindow(), path)
        self.assertEqual(chiller.Name.strip(), "Even")

    def test_describes_itself(self):
        self.assertIn("WIN_Window", tarn.classes())
        members = {m.name: m for m in tarn.members("WIN_Window")}
        self.assertEqual(members["GlassTrans"].bounds, [(1, 3)])
        self.assertEqual((members["Height"].kind, members["Height"].type, members["Height"].unit), ("property", "R4", "ft"))
        self.assertEqual(members["OnUpdateDependencies"].kind, "event")
        self.assertIn("CalculatePerformance", dir(self.project.NewWindow()))

    def test_enumerations_are_classes(self):
        masks = tarn.AS_ConstituentMasks
        system = self.project.NewAirSystem()
        system.SetMask(masks.CCM_INPUTMASK | masks.CCM_HEADERMASK, masks.CCM_MASKALL)
        self.assertEqual(system.m_lCurMask, 67633151)
        self.assertEqual((masks(3670016), masks.CCM_SIZINGMASK.text), (masks.CCM_SIZINGMASK, "sizing"))
        self.assertEqual(int(tarn.BLD_EnergyCategories.EC_HVAC_REMOTE_STEAM), 6)
        self.assertEqual(tarn.AS_COTriggers["10. Scheduled"], 10)
        self.assertIn("Months", tarn.enumerations())
        boiler = self.project.NewBoiler()
        oil = tarn.BLR_FuelTypes.BFT_FUEL_OIL
        boiler.FuelType = oil
        self.assertIs(tarn.BLR_FuelTypes(boiler.FuelType), oil)
        kept = {m.name: m.enumeration for m in tarn.members("BLR_Boiler")}
        self.assertEqual((kept["FuelType"], kept["Name"]), ("BLR_FuelTypes", None))


def table(title):
    """One of the tables of tests/data by how its title begins: made by another program than this layer."""
    file = pathlib.Path(__file__).resolve().parents[1] / "data" / "tables.json"
    return next(t for t in json.loads(file.read_text())["tables"] if t["title"].startswith(title))


GAPS, FRAMES = table("Thermal resistance of a window's gap"), {row[0]: row[1:] for row in table("Window frames")["rows"]}
SHADES = {row[0]: row[1:] for row in table("Internal shades")["rows"]}
CONSTANTS = dict(table("Constants of window performance")["rows"])
INSIDE, LEAST, BAND = (CONSTANTS[name] for name in (
    "inside film conductance", "least conductivity, resistance and solar denominator that count", "edge band, in"))
WINTER, SUMMER = (CONSTANTS[f"outside film conductance, {season}"] for season in ("winter", "summer"))


@functools.lru_cache
def traced(slots):
    """How much of a ray passes the slots (transmitted, reflected), and how much returns: its parts are followed until they are gone."""
    through, back, rays = 0, 0, {(0, 1): 1.0}
    while rays:
        met, rays = rays, collections.defaultdict(float)
        for (at, way), energy in met.items():
            if at == len(slots):
                through += energy
            elif at < 0:
                back += energy
            elif energy > 1e-13:
                rays[at + way, way] += energy * slots[at][0]
                rays[at - way, -way] += energy * slots[at][1]
    return through, back


def temperatures(resistances, inside, heat):
    """Of the nodes between the resistances of a chain, outdoors at 0: the heat balance of each, solved by elimination."""
    k, n = [1 / max(r, 1e-7) for r in resistances], len(resistances) - 1
    rows = [[0.0] * i + [k[i] + k[i + 1]] + [0.0] * (n - i - 1) + [heat.get(i, 0.0)] for i in range(n)]
    for i in range(n - 1):
        rows[i][i + 1] = rows[i + 1][i] = -k[i + 1]
    rows[-1][n] += k[n] * inside
    for i in range(n):
        for other in (j for j in range(n) if j != i):
            factor = rows[other][i] / rows[i][i]
            rows[other] = [x - factor * y for x, y in zip(rows[other], rows[i])]
    return [rows[i][n] / rows[i][i] for i in range(n)]


@functools.lru_cache
def thermal(gaps, glass, absorbed):
    """U-value at the centre in winter, and how much of what the panes absorb in summer goes inside."""
    inner = glass + 1 / INSIDE
    winter, summer = ([1 / outside, *gaps, inner] for outside in (WINTER, SUMMER))
    inward = sum(share * (1 - temperatures(summer, 0, {pane: 1})[0] / summer[0]) for pane, share in enumerate(absorbed))
    return temperatures(winter, 1, {})[0] / winter[0], inward


@functools.lru_cache
def frame_width(height, width, share):
    """That of a frame on all sides with a share of the area, by halving."""
    low, high = 0, min(height, width) / 2
    for _ in range(60):
        middle = (low + high) / 2
        covered = 1 - (height - 2 * middle) * (width - 2 * middle) / (height * width)
        low, high = (middle, high) if covered < share else (low, middle)
    return low


def through_shade(through, back, absorbed):
    """What comes in, and what is sent back to the glass, of light that goes to and fro between glass and shade."""
    entered = returned = 0
    while through > 1e-13:
        entered, returned, through = entered + through * (1 - absorbed), returned + through * absorbed, through * absorbed * back
    return entered, returned


def performance(panes, gap, frame, shade, height, width):
    """U-value and shade coefficient by a way of its own: rays followed, heat balances solved, the frame found by trial."""
    present = [p for p in panes if p[0] >= 1]
    low_e = GAPS["low_emissivity_glass"]
    gaps = tuple(GAPS["rows"][gap][1 if p[0] in low_e else 2] if 0 <= gap <= 5 else 0 for p in present[1:])
    glass = sum(p[4] / 12 / p[5] for p in present if p[5] > LEAST)
    centre, inward = thermal(gaps, glass, tuple(p[3] for p in present))
    share, frame_u = FRAMES.get(frame, (0, 0))
    edged = len(present) > 1 and frame in (1, 2, 3, 4)
    edge = centre
    if edged and centre < CONSTANTS["edge of glass: centre U-value below which it differs"]:
        terms = (CONSTANTS[f"edge of glass: {name}"] for name in ("factor of the square", "factor", "constant"))
        edge = sum(term * centre**power for term, power in zip(terms, (2, 1, 0)))
    inset = frame_width(height, width, share) + (BAND / 12 if edged else 0)
    middle = (height - 2 * inset) * (width - 2 * inset) / (height * width)
    u = middle * centre + (1 - middle - share) * edge + share * frame_u
    u = 1 / (1 / u + (CONSTANTS["resistance of an internal shade"] if shade > 0 else 0))
    a, b = SHADES.get(shade, (0, 0))
    through, back = traced(tuple((p[1], p[2]) if p[0] >= 1 else (1.0, 0.0) for p in panes))
    entered, returned = through_shade(through, back, 1 - a - b)
    frame_gain = share * frame_u * CONSTANTS["frame solar factor: multiplier"] / SUMMER
    return u, ((1 - share) * ((1 + returned) * inward + entered) + frame_gain) / CONSTANTS["solar heat gain of the reference glass"]


class TestWindowPerformance(unittest.TestCase):
    def test_against_an_independent_calculation(self):
        window = tarn.WIN_Window()
        window.GlassReflect[:], window.GlassThickness[:] = [0.075, 0.19, 0.071], [0.118, 0.236, 0.5]
        window.GlassTrans[:], window.GlassAbsorp[:] = [0.837, 0.63, 0.775], [0.088, 0.18, 0.154]
        window.GlassConductivity[:] = [0.52, 0.52, 0.00005]
        window.Height, window.Width = 4.5, 3.25
        properties = [list(getattr(window, name)) for name in (
            "GlassTrans", "GlassReflect", "GlassAbsorp", "GlassThickness", "GlassConductivity")]
        layers = [ids for ids in itertools.product((0, 1, 16), repeat=3)] + [(-3, 15, 17), (14, 18, 1)]
        for ids, gap, frame, shade in itertools.product(layers, range(-1, 7), range(-1, 6), range(-1, 17)):
            window.GlassTypeID[:], window.GapTypeID, window.FrameType, window.ShadeType = list(ids), gap, frame, shade
            window.CalculatePerformance()
            panes = list(zip(ids, *properties))
            expected_both = performance(panes, gap, frame, shade, window.Height, window.Width)
            for name, expected in zip(("OverallUValue", "OverallShadeCo"), expected_both):
                if abs(getattr(window, name) - expected) > 2e-6 * max(abs(expected), 1):
                    self.fail(f"{name} of layers {ids}, gap {gap}, frame {frame}, shade {shade}: {getattr(window, name)}, expected {expected}")


if __name__ == "__main__":
    unittest.main()
