"""The kinds of a project as attributes: for type checkers, in _kinds.pyi; `Project` makes them from the library's table."""


class Kinds:
    """The kinds of entity of a project, each a mapping by name."""
