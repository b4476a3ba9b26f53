"""What objects show of themselves; the extension calls these, as their speed does not matter."""

from __future__ import annotations

import difflib
import functools
import html
import inspect
from typing import Any

from . import _members, _tarn
from ._errors import Error

PICTURED = {"CA_ConstructionAssly", "HW1ReaderWriter", "ADL_AirSystemDesign"}


def _at(place: tuple[str, int]) -> _members.Member:
    return _members.members_of(place[0])[place[1]]


def class_of(thing: Any) -> str:
    """The component's class of an object whose class may be derived from it."""
    made: Any = type(thing)
    return _name_of(made)


@functools.lru_cache(maxsize=None)
def _name_of(made: Any) -> str:
    return str(next(each.__name__ for each in made.__mro__ if getattr(_tarn, each.__name__, None) is each))


def member_doc(place: tuple[str, int]) -> str:
    return _members.documentation(_at(place))


def signature(place: tuple[str, int], bound: bool, daily: bool) -> inspect.Signature:
    return _members.signature(_at(place), bound, daily)


def entity(thing: Any) -> tuple[int, str] | None:
    """Index and name of a stored entity; None for other objects."""
    try:
        return _tarn.describe_entity(thing)
    except Error:
        return None


def represented(thing: Any) -> str:
    stored = entity(thing)
    if stored is None:
        return f"<tarn.{type(thing).__name__}>"
    index, name = stored
    return f'<tarn.{type(thing).__name__} {index or "new"} "{name}">'


def names(thing: Any) -> list[str]:
    """The members by the names of the object's face, and what a derived class adds."""
    described = _members.members_of(class_of(thing)) if class_of(thing) != "Database" else ()
    hidden = {m.name if thing._daily else m.snake for m in described}
    shown = {m.snake if thing._daily else m.name for m in described}
    return sorted((set(object.__dir__(thing)) - hidden) | shown)


def no_such_member(thing: Any, name: str) -> None:
    class_name = class_of(thing)
    known = _members.by_name(class_name) if class_name != "Database" else {}
    if name in known:
        raise AttributeError(f"{class_name}.{name} is a {known[name].kind}")
    raise AttributeError(f"{class_name} has no member {name}" + (suggestion(class_name, name) if known else ""))


def suggestion(class_name: str, name: str) -> str:
    """The nearest right name, in the form of the wrong one; nothing for one that Python looks for by itself."""
    in_snake_case = name == name.lower()
    candidates = [m.snake if in_snake_case else m.name for m in _members.members_of(class_name)]
    near = [] if name.startswith("_") else difflib.get_close_matches(name, candidates, 1)
    return f"; did you mean {near[0]}?" if near else ""


def copied(thing: Any) -> Any:
    if class_of(thing) != "Database" and "CopyInstance" in _members.by_name(class_of(thing)):
        return thing.CopyInstance()
    raise TypeError(f"a {class_of(thing)} cannot be copied: it is part of another object, or a service. Copy the entity that "
                    "it belongs to; CopyFrom, where the class has it, takes over its values.")


def refuse_pickle(thing: Any) -> None:
    raise TypeError(f"a {class_of(thing)} cannot be pickled: it belongs to one thread and to the files of its project. Pickle its "
                    "number or name and the project (tarn.Project can be pickled), or its table; export_json keeps all of it.")


def as_html(thing: Any) -> str:
    """The picture of what has one, else the properties as a table."""
    if class_of(thing) in PICTURED:
        try:
            return _tarn.picture(thing)
        except Error:
            pass  # without layers or results: as a table
    rows = []
    for member in _members.members_of(class_of(thing)) if class_of(thing) != "Database" else ():
        if member.kind == "property" and member.type_code != _members.OBJECT and member.elements <= 24:
            rows.append((member.snake if thing._daily else member.name, _shown(thing, member), member.unit))
    cells = "".join("<tr>" + "".join(f"<td>{html.escape(str(cell))}</td>" for cell in row) + "</tr>" for row in rows)
    return f"<table><caption>{html.escape(represented(thing))}</caption>{cells}</table>"


def _shown(thing: Any, member: _members.Member) -> Any:
    try:
        value = getattr(thing, member.name)
    except Error as error:
        return error.description
    if member.bounds:
        return _rounded(value[:])
    if member.enumeration:
        return _code_text(member.enumeration, value)
    return _rounded(value)


def _rounded(value: Any) -> Any:
    """Numbers as a person reads them, and texts without what fills them up; in lists, too."""
    if isinstance(value, list):
        return [_rounded(each) for each in value]
    if isinstance(value, str):
        return value.strip(" \0")
    return round(value, 6) if isinstance(value, float) else value


def _code_text(enumeration: str, value: Any) -> Any:
    from ._enumerations import enumerations
    try:
        return f"{value} {enumerations[enumeration](value).text}"
    except (ValueError, TypeError):
        return value


def numpy_array(view: Any, dtype: Any) -> Any:
    from ._numpy import array_of
    return array_of(view, _at(view._place), dtype)
