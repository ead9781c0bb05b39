#!/usr/bin/env python3
"""Checks one built Windows file: what it imports and exports, its hardening flags, that it carries no
time of building.

    check_binary.py FILE [--import NAME.dll]... [--export ORDINAL]...

--import   a DLL it may import besides those of the system
--export   an ordinal it must export; exactly these, and none of them under a name
"""
import argparse
import struct
import sys

SYSTEM_DLLS = {
    "advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll", "kernel32.dll", "msimg32.dll",
    "msvcrt.dll", "ole32.dll", "oleaut32.dll", "shell32.dll", "shlwapi.dll", "user32.dll",
    "windowscodecs.dll",
}
MACHINE_X86_64 = 0x8664
HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x0020, 0x0040, 0x0100
RELOCATIONS_STRIPPED = 0x0001
EXPORTS, IMPORTS, RESOURCES, RELOCATIONS, DEBUG, DELAYED_IMPORTS = 0, 1, 2, 5, 6, 13


class Image:
    """The headers of a portable executable, with access by relative virtual address."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        header = self.number(0x3C, 4)
        if self.data[:2] != b"MZ" or self.data[header:header + 4] != b"PE\0\0":
            raise ValueError("not a portable executable")
        self.machine = self.number(header + 4, 2)
        section_count = self.number(header + 6, 2)
        self.time_stamp = self.number(header + 8, 4)
        optional_size = self.number(header + 20, 2)
        self.characteristics = self.number(header + 22, 2)
        optional = header + 24
        self.is_64_bit = self.number(optional, 2) == 0x20B
        self.dll_characteristics = self.number(optional + 70, 2)
        directories = optional + (112 if self.is_64_bit else 96)
        self.directories = [struct.unpack_from("<II", self.data, directories + 8 * i) for i in range(16)]
        self.sections = []
        for i in range(section_count):
            size, address, raw_size, raw = struct.unpack_from("<IIII", self.data, optional + optional_size + 40 * i + 8)
            self.sections.append((address, max(size, raw_size), raw))

    def number(self, offset, size):
        return int.from_bytes(self.data[offset:offset + size], "little")

    def offset(self, address):
        for start, size, raw in self.sections:
            if start <= address < start + size:
                return raw + address - start
        raise ValueError(f"address {address:#x} lies in no section")

    def text(self, address):
        start = self.offset(address)
        return self.data[start:self.data.index(b"\0", start)].decode("ascii")

    def imported_dlls(self):
        names = []
        for directory, entry_size, name_at in ((IMPORTS, 20, 12), (DELAYED_IMPORTS, 32, 4)):
            address = self.directories[directory][0]
            if not address:
                continue
            entry = self.offset(address)
            while self.number(entry + name_at, 4):
                names.append(self.text(self.number(entry + name_at, 4)))
                entry += entry_size
        return names

    def exports(self):
        """The exported ordinals, the number of exported names and the export table's time stamp."""
        address = self.directories[EXPORTS][0]
        if not address:
            return [], 0, 0
        table = self.offset(address)
        base, functions, names = (self.number(table + at, 4) for at in (16, 20, 24))
        addresses = self.offset(self.number(table + 28, 4)) if functions else 0
        ordinals = [base + i for i in range(functions) if self.number(addresses + 4 * i, 4)]
        return ordinals, names, self.number(table + 4, 4)

    def resource_time_stamp(self):
        address = self.directories[RESOURCES][0]
        return self.number(self.offset(address) + 4, 4) if address else 0

    def debug_time_stamps(self):
        address, size = self.directories[DEBUG]
        return [self.number(self.offset(address) + at + 4, 4) for at in range(0, size, 28)]


def faults(image, allowed_imports, wanted_exports):
    for name in image.imported_dlls():
        if name.lower() not in SYSTEM_DLLS | allowed_imports:
            yield f"imports {name}"
    ordinals, names, export_stamp = image.exports()
    if ordinals != sorted(wanted_exports):
        yield f"exports the ordinals {ordinals}, not {sorted(wanted_exports)}"
    if names:
        yield f"exports {names} name(s)"
    flags = [("DYNAMIC_BASE", DYNAMIC_BASE), ("NX_COMPAT", NX_COMPAT)]
    if image.machine == MACHINE_X86_64:
        flags.append(("HIGH_ENTROPY_VA", HIGH_ENTROPY_VA))
    for name, bit in flags:
        if not image.dll_characteristics & bit:
            yield f"lacks {name}"
    # Without relocations the system cannot move the image, whatever the flag says.
    if image.characteristics & RELOCATIONS_STRIPPED or not image.directories[RELOCATIONS][1]:
        yield "has no relocations"
    for stamp in [image.time_stamp, export_stamp, image.resource_time_stamp(), *image.debug_time_stamps()]:
        if stamp:
            yield f"carries the time stamp {stamp}"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("file")
    parser.add_argument("--import", dest="imports", action="append", default=[])
    parser.add_argument("--export", dest="exports", action="append", default=[], type=int)
    arguments = parser.parse_args()
    try:
        found = list(faults(Image(arguments.file), {name.lower() for name in arguments.imports}, arguments.exports))
    except (OSError, ValueError, struct.error) as error:
        found = [str(error)]
    for fault in found:
        print(f"{arguments.file}: {fault}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
