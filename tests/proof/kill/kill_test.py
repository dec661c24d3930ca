# SPDX-License-Identifier: MIT
"""Tests that proof_kill.py compares everything that a set persists, whatever the table. kill_test.py PROGRAM"""

import json
import re
import sqlite3
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))

from lists import KINDS, RECORDING, channel_list, write_list  # noqa: E402  (needs the path above)
from proof_kill import SERVICES, columns_of, differences, kept_in, program_import  # noqa: E402

PROGRAM = Path(sys.argv.pop()).resolve()
# Changes a column to another value, by the type of the column.
OTHER = {"INTEGER": "ifnull({0}, 0) + 1", "TEXT": "ifnull({0}, '') || 'x'", "ANY": "ifnull({0}, '') || 'x'",
         "BLOB": "CAST(ifnull({0}, '') || x'0041' AS BLOB)"}
KEYS = {"setting": "key", "set_state": "key", "service": "key", "raw_field": "service, field", "audio_track":
        "service, position", "subtitle_track": "service, position", "favourite": "service, number",
        "list_entry": "service", "recording": "service"}


class Kept(unittest.TestCase):
    """The stored data of a set that has opened an engine, with the built-in services and a service from each of two
    lists."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.state = self.folder / "state"
        self.run_set("exec", "GetSource", "0")
        (self.folder / "list.m3u").write_text("#EXTM3U\n#EXTINF:-1,News\nhttp://example.org/1\n", encoding="utf-8")
        self.run_set("import", "--add", "list.m3u")
        (self.folder / "list.json").write_text(json.dumps({"services": [
            {"numbers": {"id": "7", "antenna": 0}, "texts": {"name": "Film"},
             "recording": {"path": "film.ts", "video": 256, "type": 27}}]}), encoding="utf-8")
        self.run_set("import", "--add", "list.json")
        self.before = self.kept()

    def run_set(self, *arguments):
        return subprocess.run([PROGRAM, "--state", self.state, *arguments], cwd=self.folder, capture_output=True,
                              check=True, text=True).stdout

    def kept(self):
        return kept_in(self.state, self.folder)

    def changed(self, statement):
        """True when a statement changes the compared data. The statement is undone afterwards."""
        copy = (self.state / "tv.db").read_bytes()
        database = sqlite3.connect(self.state / "tv.db")
        try:
            with database:
                self.assertEqual(database.execute(statement).rowcount, 1, statement)
        finally:
            database.close()
        after = self.kept()
        (self.state / "tv.db").write_bytes(copy)
        self.assertEqual(self.kept(), self.before)
        return after != self.before and differences(after, self.before)

    def test_is_compared_in_every_column_of_every_table(self):
        database = sqlite3.connect(self.state / "tv.db")
        columns = [(table, column, kind) for table, in database.execute(
            "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite_%'").fetchall()
            for column in columns_of(database, table) if (table, column) != ("service", "key")
            for kind, in database.execute("SELECT type FROM pragma_table_info(?) WHERE name = ?", (table, column))]
        database.close()
        self.assertEqual(set(KEYS), {table for table, _, _ in columns})
        for table, column, kind in columns:
            with self.subTest(f"{table}.{column}"):
                row = f"({KEYS[table]}) = (SELECT {KEYS[table]} FROM {table} ORDER BY {KEYS[table]} DESC LIMIT 1)"
                change = f"UPDATE {table} SET {column} = {OTHER[kind].format(column)} WHERE {row}"
                # Deletes the row where another value would attach it to a service that does not exist.
                self.assertTrue(self.changed(f"DELETE FROM {table} WHERE {row}" if column == "service" else change))

    def test_is_the_same_whichever_keys_services_have(self):
        (self.folder / "a.conf").write_bytes(channel_list(range(1, 4)))
        self.run_set("import", "a.conf")
        once = self.kept()
        self.run_set("import", "a.conf")
        self.assertEqual(self.kept(), once)
        self.assertEqual(len([row for row in once[SERVICES] if row[0] == "audio_track"]), 3)
        self.assertIn("rows missing", differences(once, self.before))

    def test_is_of_every_format_that_is_imported(self):
        usage = self.run_set("import", "--help")
        formats = re.search(r"--format TEXT:{(.+?)}", usage)[1].split(",")
        self.assertEqual({kind.split("-")[0] for kind in KINDS}, {*formats, "bouquets", RECORDING})

    def test_has_each_service_of_each_list(self):
        for kind, make in KINDS.items():
            with self.subTest(kind):
                write_list(self.folder / kind, make(range(1, 41)))
                said = self.run_set(*program_import(kind)).splitlines()[-1]
                self.assertTrue(said.startswith("imported 40 services: "), said)
                self.assertTrue(said.endswith("; 0 lines could not be read" if kind != RECORDING else " gone"), said)
                self.assertEqual(len([row for row in self.kept()[SERVICES] if row[0] == "service"]), 40)


if __name__ == "__main__":
    unittest.main()
