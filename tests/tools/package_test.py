# SPDX-License-Identifier: MIT
"""Tests tools/package, as far as that is possible without a build and without clean roots."""

import hashlib
import json
import re
import subprocess
import sys
import tarfile
import tempfile
import unittest
from pathlib import Path

from scratch import TOP, load, run

sys.path.insert(0, str(TOP / "tools"))

from proving.job import Failed  # noqa: E402  (needs the path above)
from shipping import image, newcomers, packages, trials  # noqa: E402  (needs the path above)

PROGRAM = TOP / "tools/package"
DEBIAN = TOP / "debian"


def said(*arguments):
    return subprocess.run([PROGRAM, *arguments], text=True, capture_output=True)


class PackageTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_a_version_that_is_none_is_refused(self):
        for wrong in ("lab", "1.3 beta", "1.3-1", ""):
            done = said(wrong)
            self.assertEqual((done.returncode, done.stdout), (2, ""), wrong)
            self.assertIn(f"'{wrong}' is no version", done.stderr)

    def test_an_unknown_trial_is_refused(self):
        done = said("--test", "vax")
        self.assertEqual(done.returncode, 2)
        self.assertIn(f"there is no trial vax; there are {', '.join(trials.ALL)}", done.stderr)

    def test_the_list_names_all_trials_and_when_they_were_tried(self):
        done = said("--list")
        self.assertEqual(done.returncode, 0, done.stderr)
        lines = done.stdout.splitlines()[1:]
        self.assertEqual([line.split()[0] for line in lines], list(trials.ALL))
        for line in lines:
            self.assertRegex(line, r"  (never|\d{4}-\d{2}-\d{2})$")

    def test_a_trial_that_was_tried_has_its_row(self):
        table = load("package").TABLE
        page = table.with_rows("before\n\n| trial |\n| --- |\n\nbehind\n", [["image", "all well", "60 s", "2020-01-01"]])
        self.assertEqual(table.days(page), {**dict.fromkeys(trials.ALL, "never"), "image": "2020-01-01"})
        self.assertTrue(page.startswith("before\n\n| trial | what was seen |") and page.endswith("|\n\nbehind\n"), page)

    def test_the_first_session_of_the_readme_is_what_somebody_new_tries(self):
        session = newcomers.session_on(TOP / "README.md")
        self.assertRegex(session, r"^> .*\n")
        self.assertIn('unicode "Lighthouse One"\n', session)
        self.assertNotIn("```", session)

    def test_the_first_app_of_the_readme_is_what_somebody_new_opens(self):
        app = newcomers.app_on(TOP / "README.md")
        self.assertRegex(app, r"^<!doctype html>\n")
        self.assertIn('<script src="tv.js" data-name="tvWindow"></script>\n', app)
        self.assertTrue(app.endswith("</script>\n"), app)

    def test_blocks_of_a_page_are_found_by_their_heading(self):
        page = "# Page\n\n## First\n\n1. Do\n\n   ```\n   one\n     two\n   ```\n\n```\n# a remark\nthree\n```\n\n### Next\n\n```\nfour\n```\n"
        self.assertEqual(newcomers.blocks_of(page, "First"), ["one\n  two\n", "# a remark\nthree\n"])
        self.assertEqual(newcomers.blocks_of(page, "Next"), ["four\n"])

    def test_the_lines_for_a_set_are_those_of_the_guide(self):
        page = (TOP / "docs/porting.md").read_text(encoding="utf-8")
        lines = newcomers.lines_for_a_set(page).splitlines()
        self.assertEqual([line.split()[0] for line in lines], ["cmake", "ninja", "readelf", "cmake"])
        self.assertIn("-DWINDOW_SDK=$PWD/SDK", lines[0])
        with self.assertRaisesRegex(Failed, "does not say where FILE goes"):
            newcomers.lines_for_a_set(page.replace("--toolchain FILE", ""))

    def test_packages_have_the_version_of_the_project(self):
        project = re.search(r"^project\(emp-window VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text(encoding="utf-8"), re.MULTILINE)
        self.assertEqual(packages.version_of(TOP), project[1])

    def test_they_are_built_of_what_a_build_needs(self):
        control = (DEBIAN / "control").read_text(encoding="utf-8")
        field = re.search(r"^Build-Depends:(.*(?:\n .*)*)", control, re.MULTILINE)[1]
        needed = {word.strip() for word in field.split(",")} - {"debhelper-compat (= 13)"}
        lines = (TOP / "tools/packages.txt").read_text(encoding="utf-8").splitlines()
        groups = [line.split() for line in lines if not line.startswith("#")]
        self.assertEqual(needed, {name for group, name in groups if group == "build"} - {"g++"})  # every build has it

    def test_they_have_the_licence(self):
        ours = (TOP / "LICENSE").read_text(encoding="utf-8").partition("\n\n")[2]
        paragraphs = (DEBIAN / "copyright").read_text(encoding="utf-8").partition("License: Expat\n")[2]
        theirs = "".join(re.sub(r"^ \.?", "", line) for line in paragraphs.splitlines(keepends=True))
        self.assertEqual(ours.partition("\n\n")[2], theirs)

    def test_an_earlier_package_differs_in_its_version_and_in_a_file_more(self):
        tree = self.folder / "tree"
        (tree / "usr/share/emp-window").mkdir(parents=True)
        (tree / "usr/share/emp-window/kept").write_text("kept\n", encoding="utf-8")
        (tree / "DEBIAN").mkdir()
        (tree / "DEBIAN/control").write_text("Package: emp-window\nVersion: 1.3\nArchitecture: all\nMaintainer: a <a@a.invalid>\n"
                                             "Description: a\n", encoding="utf-8")
        package = self.folder / "emp-window_1.3_all.deb"
        run("dpkg-deb", "--root-owner-group", "--build", tree, package)
        earlier, gone = packages.as_earlier(package, "1.3~earlier", self.folder)
        self.assertEqual(run("dpkg-deb", "--field", earlier, "Version"), "1.3~earlier\n")
        listed = run("dpkg-deb", "--contents", earlier)
        self.assertIn("./usr/share/emp-window/kept", listed)
        self.assertIn(f".{gone}", listed)

    def test_an_image_has_the_name_of_its_version_as_far_as_that_goes(self):
        self.assertEqual(image.name_of("1.3"), "emp-window:1.3")
        self.assertEqual(image.name_of("1.3~rc1+lab2"), "emp-window:1.3-rc1-lab2")

    def test_the_image_is_what_its_description_says(self):
        tree = self.folder / "tree.tar"
        with tarfile.open(tree, "w") as tar:
            tar.add(TOP / "LICENSE", "usr/share/LICENSE")
        file = self.folder / "made.image.tar"
        image.write(tree, file, image.name_of("1.3"), "amd64", 1_600_000_000)
        with tarfile.open(file) as tar:
            parts = {name: tar.extractfile(name).read() for name in tar.getnames()}
        [manifest] = json.loads(parts.pop("manifest.json"))
        [layer] = manifest["Layers"]
        self.assertEqual(manifest["RepoTags"], ["emp-window:1.3"])
        self.assertEqual(set(parts), {manifest["Config"], layer})
        for name, content in parts.items():
            self.assertEqual(name.partition(".")[0], hashlib.sha256(content).hexdigest())
        self.assertEqual(parts[layer], tree.read_bytes())
        described = json.loads(parts[manifest["Config"]])
        self.assertEqual(described["rootfs"]["diff_ids"], [f"sha256:{layer.partition('.')[0]}"])
        self.assertEqual((described["architecture"], described["created"]), ("amd64", "2020-09-13T12:26:40Z"))
        self.assertNotIn(described["config"]["User"].partition(":")[0], ("", "0", "root"))
        for program in (described["config"]["Entrypoint"][0], described["config"]["Healthcheck"]["Test"][1]):
            folder, _, name = program.rpartition("/")
            self.assertEqual(folder, image.PROGRAMS)
            self.assertTrue((image.SCRIPTS / name.removeprefix(image.PREFIX)).stat().st_mode & 0o100, program)


if __name__ == "__main__":
    unittest.main()
