# SPDX-License-Identifier: MIT
"""Tables on pages whose rows a tool renews one at a time: one a name, in the first column, the day it was taken in the last."""

import re


class Table:
    """A table with this head, and the names of its rows in their order. No other table of the page may have the first column's head."""

    def __init__(self, head, names):
        self.head = head
        self.names = names
        self._pattern = re.compile(rf"^\| {re.escape(head[0])} \|.*\n(?:\|.*\n)*", re.MULTILINE)

    def rows(self, page):
        """The rows that stand on the page by their names."""
        lines = self._pattern.search(page)[0].splitlines()[2:]
        rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in lines]
        return {row[0]: row for row in rows}

    def days(self, page):
        """When each row was taken, "never" where there is none, by names."""
        rows = self.rows(page)
        return {name: rows[name][-1] if name in rows else "never" for name in self.names}

    def with_rows(self, page, rows):
        """The page with these rows in place of those of their names."""
        all_rows = {**self.rows(page), **{row[0]: row for row in rows}}
        lines = [self.head, ["---"] * len(self.head), *(all_rows[name] for name in self.names if name in all_rows)]
        return self._pattern.sub(lambda _: "".join("| " + " | ".join(line) + " |\n" for line in lines), page)
