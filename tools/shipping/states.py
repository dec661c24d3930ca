# SPDX-License-Identifier: MIT
"""States of older versions, as SQL: tests/install/states has one per file, and the expected output of a set with
each."""

import sqlite3
from contextlib import closing

# Each state was stored by a set after the same session.
SESSION = "session.txt"


def lay(sql, directory):
    """Creates the state directory of a set from such a file."""
    directory.mkdir(parents=True, mode=0o700)
    with closing(sqlite3.connect(directory / "tv.db")) as database:
        database.executescript(sql.read_text(encoding="utf-8"))


def schema_of(directory):
    """The version of the schema of a set's state."""
    with closing(sqlite3.connect(directory / "tv.db")) as database:
        return database.execute("PRAGMA user_version").fetchone()[0]


def rows_of(directory):
    """The rows of each table of a set's state, by column names."""
    with closing(sqlite3.connect(directory / "tv.db")) as database:
        database.row_factory = sqlite3.Row
        tables = [row[0] for row in database.execute("SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite_%'")]
        return {table: [dict(row) for row in database.execute(f"SELECT * FROM {table}")] for table in tables}


def told_to(session):
    """The lines typed in the session."""
    return "".join(f"{line[2:]}\n" for line in session.splitlines() if line.startswith("> "))
