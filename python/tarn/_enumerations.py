"""The enumerations of the interface as classes, made from what the library tells of them."""

import ctypes
import enum

from . import _library as c


class Enumeration(enum.IntEnum):
    """Codes by name. A name that is no identifier is reached as `tarn.AS_COTriggers["10. Scheduled"]`."""

    @property
    def text(self):
        """What a person reads; the name where the code has no text."""
        return type(self)._texts[self.value] or self.name


def _make(name):
    codes = []
    for number in range(c.library.tarn_code_count(name.encode())):
        code = c.Code()
        c.check(c.library.tarn_describe_code(name.encode(), number, ctypes.byref(code)))
        codes.append((code.name.decode(), code.value, code.text.decode()))
    made = Enumeration(name, [(label, value) for label, value, _ in codes], module="tarn")
    made._texts = {value: text for _, value, text in reversed(codes)}  # of two names with one value, the first one's
    return made


enumerations = {made.__name__: made for made in
                (_make(c.library.tarn_enumeration_name(i).decode()) for i in range(c.library.tarn_enumeration_count()))}
