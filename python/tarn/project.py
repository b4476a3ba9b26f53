"""A project for daily work: its kinds as mappings, its weather, results and preferences, exchange, check and repair."""

from __future__ import annotations

import contextlib
import html
import json
import os
import pathlib
import types
from typing import TYPE_CHECKING, Any, Callable, Iterator, Union

from . import _tarn
from ._errors import Error
from ._kinds import Kinds
from .kinds import Kind, KindInfo, kind_infos, listed

if TYPE_CHECKING:
    import tarn

Path = Union[str, "os.PathLike[str]"]
Progress = Callable[[int, int], object]
INDEX_SUFFIX = "INX.MDB"


def _prefixes(folder: Path) -> list[str]:
    """Of the projects in a folder."""
    return sorted(file.name[:-len(INDEX_SUFFIX)] for file in pathlib.Path(folder).glob("?*" + INDEX_SUFFIX))


def _place(path: Path) -> tuple[str, str]:
    """Folder and prefix of "FOLDER/PREFIX", or of a folder with one project in it."""
    path = pathlib.Path(path)
    if not path.is_dir():
        return str(path.parent), path.name
    prefixes = _prefixes(path)
    if len(prefixes) != 1:
        found = f"several projects: {', '.join(prefixes)}" if prefixes else "no project"
        raise Error(53, "Project", f"The folder {path} holds {found}; name one as FOLDER/PREFIX, or make one with tarn.new_project.")
    return str(path), prefixes[0]


def _new_place(path: Path, prefix: str = "") -> tuple[str, str]:
    """Folder and prefix of a project to be made: of "FOLDER/PREFIX", or of a folder, whose name is the prefix where none is
    given. A word alone is a folder to make."""
    word = os.fspath(path)
    folder, name = os.path.split(word)
    if folder and name and not os.path.isdir(word):
        return folder, name
    return word, prefix or os.path.basename(os.path.abspath(word))


def _data_of(folder: str, prefix: str) -> tarn.COM_ProjectData:
    data = _tarn.daily(_tarn.COM_ProjectData())
    data.work_path, data.file_prefix = folder, prefix
    return data


class Graph(types.SimpleNamespace):
    """What `Project.graph` gives."""

    def _repr_svg_(self) -> str:
        return str(self.svg)


class Project(Kinds):
    """A project on disk: `tarn.Project("/jobs/MALL")`, where MALL is the prefix of its files, or the folder where it is the
    only one. Each kind is a mapping by name: `project.windows["South 4x5"]`, `project.air_systems[1]`. Failures raise
    `tarn.Error`; texts come without blanks. As a context manager it is closed at the end."""

    def __init__(self, path: Path) -> None:
        self._open(*_place(path))

    def _open(self, folder: str, prefix: str) -> None:
        self.data = _data_of(folder, prefix)
        if not os.path.exists(self.data.index_db_name):
            raise Error(53, "Project", f"There is no project {prefix} in {self.data.work_path}; tarn.new_project makes one.")
        self._database: tarn.Database | None = _tarn.daily(_tarn.open_database(self.data.index_db_name))
        self._kinds: dict[str, Kind[Any]] = {}
        for info in kind_infos():
            self._kinds[info.group] = Kind(self, info)
            setattr(self, info.attribute, self._kinds[info.group])

    @property
    def kinds(self) -> list[Kind[Any]]:
        """All kinds of entity, those that others rest on before them."""
        return list(self._kinds.values())

    @property
    def database(self) -> tarn.Database:
        """The shared handle of the index database, for queries of one's own."""
        if self._database is None:
            raise Error(91, "Project", f"{self!r} is closed; open it again with tarn.Project.")
        return self._database

    @property
    def folder(self) -> pathlib.Path:
        return pathlib.Path(self.data.work_path)

    @property
    def prefix(self) -> str:
        return str(self.data.file_prefix)

    def __enter__(self) -> Project:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        """Brings all saves to the record files, and lets the database go; entities that are still held keep it open."""
        if self._database is not None:
            _tarn.settle_database(self._database)
        self._database = None

    @contextlib.contextmanager
    def transaction(self) -> Iterator[Project]:
        """Many saves, one commit; an exception rolls all of it back, files included."""
        _tarn.begin()
        try:
            yield self
        except BaseException:
            _tarn.rollback()
            raise
        _tarn.commit()

    # ---- what there is once

    @property
    def weather(self) -> tarn.WTH_Weather:
        """Design and simulation weather, loaded; `save()` after changes."""
        weather = self.data.new_weather()
        weather.load()
        return weather

    @property
    def preferences(self) -> tarn.PRF_ProjectPrefs:
        preferences = self.data.new_project_prefs()
        preferences.load()
        return preferences

    @property
    def report_options(self) -> tarn.RPT_ReportOptions:
        options = self.data.new_report_options()
        options.load()
        return options

    @property
    def hourly_weather(self) -> tarn.HW1ReaderWriter:
        """The year of hourly weather that the project simulates with."""
        file = self.data.sim_weather_inputs_filename
        if not os.path.exists(file):
            raise Error(53, "Project.hourly_weather", "The project has no hourly weather yet; import_weather brings one in.")
        year = _tarn.daily(_tarn.HW1ReaderWriter())
        year.load(file)
        return year


    def results(self, air_system: str | int) -> tarn.ADL_AirSystemDesign:
        """What the design calculation found for an air system, by name or number."""
        system = self._kinds["air-systems"][air_system]
        design = self.data.new_air_system_design()
        file = f"{self.folder / self.prefix}D{system.index:02}.DAT"
        if not os.path.exists(file):
            raise Error(53, "Project.results", f"{system!r} has no design results: {file} is not there. Run the design calculation.")
        design.air_system = system
        design.load()
        return design

    # ---- exchange, weather, chillers

    def export_json(self, path: Path | None = None, kinds: list[str] | None = None, progress: Progress | None = None) -> str:
        """The project as JSON text, written to a file too where `path` is given; `kinds` are names as in `project.windows`.
        `progress(done, total)` is called after each entity."""
        groups = None if kinds is None else " ".join(kind.replace("_", "-") for kind in kinds)
        exported = _tarn.export_project(self.data, groups, progress)
        if path is not None:
            pathlib.Path(path).write_text(exported, encoding="utf-8")
        return exported

    def import_json(self, source: Path, progress: Progress | None = None) -> int:
        """Brings the entities of a JSON file, or of a text that begins with a brace, in, all of them or none: how many."""
        if not isinstance(source, str) or not source.lstrip().startswith("{"):
            source = pathlib.Path(source).read_text(encoding="utf-8")
        return _tarn.import_project(self.data, source, progress)

    def import_gbxml(self, path: Path, progress: Progress | None = None) -> types.SimpleNamespace:
        """Brings a building in from a gbXML file, all or none, and tells what was taken: `made`, `updated` and `unchanged`
        entities, `elements`, `areas`, what was `left` and why, `notes`. `progress(done, total)` is called after each space."""
        return types.SimpleNamespace(**json.loads(_tarn.import_gbxml(self.data, path, progress)))

    def export_gbxml(self, path: Path | None = None, progress: Progress | None = None) -> tuple[str, list[str]]:
        """The project as gbXML of the schema 6.01, written to a file too where `path` is given; and what has no place in it."""
        exported, notes = _tarn.export_gbxml(self.data, progress)
        if path is not None:
            pathlib.Path(path).write_text(exported, encoding="utf-8")
        return exported, notes.splitlines()

    def report(self, path: Path | None = None, units: str = "ip", progress: Progress | None = None) -> str:
        """All that the project holds as one self-contained page of HTML, in "ip" or "si" units, written to a file too where
        `path` is given. `progress(done, total)` is called after each section."""
        page = _tarn.report(self.data, units, progress)
        if path is not None:
            pathlib.Path(path).write_text(page, encoding="utf-8")
        return page

    def import_weather(self, path: Path) -> types.SimpleNamespace:
        """An EPW, TMY3, TMY2 or hourly file becomes the simulation weather, saved at once: `format`, `source` and `notes`,
        what was changed, chosen or left out."""
        year = _tarn.daily(_tarn.HW1ReaderWriter())
        return types.SimpleNamespace(**json.loads(_tarn.import_weather(year, path, self.data)))

    def import_chiller(self, path: Path, **properties: Any) -> tuple[tarn.CHL_Chiller, list[str]]:
        """A new chiller from a performance map in the JSON form of ASHRAE 205, saved, and what a person should know of it."""
        chiller = self.data.new_chiller()
        notes = _tarn.import_chiller(chiller, path).splitlines()
        return self._kinds["chillers"].save(chiller, **properties), notes

    # ---- what rests on what, and what differs

    def stale(self) -> list[types.SimpleNamespace]:
        """The stale results: `kind`, `index`, `name`, `results` ("design" or "simulation"), `calculated`, `edited` (whose edit
        made them stale, None where it is not known), `since` (UTC) and `way`, from the edited entity to this one."""
        return listed(_tarn.stale(self.data))

    def graph(self) -> Graph:
        """Who uses whom in the whole project, and what became of its results: `svg`, the picture, which notebooks show;
        `entities`, each with what it `uses`; `stale` as above; `current`, the results that are up to date."""
        found = json.loads(_tarn.graph(self.data))
        return Graph(svg=_tarn.picture(self.data), **{key: [types.SimpleNamespace(**each) for each in found[key]] for key in found})

    def diff(self, other: Project | Path, tolerance: float = 1e-6) -> list[types.SimpleNamespace]:
        """What differs between this project (`first`) and another, or an exported file (`second`): `kind`, `name`, `property`,
        empty where one side alone has the entity, and `unit`; of a code `first_text` and `second_text` are what a person reads.
        `tolerance` is relative."""
        with_what: Any = other.data if isinstance(other, Project) else pathlib.Path(other).read_text(encoding="utf-8")
        return listed(_tarn.compare(self.data, with_what, tolerance))

    def copy(self, path: Path) -> Project:
        """Copies the project, as it was committed last, to FOLDER/PREFIX, or under its own prefix to FOLDER, while others may
        work on it; the copy is returned."""
        place = _new_place(path, self.prefix)
        _tarn.copy_project(self.data, _data_of(*place))
        return _opened(*place)

    # ---- check and repair

    def check(self) -> list[types.SimpleNamespace]:
        """What is damaged; see `tarn.check`."""
        import tarn
        return tarn.check(self)

    def repair(self, dry_run: bool = False, rebuild_index: bool = False) -> types.SimpleNamespace:
        """Repairs what can be repaired, and keeps a copy; see `tarn.repair`."""
        import tarn
        return tarn.repair(self, dry_run, rebuild_index)

    # ---- how it shows itself

    def __repr__(self) -> str:
        return f"<tarn.Project {self.folder / self.prefix}>"

    def _repr_html_(self) -> str:
        rows = "".join(f"<tr><td>{kind.info.attribute}</td><td>{len(kind)}</td></tr>" for kind in self.kinds if len(kind))
        return f"<table><caption>{html.escape(repr(self))}</caption>{rows}</table>"

    def __reduce__(self) -> tuple[Any, ...]:
        return _opened, (str(self.folder), self.prefix)


def _opened(folder: str, prefix: str) -> Project:
    """A project that was pickled: opened anew, in the process and thread that has it."""
    project = Project.__new__(Project)
    project._open(folder, prefix)
    return project


def new_project(path: Path) -> Project:
    """Makes a project, index database and default records, all of it or nothing; an existing one is refused. As in the
    shell, "jobs/MALL" is a project MALL in the folder jobs, and "school" is a folder, whose name is that of its files too.
    The folder is made where it is missing."""
    word = os.fspath(path)
    if os.path.basename(word) == word and os.path.exists(word + INDEX_SUFFIX):
        raise Error(58, "new_project", f"The project {word} is in the current folder already.")
    if os.path.isdir(word) and (there := _prefixes(word)):
        raise Error(58, "new_project", f"The folder {word} holds the project {there[0]} already; name the new one: {os.path.join(word, 'PREFIX')}.")
    place = _new_place(path)
    os.makedirs(place[0], exist_ok=True)
    _tarn.create_project(_data_of(*place))
    return _opened(*place)


__all__ = ["Kind", "KindInfo", "Project", "new_project"]
