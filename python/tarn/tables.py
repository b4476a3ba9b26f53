"""All entities of a kind as a table, and back.

Of kinds with a record file the rows are the records as they lie in the file, each behind its index: fields by their
offsets, texts as bytes of code page 1252 without the blanks at their end, Booleans as 0 and -1, arrays with their
subscripts in reverse order, as the first one varies fastest. Units are those of the properties. Kinds with a file for
each entity are loaded one by one: their columns are the stored properties of the entity and of its single parts
("General.PlantType")."""

from __future__ import annotations

import re
from collections.abc import Iterator
from typing import Any

from . import _members, _tarn
from ._errors import Error
from ._members import BOOLEAN, INT16, INT32, REAL32, REAL64, TEXT, Member
from ._numpy import numpy, pandas
from .kinds import Kind, KindInfo

PAGE = "cp1252"
ELEMENT = re.compile(r"(\w+)\(([\d,]+)\)")
PER_STORED = {("ft", "in"): 12.0}  # of a property, by the units of its bytes and of itself
FORMATS = {INT16: "<i2", INT32: "<i4", REAL32: "<f4", REAL64: "<f8", BOOLEAN: "<i2"}
LOADED_FORMATS = {**FORMATS, BOOLEAN: "?", TEXT: "O"}
_dtypes: dict[str, Any] = {}


def _columns(info: KindInfo) -> Iterator[tuple[str, Member, int]]:
    """The stored fields of a kind's record: name with its part, member, offset."""
    for class_name, part, number, offset, *_ in info.fields:
        member = _members.members_of(class_name)[number]
        yield part + member.name, member, offset


def _converted(info: KindInfo) -> Iterator[tuple[str, float]]:
    """The columns whose bytes have another unit than the property, and the factor between them."""
    for (name, member, _), (*_, unit) in zip(_columns(info), info.fields):
        if unit != member.unit:
            yield name, PER_STORED[unit, member.unit]


def _dtype(info: KindInfo) -> Any:
    if info.group not in _dtypes:
        names, offsets = ["Index"], [0]
        formats: list[tuple[str, tuple[int, ...]]] = [("<i4", ())]
        for name, member, offset in _columns(info):
            element = f"S{member.text_width}" if member.type_code == TEXT else FORMATS[member.type_code]
            names.append(name)
            formats.append((element, tuple(reversed(member.sizes))))
            offsets.append(offset + 4)
        _dtypes[info.group] = numpy().dtype(
            {"names": names, "formats": formats, "offsets": offsets, "itemsize": info.record_size + 4})
    return _dtypes[info.group]


def table(kind: Kind[Any]) -> Any:
    if kind.info.record_size == 0:
        return _loaded_table(kind)
    with kind.project.transaction():  # index and records of one moment
        records = _tarn.read_rows(kind.project.data, kind.info.group, kind.indexes())
    rows = numpy().frombuffer(records, _dtype(kind.info))
    for name, factor in _converted(kind.info):
        rows[name] *= factor
    return rows


# ---- kinds with a file for each entity

def _loaded_columns(info: KindInfo) -> Iterator[tuple[str, Member]]:
    for member in _members.members_of(info.class_name):
        if _is_cell(member):
            yield member.name, member
        if member.is_part and member.object_class != "Database":
            part = member.name.removeprefix("Get") if member.kind == "method" else member.name
            for inner in _members.members_of(str(member.object_class)):
                if _is_cell(inner):
                    yield f"{part}.{inner.name}", inner


def _is_cell(member: Member) -> bool:
    return bool(member.stored) and not member.bounds and member.type_code in LOADED_FORMATS


def _loaded_table(kind: Kind[Any]) -> Any:
    columns = list(_loaded_columns(kind.info))
    dtype = [("Index", "<i4")] + [(name, LOADED_FORMATS[member.type_code]) for name, member in columns]
    rows = []
    for entity in kind.values():
        rows.append((entity.index, *(_cell(entity, name) for name, _ in columns)))
    return numpy().array(rows, dtype)


def _cell(entity: Any, name: str) -> Any:
    holder, last = _holder(entity, name)
    return None if holder is None else getattr(holder, last)


def _holder(entity: Any, path: str) -> tuple[Any, str]:
    """The part that a column's name leads to, "Layer(2).Thickness", and the property's name."""
    *parts, last = path.split(".")
    for part in parts:
        found = re.fullmatch(r"(\w+)(?:\((\d+)\))?", part)
        if not found:
            raise Error(5, "update", f"{path} is no column; see the columns of table().")
        entity = _part(entity, found[1], found[2])
    return entity, last


def _part(entity: Any, name: str, number: str | None) -> Any:
    arguments = () if number is None else (int(number),)
    getter = getattr(entity, "Get" + name, None)
    if getter is not None:
        return getter(*arguments)
    held = getattr(entity, name)
    if callable(held):
        return held(*arguments)
    return held if number is None else held[int(number)]


# ---- frames

def frame(kind: Kind[Any]) -> Any:
    np, rows = numpy(), table(kind)
    members = {name: member for name, member, _ in _columns(kind.info)}
    columns: dict[str, Any] = {}
    for name in rows.dtype.names[1:]:
        member, values = members.get(name), rows[name]
        if member is None or not member.bounds:
            columns[name] = _plain(values, member)
            continue
        for at in np.ndindex(values.shape[1:]):
            subscripts = ",".join(str(first + i) for (first, _), i in zip(member.bounds, reversed(at)))
            columns[f"{name}({subscripts})"] = _plain(values[(slice(None), *at)], member)
    return pandas().DataFrame(columns, index=pandas().Index(rows["Index"], name="Index"))


def _plain(values: Any, member: Member | None) -> Any:
    """A column as a person reads it: texts as str, Booleans as such."""
    if values.dtype.kind == "S":
        return [text.decode(PAGE, "replace") for text in values.tolist()]
    return values != 0 if member is not None and member.type_code == BOOLEAN else values


# ---- back

def update(kind: Kind[Any], changed: Any) -> int:
    if not hasattr(changed, "iloc") and not hasattr(changed, "dtype"):
        return _update_each(kind, changed)
    wanted = _rows_of(changed)
    stored = {int(row["Index"]): row for row in _rows_of(table(kind) if not hasattr(changed, "iloc") else frame(kind))}
    saved = 0
    with kind.project.transaction():
        for row in wanted:
            index = int(row["Index"])
            if index not in stored:
                raise KeyError(f"there is no {kind.info.one} {index} to update; new() makes one")
            unknown = [name for name in row if name not in stored[index]]
            if unknown:
                raise Error(5, "update", f"The table of {kind.info.group} has no column {unknown[0]}.")
            differing = {name: value for name, value in row.items() if _differ(value, stored[index][name])}
            if differing:
                _save(kind, index, differing)
                saved += 1
    return saved


def _update_each(kind: Kind[Any], changed: Any) -> int:
    """From dicts, for which no numpy is needed: entity by entity."""
    saved = 0
    with kind.project.transaction():
        for row in changed:
            values = dict(row)
            index = int(values.pop("Index"))
            if index not in kind:
                raise KeyError(f"there is no {kind.info.one} {index} to update; new() makes one")
            entity = kind[index]
            differing = {name: value for name, value in values.items() if _differ(value, _stored(kind, entity, name))}
            if differing:
                _save(kind, index, differing)
                saved += 1
    return saved


def _stored(kind: Kind[Any], entity: Any, path: str) -> Any:
    """What a column has, an array's as nested lists; of "GlassTrans(2)" one element."""
    holder, last = _holder(entity, path)
    element = ELEMENT.fullmatch(last)
    try:
        held = getattr(holder, element[1] if element else last)
    except AttributeError:
        raise Error(5, "update", f"The table of {kind.info.group} has no column {path}.") from None
    if element:
        return held[tuple(map(int, element[2].split(",")))]
    return held.tolist() if hasattr(held, "tolist") else held


def _rows_of(table_or_frame: Any) -> list[dict[str, Any]]:
    """A dict for each row of an array or of a frame."""
    if hasattr(table_or_frame, "iloc"):
        records = table_or_frame.reset_index() if "Index" not in table_or_frame.columns else table_or_frame
        rows: list[dict[str, Any]] = records.to_dict("records")
        return rows
    names = table_or_frame.dtype.names
    return [dict(zip(names, row)) for row in table_or_frame.tolist()] if _is_flat(table_or_frame) else [
        {name: row[name] for name in names} for row in table_or_frame]


def _is_flat(rows: Any) -> bool:
    return all(rows.dtype[name].shape == () for name in rows.dtype.names)


def _differ(value: Any, old: Any) -> bool:
    if getattr(value, "shape", ()) or getattr(old, "shape", ()):
        return not bool(numpy().array_equal(value, old))
    if isinstance(old, list):
        return list(value) != old
    if value != value and old != old:  # both are no number
        return False
    return bool(_text(value) != _text(old))


def _text(value: Any) -> Any:
    return value.decode(PAGE) if isinstance(value, bytes) else value


def _save(kind: Kind[Any], index: int, values: dict[str, Any]) -> None:
    entity: Any = kind[index]

    def assign() -> None:
        for name, value in values.items():
            _set(entity, name, value)

    assign()
    _tarn.compute(entity)
    assign()  # results among the values
    entity.save()


def _set(entity: Any, path: str, value: Any) -> None:
    holder, last = _holder(entity, path)
    element = ELEMENT.fullmatch(last)
    if element:  # of a frame: one element is a column
        getattr(holder, element[1])[tuple(map(int, element[2].split(",")))] = value
    elif getattr(value, "shape", ()):
        texts = value.dtype.kind == "S"
        elements = value.transpose().tolist()
        setattr(holder, last, [text.decode(PAGE) for text in elements] if texts else elements)
    else:
        setattr(holder, last, _text(value))
