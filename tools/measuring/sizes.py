# SPDX-License-Identifier: MIT
"""The size of the plug-in's process, linked against libraries that stand in for those of a set."""

import re

from proving.job import Failed

UNDEFINED = re.compile(r"undefined reference to `(?P<symbol>[^']+)'")
HEAP = re.compile(r"total heap usage: (?P<count>[\d,]+) allocs, [\d,]+ frees, (?P<bytes>[\d,]+) bytes")
DATA = re.compile(r"^_ZT[VIST]")  # virtual tables and type information, which are not functions
ROOM = 256  # bytes of such a table


def undefined(job, objects):
    """The symbols that the objects need from a set, found from the linker's errors."""
    said = job.run(["sh", "-c", '"$0" "$@" 2>&1 || true', "g++", "-o", job.scratch / "unlinked", *objects, "-ljsoncpp",
                    "-Wl,--no-demangle"], env={"LC_ALL": "C"})
    symbols = sorted(set(UNDEFINED.findall(said)))
    if not symbols:
        raise Failed("the plug-in wants nothing of a set")
    return symbols


def stand_in(job, symbols):
    """Builds a shared library with these symbols; its functions return at once."""
    source = job.scratch / "set.s"
    lines = [".text"]
    for symbol in symbols:
        if DATA.match(symbol):
            lines += [".data", f".globl {symbol}", f".type {symbol}, @object", f".size {symbol}, {ROOM}", f"{symbol}:",
                      f".zero {ROOM}", ".text"]
        else:
            lines += [f".globl {symbol}", f".type {symbol}, @function", f"{symbol}:", "xor %eax, %eax", "ret"]
    source.write_text("\n".join([*lines, '.section .note.GNU-stack,"",@progbits', ""]), encoding="utf-8")
    library = job.scratch / "libset.so"
    job.run(["gcc", "-shared", "-o", library, source])
    return library


def allocations(job, program):
    """The number of a program's allocations from start to end, and their bytes."""
    said = job.run(["sh", "-c", '"$0" "$@" 2>&1', "valgrind", program])
    if not (found := HEAP.search(said)):
        raise Failed(f"valgrind does not tell what {program} allocates")
    return tuple(int(found[name].replace(",", "")) for name in ("count", "bytes"))


def measure(job, archive):
    """The sizes as (name, value) texts."""
    main = job.scratch / "main.o"
    job.run(["g++", "-std=c++17", "-O2", "-c", "-o", main, "-I", job.top / "Window/include", "-I", job.top / "platform",
             job.top / "Window/Src/main.cpp"])
    program, empty, nothing = (job.scratch / name for name in ("plugin", "empty", "nothing.cpp"))
    library = stand_in(job, undefined(job, [main, archive]))
    rest = ["-ljsoncpp", f"-Wl,-rpath,{job.scratch}"]
    job.run(["g++", "-o", program, main, archive, library, *rest])
    nothing.write_text("int main() {}\n", encoding="utf-8")
    job.run(["g++", "-o", empty, nothing, "-Wl,--no-as-needed", library, *rest])
    text, data, bss = job.run(["size", program]).splitlines()[1].split()[:3]
    relocations = sum(line.startswith("0") for line in job.run(["readelf", "--wide", "--relocs", program]).splitlines())
    count, size = allocations(job, program)
    empty_count, empty_size = allocations(job, empty)
    return [("text", f"{int(text):,} bytes"), ("data", f"{int(data):,} bytes"), ("bss", f"{int(bss):,} bytes"),
            ("relocations", str(relocations)),
            ("allocations from start to end, no engine made", f"{count} ({size:,} bytes)"),
            ("of these without the plug-in, by the libraries", f"{empty_count} ({empty_size:,} bytes)")]
