"""What failures raise. The extension raises it too."""

from __future__ import annotations

from typing import Any


class Error(Exception):
    """A failure of the data layer: `number`, `source` (class and member), `description`, and where they are known
    `object` and `property`."""

    object: Any = None
    property: str | None = None

    def __init__(self, number: int, source: str, description: str) -> None:
        super().__init__(number, source, description)
        self.number, self.source, self.description = number, source, description

    def __str__(self) -> str:
        return f"{self.source}: {self.description}" if self.source else self.description
