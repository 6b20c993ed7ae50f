"""The promised layout of the exported classes: reads the table, and proves that it holds
together.  layout.txt explains its format."""

import re
from dataclasses import dataclass, field

FREE = "free"
POINTER_SIZE = 8
VTABLE_HEAD = 16  # offset to top and type information, before the first slot

# Width and alignment of the types the table may name without declaring them.
KNOWN_TYPES = {
    "bool": (1, 1), "int8": (1, 1), "uint8": (1, 1), "int16": (2, 2), "uint16": (2, 2),
    "int32": (4, 4), "uint32": (4, 4), "int64": (8, 8), "uint64": (8, 8),
    "float": (4, 4), "double": (8, 8), "string": (32, 8), "pointer": (8, 8),
    "vector": (24, 8), "vector<bool>": (40, 8), "map": (48, 8), "set": (48, 8),
}


class Unusable(Exception):
    """The table or a library is not fit for a comparison."""


@dataclass
class Field:
    offset: int
    size: int
    type: str
    name: str  # None when any name will do
    meaning: str = ""

    def label(self):
        return self.name or self.meaning


@dataclass
class Virtual:
    slot: int
    name: str
    is_const: bool = False

    def __str__(self):
        return self.name + (" const" if self.is_const else "")


DESTRUCTOR = "destructor"


@dataclass
class Class:
    """One class, as promised by the table or as found in the debug information."""

    name: str
    line: int = 0
    base: str = None  # None: no base; FREE: any
    size: object = None  # a number of bytes, or FREE
    fields: list = field(default_factory=list)
    fields_open: bool = False  # further ones may follow
    virtuals: list = field(default_factory=list)
    virtuals_open: bool = False


@dataclass
class Enum:
    name: str
    line: int = 0
    size: int = None
    values: list = field(default_factory=list)
    values_open: bool = False


class TableReader:
    """Reads the table's text into a dictionary of Class and Enum by name."""

    def __init__(self, path):
        self.path = path
        self.entries = {}
        self.entry = None
        self.number = 0

    def fail(self, message):
        raise Unusable(f"{self.path}:{self.number}: {message}")

    def read(self):
        try:
            with open(self.path, encoding="utf-8") as text:
                lines = text.readlines()
        except OSError as error:
            raise Unusable(f"{self.path}: {error.strerror}") from error
        for self.number, line in enumerate(lines, start=1):
            words = line.split("#")[0].split()
            if not words:
                continue
            try:
                self.read_line(words[0], words[1:])
            except (ValueError, IndexError):
                self.fail(f"cannot read {line.strip()!r}")
        if not self.entries:
            self.fail("no class in the table")
        return self.entries

    def read_line(self, keyword, words):
        if keyword in ("class", "enum"):
            self.start(Class if keyword == "class" else Enum, *words)
        elif self.entry is None:
            self.fail(f"{keyword!r} before the first class")
        elif keyword == "size":
            self.entry.size = FREE if words == [FREE] else int(*words)
        elif keyword == "values" and isinstance(self.entry, Enum):
            self.entry.values_open = words[-1] == "open"
            self.entry.values = [int(word) for word in words if word != "open"]
        elif keyword == "base" and isinstance(self.entry, Class):
            (self.entry.base,) = words
        elif keyword == "field" and isinstance(self.entry, Class):
            self.read_field(words)
        elif keyword == "virtual" and isinstance(self.entry, Class):
            self.read_virtual(words)
        else:
            self.fail(f"unexpected {keyword!r}")

    def start(self, kind, name):
        if name in self.entries:
            self.fail(f"{name} a second time")
        self.entry = self.entries[name] = kind(name, self.number)

    def read_field(self, words):
        if words in ([FREE], ["open"]):
            self.entry.fields_open = True
            return
        offset, size, kind, name = words[:4]
        self.entry.fields.append(Field(int(offset), int(size), kind,
                                       None if name == "-" else name, " ".join(words[4:])))

    def read_virtual(self, words):
        if words in ([FREE], ["open"]):
            self.entry.virtuals_open = True
            return
        slots, name, *qualifiers = words
        if name == DESTRUCTOR:
            first, last = slots.split("-")
            if int(last) != int(first) + 1:
                self.fail("a virtual destructor takes two slots")
            self.entry.virtuals.append(Virtual(int(first), DESTRUCTOR))
            return
        if qualifiers not in ([], ["const"]):
            self.fail(f"unexpected {qualifiers}")
        self.entry.virtuals.append(Virtual(int(slots), name, bool(qualifiers)))


def slots_taken(virtual):
    return 2 if virtual.name == DESTRUCTOR else 1


class ProofReader:
    """Works the table's offsets, sizes and slots out again from its own types, so
    that a slip of the pen is not taken for a promise."""

    def __init__(self, path, entries):
        self.path = path
        self.entries = entries

    def check(self):
        for entry in self.entries.values():
            if entry.size is None:
                self.fail(entry, "no size")
            if isinstance(entry, Class):
                self.check_slots(entry)
                self.check_fields(entry)

    def fail(self, entry, message):
        raise Unusable(f"{self.path}:{entry.line}: {entry.name}: {message}")

    def base_of(self, entry):
        """The base's entry, or None when there is none to reckon with."""
        if entry.base in (None, FREE):
            return None
        base = self.entries.get(entry.base)
        if not isinstance(base, Class):
            self.fail(entry, f"base {entry.base} is not in the table")
        return base

    def check_slots(self, entry):
        base = self.base_of(entry)
        expected = slot_count(base, self.entries) if base else 0
        for virtual in entry.virtuals:
            if virtual.slot != expected:
                self.fail(entry, f"{virtual} should be in slot {expected}")
            expected += slots_taken(virtual)

    def check_fields(self, entry):
        if entry.fields_open and not entry.fields:
            return
        end = self.start_of_fields(entry)
        alignment = POINTER_SIZE if end else 1
        for item in entry.fields:
            size, item_alignment = self.measure(entry, item.type)
            alignment = max(alignment, item_alignment)
            offset = round_up(end, item_alignment)
            if (item.offset, item.size) != (offset, size):
                self.fail(entry, f"{item.label()} at {item.offset} of {item.size} bytes:"
                                 f" reckoned {offset} and {size}")
            end = offset + size
        if entry.size != FREE and not entry.fields_open:
            size = max(1, round_up(end, alignment))
            if entry.size != size:
                self.fail(entry, f"size {entry.size}: reckoned {size}")

    def start_of_fields(self, entry):
        base = self.base_of(entry)
        if base:
            return base.fields[-1].offset + base.fields[-1].size if base.fields else base.size
        return POINTER_SIZE if entry.virtuals else 0

    def measure(self, entry, kind):
        """(width, alignment) of a type of the table."""
        array = re.fullmatch(r"(.+)\[(\d+)\]", kind)
        if array:
            size, alignment = self.measure(entry, array[1])
            return size * int(array[2]), alignment
        if kind in KNOWN_TYPES:
            return KNOWN_TYPES[kind]
        if kind in self.entries:
            other = self.entries[kind]
            if isinstance(other, Enum):
                return other.size, other.size
            alignments = [self.measure(other, item.type)[1] for item in other.fields]
            has_table = slot_count(other, self.entries) > 0
            return other.size, max(alignments + [POINTER_SIZE if has_table else 1])
        template = kind.split("<")[0]
        if "<" in kind and template in KNOWN_TYPES:
            return KNOWN_TYPES[template]
        self.fail(entry, f"unknown type {kind}")
        return None


def round_up(value, alignment):
    return -(-value // alignment) * alignment


def virtuals_with_base(entry, entries):
    """The class's virtual operations, those promised by its bases first."""
    base = entries.get(entry.base)
    return (virtuals_with_base(base, entries) if base else []) + entry.virtuals


def slot_count(entry, entries):
    return sum(slots_taken(virtual) for virtual in virtuals_with_base(entry, entries))
