"""Tarn, the data layer of an HVAC design program.

    import tarn
    project = tarn.COM_ProjectData()
    project.WorkPath, project.FilePrefix = "/jobs/mall", "MALL"
    tarn.create_index(project.IndexDBName)
    window = project.NewWindow()
    window.Height = 4.0
    window.GlassTrans[2] = 0.78
    window.Save()
"""

import contextlib
import ctypes
import json
import logging
import types

from . import _library as _c
from . import _objects
from ._enumerations import enumerations as _enumerations
from ._library import Error

__all__ = ["Error", "check", "classes", "create_index", "enumerations", "import_chiller", "members", "on_log", "on_yield", "open_database", "open_file", "repair", "settle", "shipped_file", "transaction"]

on_yield = None  # called, without arguments, by long calculations, so that a user interface can handle its pending events
on_log = None  # a handler of log entries; unset, they go to logging.getLogger("tarn")


def _entry(_context, text, component, class_name, procedure, detail):
    def decoded(value):
        return None if value is None else value.decode("utf-8", "replace")

    entry = types.SimpleNamespace(kind="error" if class_name else "message", text=decoded(text), component=decoded(component),
                                  class_name=decoded(class_name), procedure=decoded(procedure), detail=decoded(detail))
    if on_log:
        on_log(entry)
    else:
        logging.getLogger("tarn").log(logging.ERROR if class_name else logging.WARNING, "%s", entry.text)


def _yielded(_context):
    try:
        if on_yield:
            on_yield()
    except BaseException as exception:
        _c.catch(exception)


_log, _yield = _c.Log(_entry), _c.Yield(_yielded)
_objects.on_thread.append(lambda: _c.library.tarn_set_log(_log, None))  # the library keeps a log for each thread
_objects.on_thread.append(lambda: _c.library.tarn_set_yield(_yield, None))
_objects.enter_thread()


def classes():
    """The names of all classes."""
    return [name for name in _objects.classes if name != "Database"]


def enumerations():
    """The names of all enumerations: `tarn.BLD_EnergyCategories.EC_HVAC_ELECTRIC` is an int with a `text`."""
    return list(_enumerations)


def members(class_name):
    """The members of a class in interface order: name, kind, type, bounds, read_only, by_reference, parameters, unit,
    enumeration (whose codes it holds, or None)."""
    found = _objects.find_class(class_name)
    if found is None:
        raise Error(429, "", f"There is no class {class_name}; tarn.classes() lists them.")
    return list(found._members.values())


def create_index(path):
    """Makes a new index database with every table; refuses an existing file."""
    _c.check(_c.library.tarn_create_index(str(path).encode()))


def settle():
    """Brings the record bytes of all committed saves to the disk now, before another program replaces record files. The
    last program that closes a project does it by itself."""
    _c.check(_c.library.tarn_settle())


def _findings(items):
    return [types.SimpleNamespace(**item) for item in items]


def check(project):
    """What is damaged in a project: a list of findings, each with severity ("error" or "warning"), kind, index, name,
    property, what, remedy and repairable. Nothing is changed."""
    text = ctypes.c_char_p()
    _c.check(_c.library.tarn_check(project._handle, ctypes.byref(text)), project._handle)
    return _findings(json.loads(text.value))


def repair(project, dry_run=False, rebuild_index=False):
    """Repairs what can be repaired, all of it or nothing: `found` and `left` are findings, `copy` is the folder where the
    project is kept as it was, empty where nothing was changed."""
    text = ctypes.c_char_p()
    _c.check(_c.library.tarn_repair(project._handle, dry_run, rebuild_index, ctypes.byref(text)), project._handle)
    report = json.loads(text.value)
    return types.SimpleNamespace(found=_findings(report["found"]), left=_findings(report["left"]), copy=report["copy"])


def shipped_file(name):
    """Full path of a data file that comes with Tarn: "chillers.dat" (by chiller type), "plant.dat" (the default plant)."""
    path = _c.library.tarn_shipped_file(str(name).encode())
    _c.check(_c.OK if path else _c.ERROR)
    return path.decode()


def import_chiller(chiller, path):
    """Fills a chiller from a performance map in the JSON form of ASHRAE 205; the lines tell its full load and IPLV beside
    the stated rating, and what was not carried over. It is not saved yet."""
    notes = ctypes.c_char_p()
    _c.check(_c.library.tarn_import_chiller(chiller._handle, str(path).encode(), ctypes.byref(notes)), chiller._handle)
    return notes.value.decode().splitlines()


def open_database(path):
    """The shared handle of an existing index database, for SetDBHandle and for queries of one's own."""
    place = ctypes.c_void_p()
    _c.check(_c.library.tarn_open_database(str(path).encode(), ctypes.byref(place)))
    return _objects.wrap(place.value)


class File(int):
    """The number of an open file; a block's Load and Save take it."""

    @property
    def position(self):
        """Where the last block ended, from 1: where the next one starts."""
        place = ctypes.c_int32()
        _c.check(_c.library.tarn_file_position(self, ctypes.byref(place)))
        return place.value


@contextlib.contextmanager
def open_file(path, write=False):
    """A file by number, for blocks of results: `with tarn.open_file(path) as f: header.Load(f, 1)`. What is written takes
    the old file's place at the end; an exception leaves the old file."""
    place = ctypes.c_int16()
    _c.check(_c.library.tarn_open_file(str(path).encode(), write, ctypes.byref(place)))
    try:
        yield File(place.value)
    except BaseException:
        _c.check(_c.library.tarn_drop_file(place.value))
        raise
    _c.check(_c.library.tarn_close_file(place.value))


@contextlib.contextmanager
def transaction(project=None):
    """Many saves, one commit; an exception rolls all of it back, files included. Nested ones are undone alone."""
    _c.check(_c.library.tarn_begin())
    try:
        yield project
    except BaseException:
        _c.check(_c.library.tarn_rollback())
        raise
    _c.check(_c.library.tarn_commit())


def __getattr__(name):
    found = _objects.find_class(name)
    if found is not None:
        return found
    if name in _enumerations:
        return _enumerations[name]
    raise AttributeError(f"module 'tarn' has no attribute '{name}'")
