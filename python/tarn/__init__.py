"""Tarn, the data layer of an HVAC design program.

For daily work, a project as mappings of its kinds; failures raise `tarn.Error`, texts come without blanks:

    import tarn
    with tarn.new_project("/jobs/MALL") as project:
        window = project.windows.new(name="South 4x5", height=4, width=5)
        project.windows["South 4x5"].overall_u_value

The classic classes, name for name:

    project = tarn.COM_ProjectData()
    project.WorkPath, project.FilePrefix = "/jobs/mall", "MALL"
    tarn.create_index(project.IndexDBName)
    window = project.NewWindow()
    window.Height = 4.0
    window.GlassTrans[2] = 0.78
    window.Save()
"""

from __future__ import annotations

import contextlib
import json
import logging
import os
import types
from typing import Any, Callable, Iterator, Union

from . import _tarn
from . import _members
from ._enumerations import *
from ._enumerations import enumerations as _enumerations
from ._errors import Error
from ._tarn import *
from ._tarn import __version__
from .project import Kind, Project, new_project

__all__ = ["Error", "Kind", "Project", "__version__", "check", "classes", "create_index", "enumerations", "import_chiller",
           "import_weather", "members", "new_project", "on_log", "on_yield", "open_database", "open_file", "picture", "repair",
           "settle", "shipped_file", "strict", "transaction"]

Path = Union[str, "os.PathLike[str]"]

on_yield: Callable[[], object] | None = None  # called by long calculations, so that a user interface can handle its pending events
on_log: Callable[[Any], object] | None = None  # a handler of log entries; unset, they go to logging.getLogger("tarn")


def _entry(text: str, component: str, class_name: str | None, procedure: str | None, detail: str | None) -> None:
    if on_log:
        on_log(types.SimpleNamespace(kind="error" if class_name else "message", text=text, component=component,
                                     class_name=class_name, procedure=procedure, detail=detail))
    else:
        logging.getLogger("tarn").log(logging.ERROR if class_name else logging.WARNING, "%s", text)


def _yielded() -> None:
    if on_yield:
        on_yield()


_tarn.set_log(_entry)
_tarn.set_yield(_yielded)


class strict(contextlib.AbstractContextManager):  # type: ignore[type-arg]
    """`tarn.strict()`: from now on the classic objects of this thread raise every failure, those of the classes too that
    trap and log. `tarn.strict(False)` goes back; `with tarn.strict():` does by itself."""

    def __init__(self, on: bool = True) -> None:
        self._before = _tarn.set_strict(on)

    def __exit__(self, *_: object) -> None:
        _tarn.set_strict(self._before)


def classes() -> list[str]:
    """The names of all classes."""
    return [name for name in _tarn.classes() if name != "Database"]


def enumerations() -> list[str]:
    """The names of all enumerations: `tarn.BLD_EnergyCategories.EC_HVAC_ELECTRIC` is an int with a `text`."""
    return list(_enumerations)


def _find_class(name: str) -> str | None:
    return next((each for each in _tarn.classes() if each.lower() == name.lower()), None)


def members(class_name: str) -> list[_members.Member]:
    """The members of a class in interface order: name, kind, type, bounds, read_only, by_reference, parameters, unit,
    enumeration (whose codes it holds, or None), object_class (of what it hands out, or None)."""
    return list(_members.members_of(_find_class(class_name) or class_name))


def create_index(path: Path) -> None:
    """Makes a new index database with every table; refuses an existing file."""
    _tarn.create_index(path)


def settle() -> None:
    """Brings the record bytes of all committed saves to the disk now, before another program replaces record files. The
    last program that closes a project does it by itself."""
    _tarn.settle()


def _findings(items: list[dict[str, Any]]) -> list[types.SimpleNamespace]:
    return [types.SimpleNamespace(**item) for item in items]


def check(project: Any) -> list[types.SimpleNamespace]:
    """What is damaged in a project: a list of findings, each with severity ("error" or "warning"), kind, index, name,
    property, what, remedy and repairable. Nothing is changed."""
    return _findings(json.loads(_tarn.check(_data(project))))


def repair(project: Any, dry_run: bool = False, rebuild_index: bool = False) -> types.SimpleNamespace:
    """Repairs what can be repaired, all of it or nothing: `found` and `left` are findings, `copy` is the folder where the
    project is kept as it was, empty where nothing was changed."""
    report = json.loads(_tarn.repair(_data(project), dry_run, rebuild_index))
    return types.SimpleNamespace(found=_findings(report["found"]), left=_findings(report["left"]), copy=report["copy"])


def _data(project: Any) -> Any:
    return project.data if isinstance(project, Project) else project


def shipped_file(name: str) -> str:
    """Full path of a data file that comes with Tarn: "chillers.dat" (by chiller type), "plant.dat" (the default plant)."""
    return _tarn.shipped_file(name)


def import_chiller(chiller: Any, path: Path) -> list[str]:
    """Fills a chiller from a performance map in the JSON form of ASHRAE 205; the lines tell its full load and IPLV beside
    the stated rating, and what was not carried over. It is not saved yet."""
    return _tarn.import_chiller(chiller, path).splitlines()


def import_weather(year: Any, path: Path) -> types.SimpleNamespace:
    """Fills a HW1ReaderWriter from an EPW, TMY3, TMY2 or hourly file: `format`, `source` and `notes`, what was changed,
    chosen or left out. `Project.import_weather` makes it the project's weather."""
    return types.SimpleNamespace(**json.loads(_tarn.import_weather(year, path, None)))


def picture(thing: Any) -> str:
    """The picture (SVG) of a wall or roof, a schedule, a chiller or boiler, a plant, of a year of hourly weather
    (HW1ReaderWriter), of design results (ADL_AirSystemDesign), or of who uses whom in a project. What shows stale results
    says "stale"."""
    return _tarn.picture(_data(thing))


def open_database(path: Path) -> Any:
    """The shared handle of an existing index database, for SetDBHandle and for queries of one's own."""
    return _tarn.open_database(path)


class File(int):
    """The number of an open file; a block's Load and Save take it."""

    @property
    def position(self) -> int:
        """Where the last block ended, from 1: where the next one starts."""
        return _tarn.file_position(self)


@contextlib.contextmanager
def open_file(path: Path, write: bool = False) -> Iterator[File]:
    """A file by number, for blocks of results: `with tarn.open_file(path) as f: header.Load(f, 1)`. What is written takes
    the old file's place at the end; an exception leaves the old file."""
    number = _tarn.open_file(path, write)
    try:
        yield File(number)
    except BaseException:
        _tarn.drop_file(number)
        raise
    _tarn.close_file(number)


@contextlib.contextmanager
def transaction(project: Any = None) -> Iterator[Any]:
    """Many saves, one commit; an exception rolls all of it back, files included. Nested ones are undone alone."""
    _tarn.begin()
    try:
        yield project
    except BaseException:
        _tarn.rollback()
        raise
    _tarn.commit()


def __getattr__(name: str) -> Any:
    found = None if name.startswith("__") else _find_class(name)
    if found is None:
        raise AttributeError(f"module 'tarn' has no attribute '{name}'")
    return getattr(_tarn, found)
