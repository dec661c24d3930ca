# SPDX-License-Identifier: MIT
"""Channel lists in every format that can be imported, and recordings, of services with given numbers.

`KINDS` holds functions by the name of the kind. Each turns numbers into the bytes of a file, or of a directory's files.
"""

RECORDING = "recording"

TRANSPONDERS = """eDVB services /{version}/
transponders
00c00000:0440:0001
\ts 11778000:27500000:1:2:192:2{more}
/
end
services
"""
BOUQUET = '#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "{0}" ORDER BY bouquet\n'
FROM_LAMEDB = "#SERVICE 1:0:1:{0:X}:440:1:C00000:0:0:0:\n"


def each(line, head="", between="", tail=""):
    """Makes a list with a line for each service."""
    return lambda numbers: (head + between.join(line.format(n=n) for n in numbers) + tail).encode()


channel_list = each("Service {n};Net:474000:B8C23D12G4M64T8Y0:T:27500:{n}1:{n}2=eng:0:0:{n}:1:1:0\n")
of_lamedb_4 = each("{n:04x}:00c00000:0440:0001:1:0\nService {n}\np:Net,c:00{n:04x},c:01{n:04x}\n",
                   TRANSPONDERS.format(version=4, more=":0:1:2:0:2"), tail="end\n")


def with_bouquets(numbers):
    """A lamedb and its bouquets: half of the services are in a group, some are favourites."""
    services = list(numbers)
    half = services[:len(services) // 2]
    return {
        "lamedb": of_lamedb_4(services),
        "bouquets.tv": (BOUQUET.format("userbouquet.half.tv") + BOUQUET.format("userbouquet.favourites.tv")).encode(),
        "userbouquet.half.tv": ("#NAME Half\n" + "".join(map(FROM_LAMEDB.format, half))).encode(),
        "userbouquet.favourites.tv": ("#NAME Favourites\n" + "".join(map(FROM_LAMEDB.format, half[::3]))).encode(),
    }


def checksum(content):
    """The checksum of a section."""
    rest = 0xFFFFFFFF
    for byte in content:
        rest ^= byte << 24
        for _ in range(8):
            rest = (rest << 1 ^ (0x04C11DB7 if rest & 0x80000000 else 0)) & 0xFFFFFFFF
    return rest.to_bytes(4, "big")


def section(table, extension, body, place=0, last=0):
    """A section of a table."""
    content = (bytes([table]) + number(0xB000 | len(body) + 9) + number(extension) + bytes([0xC1, place, last]) + body)
    return content + checksum(content)


def packets(pid, sections):
    """The packets of sections on a PID."""
    made = []
    for content in sections:
        left = b"\0" + content
        start = 0x4000
        while left:
            made.append(b"G" + number(start | pid) + bytes([0x10 | len(made) % 16]) + left[:184].ljust(184, b"\xff"))
            left = left[184:]
            start = 0
    return b"".join(made)


def number(value):
    return value.to_bytes(2, "big")


def program_map(n):
    """The table of a program with a picture and sound in English."""
    picture = b"\x1b" + number(0xE000 | 2000 + n) + b"\xf0\0"
    sound = b"\x03" + number(0xE000 | 3000 + n) + b"\xf0\x06\x0a\x04eng\0"
    return section(0x02, n, number(0xE000 | 2000 + n) + b"\xf0\0" + picture + sound)


def description(n, place, last):
    """A section that names a program."""
    name = f"Service {n}".encode()
    words = b"\x01\x03Net" + bytes([len(name)]) + name
    entry = number(n) + b"\xfc" + number(0x8000 | len(words) + 2) + bytes([0x48, len(words)]) + words
    return section(0x42, 2, number(9018) + b"\xff" + entry, place, last)


def recording(numbers):
    """A broadcast of programs with these numbers."""
    programs = section(0x00, 2, b"".join(number(n) + number(0xE000 | 1000 + n) for n in numbers))
    names = [description(n, place, len(numbers) - 1) for place, n in enumerate(numbers)]
    maps = b"".join(packets(1000 + n, [program_map(n)]) for n in numbers)
    return packets(0, [programs]) + maps + packets(0x11, names)


KINDS = {
    "vdr": channel_list,
    "dvbv5": each("[Service {n}]\n\tSERVICE_ID = {n}\n\tNETWORK_ID = 1\n\tTRANSPORT_ID = 1\n\tVIDEO_PID = {n}1\n"
                  "\tAUDIO_PID = {n}2\n\tFREQUENCY = 474000000\n\tMODULATION = QAM/64\n\tDELIVERY_SYSTEM = DVBT\n\n"),
    "zap-terrestrial": each("Service {n}:578000000:INVERSION_OFF:BANDWIDTH_8_MHZ:FEC_2_3:FEC_NONE:QAM_64:"
                            "TRANSMISSION_MODE_2K:GUARD_INTERVAL_1_32:HIERARCHY_NONE:{n}1:{n}2:{n}\n"),
    "zap-cable": each("Service {n}:306000000:INVERSION_AUTO:6900000:FEC_NONE:QAM_64:{n}1:{n}2:{n}\n"),
    "zap-satellite": each("Service {n}:10773:h:1:22000:{n}1:{n}2:{n}\n"),
    "zap-american": each("Service {n}:473000000:8VSB:{n}1:{n}2:{n}\n"),
    "lamedb-3": each("{n:04x}:00c00000:0440:0001:1:0\nService {n}\np:Net\n",
                     TRANSPONDERS.format(version=3, more=""), tail="end\n"),
    "lamedb-4": of_lamedb_4,
    "lamedb-5": each("s:{n:04x}:00c00000:0440:0001:25:0,\"Service {n}\",p:Net,c:00{n:04x}\n",
                     "eDVB services /5/\nt:00c00000:0440:0001,s:11778000:27500000:1:2:192:2:0:1:2:0:2\n"),
    "bouquets": with_bouquets,
    "m3u": each("#EXTINF:-1 tvg-chno=\"{n}\" group-title=\"Net\",Service {n}\nhttp://example.org/{n}\n", "#EXTM3U\n"),
    "json": each('{{"audio": "{n}2:eng:mpeg:0:0", "favourites": "1=1", "group": "Net", "numbers": {{"antenna": 0, '
                 '"id": "{n}", "major": {n}, "minor": 0, "type": 9}}, "recording": {{"path": "film.ts", "type": 27, '
                 '"video": {n}1}}, "texts": {{"attached": "{{}}", "name": "Service {n}"}}}}',
                 '{"services": [\n', ",\n", "]}\n"),
    RECORDING: recording,
}


def write_list(path, content):
    """Writes the result of a function in `KINDS`."""
    if isinstance(content, bytes):
        path.write_bytes(content)
        return
    path.mkdir()
    for name, part in content.items():
        (path / name).write_bytes(part)
