"""The daily face of the package: projects as mappings, tables in and out, what raises, what objects show of themselves."""

import contextlib
import copy
import enum
import gc
import inspect
import io
import json
import os
import pathlib
import pickle
import pydoc
import subprocess
import sys
import tempfile
import threading
import unittest
import weakref

import tarn
from tarn import _tarn

try:
    import numpy
    import pandas
except ImportError:
    numpy = pandas = None


class DailyCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.entries = []
        tarn.on_log = self.entries.append
        self.project = tarn.new_project(self.folder / "deep" / "JOB")

    def raises(self, kind, pattern, action):
        with self.assertRaisesRegex(kind, pattern) as caught:
            action()
        return caught.exception


class TestKinds(DailyCase):
    def test_a_kind_is_a_mapping(self):
        windows = self.project.windows
        south = windows.new(name="South 4x5", height=4, Width=5, glass_trans=[0.8, 0.7, 0])
        north = windows.new(Name="North")
        self.assertEqual((south.index, south.name, south.Name, round(south.glass_trans[1], 6)), (1, "South 4x5", "South 4x5", 0.8))
        self.assertAlmostEqual(south.overall_u_value, windows["South 4x5"].OverallUValue)
        self.assertNotEqual(south.overall_u_value, 0)
        self.assertEqual((list(windows), len(windows), [w.index for w in windows.values()]), (["South 4x5", "North"], 2, [1, 2]))
        self.assertEqual(("North" in windows, 2 in windows, "West" in windows, 3 in windows, None in windows), (True, True, False, False, False))
        self.assertEqual((windows[2].name, windows.get("West"), dict(windows.items())["North"].index), ("North", None, 2))
        self.assertEqual(windows.clone("North", name="Copy").height, north.height)
        del windows["North"]
        self.assertEqual(windows.indexes(), [1, 3])
        self.assertIn("did you mean 'South 4x5'", str(self.raises(KeyError, "no window 'Soth 4x5'", lambda: windows["Soth 4x5"])))
        with self.assertWarns(UserWarning):
            windows.new(name="Copy")
        self.raises(tarn.Error, "Several windows have the name Copy; give a number: 2, 3", lambda: windows["Copy"])
        self.assertIn("Copy", windows)

    def test_entities_in_files_of_their_own(self):
        system = self.project.air_systems.new(name="AHU", type="VAV")
        self.assertEqual((system.index, system.get_air_system().name, self.project.air_systems["AHU"].index), (1, "AHU", 1))
        self.raises(tarn.Error, "Another air system has that name", lambda: self.project.air_systems.new(name="AHU"))
        self.raises(tarn.Error, "no system type nonsense", lambda: self.project.air_systems.new(type="nonsense"))
        self.raises(tarn.Error, "no types of windows", lambda: self.project.windows.new(type="x"))
        self.raises(AttributeError, "no property heigth; did you mean height", lambda: self.project.windows.new(heigth=1))
        self.assertEqual(len(self.project.windows), 0)

    def test_every_kind_is_made_saved_and_loaded(self):
        for kind in self.project.kinds:
            with self.subTest(kind.info.group):
                made = kind.new(name="First")
                kind.save(made, name="Second")
                made.save()
                again = kind["Second"]
                again.load(made.index)
                self.assertEqual((again.index, kind.clone("Second", name="Third").index, len(kind)), (made.index, 2, 2))

    def test_values_that_cannot_be_are_refused(self):
        windows = self.project.windows
        south = windows.new(name="South", height=4, glass_trans=[0.8, 0.7, 0])
        cases = [("height", -3, r"WIN_Window.Height: found -3 ft; allowed are 0 ft and above\.$"), ("Height", -0.5, "WIN_Window.Height: found -0.5 ft"),
                 ("height", float("nan"), "allowed are finite numbers"), ("frame_type", 9, "WIN_Window.FrameType: found 9; allowed are 0 to 4"),
                 ("name", "x" * 256, "has 256 characters, allowed are 255"), ("glass_thickness", [0.1, -1, 0], r"GlassThickness\(2\): found -1 in"),
                 ("height", "tall", "number")]
        for name, value, says in cases:
            with self.subTest(name, value=value):
                before = getattr(south, name)
                before = before[:] if hasattr(before, "tolist") else before
                for refused in (lambda: setattr(south, name, value), lambda: windows.save(south, **{name: value}), lambda: windows.new(**{name: value}),
                                lambda: windows.update([{"Index": 1, "Width": 9, tarn._members.by_name("WIN_Window")[name].name: value}])):
                    self.raises(tarn.Error, says, refused)
                after = getattr(south, name)
                self.assertEqual(after[:] if hasattr(after, "tolist") else after, before)
        with self.assertRaises(tarn.Error):
            south.glass_trans[2] = float("inf")
        self.raises(tarn.Error, "BLR_Boiler.FuelType: found code 77; the codes are", lambda: self.project.boilers.new(fuel_type=77))
        self.assertEqual((len(windows), len(self.project.boilers), windows[1].width), (1, 0, south.width))
        classic = tarn.WIN_Window()
        classic.Height = -3
        self.assertEqual(classic.Height, -3)

    def test_rows_as_dicts_need_no_numpy(self):
        windows = self.project.windows
        windows.new(name="South", height=4)
        windows.new(name="North", height=5)
        changes = [{"Index": 1, "Height": 4, "GlassTrans": [0.5, 0.5, 0]}, {"Index": 2, "Name": "North", "Height": 5.0}]
        self.assertEqual([windows.update(changes), windows.update(changes), windows.update([{"Index": 1, "GlassTrans(2)": 0.25}])], [1, 0, 1])
        self.assertEqual((windows[1].glass_trans[2], windows[2].height), (0.25, 5))
        self.raises(tarn.Error, "no column Heigth", lambda: windows.update([{"Index": 1, "Heigth": 4}]))
        self.raises(KeyError, "no window 3 to update", lambda: windows.update([{"Index": 3}]))

    def test_a_name_in_use_is_told(self):
        self.project.walls.new(name="Outer")
        with self.assertWarnsRegex(UserWarning, "wall 2 has the name of wall 1, 'Outer'"):
            self.project.walls.new(name="Outer")

    def test_a_project_is_found_and_kept(self):
        self.project.windows.new(name="A")
        again = pickle.loads(pickle.dumps(tarn.Project(self.folder / "deep")))
        self.assertEqual((again.prefix, list(again.windows)), ("JOB", ["A"]))
        self.raises(tarn.Error, "holds no project", lambda: tarn.Project(self.folder))
        self.raises(tarn.Error, "There is no project X", lambda: tarn.Project(self.folder / "X"))
        self.raises(tarn.Error, "exists", lambda: tarn.new_project(self.folder / "deep" / "JOB"))
        with self.assertRaises(ZeroDivisionError), self.project.transaction():
            self.project.windows.new(name="B")
            1 / 0
        self.assertEqual(list(self.project.windows), ["A"])
        with self.project as same:
            self.assertIs(same, self.project)
        self.raises(tarn.Error, "JOB> is closed", lambda: self.project.windows["A"])

    def test_a_new_project_is_where_the_shell_makes_it(self):
        here = os.getcwd()
        self.addCleanup(os.chdir, here)
        os.chdir(self.folder)
        (self.folder / "there").mkdir()
        for path, folder, prefix in [("school", "school", "school"), ("annex/", "annex", "annex"), (pathlib.Path("there"), "there", "there"), ("two/EAST", "two", "EAST"), ("school/WEST", "school", "WEST")]:
            with self.subTest(path), tarn.new_project(path) as made:
                self.assertEqual((made.folder.resolve(), made.prefix, (self.folder / folder / f"{prefix}INX.MDB").exists()), ((self.folder / folder).resolve(), prefix, True))
        self.assertEqual(tarn.Project("annex").prefix, "annex")
        self.raises(tarn.Error, r"The folder annex holds the project annex already; name the new one: annex.PREFIX\.", lambda: tarn.new_project("annex"))
        os.chdir("annex")
        self.raises(tarn.Error, "The project annex is in the current folder already", lambda: tarn.new_project("annex"))
        self.assertEqual(tarn.Project("annex").copy("../copy").prefix, "copy")
        self.assertEqual(tarn.Project("annex").copy("copies").prefix, "annex")

    def test_what_rests_on_what_and_what_differs(self):
        self.project.windows.new(name="South")
        space = self.project.spaces.new(name="Shop")
        space.get_wall(1).window_type[1] = 1
        space.Save()
        [use] = self.project.spaces.uses("Shop")
        self.assertEqual((use.kind, use.name, use.slot), ("Window", "South", "Wall(1).WindowType(1)"))
        self.assertEqual([user.name for user in self.project.windows.used_by("South")], ["Shop"])
        self.assertEqual(self.project.stale(), [])
        self.project.air_systems.new(type="VAV", name="VAV-1")
        design, simulation = self.project.stale()
        self.assertEqual((design.results, design.calculated, design.edited["name"], simulation.results), ("design", False, "VAV-1", "simulation"))
        graph = self.project.graph()
        self.assertEqual(([len(each.uses) for each in graph.entities if each.name == "Shop"], len(graph.stale), graph.current), ([1], 2, []))
        self.assertEqual((graph._repr_svg_()[:4], tarn.picture(self.project)), ("<svg", graph.svg))
        path = self.folder / "exported.json"
        self.project.export_json(path)
        self.assertEqual(self.project.diff(path), [])
        window = self.project.windows["South"]
        window.height = 9
        window.Save()
        [found] = self.project.diff(path)
        self.assertEqual((found.kind, found.name, found.property, found.unit, found.first), ("Window", "South", "Height", "ft", 9))
        with tarn.new_project(self.folder / "annex" / "ANNEX") as annex:
            shop, copies = annex.spaces.copy(self.project, "Shop")
            self.assertEqual((shop.get_wall(1).window_type[1], [(each.kind, each.reused, each.from_["name"]) for each in copies]), (1, [("Window", False, "South"), ("Space", False, "Shop")]))
            self.assertTrue(all(each.reused for each in annex.spaces.copy(self.project, 1)[1]))
        copied = self.project.copy(self.folder / "variants" / "TALL")
        self.assertEqual(self.project.diff(copied), [])
        self.raises(tarn.Error, "is there already", lambda: self.project.copy(self.folder / "variants" / "TALL"))

    def test_exchange_weather_check_and_pictures(self):
        self.project.walls.new(name="Wall")
        told = []
        text = self.project.export_json(self.folder / "all.json", progress=lambda done, total: told.append(done))
        self.assertIn('"CA_ConstructionAssly.Wall"', text)
        self.assertTrue(told)
        other = tarn.new_project(self.folder / "OTHER")
        self.assertEqual((other.import_json(self.folder / "all.json") > 0, list(other.walls)), (True, ["Wall"]))
        self.assertNotIn("CA_ConstructionAssly", self.project.export_json(kinds=["air_systems"]))
        self.raises(tarn.Error, "no kind of entity wals; .*walls", lambda: self.project.export_json(kinds=["wals"]))
        self.raises(ZeroDivisionError, "", lambda: self.project.export_json(progress=lambda done, total: 1 / 0))

        self.raises(tarn.Error, "no hourly weather yet", lambda: self.project.hourly_weather)
        year = tarn.HW1ReaderWriter()
        for hour in ("DB", "SH"):
            getattr(year, hour)[:] = [[50.0 if hour == "DB" else 0.005] * 24] * 365
        year.Latitude, year.CityName, year.SummerDB, year.DailyRange, year.SourceType = 41.5, "Tarnwater", 90, 20, 1
        year.Save(str(self.folder / "A.HW1"))
        self.assertEqual(self.project.import_weather(self.folder / "A.HW1").format, "HW1")
        self.assertEqual((self.project.hourly_weather.city_name, self.project.weather.sim_city_name), ("Tarnwater", "Tarnwater"))
        (self.folder / "B.HW1").write_bytes(b"x" * 100)
        self.raises(tarn.Error, "B.HW1", lambda: self.project.import_weather(self.folder / "B.HW1"))
        self.assertEqual(self.project.weather.sim_city_name, "Tarnwater")
        self.assertTrue(tarn.picture(self.project.hourly_weather).startswith("<svg"))
        self.raises(tarn.Error, "WIN_Window has no picture", lambda: tarn.picture(self.project.windows.new()))
        self.assertEqual(self.project.check(), [])
        self.project.database.execute("UPDATE WallIndex SET szName = 'x'")
        self.assertEqual([finding.kind for finding in self.project.repair(dry_run=True).found], ["Wall"])


class TestFailures(DailyCase):
    def test_daily_objects_raise_and_classic_ones_trap(self):
        window, classic = self.project.windows.new(name="A"), tarn.WIN_Window()
        error = self.raises(tarn.Error, "Subscript out of range: 4", lambda: window.glass_trans[4])
        self.assertEqual((error.number, error.source, error.object, error.property),
                         (9, "WIN_Window.GlassTrans [PropertyGet]", window, "GlassTrans"))
        self.assertEqual(self.raises(tarn.Error, "U\\+65E5", lambda: setattr(window, "name", "日")).property, "Name")
        self.assertEqual((window.name, self.entries), ("A", []))
        self.assertEqual((classic.GlassTrans[4], len(self.entries)), (0.0, 1))
        with tarn.strict():
            self.raises(tarn.Error, "Subscript", lambda: classic.GlassTrans[4])
            with tarn.strict(False):
                self.assertEqual(classic.GlassTrans[4], 0.0)
            self.raises(tarn.Error, "Subscript", lambda: classic.GlassTrans[4])
        self.assertEqual(classic.GlassTrans[4], 0.0)
        kept = pickle.loads(pickle.dumps(error.__class__(9, "a.b", "c")))
        self.assertEqual((kept.number, str(kept)), (9, "a.b: c"))

    def test_a_code_of_a_save_raises(self):
        wall = self.project.data.new_wall()
        for slot in range(1, 11):
            wall.get_layer(slot).layer_used = False
        error = self.raises(tarn.Error, "no layer is used", wall.save)
        self.assertEqual((error.number, error.source), (-3, "CA_ConstructionAssly.Save()"))

    def test_a_strict_call_leaves_handlers_and_other_objects_alone(self):
        window, classic = self.project.windows.new(name="A"), tarn.WIN_Window()

        def handler(override):
            classic.GlassTrans[4]
            return override

        window.on_update_dependencies = handler
        window.save()
        self.assertEqual([e.procedure for e in self.entries], ["GlassTrans [PropertyGet]"])


class TestValues(DailyCase):
    def test_what_is_taken(self):
        window = tarn.WIN_Window()
        cases = [(4, 4.0), (2.5, 2.5), (True, -1.0), (enum.IntEnum("E", {"A": 7}).A, 7.0)]
        if numpy:
            cases += [(numpy.float32(1.5), 1.5), (numpy.float64(2), 2.0), (numpy.int64(3), 3.0), (numpy.array(6.5), 6.5)]
        for given, expected in cases:
            window.Height = given
            self.assertEqual(abs(window.Height), abs(expected), repr(given))
        arrays = [(1, 2, 3), range(1, 4), [1.0, 2, True + 2]]
        if numpy:
            arrays += [numpy.array([1, 2, 3]), numpy.array([1, 2, 3], "f4"), pandas.Series([1, 2, 3])]
        for given in arrays:
            window.GlassTypeID = [0, 0, 0]
            window.GlassTypeID = given
            self.assertEqual(window.GlassTypeID[:], [1, 2, 3], repr(given))
        other = tarn.WIN_Window()
        other.GlassTypeID = window.GlassTypeID
        self.assertEqual(other.GlassTypeID.tolist(), [1, 2, 3])
        window.FileName = self.folder / "W.DAT"
        self.assertEqual(window.FileName, str(self.folder / "W.DAT"))
        for wrong in (b"x", {}, object(), 1j):
            self.raises(TypeError, "cannot be a member's value|must be real|can't convert|float", lambda: setattr(window, "Height", wrong))
        self.raises(ValueError, "GlassTypeID takes a list of 3 values", lambda: setattr(window, "GlassTypeID", "abc"))
        self.raises(TypeError, "no slices", lambda: window.GlassTypeID[1:2])

    @unittest.skipUnless(numpy, "numpy is not there")
    def test_arrays_keep_their_subscripts(self):
        weather = tarn.WTH_Weather()
        weather.SimDB = numpy.arange(365 * 24, dtype="f4").reshape(365, 24)
        self.assertEqual((weather.SimDB[2, 1], weather.SimDB[365, 24]), (24.0, 8759.0))
        self.assertTrue((numpy.asarray(weather.SimDB) == numpy.arange(365 * 24).reshape(365, 24)).all())
        self.assertEqual(numpy.asarray(weather.Holiday).dtype, bool)

    def test_names(self):
        for name, snake in (("Height", "height"), ("GlassTrans", "glass_trans"), ("DesIDIFF", "des_idiff"), ("IndexDBName", "index_db_name"),
                            ("OverallUValue", "overall_u_value"), ("CHWSupply2T", "chw_supply2_t"), ("Cap1Coeff", "cap1_coeff")):
            found = [m for c in tarn.classes() for m in tarn.members(c) if m.name == name]
            for member in found:
                self.assertEqual(member.snake, snake)
        for class_name in tarn.classes():
            snakes = [m.snake for m in tarn.members(class_name)]
            self.assertEqual(len(set(snakes)), len(snakes), class_name)
            self.assertFalse([name for name in snakes if not name.isidentifier()], class_name)
        window = self.project.windows.new()
        self.assertEqual((window.HEIGHT, window.GLASSTRANS[1]), (window.height, window.glass_trans[1]))
        self.assertIn("glass_trans", dir(window))
        self.assertNotIn("GlassTrans", dir(window))
        self.assertNotIn("glass_trans", dir(tarn.WIN_Window()))


@unittest.skipUnless(numpy, "numpy is not there")
class TestTables(DailyCase):
    def test_records_come_and_go_as_an_array(self):
        for name in ("A", "Käse", "C"):
            self.project.windows.new(name=name, height=4, glass_trans=[0.5, 0.25, 0])
        del self.project.windows["A"]
        with self.project.transaction():
            self.project.windows.new(name="in the transaction")
            table = self.project.windows.table()
        self.assertEqual((table["Index"].tolist(), table["Name"][1].decode("cp1252")), ([1, 2, 3], "Käse"))
        self.assertEqual((table["GlassTrans"][1].tolist(), table["Height"].dtype), ([0.5, 0.25, 0.0], "f4"))
        marks = "UPDATE AirSystemIndex SET bDesHasChanged = 0"
        table["Height"][1:] = [6, 4]
        table["Name"][2] = "Brüssel".encode("cp1252")
        before = self.project.windows["Käse"].overall_u_value
        self.project.database.execute(marks)
        self.assertEqual(self.project.windows.update(table), 2)
        self.assertEqual((self.project.windows["Käse"].height, list(self.project.windows)), (6.0, ["in the transaction", "Käse", "Brüssel"]))
        self.assertNotEqual(self.project.windows["Käse"].overall_u_value, before)
        table["Height"] = 9
        table["Index"][2] = 40
        self.raises(KeyError, "no window 40", lambda: self.project.windows.update(table))
        self.assertEqual(self.project.windows["Käse"].height, 6.0)

    def test_every_column_agrees_with_the_property(self):
        self.project.walls.new(name="W")
        self.project.schedules.new(name="S")
        self.project.spaces.new(name="R", floor_area=500)
        for kind in self.project.kinds:
            if kind.info.record_size == 0:
                continue
            if not len(kind):
                kind.new()
            [row], entity = kind.table(), next(iter(kind.values()))
            self.assertEqual(kind.table().dtype.itemsize, kind.info.record_size + 4)
            for name in row.dtype.names[1:]:
                holder, last = tarn.tables._holder(entity, name)
                self.compare(name, row[name], getattr(holder, last))

    def compare(self, name, stored, shown):
        if stored.shape:
            shown = numpy.array([each.strip() if isinstance(each, str) else each for each in numpy.array(shown.tolist()).ravel()])
            stored = stored.transpose().ravel()
        texts = stored.dtype.kind == "S"
        for one, other in zip(numpy.atleast_1d(stored), numpy.atleast_1d(shown)):
            plain = one.decode("cp1252").strip("\0 ") if texts else abs(one) if isinstance(other, numpy.bool_) else one
            self.assertEqual(plain, other.strip() if texts else other, name)

    def test_frames(self):
        self.project.windows.new(name="A", glass_trans=[0.5, 0.25, 0])
        frame = self.project.windows.frame()
        self.assertEqual((frame.loc[1, "Name"], frame.loc[1, "GlassTrans(2)"], bool(frame.loc[1, "WindowType"])), ("A", 0.25, False))
        frame.loc[1, "GlassTrans(2)"], frame.loc[1, "Name"] = 0.75, "B"
        self.assertEqual((self.project.windows.update(frame[["Name", "GlassTrans(2)"]]), self.project.windows["B"].glass_trans[2]), (1, 0.75))
        self.raises(tarn.Error, "no column Colour", lambda: self.project.windows.update([{"Index": 1, "Colour": 3}]))
        self.project.spaces.new(name="R")
        layered = self.project.walls.new(name="W")
        layers = self.project.walls.frame()
        layers.loc[1, "Layer(2).Thickness"] = 3.5
        self.project.walls.update(layers)
        self.assertEqual((layered.index, self.project.walls["W"].get_layer(2).thickness), (1, 3.5))

    def test_kinds_with_files_of_their_own_have_columns_too(self):
        self.project.air_systems.new(name="AHU", type="VAV")
        table = self.project.air_systems.table()
        self.assertEqual((table["Index"].tolist(), table["AirSystem.Name"][0], len(self.project.plants.table())), ([1], "AHU", 0))
        table["CoolSys.OAMinTemp"] = 61
        self.assertEqual(self.project.air_systems.update(table), 1)
        self.assertEqual(self.project.air_systems["AHU"].get_cool_sys().oa_min_temp, 61)

    def test_a_file_that_ends_early_is_refused(self):
        self.project.windows.new()
        self.project.close()
        path = pathlib.Path(self.project.data.window_filename)
        path.write_bytes(path.read_bytes()[:-1])
        again = tarn.Project(self.folder / "deep" / "JOB")
        self.raises(tarn.Error, "JOBWIN.DAT, record 1 is cut short: 554 of 555 bytes", again.windows.table)


class TestObjects(DailyCase):
    def test_copies_and_pickles(self):
        window = self.project.windows.new(name="A")
        twin = copy.copy(window)
        twin.height = 9
        self.assertEqual((twin._daily, copy.deepcopy(window).index, window.height == 9), (True, 1, False))
        self.raises(TypeError, "cannot be pickled", lambda: pickle.dumps(window))
        self.raises(TypeError, "cannot be copied", lambda: copy.copy(self.project.data))

    def test_how_objects_show_themselves(self):
        window = self.project.windows.new(name="A & B")
        self.assertEqual((repr(window), repr(tarn.WIN_Window())), ('<tarn.WIN_Window 1 "A & B">', '<tarn.WIN_Window new "">'))
        self.assertIn("A &amp; B", window._repr_html_())
        self.assertIn("<svg", self.project.walls.new(name="W")._repr_html_())
        self.assertIn("[0.837, 0.837, 0.0]", window._repr_html_())
        self.assertNotIn("\0", tarn.WIN_Window()._repr_html_())
        self.assertIn("&lt;tarn.Project", self.project._repr_html_())
        self.assertEqual(self.project.windows._ipython_key_completions_(), list(self.project.windows))
        self.assertEqual(str(inspect.signature(window.load)), "(nRecNum: int) -> None")
        self.assertEqual(list(inspect.signature(tarn.WIN_Window.IsNameUnique).parameters), ["self", "sName"])
        plant, classic = self.project.plants.new(name="Loop"), tarn.PLT_Plant()
        for method, takes in [(plant.save, "(nOpMode: int = None, bSaveAfterCalculation: bool = None)"), (plant.load, "(nRecNum: int)"),
                              (classic.Save, "(nOpMode: int, bSaveAfterCalculation: bool = None)"), (classic.Load, "(nOpMode: int, nRecNum: int)"),
                              (self.project.walls.new().save, "(ReturnCode: int = None)"), (tarn.CA_ConstructionAssly().Save, "(ReturnCode: int)")]:
            self.assertEqual(str(inspect.signature(method)), takes + " -> None")
            self.assertEqual(method.__doc__.count("needs no nOpMode: without it, all sections."), int("nOpMode" in method.__doc__.splitlines()[0]))
        inspect.signature(plant.load).bind(plant.index)
        plant.load(nRecNum=plant.index)
        self.assertRaises(tarn.Error, plant.load, nOpMode=1)
        page = pydoc.plain(pydoc.render_doc(tarn.WIN_Window))
        for word in ("Height: R4 ft", "Subscripts: 1 to 3", "IsNameUnique", "Load(self, /, nRecNum: int)"):
            self.assertIn(word, page)
        self.assertIn("Codes of BLR_FuelTypes", tarn.BLR_Boiler.FuelType.__doc__)
        self.assertRegex(tarn.__version__, r"\d+\.\d+")

    def test_life(self):
        window = tarn.WIN_Window()
        seen = weakref.ref(window)
        window.OnUpdateDependencies = lambda override: window and override  # a cycle through the handler
        del window
        gc.collect()
        self.assertIsNone(seen())

        class Own(tarn.WIN_Window):
            def area(self):
                return self.Height * self.Width

            @property
            def lacking(self):
                return self.window_typ

        own = Own()
        self.raises(AttributeError, "no member window_typ; did you mean window_type", lambda: own.lacking)
        own.Height, own.Width, own.note = 4, 5, "mine"
        self.assertEqual((own.area(), own.note), (20.0, "mine"))
        self.raises(TypeError, "takes no arguments", lambda: tarn.WIN_Window(1))
        self.raises(TypeError, "at most 0", lambda: own.CalculatePerformance(1))
        self.raises(TypeError, "no argument colour", lambda: own.Load(colour=1))
        self.raises(AttributeError, "is a method", lambda: setattr(tarn.WIN_Window(), "Load", 1))

    def test_a_handler_ends_with_its_object_on_any_thread(self):
        system = self.project.air_systems.new(name="AHU")
        design = self.project.data.new_air_system_design()
        design.air_system = system  # which the design keeps
        asked, holder = [], [system]
        system.on_update_dependencies = lambda override: asked.append(1)
        del system
        thread = threading.Thread(target=holder.clear)
        thread.start()
        thread.join()
        design.air_system.save()
        self.assertEqual(asked, [])

    def test_a_foreign_thread_is_told(self):
        window, told = self.project.windows.new(name="A"), []

        def work():
            try:
                window.height
            except tarn.Error as error:
                told.append(error.description)

        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
        self.assertEqual(told, ["The object is not set, was released, or belongs to another thread."])

    def test_the_extension_is_one_file_of_the_stable_interface(self):
        self.assertTrue(_tarn.__file__.endswith("_tarn.abi3.so"))
        needed = subprocess.run(["readelf", "-d", _tarn.__file__], capture_output=True, text=True).stdout
        self.assertNotIn("libtarn", needed)
        self.assertNotIn("libpython", needed)


class TestDocumentation(unittest.TestCase):
    def test_the_examples_of_the_page_run(self):
        root = pathlib.Path(__file__).resolve().parents[2]
        page = (root / "docs" / "python.md").read_text(encoding="utf-8")
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sys.executable, root / "examples" / "make_year.py", f"{folder}/tarnwater.epw"], check=True)
            made = {}
            for heading in ("## Daily work", "## Tables") if numpy else ("## Daily work",):
                block = page.split(heading)[1].split("\n\n- **" if "Daily" in heading else "\n\nThe rows")[0]
                code = "\n".join(line[4:] for line in block.splitlines() if line.startswith("    "))
                made["project"] = made.get("project") and tarn.Project(f"{folder}/MALL")
                with contextlib.redirect_stdout(io.StringIO()) as said:
                    exec(code.replace("/jobs", folder).replace("/data", folder), made)
                self.assertTrue("Tarnwater" in said.getvalue() or "Tables" in heading)


class TestTypes(unittest.TestCase):
    def test_mypy_finds_what_is_wrong_and_nothing_else(self):
        try:
            import mypy  # noqa: F401
        except ImportError:
            self.skipTest("mypy is not there")
        here = pathlib.Path(__file__).resolve()
        files = [here.with_name("typed.py"), *sorted((here.parents[2] / "examples").glob("*.py"))]
        with tempfile.TemporaryDirectory() as cache:
            found = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", cache, *map(str, files)], capture_output=True, text=True,
                                   env={"MYPYPATH": str(pathlib.Path(tarn.__file__).parents[1]), "PATH": "/usr/bin:/bin"})
        self.assertEqual(found.returncode, 0, found.stdout)


if __name__ == "__main__":
    unittest.main()
