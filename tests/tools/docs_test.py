# SPDX-License-Identifier: MIT
"""Tests that tools/docs builds the site from the pages and reports errors."""

import unittest

from scratch import TOP, ScratchTest, load, run_main


class DocsTest(ScratchTest):
    def test_the_site_has_all_pages_and_each_link_leads_somewhere(self):
        site = self.root / "site"
        status, out, errors = run_main(load("docs"), "--output", str(site))
        self.assertEqual((status, out, errors), (0, f"{site / 'index.html'}\n", ""))
        for page in TOP.glob("docs/*.md"):
            self.assertIn("<main>", (site / "docs" / page.name).with_suffix(".html").read_text(encoding="utf-8"))
        commands = (site / "docs/commands.html").read_text(encoding="utf-8")
        self.assertIn('<h3 id="getsource">', commands)
        self.assertIn('<a href="../index.html">Overview</a>', commands)
        self.assertTrue((site / "docs/page/start.png").is_file())
        self.assertIn("CEmpTaskWindow", (site / "api/classkel_1_1CEmpTaskWindow.html").read_text(encoding="utf-8"))

    def test_a_link_that_leads_nowhere_is_told(self):
        self.write("site/a.html", '<h2 id="one">One</h2> <a href="#one">x</a> <a href="b/c.html#two">x</a> <a href="http://x.example/y">x</a>')
        self.write("site/b/c.html", '<a href="../a.html#one">x</a> <a href="a.html">x</a> <img src="d.png"> <a href="../../e">x</a>')
        self.write("e", "outside")
        self.assertEqual(list(load("docs").check_links(self.root / "site")),
                         ["a.html: 'b/c.html#two' leads to a page without that anchor", "b/c.html: 'a.html' leads nowhere",
                          "b/c.html: 'd.png' leads nowhere", "b/c.html: '../../e' leads nowhere"])

    def test_a_page_in_no_section_is_told(self):
        self.write("docs/mine.md", "# Mine\n")
        docs = load("docs")
        with self.assertRaisesRegex(docs.Broken, "docs/mine.md: is in no section"):
            docs.check_sections(self.root)

    def test_a_declaration_without_a_comment_is_told(self):
        self.write("Window/include/Mine.h", "/// Mine.\nclass Mine {\n public:\n  /// Said.\n  void Said();\n  void Unsaid();\n};\n")
        self.write("platform/Theirs.h", "/// Theirs.\nclass Theirs {};\n")
        docs = load("docs")
        with self.assertRaisesRegex(docs.Broken, r"Mine.h:6: .*Member Unsaid\(\) .*is not documented"):
            docs.write_headers(self.root, self.root / "site/api")

    def test_links_to_pages_lead_to_where_these_go(self):
        docs = load("docs")
        pages = ["README.md", "docs/app.md"]
        text = '<a href="app.md#x">a</a><a class="y" href="../README.md">b</a><a href="other.md">c</a><a href="#x">d</a>'
        self.assertEqual(docs.with_links_to_pages(text, "docs/app.md", pages),
                         '<a href="app.html#x">a</a><a class="y" href="../index.html">b</a><a href="other.md">c</a><a href="#x">d</a>')
        self.assertEqual(docs.with_links_to_pages('<a href="docs/app.md">a</a>', "README.md", pages), '<a href="docs/app.html">a</a>')


if __name__ == "__main__":
    unittest.main()
