"""Python classes made from the members tables: one for every class of the component, complete by construction."""

import array
import ctypes
import itertools
import math
import threading

from . import _library as c

_LARGEST_R4 = 3.4028234663852886e38
_BLOCK_CODES = {c.BOOLEAN: "h", c.INT16: "h", c.INT32: "i", c.REAL32: "f", c.REAL64: "d"}


class Member:
    """One member of a class, as `tarn.members` lists it."""

    def __init__(self, class_name, number):
        raw = c.Member()
        c.check(c.library.tarn_describe(class_name.encode(), number, ctypes.byref(raw)))
        self.number = number
        self.name, self.unit = raw.name.decode(), raw.unit.decode()
        self.kind, self.type = c.KIND_NAMES[raw.kind], c.TYPE_NAMES[raw.type]
        self.type_code = raw.type
        self.read_only, self.by_reference = bool(raw.read_only), bool(raw.by_reference)
        self.bounds = [self._part(class_name, c.Bounds, c.library.tarn_describe_bounds, i) for i in range(raw.bound_count)]
        self.bounds = [(b.first, b.last) for b in self.bounds]
        self.parameters = [self._part(class_name, c.Parameter, c.library.tarn_describe_parameter, i)
                           for i in range(raw.parameter_count)]

    def _part(self, class_name, shape, describe, i):
        part = shape()
        c.check(describe(class_name.encode(), self.number, i, ctypes.byref(part)))
        return part

    @property
    def elements(self):
        return math.prod(last - first + 1 for first, last in self.bounds)

    def __repr__(self):
        if self.kind != "property":
            names = ", ".join(("[" + p.name.decode() + "]") if p.optional else p.name.decode() for p in self.parameters)
            return f"{self.name}({names})" + (f" -> {self.type}" if self.type else "")
        bounds = "[" + ", ".join(f"{a}..{b}" for a, b in self.bounds) + "]" if self.bounds else ""
        unit = f" {self.unit}" if self.unit else ""
        return f"{self.name}{bounds}: {self.type}{unit}" + (" (read-only)" if self.read_only else "")


def to_c(value, keep):
    """A Python value as a tagged one; `keep` holds what must outlive the call."""
    out = c.Value()
    if value is None:
        out.type = c.EMPTY
    elif isinstance(value, bool):
        out.type, out.as_.boolean = c.BOOLEAN, value
    elif isinstance(value, int):
        if -2**31 <= value < 2**31:
            out.type, out.as_.i4 = c.INT32, value
        else:
            try:
                out.type, out.as_.r8 = c.REAL64, float(value)
            except OverflowError as cause:
                raise c.Error(6, "", f"Overflow: {cause}") from cause
    elif isinstance(value, float):
        out.type, out.as_.r8 = c.REAL64, value
    elif isinstance(value, str):
        data = value.encode("utf-8", "surrogatepass")
        buffer = ctypes.create_string_buffer(data, len(data) + 1)
        keep.append(buffer)
        out.type, out.length, out.as_.text = c.TEXT, len(data), ctypes.addressof(buffer)
    elif isinstance(value, (list, tuple, array.array)):
        reals = (ctypes.c_double * len(value))(*value)
        keep.append(reals)
        out.type, out.length, out.as_.reals = c.REALS, len(value), reals
    elif isinstance(value, Object):
        out.type, out.as_.object = c.OBJECT, value._handle
    else:
        raise TypeError(f"a {type(value).__name__} cannot be a member's value; give a number, Boolean, text, object or list of numbers")
    return out


def from_c(value):
    kind = value.type
    if kind == c.EMPTY:
        return None
    if kind == c.BOOLEAN:
        return bool(value.as_.boolean)
    if kind == c.INT16:
        return value.as_.i2
    if kind == c.INT32:
        return value.as_.i4
    if kind == c.REAL32:
        return value.as_.r4
    if kind == c.REAL64:
        return value.as_.r8
    if kind == c.TEXT:
        return ctypes.string_at(value.as_.text, value.length).decode("utf-8", "replace")
    if kind == c.REALS:
        return value.as_.reals[:value.length]
    return wrap(value.as_.object)


def _values(arguments, keep):
    return (c.Value * max(len(arguments), 1))(*[to_c(a, keep) for a in arguments])


def _subscripts(subscripts):
    for subscript in subscripts:
        if not -2**31 <= subscript < 2**31:
            raise c.Error(9, "", f"Subscript out of range: {subscript}")
    return (ctypes.c_int32 * max(len(subscripts), 1))(*subscripts), len(subscripts)


class _Array:
    """An indexed property: `[1]`, `[1, 24]`, and `[:]` for all of it as a (nested) list, the first subscript outermost."""

    def __init__(self, owner, member):
        self._owner, self._member = owner, member

    def __getitem__(self, at):
        if at == slice(None):
            return self._whole()
        return self._owner._get(self._member, self._subscripts(at))

    def __setitem__(self, at, value):
        if at == slice(None):
            self._set_whole(value)
        else:
            self._owner._let(self._member, self._subscripts(at), value)

    def _subscripts(self, at):
        at = at if isinstance(at, tuple) else (at,)
        if any(isinstance(each, slice) for each in at):
            raise TypeError(f"{self._member.name}: [:] takes the whole array; there are no slices of a part of it")
        return at

    def __len__(self):
        return self._member.elements

    def __iter__(self):
        return iter(self._whole())

    def __repr__(self):
        return repr(self._whole())

    def _places(self):
        return itertools.product(*[range(first, last + 1) for first, last in self._member.bounds])

    def _block(self):
        code = _BLOCK_CODES.get(self._member.type_code)
        return array.array(code, bytes(array.array(code).itemsize * self._member.elements)) if code else None

    def _sizes(self):
        return [last - first + 1 for first, last in self._member.bounds]

    def _whole(self):
        member, block = self._member, self._block()
        if block is None:
            return _nested([self[at] for at in self._places()], self._sizes())
        address, _ = block.buffer_info()
        size = len(block) * block.itemsize
        if c.library.tarn_get_block(self._owner._handle, member.number, address, size) != c.OK:
            return _nested([self[at] for at in self._places()], self._sizes())
        flat = [v != 0 for v in block] if member.type_code == c.BOOLEAN else block.tolist()
        return _from_first_fastest(flat, self._sizes())

    def _set_whole(self, values):
        sizes = self._sizes()
        _check_shape(values, sizes, self._member.name)
        block = self._filled(values, sizes)
        if block is None:
            self._set_each(values)
            return
        address, _ = block.buffer_info()
        c.check(c.library.tarn_let_block(self._owner._handle, self._member.number, address, len(block) * block.itemsize),
                self._owner._handle)

    def _set_each(self, values):
        """Every element by its own setting; a failure puts the old ones back."""
        before = self._whole()
        try:
            for at in self._places():
                self[at] = _at(values, at, self._member.bounds)
        except Exception:
            for at in self._places():
                self[at] = _at(before, at, self._member.bounds)
            raise

    def _filled(self, values, sizes):
        """The values as a block; None where one of them needs the care of an element's own setting."""
        block = self._block()
        if block is None:
            return None
        flat = _to_first_fastest(values, sizes)
        if block.typecode == "f" and any(_LARGEST_R4 < abs(v) < math.inf for v in flat):
            return None
        try:
            return array.array(block.typecode, [-int(bool(v)) for v in flat] if self._member.type_code == c.BOOLEAN else flat)
        except (OverflowError, TypeError):
            return None


def _nested(flat, sizes):
    """A list with the last subscript fastest, nested."""
    for size in reversed(sizes[1:]):
        flat = [flat[i:i + size] for i in range(0, len(flat), size)]
    return flat


def _from_first_fastest(flat, sizes):
    if len(sizes) == 1:
        return flat
    return [_from_first_fastest(flat[i::sizes[0]], sizes[1:]) for i in range(sizes[0])]


def _to_first_fastest(values, sizes):
    if len(sizes) == 1:
        return list(values)
    inner = [_to_first_fastest(v, sizes[1:]) for v in values]
    return [v for row in zip(*inner) for v in row]


def _check_shape(values, sizes, name):
    if not isinstance(values, (list, tuple, array.array)) or len(values) != sizes[0]:
        raise ValueError(f"{name} takes a list of {' x '.join(map(str, sizes))} values")
    if len(sizes) > 1:
        for inner in values:
            _check_shape(inner, sizes[1:], name)


def _at(values, at, bounds):
    for subscript, (first, _) in zip(at, bounds):
        values = values[subscript - first]
    return values


class Object:
    """An object of the component. Names of members are found without regard to case."""

    __slots__ = ("_handle", "_listeners", "_thread", "__weakref__")
    _members = {}
    _orphans = {}  # handles by the thread that must release them, of objects that ended on another

    def __init__(self, *, _handle=None):
        object.__setattr__(self, "_listeners", {})
        object.__setattr__(self, "_thread", threading.get_ident())
        enter_thread()
        if _handle is None:
            place = ctypes.c_void_p()
            object.__setattr__(self, "_handle", None)
            c.check(c.library.tarn_create(type(self).__name__.encode(), ctypes.byref(place)))
            _handle = place.value
        object.__setattr__(self, "_handle", _handle)

    def __del__(self):
        if getattr(self, "_handle", None) is None or c is None:
            return
        if threading.get_ident() == self._thread:
            c.library.tarn_release(self._handle)
        else:
            Object._orphans.setdefault(self._thread, []).append(self._handle)

    def __getattr__(self, name):
        member = type(self)._members.get(name.lower())
        if member is None:
            raise AttributeError(f"{type(self).__name__} has no member {name}")
        return self._read(member)

    def __setattr__(self, name, value):
        member = type(self)._members.get(name.lower())
        if member is None:
            raise AttributeError(f"{type(self).__name__} has no member {name}")
        if member.kind == "event":
            self._listen(member, value)
        elif member.kind == "method":
            raise AttributeError(f"{type(self).__name__}.{member.name} is a method")
        elif member.bounds:
            _Array(self, member)[:] = value
        else:
            self._let(member, (), value)

    def __dir__(self):
        return sorted([m.name for m in type(self)._members.values()] + ["__class__", "__doc__"])

    def __repr__(self):
        return f"<tarn.{type(self).__name__}>"

    def _read(self, member):
        if member.kind == "method":
            def method(*arguments, **named):
                return self._call(member, arguments, named)
            method.__name__, method.__doc__ = member.name, repr(member)
            return method
        if member.kind == "event":
            return self._listeners.get(member.name, (None, None))[0]
        return _Array(self, member) if member.bounds else self._get(member, ())

    def _get(self, member, subscripts):
        out = c.Value()
        c.check(c.library.tarn_get(self._handle, member.number, *_subscripts(subscripts), ctypes.byref(out)), self._handle)
        return from_c(out)

    def _let(self, member, subscripts, value):
        keep = []
        value = to_c(value, keep)
        c.check(c.library.tarn_let(self._handle, member.number, *_subscripts(subscripts), ctypes.byref(value)), self._handle)

    def _call(self, member, arguments, named):
        places = {p.name.decode().lower(): i for i, p in enumerate(member.parameters)}
        if len(arguments) > len(places):
            raise TypeError(f"{member.name} takes at most {len(places)} arguments")
        filled = list(arguments) + [None] * (len(places) - len(arguments))
        for name, value in named.items():
            if name.lower() not in places:
                raise TypeError(f"{member.name} has no argument {name}")
            filled[places[name.lower()]] = value
        keep, result = [], c.Value()
        values = _values(filled, keep)
        c.check(c.library.tarn_call(self._handle, member.number, values, len(filled), ctypes.byref(result)), self._handle)
        back = [from_c(result)] if member.type_code != c.EMPTY else []
        back += [from_c(values[i]) for i, p in enumerate(member.parameters) if p.in_out]
        return tuple(back) if len(back) > 1 else back[0] if back else None

    def _listen(self, member, handler):
        if handler is None:
            c.check(c.library.tarn_listen(self._handle, member.number, c.Listener(0), None), self._handle)
            self._listeners.pop(member.name, None)
            return

        keep = []  # texts of the answer, which the library reads after the handler is back

        def forward(_context, values, count):
            try:
                answer = handler(*[from_c(values[i]) for i in range(count)])
                answers = answer if isinstance(answer, tuple) else () if answer is None else (answer,)
                if len(answers) > count:
                    raise TypeError(f"the handler of {member.name} answered {len(answers)} values, at most {count}")
                keep.clear()
                for i, new in enumerate(answers):
                    values[i] = to_c(new, keep)
                return 0
            except BaseException as exception:
                c.catch(exception)
                return 1

        callback = c.Listener(forward)
        c.check(c.library.tarn_listen(self._handle, member.number, callback, None), self._handle)
        self._listeners[member.name] = (handler, callback)  # the callback must live as long as it may be called


class Database(Object):
    """The shared handle of an open index database."""

    __slots__ = ()

    def execute(self, sql, *parameters):
        """Runs a statement of the client's own; returns the number of rows changed."""
        keep, changed = [], ctypes.c_int32()
        c.check(c.library.tarn_execute(self._handle, sql.encode(), _values(parameters, keep), len(parameters),
                                       ctypes.byref(changed)), self._handle)
        return changed.value

    def rows(self, sql, *parameters):
        """The rows of a query, each a dict of column names and values."""
        keep, found = [], []

        def row(_context, names, values, count):
            try:
                found.append({names[i].decode(): from_c(values[i]) for i in range(count)})
            except BaseException as exception:
                c.catch(exception)

        c.check(c.library.tarn_query(self._handle, sql.encode(), _values(parameters, keep), len(parameters), c.Row(row), None),
                self._handle)
        return found


class Collection(Object):
    """What has `Count` and `Item`: `list(...)`, `len(...)` and `in` work too."""

    __slots__ = ()

    def __len__(self):
        return self.Count

    def __iter__(self):
        listed = self.NewEnum if "newenum" in type(self)._members else self  # keyed ones list themselves in their order
        return (listed.Item(i) for i in range(1, listed.Count + 1))

    def __repr__(self):
        return repr(list(self))


classes = {"Database": Database}
_threads = threading.local()
on_thread = []  # what a thread does before its first object: set by the package


def enter_thread():
    """A thread's first steps, and the release of its objects that ended elsewhere."""
    if not hasattr(_threads, "entered"):
        _threads.entered = True
        for step in on_thread:
            step()
    for handle in Object._orphans.pop(threading.get_ident(), ()):
        c.library.tarn_release(handle)


def _make(class_name):
    count = c.library.tarn_member_count(class_name.encode())
    members = [Member(class_name, i) for i in range(count)]

    def descriptor(member):
        def write(self, value):
            Object.__setattr__(self, member.name, value)
        return property(lambda self: self._read(member), write, doc=repr(member))

    space = {m.name: descriptor(m) for m in members}
    space["__slots__"] = ()
    space["__doc__"] = f"{class_name}: " + ", ".join(m.name for m in members)
    space["_members"] = {m.name.lower(): m for m in members}
    classes[class_name] = type(class_name, (Collection if {"count", "item"} <= space["_members"].keys() else Object,), space)


for _number in range(c.library.tarn_class_count()):
    _make(c.library.tarn_class_name(_number).decode())


def wrap(handle):
    """The Python object of a handle that the library handed out."""
    if not handle:
        return None
    return classes[c.library.tarn_class_of(handle).decode()](_handle=handle)


def find_class(name):
    for class_name, made in classes.items():
        if class_name.lower() == name.lower():
            return made
    return None
