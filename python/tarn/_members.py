"""The members of the classes as the library describes them, and what is told of them."""

from __future__ import annotations

import functools
import inspect
import math
from typing import Any, NamedTuple

from . import _tarn

EMPTY, BOOLEAN, INT16, INT32, REAL32, REAL64, TEXT, OBJECT, REALS, ANY = range(10)
TYPE_NAMES = ("", "Boolean", "I2", "I4", "R4", "R8", "text", "object", "reals", "any")
KIND_NAMES = ("property", "method", "event")
PYTHON_TYPES = {BOOLEAN: bool, INT16: int, INT32: int, REAL32: float, REAL64: float, TEXT: str, REALS: list, EMPTY: None}


class Parameter(NamedTuple):
    """An argument of a method."""

    name: str
    type_code: int
    optional: bool
    by_reference: bool
    in_out: bool
    sections: bool  # says which sections of an entity's file

    @property
    def type(self) -> str:
        return TYPE_NAMES[self.type_code]


class Member:
    """One member of a class, as `tarn.members` lists it."""

    def __init__(self, class_name: str, number: int, row: Any) -> None:
        self.class_name, self.number = class_name, number
        (self.name, self.snake, self.unit, kind, self.type_code, self.read_only, self.by_reference, self.stored, bounds,
         parameters, self.text_width, enumeration, object_class) = row
        self.kind, self.type = KIND_NAMES[kind], TYPE_NAMES[self.type_code]
        self.enumeration, self.object_class = enumeration or None, object_class or None
        self.bounds: list[tuple[int, int]] = bounds
        self.parameters = [Parameter(*each) for each in parameters]

    @property
    def sizes(self) -> list[int]:
        """How many elements each dimension has."""
        return [last - first + 1 for first, last in self.bounds]

    @property
    def elements(self) -> int:
        return math.prod(self.sizes)

    @property
    def is_part(self) -> bool:
        """Whether it hands out one object of a known class."""
        return self.type_code == OBJECT and self.object_class is not None and not self.parameters and not self.bounds

    def __repr__(self) -> str:
        if self.kind != "property":
            names = ", ".join(f"[{p.name}]" if p.optional else p.name for p in self.parameters)
            return f"{self.name}({names})" + (f" -> {self.type}" if self.type else "")
        bounds = "[" + ", ".join(f"{a}..{b}" for a, b in self.bounds) + "]" if self.bounds else ""
        unit = f" {self.unit}" if self.unit else ""
        return f"{self.name}{bounds}: {self.type}{unit}" + (" (read-only)" if self.read_only else "")


@functools.lru_cache(maxsize=None)
def members_of(class_name: str) -> tuple[Member, ...]:
    return tuple(Member(class_name, number, row) for number, row in enumerate(_tarn.describe(class_name)))


@functools.lru_cache(maxsize=None)
def by_name(class_name: str) -> dict[str, Member]:
    """By the classic name and by the one in snake case."""
    return {name: m for m in members_of(class_name) for name in (m.snake, m.name)}


def codes_text(enumeration: str) -> str:
    from ._enumerations import enumerations
    return ", ".join(f"{code.value} {code.text}" for code in enumerations[enumeration])


def documentation(member: Member) -> str:
    """Type, unit, bounds and codes in a few lines."""
    lines = [repr(member)]
    if member.snake != member.name:
        lines.append(f"In snake case: {member.snake}.")
    if member.unit:
        lines.append(f"Unit: {member.unit}.")
    if member.bounds:
        lines.append("Subscripts: " + ", ".join(f"{first} to {last}" for first, last in member.bounds) + "; [:] is all of it.")
    if member.text_width:
        lines.append(f"At most {member.text_width} characters.")
    if member.enumeration:
        lines.append(f"Codes of {member.enumeration}: {codes_text(member.enumeration)}.")
    if member.kind == "event":
        lines.append("Set a function, or None. What it returns is the argument's new value.")
    back = [p.name for p in member.parameters if p.in_out]
    if back and member.kind == "method":
        lines.append(f"Comes back after the result: {', '.join(back)}.")
    for each in member.parameters:
        if each.sections:
            lines.append(f"An entity of a tarn.Project needs no {each.name}: without it, all sections.")
    return "\n".join(lines)


def _annotation(type_code: int, object_class: str | None = None) -> Any:
    return (object_class or Any) if type_code in (OBJECT, ANY) else PYTHON_TYPES[type_code]


def signature(member: Member, bound: bool, daily: bool) -> inspect.Signature:
    """What a call takes. The daily face leaves out what only comes back, and which sections of a file it is about."""
    parameters = [] if bound else [inspect.Parameter("self", inspect.Parameter.POSITIONAL_ONLY)]
    needed_later = False
    for each in reversed(member.parameters):
        optional = each.optional or (daily and (each.in_out or each.sections))
        if optional and needed_later and each.sections:
            continue  # Load(sections, number) is load(number)
        needed_later = needed_later or not optional
        parameters.insert(0 if bound else 1, inspect.Parameter(
            each.name, inspect.Parameter.POSITIONAL_OR_KEYWORD, annotation=_annotation(each.type_code),
            default=inspect.Parameter.empty if needed_later else None))
    return inspect.Signature(parameters, return_annotation=_annotation(member.type_code, member.object_class))
