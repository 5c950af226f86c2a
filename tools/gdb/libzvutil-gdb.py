"""Shows the texts behind libzvutil's handles in GDB.

GDB loads this by itself with the library, beside which it is installed, if its auto-load safe path
covers that folder:  add-auto-load-safe-path PREFIX/lib

The implementations are hidden, so this reads their memory and needs no debug information of the
library: each begins with a string of the standard library, whose first two words are the address
and the number of the units.
"""

import gdb
import gdb.printing

MOVED_FROM = '<moved from>'


def word(address):
    size = gdb.lookup_type('void').pointer().sizeof
    return int.from_bytes(gdb.selected_inferior().read_memory(address, size).tobytes(), 'little')


def units_at(implementation, width):
    """The bytes of the string that an implementation begins with."""
    address = word(implementation)
    count = word(implementation + gdb.lookup_type('void').pointer().sizeof)
    if count == 0:
        return b''
    return gdb.selected_inferior().read_memory(address, count * width).tobytes()


def decoded(units, width):
    if width == 1:
        return units.decode('utf-8', 'backslashreplace')
    if width == 4:
        values = [int.from_bytes(units[i:i + 4], 'little') for i in range(0, len(units), 4)]
        if any(value > 0xFFFF for value in values):
            return ''.join(map(chr, values))
        # One 16-bit unit lies in each.
        units = b''.join(value.to_bytes(2, 'little') for value in values)
    return units.decode('utf-16-le', 'replace')


class TextPrinter:
    """A handle whose implementation begins with a string of units of some width."""

    def __init__(self, holder, width):
        self.implementation = int(holder['m_implementation'])
        self.width = width

    def to_string(self):
        if self.implementation == 0:
            return MOVED_FROM
        text = decoded(units_at(self.implementation, self.width), self.width)
        # In C's notation, so that a NUL or a quote in the text shows.
        return '"' + text.replace('\\', '\\\\').replace('"', '\\"').replace('\0', '\\0') + '"'


def file_path(value):
    return TextPrinter(value['m_impl'], gdb.lookup_type('wchar_t').sizeof)


def basic_string(value):
    return TextPrinter(value['m_impl'], value.type.strip_typedefs().template_argument(0).sizeof)


def uri(value):
    # The holder is the base class.
    return TextPrinter(value[value.type.strip_typedefs().fields()[0]], 1)


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter('libzvutil')
    collection.add_printer('ZvFilePath', '^zvutil::ZvFilePath$', file_path)
    collection.add_printer('ZvBasicString', '^zvutil::ZvBasicString<.*>$', basic_string)
    collection.add_printer('uri', '^zvutil::uri$', uri)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
