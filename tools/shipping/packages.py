# SPDX-License-Identifier: MIT
"""The Debian packages: made by debian/rules, looked through by lintian."""

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
    """What a program prints. Raises Failed, with all that it wrote, when it ends otherwise than well."""
    try:
        done = subprocess.run([str(word) for word in command], text=True, errors="replace", stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False, **options)
    except OSError as error:
        raise Failed(f"{command[0]} could not be started: {error.strerror}") from error
    if done.returncode:
        raise Failed(f"{' '.join(map(str, command))} ended with status {done.returncode}:\n{done.stdout}")
    return done.stdout


def version_of(top):
    """The version that the newest entry of debian/changelog has."""
    return said("dpkg-parsechangelog", "--file", top / "debian/changelog", "--show-field", "Version").strip()


def make(top, version):
    """Makes the packages in build/package, in place of what is there; of the version of debian/changelog if none is given. Raises
    Failed, also where lintian finds something."""
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
    """When debian/changelog was last added to, in seconds since 1970: the same tree makes the same packages."""
    return said("dpkg-parsechangelog", "--file", top / "debian/changelog", "--show-field", "Timestamp").strip()


def look_through(packages):
    """Raises Failed, with what lintian says, where it has an error or a warning."""
    as_root = ["--allow-root"] if os.geteuid() == 0 else []
    said("lintian", *as_root, "--fail-on", "error,warning", packages.program, packages.libraries)


def as_earlier(package, version, folder):
    """A package as it was before, for an upgrade: with an earlier version, and with a file that the newer one lacks. Returns the
    package and that file."""
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
