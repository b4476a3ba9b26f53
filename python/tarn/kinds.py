"""A kind of entity of a project as a mapping by name."""

from __future__ import annotations

import functools
import html
import json
import operator
import types
import warnings
from collections.abc import Iterator, Mapping
from typing import TYPE_CHECKING, Any, Generic, NamedTuple, TypeVar

from . import _help, _members, _tarn
from ._errors import Error

if TYPE_CHECKING:
    from .project import Project

E = TypeVar("E")


def listed(items: str) -> list[types.SimpleNamespace]:
    return [types.SimpleNamespace(**item) for item in json.loads(items)]


class KindInfo(NamedTuple):
    """What the library tells of a kind."""

    group: str  # "air-systems"
    one: str  # "air system"
    class_name: str
    factory: str
    index_table: str
    record_size: int  # 0 where each entity has a file of its own
    fields: list[tuple[str, str, int, int, int, int, int, str]]

    @property
    def attribute(self) -> str:
        """Of a project: "air_systems"."""
        return self.group.replace("-", "_")


@functools.lru_cache(maxsize=None)
def kind_infos() -> tuple[KindInfo, ...]:
    return tuple(KindInfo(*row) for row in _tarn.kinds())


def holder_of(entity: Any, name: str) -> Any:
    """Where a property named without a part belongs: to the entity; else to the part that has the entity's name too; else
    to the only part that has such a property."""
    class_name = _help.class_of(entity)
    if _has(class_name, name):
        return entity
    parts = [m for m in _members.members_of(class_name) if m.is_part and _has(str(m.object_class), name)]
    named = [m for m in parts if _has(str(m.object_class), "Name")]
    chosen = named or parts
    if len(chosen) != 1:
        where = f"; say which of {', '.join(m.snake for m in chosen)}" if chosen else ""
        raise AttributeError(f"{class_name} has no property {name}{where or _help.suggestion(class_name, name)}")
    part = getattr(entity, chosen[0].name)
    return part() if chosen[0].kind == "method" else part


@functools.lru_cache(maxsize=None)
def _has(class_name: str, name: str) -> bool:
    folded = name.replace("_", "").lower()
    return any(m.kind == "property" and not m.read_only and m.name.replace("_", "").lower() == folded
               for m in _members.members_of(class_name))


class Kind(Mapping[Any, E], Generic[E]):
    """A kind of entity: `project.windows["South 4x5"]`, or by number; iteration gives the names, `values()` the entities,
    loaded one by one. `new()` makes one from the defaults, `del` removes one and every use of it."""

    def __init__(self, project: Project, info: KindInfo) -> None:
        self.project, self.info = project, info

    # ---- finding

    def _rows(self, where: str = "", *values: Any) -> list[dict[str, Any]]:
        found: list[dict[str, Any]] = self.project.database.rows(
            f"SELECT nIndex, szName FROM {self.info.index_table} {where} ORDER BY nIndex", *values)
        return found

    def indexes(self) -> list[int]:
        """The numbers of all entities, in order."""
        [row] = self.project.database.rows(f"SELECT group_concat(nIndex) AS all_indexes FROM {self.info.index_table}")
        return sorted(map(int, str(row["all_indexes"]).split(","))) if row["all_indexes"] else []

    def index_of(self, key: Any) -> int:
        """The number of an entity by its name or number. KeyError names the nearest ones; a name that several have is an
        `Error` that lists them."""
        if not isinstance(key, str):
            index = operator.index(key)
            if not self._rows("WHERE nIndex = ?", index):
                raise KeyError(f"there is no {self.info.one} {index}")
            return index
        found = self._rows("WHERE szName = ?", key)
        if len(found) > 1:
            numbers = ", ".join(str(row["nIndex"]) for row in found)
            raise Error(9, f"Project.{self.info.attribute}", f"Several {self.info.one}s have the name {key}; give a number: {numbers}.")
        if not found:
            import difflib
            near = difflib.get_close_matches(key, [row["szName"] for row in self._rows()], 3)
            raise KeyError(f"there is no {self.info.one} {key!r}" + (f"; did you mean {' or '.join(map(repr, near))}?" if near else ""))
        return int(found[0]["nIndex"])

    def _load(self, index: int) -> E:
        entity: Any = self._made()
        entity.load(index)
        return entity  # type: ignore[no-any-return]

    def _made(self) -> Any:
        return getattr(self.project.data, self.info.factory)()

    def __getitem__(self, key: Any) -> E:
        return self._load(self.index_of(key))

    def __contains__(self, key: Any) -> bool:
        try:
            self.index_of(key)
        except (KeyError, TypeError):
            return False
        except Error:
            return True  # several have the name
        return True

    def __iter__(self) -> Iterator[str]:
        return iter([row["szName"] for row in self._rows()])

    def __len__(self) -> int:
        [row] = self.project.database.rows(f"SELECT COUNT(*) AS n FROM {self.info.index_table}")
        return int(row["n"])

    def values(self) -> Any:
        """The entities in order of their numbers, each loaded when it is its turn."""
        return (self._load(index) for index in self.indexes())

    def items(self) -> Any:
        return ((row["szName"], self._load(row["nIndex"])) for row in self._rows())

    # ---- changing

    def new(self, type: str | None = None, **properties: Any) -> E:
        """A new entity with the values of the default record and these properties, computed and saved. `type` names one of
        the types that air systems, chillers and plants come in."""
        return self.save(_tarn.new_entity(self.project.data, self.info.group, type), **properties)  # type: ignore[no-any-return]

    def save(self, entity: Any, **properties: Any) -> Any:
        """Sets properties, computes what follows from them, but for results among them, and saves."""
        places = [(holder_of(entity, name), name, value) for name, value in properties.items()]
        for holder, name, value in places:
            setattr(holder, name, value)
        if any(name.lower() != "name" for name in properties):
            _tarn.compute(entity)
            for holder, name, value in places:
                setattr(holder, name, value)
        if self.info.record_size == 0 and entity.index == 0 and not entity.is_name_unique():
            raise Error(58, f"Project.{self.info.attribute}", f"Another {self.info.one} has that name; give one of its own: name=...")
        made = entity.index == 0
        entity.save()
        if made and "name" in map(str.lower, properties):
            self._warn_of_name(entity)
        return entity

    def _warn_of_name(self, entity: Any) -> None:
        index, name = _tarn.describe_entity(entity)
        others = [row["nIndex"] for row in self._rows("WHERE szName = ? AND nIndex <> ?", name, index)]
        if others:
            numbers = ", ".join(map(str, others))
            warnings.warn(f"{self.info.one} {index} has the name of {self.info.one} {numbers}, {name!r}; they are told "
                          "apart by their numbers", stacklevel=4)

    def clone(self, key: Any, **properties: Any) -> E:
        """A copy under a name of its own, or under the one among the properties."""
        entity: Any = self[key]
        return self.save(entity.clone(), **properties)  # type: ignore[no-any-return]

    def copy(self, other: Project, key: Any) -> tuple[E, list[types.SimpleNamespace]]:
        """An entity of another project, by name or number, comes into this one with all that it uses: the entity here, and
        what became of each: `kind`, `index` and `name` here, `reused` where an equal one was here already, and `from_`, what
        it is in the other project. All of it or nothing."""
        kind = getattr(other, self.info.attribute)
        found = json.loads(_tarn.copy_entity(other.data, self.info.group, kind.index_of(key), self.project.data))
        copies = [types.SimpleNamespace(**{"from_" if name == "from" else name: each[name] for name in each}) for each in found]
        return self._load(copies[-1].index), copies

    def __delitem__(self, key: Any) -> None:
        entity: Any = self[key]
        entity.delete(entity.index)

    # ---- tables

    def uses(self, key: Any) -> list[types.SimpleNamespace]:
        """What an entity refers to: `kind`, `index` and `name` of the other, and `slot`, the field that refers to it."""
        return listed(_tarn.uses(self.project.data, self.info.group, self.index_of(key)))

    def used_by(self, key: Any) -> list[types.SimpleNamespace]:
        """Who refers to an entity: `kind`, `index` and `name`, and `slot`, the field of theirs that does."""
        return listed(_tarn.used_by(self.project.data, self.info.group, self.index_of(key)))

    def table(self) -> Any:
        """All entities as a numpy structured array with a row each: `Index`, and every stored field. See docs/python.md."""
        from . import tables
        return tables.table(self)

    def frame(self) -> Any:
        """All entities as a pandas frame by their numbers; each element of an array is a column."""
        from . import tables
        return tables.frame(self)

    def update(self, table: Any) -> int:
        """Saves the entities whose rows differ from what is stored, in one transaction: how many. `table` is an array or a
        frame as `table()` and `frame()` give them, with as many of the columns as are to change."""
        from . import tables
        return tables.update(self, table)

    # ---- how it shows itself

    def _ipython_key_completions_(self) -> list[str]:
        """What may follow `project.windows["`, for IPython and notebooks."""
        return list(self)

    def __repr__(self) -> str:
        return f"<tarn {self.info.group}: {len(self)} in {self.project.folder / self.project.prefix}>"

    def _repr_html_(self) -> str:
        rows = self.project.database.rows(f"SELECT * FROM {self.info.index_table} ORDER BY nIndex")
        heads = "".join(f"<th>{html.escape(head)}</th>" for head in (rows[0] if rows else ()))
        lines = "".join("<tr>" + "".join(f"<td>{html.escape(str(cell))}</td>" for cell in row.values()) + "</tr>" for row in rows)
        return f"<table><caption>{html.escape(repr(self))}</caption><tr>{heads}</tr>{lines}</table>"
