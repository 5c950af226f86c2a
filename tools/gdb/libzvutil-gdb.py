"""Shows what is behind libzvutil's handles in GDB: texts, and the sizes of tables.

GDB loads this by itself with the library, beside which it is installed, if its auto-load safe path
covers that folder:  add-auto-load-safe-path PREFIX/lib

The implementations are hidden, so this reads their memory and needs no debug information of the
library: all but a table's begin with a string of the standard library, some behind a virtual table,
or as one does: its first two words are the address and the number of its units.
"""

import gdb
import gdb.printing

MOVED_FROM = '<moved from>'


def pointer_size():
    return gdb.lookup_type('void').pointer().sizeof


def word(address):
    memory = gdb.selected_inferior().read_memory(address, pointer_size())
    return int.from_bytes(memory.tobytes(), 'little')


def units_at(string, width):
    """The bytes of a string of the standard library."""
    count = word(string + pointer_size())
    if count == 0:
        return b''
    return gdb.selected_inferior().read_memory(word(string), count * width).tobytes()


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
    """A string of units of some width at an address, which is 0 if there is none."""

    def __init__(self, string, width):
        self.string = string
        self.width = width

    def to_string(self):
        if self.string == 0:
            return MOVED_FROM
        text = decoded(units_at(self.string, self.width), self.width)
        # In C's notation, so that a NUL or a quote in the text shows.
        return '"' + text.replace('\\', '\\\\').replace('"', '\\"').replace('\0', '\\0') + '"'


def implementation(holder):
    return int(holder['m_implementation'])


def behind_vtable(address):
    return address + pointer_size() if address else 0


def file_path(value):
    return TextPrinter(implementation(value['m_impl']), gdb.lookup_type('wchar_t').sizeof)


def basic_string(value):
    width = value.type.strip_typedefs().template_argument(0).sizeof
    return TextPrinter(implementation(value['m_impl']), width)


def base(value):
    return value[value.type.strip_typedefs().fields()[0]]


def uri(value):
    return TextPrinter(implementation(base(value)), 1)


def uri_handle(value):
    # The implementation is a uri: a virtual table and a pointer to what begins with the text.
    holder = behind_vtable(implementation(value['m_impl']))
    return TextPrinter(word(holder) if holder else 0, 1)


def identifier(value):
    return TextPrinter(int(value['m_text'].address), 1)


def identifier_handle(value):
    return TextPrinter(implementation(value['m_impl']), 1)


def appendable(value):
    return TextPrinter(behind_vtable(implementation(base(value))), 1)


def wide_appendable(value):
    width = gdb.lookup_type('wchar_t').sizeof
    return TextPrinter(behind_vtable(implementation(base(value))), width)


class TablePrinter:
    """The size of a table, whose vector of cells lies before the numbers of rows and columns."""

    def __init__(self, value):
        self.implementation = implementation(value)

    def to_string(self):
        if self.implementation == 0:
            return '<no storage>'
        sizes = self.implementation + 3 * pointer_size()
        return '%d rows, %d columns' % (word(sizes), word(sizes + 8))


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter('libzvutil')
    collection.add_printer('ZvFilePath', '^zvutil::ZvFilePath$', file_path)
    collection.add_printer('ZvBasicString', '^zvutil::ZvBasicString<.*>$', basic_string)
    collection.add_printer('uri', '^zvutil::uri$', uri)
    collection.add_printer('ZvURI', '^ZvURI$', uri_handle)
    collection.add_printer('uuid', '^zvutil::uuid$', identifier)
    collection.add_printer('ZvUUID', '^zvutil::ZvUUID$', identifier_handle)
    collection.add_printer('ZvString', '^libzvutil::ZvString$', appendable)
    collection.add_printer('ZvWString', '^libzvutil::ZvWString$', wide_appendable)
    collection.add_printer('ZvTable', '^ZvTable$', TablePrinter)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
