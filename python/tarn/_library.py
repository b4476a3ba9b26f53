"""The C interface of the component, declared for ctypes. Nothing here knows a class."""

import ctypes
import os
import pathlib
import threading

EMPTY, BOOLEAN, INT16, INT32, REAL32, REAL64, TEXT, OBJECT, REALS = range(9)
PROPERTY, METHOD, EVENT = range(3)
OK, ERROR, BAD_HANDLE, NO_MEMBER, BAD_ARGUMENT = range(5)

TYPE_NAMES = ("", "Boolean", "I2", "I4", "R4", "R8", "text", "object", "reals", "any")
KIND_NAMES = ("property", "method", "event")


class _As(ctypes.Union):
    _fields_ = [
        ("boolean", ctypes.c_int32),
        ("i2", ctypes.c_int16),
        ("i4", ctypes.c_int32),
        ("r4", ctypes.c_float),
        ("r8", ctypes.c_double),
        ("text", ctypes.c_void_p),
        ("reals", ctypes.POINTER(ctypes.c_double)),
        ("object", ctypes.c_void_p),
    ]


class Value(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int32), ("length", ctypes.c_int32), ("as_", _As)]


class Bounds(ctypes.Structure):
    _fields_ = [("first", ctypes.c_int32), ("last", ctypes.c_int32)]


class Parameter(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("type", ctypes.c_int32), ("optional", ctypes.c_int32),
                ("by_reference", ctypes.c_int32), ("in_out", ctypes.c_int32)]


class Member(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("unit", ctypes.c_char_p), ("kind", ctypes.c_int32), ("type", ctypes.c_int32),
                ("read_only", ctypes.c_int32), ("by_reference", ctypes.c_int32), ("bound_count", ctypes.c_int32),
                ("parameter_count", ctypes.c_int32), ("text_width", ctypes.c_int32), ("enumeration", ctypes.c_char_p)]


class Code(ctypes.Structure):
    _fields_ = [("value", ctypes.c_int32), ("name", ctypes.c_char_p), ("text", ctypes.c_char_p)]


ValuePointer = ctypes.POINTER(Value)
Listener = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, ValuePointer, ctypes.c_int32)
Row = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.POINTER(ctypes.c_char_p), ValuePointer, ctypes.c_int32)
Log = ctypes.CFUNCTYPE(None, ctypes.c_void_p, *[ctypes.c_char_p] * 5)
Yield = ctypes.CFUNCTYPE(None, ctypes.c_void_p)

_object, _text, _int = ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int32
_ints, _size = ctypes.POINTER(ctypes.c_int32), ctypes.c_size_t

_SIGNATURES = {
    "class_count": (_int, []),
    "class_name": (_text, [_int]),
    "member_count": (_int, [_text]),
    "describe": (_int, [_text, _int, ctypes.POINTER(Member)]),
    "describe_bounds": (_int, [_text, _int, _int, ctypes.POINTER(Bounds)]),
    "describe_parameter": (_int, [_text, _int, _int, ctypes.POINTER(Parameter)]),
    "enumeration_count": (_int, []),
    "enumeration_name": (_text, [_int]),
    "code_count": (_int, [_text]),
    "describe_code": (_int, [_text, _int, ctypes.POINTER(Code)]),
    "create": (_int, [_text, ctypes.POINTER(_object)]),
    "release": (_int, [_object]),
    "class_of": (_text, [_object]),
    "get": (_int, [_object, _int, _ints, _int, ValuePointer]),
    "let": (_int, [_object, _int, _ints, _int, ValuePointer]),
    "call": (_int, [_object, _int, ValuePointer, _int, ValuePointer]),
    "get_block": (_int, [_object, _int, ctypes.c_void_p, _size]),
    "let_block": (_int, [_object, _int, ctypes.c_void_p, _size]),
    "listen": (_int, [_object, _int, Listener, ctypes.c_void_p]),
    "last_error": (_int, [_object, ctypes.POINTER(_text), ctypes.POINTER(_text)]),
    "set_log": (None, [Log, ctypes.c_void_p]),
    "set_yield": (None, [Yield, ctypes.c_void_p]),
    "shipped_file": (_text, [_text]),
    "import_chiller": (_int, [_object, _text, ctypes.POINTER(_text)]),
    "create_index": (_int, [_text]),
    "settle": (_int, []),
    "check": (_int, [_object, ctypes.POINTER(_text)]),
    "repair": (_int, [_object, _int, _int, ctypes.POINTER(_text)]),
    "open_database": (_int, [_text, ctypes.POINTER(_object)]),
    "execute": (_int, [_object, _text, ValuePointer, _int, _ints]),
    "query": (_int, [_object, _text, ValuePointer, _int, Row, ctypes.c_void_p]),
    "open_file": (_int, [_text, _int, ctypes.POINTER(ctypes.c_int16)]),
    "close_file": (_int, [ctypes.c_int16]),
    "drop_file": (_int, [ctypes.c_int16]),
    "file_position": (_int, [ctypes.c_int16, _ints]),
    "begin": (_int, []),
    "commit": (_int, []),
    "rollback": (_int, []),
}


def _load():
    beside = pathlib.Path(__file__).resolve().parent / "libtarn.so"
    path = os.environ.get("TARN_LIBRARY") or (str(beside) if beside.exists() else "libtarn.so")
    try:
        library = ctypes.CDLL(path)
    except OSError as cause:
        raise ImportError(f"The tarn library was not found ({cause}); set TARN_LIBRARY to its path.") from cause
    for name, (result, arguments) in _SIGNATURES.items():
        function = getattr(library, "tarn_" + name)
        function.restype, function.argtypes = result, arguments
    return library


library = _load()


class Error(Exception):
    """A failure handed over by the layer: number, source (class and member) and description."""

    def __init__(self, number, source, description):
        super().__init__(f"{source}: {description}" if source else description)
        self.number, self.source, self.description = number, source, description


caught = threading.local()  # .exceptions: raised by handlers while the library was calling them


def catch(exception):
    """Keeps a handler's exception, which cannot cross the library, until the call that led to it is back."""
    if not hasattr(caught, "exceptions"):
        caught.exceptions = []
    caught.exceptions.append(exception)


def check(status, handle=None):
    """Raises what a handler raised, else the error of a status that is not OK."""
    if getattr(caught, "exceptions", None):
        first = caught.exceptions[0]
        caught.exceptions.clear()
        raise first
    if status == OK:
        return
    source, description = _text(), _text()
    number = library.tarn_last_error(handle, ctypes.byref(source), ctypes.byref(description))
    raise Error(number, (source.value or b"").decode(), (description.value or b"").decode("utf-8", "replace"))
