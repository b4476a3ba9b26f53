"""Where numpy and pandas come in; neither is needed for anything else."""

from __future__ import annotations

from typing import Any

from . import _members


def numpy() -> Any:
    try:
        import numpy as module
    except ImportError as cause:
        raise ImportError("Tables and arrays need numpy: install python3-numpy, or pip install numpy.") from cause
    return module


def pandas() -> Any:
    try:
        import pandas as module  # type: ignore[import]
    except ImportError as cause:
        raise ImportError("A frame needs pandas: install python3-pandas, or pip install pandas. table() needs numpy alone.") from cause
    return module


BLOCK_FORMATS = {_members.BOOLEAN: "<i2", _members.INT16: "<i2", _members.INT32: "<i4", _members.REAL32: "<f4", _members.REAL64: "<f8"}


def array_of(view: Any, member: _members.Member, dtype: Any) -> Any:
    """An indexed property as an array, the first subscript the first dimension."""
    np = numpy()
    block = view._block()
    if block is None:
        return np.array(view.tolist(), dtype=dtype)
    array = np.frombuffer(block, BLOCK_FORMATS[member.type_code]).reshape(member.sizes, order="F")
    if member.type_code == _members.BOOLEAN:
        array = array != 0
    return array.astype(dtype) if dtype is not None else array.copy()
