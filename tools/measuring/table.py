# SPDX-License-Identifier: MIT
"""Tables on pages whose rows a tool updates separately. The first column has the name of a row, the last one the day of
its measurement."""

import re


class Table:
    """A table with this head and these names of rows, in order. No other table of the page may have the same head in
    the first column."""

    def __init__(self, head, names):
        self.head = head
        self.names = names
        self._pattern = re.compile(rf"^\| {re.escape(head[0])} \|.*\n(?:\|.*\n)*", re.MULTILINE)

    def rows(self, page):
        """The rows on the page, by name."""
        lines = self._pattern.search(page)[0].splitlines()[2:]
        rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in lines]
        return {row[0]: row for row in rows}

    def days(self, page):
        """The day of each row by name; "never" for missing rows."""
        rows = self.rows(page)
        return {name: rows[name][-1] if name in rows else "never" for name in self.names}

    def with_rows(self, page, rows):
        """The page with the rows of these names replaced."""
        all_rows = {**self.rows(page), **{row[0]: row for row in rows}}
        lines = [self.head, ["---"] * len(self.head), *(all_rows[name] for name in self.names if name in all_rows)]
        return self._pattern.sub(lambda _: "".join("| " + " | ".join(line) + " |\n" for line in lines), page)
