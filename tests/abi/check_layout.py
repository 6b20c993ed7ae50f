#!/usr/bin/python3
"""Compares the classes of built shared libraries with the promised layout.

    check_layout.py [--table FILE] LIBRARY...

The libraries must have been built with -g.  FILE (default: layout.txt beside
this script, which also explains its format) tells for each exported class its
size, base, fields and virtual slots; this script reads what the compiler made of
them from the DWARF debug information, by gcc or by clang, and the number of
slots also from the size of the virtual table itself.

Exit status: 0 all fits; 1 differences, one line each; 2 the table is wrong in
itself, or a library cannot be read or has no debug information.

Needs python3-pyelftools.
"""

import argparse
import os
import re
import sys
from dataclasses import dataclass

try:
    from elftools.common.exceptions import DWARFError, ELFError
    from elftools.elf.elffile import ELFFile
    from elftools.elf.sections import SymbolTableSection
except ImportError:
    print("check_layout: no module 'elftools'; install python3-pyelftools and run"
          " /usr/bin/python3", file=sys.stderr)
    sys.exit(2)

from layouttable import (Class, DESTRUCTOR, Enum, Field, FREE, POINTER_SIZE, ProofReader,
                         slot_count, slots_taken, TableReader, Unusable, Virtual,
                         virtuals_with_base, VTABLE_HEAD)

FITS, DIFFERS, CANNOT_TELL = 0, 1, 2

# ---- The fact: the debug information ----

# DWARF's numbers for the encodings of base types.
BASE_TYPE_KINDS = {2: "bool", 4: "float", 5: "int", 6: "int", 7: "uint", 8: "uint", 16: "char"}

DEBUG_SECTIONS = (".debug_info", ".zdebug_info")

DW_OP_CONSTU, DW_OP_LIT0, DW_OP_PLUS_UCONST = 0x10, 0x30, 0x23
DW_ACCESS_PUBLIC = 1

CLASS_TAGS = ("DW_TAG_class_type", "DW_TAG_structure_type")
INDIRECTION_TAGS = ("DW_TAG_pointer_type", "DW_TAG_reference_type",
                    "DW_TAG_rvalue_reference_type")
# Templates of the standard library: the table's word for each, and how many of its
# arguments the table gives.
TEMPLATES = {"unique_ptr": ("pointer", 1), "vector": ("vector", 1), "set": ("set", 1),
             "map": ("map", 2)}
INTEGER_WORDS = {"signed", "unsigned", "char", "short", "int", "long"}

TRANSPARENT_TAGS = ("DW_TAG_const_type", "DW_TAG_volatile_type", "DW_TAG_typedef")


@dataclass
class Found:
    """A definition, with where it was met, for the messages."""

    entry: object
    unit: str
    vtable_slots: int = None  # from the virtual table itself, None when there is none


class Library:
    """The definitions, in one library, of the classes and enumerations wanted."""

    def __init__(self, path, wanted):
        self.path = path
        self.wanted = wanted
        # A namespace or class is entered only on the way to something wanted.
        self.scopes = {name[:cut.start()] for name in wanted for cut in re.finditer("::", name)}
        self.names = {}  # qualified name by position, of what the walk has passed

    def read(self):
        """The definitions, as a list of Found."""
        try:
            with open(self.path, "rb") as stream:
                elf = ELFFile(stream)
                if not any(elf.get_section_by_name(name) for name in DEBUG_SECTIONS):
                    raise Unusable(f"{self.path}: no debug information; build with -g")
                tables = vtable_sizes(elf)
                found = self.definitions(elf.get_dwarf_info())
        except OSError as error:
            raise Unusable(f"{self.path}: {error.strerror}") from error
        except (ELFError, DWARFError) as error:
            raise Unusable(f"{self.path}: {error}") from error
        except KeyError as error:  # an abbreviation, form or tag that does not exist
            raise Unusable(f"{self.path}: debug information of a kind not understood here;"
                           " build without -fdebug-types-section") from error
        for item in found:
            size = tables.get("_ZTV" + mangled(item.entry.name))
            if size is not None:
                item.vtable_slots = (size - VTABLE_HEAD) // POINTER_SIZE
        return found

    def definitions(self, dwarf):
        tops = [unit.get_top_DIE() for unit in dwarf.iter_CUs()]
        # The walk is over before any type is named, which may be one of another unit.
        places = [(top, *place) for top in tops for place in self.walk(top, "")]
        return [Found(self.enum(die, name) if is_enum(die) else self.class_(die, name),
                      text_of(top, "DW_AT_name")) for top, die, name in places]

    def walk(self, parent, prefix):
        """Yields (die, name) of each definition wanted under `parent`."""
        for die in parent.iter_children():
            is_type = die.tag in CLASS_TAGS or is_enum(die)
            if not is_type and die.tag != "DW_TAG_namespace":
                continue
            if "DW_AT_name" not in die.attributes:
                continue
            name = prefix + text_of(die, "DW_AT_name")
            if is_type:
                self.names[die.offset] = name
                if name in self.wanted and "DW_AT_declaration" not in die.attributes:
                    yield die, name
            if name in self.scopes:
                yield from self.walk(die, name + "::")

    def enum(self, die, name):
        values = [child.attributes["DW_AT_const_value"].value for child in die.iter_children()
                  if child.tag == "DW_TAG_enumerator"]
        return Enum(name, size=size_of(die), values=sorted(set(values)))

    def class_(self, die, name):
        entry = Class(name, size=size_of(die))
        bases = []
        for child in die.iter_children():
            if child.tag == "DW_TAG_inheritance":
                bases.append(self.base(child, is_class=die.tag == "DW_TAG_class_type"))
            elif child.tag == "DW_TAG_member":
                self.add_field(entry, child)
            elif child.tag == "DW_TAG_subprogram" and "DW_AT_virtuality" in child.attributes:
                if "DW_AT_artificial" not in child.attributes:
                    entry.virtuals.append(virtual(child))
        entry.base = " and ".join(bases) or None
        return entry

    def base(self, die, is_class):
        name = self.type_name(type_of(die))
        access = die.attributes.get("DW_AT_accessibility")
        if access.value != DW_ACCESS_PUBLIC if access else is_class:
            name = "not public " + name
        if "DW_AT_virtuality" in die.attributes:
            return "virtual " + name
        offset = offset_of(die)
        return name if offset == 0 else f"{name} at offset {offset}"

    def add_field(self, entry, die):
        is_static = "DW_AT_external" in die.attributes or "DW_AT_declaration" in die.attributes
        is_vptr = text_of(die, "DW_AT_name").startswith("_vptr")
        if is_static or is_vptr:
            return
        kind = self.type_name(type_of(die))
        if "DW_AT_bit_size" in die.attributes:
            kind += f":{die.attributes['DW_AT_bit_size'].value}"  # as C++ writes a bit-field
        entry.fields.append(Field(offset_of(die), size_of(type_of(die)), kind,
                                  text_of(die, "DW_AT_name")))

    def type_name(self, die):
        """The type in the table's words; classes by their qualified names."""
        die = stripped(die)
        if die is None:
            return "void"
        if die.tag == "DW_TAG_base_type":
            return base_type_name(die)
        if die.tag in INDIRECTION_TAGS:
            return f"pointer<{self.type_name(type_of(die))}>"
        if die.tag == "DW_TAG_array_type":
            return self.type_name(type_of(die)) + "".join(f"[{n}]" for n in extents(die))
        # A template's arguments are read off its name: a unit that only declares the
        # type gives no other account of them.
        return in_table_words(self.names.get(die.offset) or text_of(die, "DW_AT_name")) or die.tag


def in_table_words(text):
    """The name of a type, as either compiler spells it, as the table would have it."""
    text = re.sub(r"\bconst\b", "", text).strip()
    if text.endswith(("*", "&")):
        return f"pointer<{in_table_words(text[:-1])}>"
    name, _, arguments = text.partition("<")
    template = name.split("::")[-1]
    if template == "basic_string":
        return "string"
    if arguments and template in TEMPLATES:
        word, used = TEMPLATES[template]
        arguments = split_arguments(arguments.rstrip()[:-1])[:used]
        return f"{word}<{','.join(in_table_words(argument) for argument in arguments)}>"
    words = text.split()
    if words and set(words) <= INTEGER_WORDS:
        width = ("64" if "long" in words else "16" if "short" in words
                 else "8" if "char" in words else "32")
        return ("uint" if "unsigned" in words else "int") + width
    return text


def split_arguments(text):
    """Splits at the commas that stand outside all brackets."""
    parts, depth = [""], 0
    for letter in text:
        depth += (letter in "<(") - (letter in ">)")
        if letter == "," and depth == 0:
            parts.append("")
        else:
            parts[-1] += letter
    return parts


def is_enum(die):
    return die.tag == "DW_TAG_enumeration_type"


def text_of(die, attribute):
    value = die.attributes.get(attribute)
    return value.value.decode("utf-8", "replace") if value else ""


def type_of(die):
    return die.get_DIE_from_attribute("DW_AT_type") if "DW_AT_type" in die.attributes else None


def stripped(die):
    """The type without const, volatile and typedef names; None is void."""
    while die is not None and die.tag in TRANSPARENT_TAGS:
        die = type_of(die)
    return die


def size_of(die):
    """Bytes in a type; None when the unit only declares it."""
    die = stripped(die)
    if die is None:
        return None
    if "DW_AT_byte_size" in die.attributes:
        return die.attributes["DW_AT_byte_size"].value
    if die.tag in INDIRECTION_TAGS:
        return POINTER_SIZE
    if die.tag == "DW_TAG_array_type":
        size = size_of(type_of(die))
        for extent in extents(die):
            size *= extent
        return size
    return None


def extents(die):
    for child in die.iter_children():
        if child.tag == "DW_TAG_subrange_type":
            attributes = child.attributes
            if "DW_AT_count" in attributes:
                yield attributes["DW_AT_count"].value
            elif "DW_AT_upper_bound" in attributes:
                yield attributes["DW_AT_upper_bound"].value + 1
            else:
                yield 0


def base_type_name(die):
    kind = BASE_TYPE_KINDS.get(die.attributes["DW_AT_encoding"].value, "unknown")
    bits = 8 * size_of(die)
    if kind == "float":
        return {32: "float", 64: "double"}.get(bits, f"float{bits}")
    return kind if kind == "bool" else f"{kind}{bits}"


def offset_of(die):
    """Where a member or base stands: a plain number, or (base + number)."""
    attribute = die.attributes.get("DW_AT_data_member_location")
    if attribute is None:
        bits = die.attributes.get("DW_AT_data_bit_offset")
        return bits.value // 8 if bits else 0
    if isinstance(attribute.value, int):
        return attribute.value
    if attribute.value[0] == DW_OP_PLUS_UCONST:
        return uleb128(attribute.value[1:])
    return None  # a virtual base: its place is looked up at run time


def uleb128(octets):
    value = 0
    for place, octet in enumerate(octets):
        value |= (octet & 0x7F) << (7 * place)
        if octet < 0x80:
            break
    return value


def virtual(die):
    name = text_of(die, "DW_AT_name")
    if name.startswith("~"):
        return Virtual(None, DESTRUCTOR)  # clang gives every destructor slot 0
    return Virtual(slot_of(die), name, is_const_operation(die))


def slot_of(die):
    if "DW_AT_vtable_elem_location" not in die.attributes:
        return None
    octets = die.attributes["DW_AT_vtable_elem_location"].value
    if octets[0] == DW_OP_CONSTU:
        return uleb128(octets[1:])
    return octets[0] - DW_OP_LIT0 if octets[0] >= DW_OP_LIT0 else None


def is_const_operation(die):
    """Whether the hidden first parameter points to a const object."""
    for child in die.iter_children():
        if child.tag == "DW_TAG_formal_parameter" and "DW_AT_artificial" in child.attributes:
            target = type_of(stripped(type_of(child)))
            return target.tag == "DW_TAG_const_type"
    return False


def vtable_sizes(elf):
    """Bytes in each virtual table that the library defines, by symbol."""
    sizes = {}
    for section in elf.iter_sections():
        if isinstance(section, SymbolTableSection):
            for symbol in section.iter_symbols():
                if symbol.name.startswith("_ZTV") and symbol["st_shndx"] != "SHN_UNDEF":
                    sizes[symbol.name] = symbol["st_size"]
    return sizes


def mangled(name):
    parts = [f"{len(part)}{part}" for part in name.split("::")]
    return parts[0] if len(parts) == 1 else "N" + "".join(parts) + "E"


# ---- The comparison ----


def type_fits(expected, found):
    """The table may leave out what a pointer points to and what a container holds."""
    return found == expected or found.startswith(expected + "<")


def enum_differences(expected, found):
    if expected.size != found.size:
        yield f"size: expected {expected.size}, found {found.size}"
    missing = [value for value in expected.values if value not in found.values]
    if missing or not expected.values_open and found.values != expected.values:
        yield f"values: expected {expected.values}, found {found.values}"


def class_differences(expected, found, entries):
    if expected.base not in (FREE, found.base):
        yield f"base: expected {expected.base or 'none'}, found {found.base or 'none'}"
    if expected.size not in (FREE, found.size):
        yield f"size: expected {expected.size}, found {found.size}"
    yield from field_differences(expected, found)
    yield from virtual_differences(expected, found, entries)


def field_differences(expected, found):
    """One line for each field, but none for one that only moves along with the field
    before it."""
    shift = 0
    for number, promise in enumerate(expected.fields, start=1):
        where = f"field {number} ({promise.label()})"
        if number > len(found.fields):
            yield f"{where}: expected offset {promise.offset}, found no such field"
            continue
        fact = found.fields[number - 1]
        aspects = differing_aspects(promise, fact)
        moved_along = [*aspects] == ["offset"] and fact.offset - promise.offset == shift
        shift = fact.offset - promise.offset
        if aspects and not moved_along:
            wanted = ", ".join(f"{aspect} {value}" for aspect, (value, _) in aspects.items())
            got = ", ".join(f"{aspect} {value}" for aspect, (_, value) in aspects.items())
            suffix = "" if "name" in aspects else f" ({fact.name})"
            yield f"{where}: expected {wanted}; found {got}{suffix}"
    if not expected.fields_open:
        for number, fact in enumerate(found.fields[len(expected.fields):],
                                      start=len(expected.fields) + 1):
            yield f"field {number}: expected none, found {fact.name} at offset {fact.offset}"


def differing_aspects(promise, fact):
    """{aspect: (promised, found)} of what is not as promised."""
    aspects = {}
    if promise.name not in (None, fact.name):
        aspects["name"] = promise.name, fact.name
    if promise.offset != fact.offset:
        aspects["offset"] = promise.offset, fact.offset
    if fact.size not in (None, promise.size):
        aspects["size"] = promise.size, fact.size
    if not type_fits(promise.type, fact.type):
        aspects["type"] = promise.type, fact.type
    return aspects


def virtual_differences(expected, found, entries):
    """A derived class may, but need not, declare again what its base promises."""
    promises = {virtual_.slot + i: virtual_ for virtual_ in virtuals_with_base(expected, entries)
                for i in range(slots_taken(virtual_))}
    own = {virtual_.slot for virtual_ in expected.virtuals if virtual_.name != DESTRUCTOR}
    facts = {virtual_.slot: virtual_ for virtual_ in found.virtuals
             if virtual_.name != DESTRUCTOR}
    for slot in sorted(own | facts.keys(), key=lambda slot: -1 if slot is None else slot):
        promise, fact = promises.get(slot, "none"), facts.get(slot, "none")
        may_be_more = promise == "none" and expected.virtuals_open
        if promise != fact and not may_be_more:
            yield f"slot {slot}: expected {promise}, found {fact}"
    yield from destructor_differences(expected, found, entries)


def destructor_differences(expected, found, entries):
    def has_destructor(virtuals):
        return any(virtual_.name == DESTRUCTOR for virtual_ in virtuals)

    is_virtual = has_destructor(found.virtuals)
    may_be = has_destructor(virtuals_with_base(expected, entries)) or expected.virtuals_open
    if has_destructor(expected.virtuals) and not is_virtual:
        yield "destructor: expected virtual, found not virtual"
    if is_virtual and not may_be:
        yield "destructor: expected not virtual, found virtual"


def vtable_differences(expected, slots, entries):
    if slots is None or expected.virtuals_open:
        return
    count = slot_count(expected, entries)
    if slots != count:
        yield f"virtual table: expected {count} slots, found {slots}"


def differences(entries, found):
    """One line for each difference between the table and all definitions found."""
    by_name = {}
    for item in found:
        by_name.setdefault(item.entry.name, []).append(item)
    for name, expected in entries.items():
        items = by_name.get(name, [])
        if not items:
            yield f"{name}: expected in the debug information, found in no unit"
            continue
        lines = []
        for item in items:
            if isinstance(expected, Enum):
                lines += enum_differences(expected, item.entry)
            else:
                lines += class_differences(expected, item.entry, entries)
                lines += vtable_differences(expected, item.vtable_slots, entries)
        for line in dict.fromkeys(lines):  # units that agree say it once
            yield f"{name}: {line}"
        other = next((item for item in items if not same(item.entry, items[0].entry)), None)
        if other:
            yield f"{name}: defined differently in {items[0].unit} and {other.unit}"


def same(one, other):
    """Whether two units define a thing alike, as far as both show it."""
    if isinstance(one, Enum):
        return one == other
    return ((one.size, one.base, one.virtuals) == (other.size, other.base, other.virtuals)
            and [(item.name, item.offset) for item in one.fields]
            == [(item.name, item.offset) for item in other.fields])


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    here = os.path.dirname(os.path.abspath(__file__))
    parser.add_argument("--table", default=os.path.join(here, "layout.txt"))
    parser.add_argument("libraries", nargs="+", metavar="LIBRARY")
    arguments = parser.parse_args()
    try:
        entries = TableReader(arguments.table).read()
        ProofReader(arguments.table, entries).check()
        found = [item for path in arguments.libraries for item in Library(path, entries).read()]
    except Unusable as error:
        print(f"check_layout: {error}", file=sys.stderr)
        return CANNOT_TELL
    lines = list(differences(entries, found))
    for line in lines:
        print(line)
    kinds = [sum(isinstance(entry, kind) for entry in entries.values()) for kind in (Class, Enum)]
    verdict = f"differences: {len(lines)}" if lines else "all as promised"
    print(f"check_layout: {kinds[0]} classes and {kinds[1]} enumerations in"
          f" {len(found)} definitions: {verdict}")
    return DIFFERS if lines else FITS


if __name__ == "__main__":
    sys.exit(main())
