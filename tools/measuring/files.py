# SPDX-License-Identifier: MIT
"""Files that a tool reads and writes. Errors are reported before anything is measured."""

import os

from proving.job import Failed


def text_of(path):
    """The text of a file. Raises Failed when it can't be read."""
    try:
        return path.read_text(encoding="utf-8", errors="replace")
    except OSError as error:
        raise Failed(f"{path} can't be read: {error.strerror}") from error


def expect_writable(path):
    """Raises Failed when a file can't be written or created."""
    if path.is_dir() or not os.access(path if path.exists() else path.parent, os.W_OK):
        raise Failed(f"{path} can't be written")


def write(path, text):
    """Writes a whole file. Raises Failed when that fails."""
    try:
        path.write_text(text, encoding="utf-8")
    except OSError as error:
        raise Failed(f"{path} can't be written: {error.strerror}") from error
