# SPDX-License-Identifier: MIT
"""The Debian packages: built by debian/rules, checked by lintian."""

import os
import re
import shutil
import subprocess
from dataclasses import dataclass
from pathlib import Path

from proving.job import Failed

VERSION = re.compile(r"[0-9][A-Za-z0-9.+~]*")


@dataclass(frozen=True)
class Packages:
    """The two packages of a version, as files."""

    version: str
    program: Path
    libraries: Path

    def sizes(self):
        """The size of each as a text."""
        return ", ".join(f"{file.name.partition('_')[0]} {file.stat().st_size / 1e6:.1f} MB" for file in (self.program, self.libraries))


def said(*command, **options):
    """Runs a program. Returns its output. Raises Failed, with the output, when it fails."""
    try:
        done = subprocess.run([str(word) for word in command], text=True, errors="replace", stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False, **options)
    except OSError as error:
        raise Failed(f"{command[0]} could not be started: {error.strerror}") from error
    if done.returncode:
        raise Failed(f"{' '.join(map(str, command))} ended with status {done.returncode}:\n{done.stdout}")
    return done.stdout


def version_of(top):
    """The version of the newest entry in debian/changelog."""
    return said("dpkg-parsechangelog", "--file", top / "debian/changelog", "--show-field", "Version").strip()


def make(top, version):
    """Builds the packages in build/package, replacing its content. The default version is that of debian/changelog.
    Raises Failed, also when lintian reports something."""
    version = version or version_of(top)
    folder = top / "build/package"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    environment = {**os.environ, "PACKAGE_FOLDER": str(folder), "PACKAGE_VERSION": version,
                   "DEB_BUILD_OPTIONS": f"terse parallel={os.cpu_count()}", "SOURCE_DATE_EPOCH": moment_of(top)}
    said("dh_clean", cwd=top)
    (folder / "build.log").write_text(said("debian/rules", "binary", cwd=top, env=environment), encoding="utf-8")
    said("dh_clean", cwd=top)
    architecture = said("dpkg", "--print-architecture").strip()
    made = Packages(version, *(folder / f"{name}_{version}_{architecture}.deb" for name in ("emp-window", "libemp-window-dev")))
    look_through(made)
    return made


def moment_of(top):
    """The time of the newest entry in debian/changelog, in seconds since 1970. With it, the same tree gives identical
    packages."""
    return said("dpkg-parsechangelog", "--file", top / "debian/changelog", "--show-field", "Timestamp").strip()


def look_through(packages):
    """Raises Failed with lintian's output if that has an error or a warning."""
    as_root = ["--allow-root"] if os.geteuid() == 0 else []
    said("lintian", *as_root, "--fail-on", "error,warning", packages.program, packages.libraries)


def as_earlier(package, version, folder):
    """Builds an older package to upgrade from: with an earlier version, and a file that the newer one lacks. Returns
    the package and that file."""
    tree = folder / "earlier"
    said("dpkg-deb", "--raw-extract", package, tree)
    control = tree / "DEBIAN/control"
    control.write_text(re.sub(r"^Version: .*$", f"Version: {version}", control.read_text(encoding="utf-8"), flags=re.MULTILINE),
                       encoding="utf-8")
    gone = Path("/usr/share/emp-window/gone")
    (tree / gone.relative_to("/")).write_text("of an earlier version\n", encoding="utf-8")
    said("dpkg-deb", "--root-owner-group", "--build", tree, folder)
    shutil.rmtree(tree)
    return next(folder.glob(f"*_{version}_*.deb")), gone
