"""The enumerations of the interface as classes, made from what the library tells of them."""

from __future__ import annotations

import enum
from typing import Any

from . import _tarn


class Enumeration(enum.IntEnum):
    """Codes by name. A name that is no identifier is reached as `tarn.AS_COTriggers["10. Scheduled"]`."""

    @property
    def text(self) -> str:
        """What a person reads; the name where the code has no text."""
        return type(self)._texts[self.value] or self.name


def _make(name: str, codes: list[tuple[str, int, str]]) -> Any:
    made: Any = Enumeration(name, [(label, value) for label, value, _ in codes], module="tarn")
    made._texts = {value: text for _, value, text in reversed(codes)}  # of two names with one value, the first one's
    return made


enumerations: dict[str, Any] = {name: _make(name, codes) for name, codes in _tarn.enumerations()}
globals().update(enumerations)
__all__ = list(enumerations)
