# SPDX-License-Identifier: MIT
"""Checks the shell sessions on pages: each must replay on a fresh set as it is printed.

Usage: sessions.py EMP_WINDOW PAGE...
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path


def sessions(page):
    """The code blocks of a page that contain a command, each with its first line's number. Lines that start the shell,
    and the address that the server prints first, are left out."""
    text = page.read_text(encoding="utf-8")
    for block in re.finditer(r"^```\w*\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        if re.search(r"^>", block[1], re.MULTILINE):
            yield text[:block.start(1)].count("\n") + 1, re.sub(r"^(\$ |emp-window: http).*\n", "", block[1], flags=re.MULTILINE)


def main(program, *pages):
    failed = checked = 0
    for page in map(Path, pages):
        for line, session in sessions(page):
            with tempfile.TemporaryDirectory() as folder:
                transcript = Path(folder) / page.name
                transcript.write_text(session, encoding="utf-8")
                done = subprocess.run([program, "check", transcript], text=True, capture_output=True)
            checked += 1
            if done.returncode:
                failed += 1
                print(f"{page}:{line}: the session is not true:\n{done.stdout}{done.stderr}")
    print(f"{failed} of {checked} sessions are not true")
    return 1 if failed or not checked else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
