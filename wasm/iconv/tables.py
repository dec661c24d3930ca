#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the tables of name encodings as a C++ source, from the iconv of this machine's C library.

wasm/iconv/tables.py FILE

An encoding is taken where each printable ASCII character is the byte itself, each other character is one or two bytes
that stand for one 16-bit unit, and no byte changes what the next ones mean. Those that tables can't tell are left to
the converter (UTF-8, UTF-16, UCS-2), and the others are not there.
"""

import ctypes
import errno
import itertools
import subprocess
import sys
from pathlib import Path

C = ctypes.CDLL(None, use_errno=True)
C.iconv_open.restype = ctypes.c_void_p
C.iconv_open.argtypes = [ctypes.c_char_p] * 2
C.iconv.restype = ctypes.c_size_t
C.iconv.argtypes = [ctypes.c_void_p] * 5
FAILED = ctypes.c_size_t(-1).value

ILLEGAL = 0  # stands for no unit; U+0000 itself is in no table
INCOMPLETE = "incomplete"
# Single-byte encodings. The longer ones are Chinese, Japanese and Korean, whose tables together would take more space
# than all others.
LONG_WANTED = {"EUC-KR", "GB2312", "ISO_6937"}


class Unfit(Exception):
    """Tables can't represent this encoding."""


class Encoding:
    """Decodes the bytes of an encoding."""

    def __init__(self, name):
        self.handle = C.iconv_open(b"UTF-16LE", name.encode())
        if self.handle == ctypes.c_void_p(-1).value:
            raise Unfit

    def text(self, data):
        """The text for some bytes, without what the converter still holds. None for invalid bytes, INCOMPLETE when more
        bytes are needed."""
        source = ctypes.create_string_buffer(data, len(data) + 1)
        out = ctypes.create_string_buffer(1024)
        place, left = ctypes.c_void_p(ctypes.addressof(source)), ctypes.c_size_t(len(data))
        target, room = ctypes.c_void_p(ctypes.addressof(out)), ctypes.c_size_t(1024)
        C.iconv(self.handle, None, None, None, None)
        ctypes.set_errno(0)
        result = C.iconv(self.handle, *map(ctypes.byref, (place, left, target, room)))
        if result == FAILED:
            return INCOMPLETE if ctypes.get_errno() == errno.EINVAL else None
        if left.value:
            raise Unfit
        return out.raw[:1024 - room.value]

    def unit(self, data):
        text = self.text(data)
        if text is None or text == INCOMPLETE:
            return text
        if len(text) != 2:  # several characters, or the converter waits for more input
            raise Unfit
        return int.from_bytes(text, "little")


def bytes_of(name):
    """The unit for each byte from 0x80 on."""
    encoding = Encoding(name)
    if any(encoding.unit(bytes([byte])) != byte for byte in range(128)):
        raise Unfit
    units = tuple(encoding.unit(bytes([byte])) for byte in range(128, 256))
    if ILLEGAL in units:
        raise Unfit
    return units


def rows_of(name, leads):
    """The units for lead bytes with a second byte: 256 units for each lead byte."""
    encoding = Encoding(name)
    rows = tuple(tuple(encoding.unit(bytes([lead, byte])) for byte in range(256)) for lead in leads)
    if any(unit == INCOMPLETE for row in rows for unit in row):
        raise Unfit
    return rows


def names():
    listed = subprocess.run(["iconv", "-l"], capture_output=True, text=True, check=True).stdout.split()
    return sorted({name.rstrip("/,") for name in listed})


def alike():
    """The names by tables: {units of bytes: names}."""
    found = {}
    for name in names():
        try:
            found.setdefault(bytes_of(name), []).append(name)
        except Unfit:
            pass
    return found


def tables():
    """The names by tables: {(units of bytes, rows of lead bytes): names}."""
    found = {}
    for units, same in alike().items():
        leads = leads_in(units)
        if leads and LONG_WANTED.isdisjoint(same):
            continue
        for name in same:
            try:
                found.setdefault((units, rows_of(name, leads)), []).append(name)
            except Unfit:
                pass
    return {table: same for table, same in found.items() if not table[1] or not LONG_WANTED.isdisjoint(same)}


def leads_in(units):
    return [byte for byte, unit in enumerate(units, 128) if unit == INCOMPLETE]


def steps(units):
    """The units as differences from the previous one, which compress well."""
    before = 0
    for unit in units:
        number = unit if isinstance(unit, int) else ILLEGAL
        yield (number - before) % 0x10000
        before = number


def listed(numbers):
    return ",".join(map(str, numbers))


def source(found):
    lines = ['#include "iconv/Tables.h"', "", "namespace wasm {", "namespace {", ""]
    order = sorted(found.items(), key=lambda entry: entry[1])
    for number, ((units, rows), _) in enumerate(order):
        lines.append(f"constexpr std::uint16_t units{number}[] = {{{listed(steps(itertools.chain(units, *rows)))}}};")
        if rows:
            lines.append(f"constexpr std::uint8_t leads{number}[] = {{{listed(leads_in(units))}}};")
    lines += ["", "constexpr Table tables[] = {"]
    lines += [f"    {{units{number}, {f'leads{number}, {len(rows)}' if rows else 'nullptr, 0'}}},"
              for number, ((_, rows), _) in enumerate(order)]
    lines += ["};", "", "constexpr Name names[] = {"]
    lines += [f'    {{"{name}", tables + {number}}},'
              for name, number in sorted((name, number) for number, (_, same) in enumerate(order) for name in same)]
    lines += ["};", "", "}  // namespace", "", "const Names tableNames{names, sizeof names / sizeof *names};", "",
              "}  // namespace wasm", ""]
    return "\n".join(lines)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: tables.py FILE")
    Path(sys.argv[1]).write_text(source(tables()), encoding="utf-8")
