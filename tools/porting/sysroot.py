# SPDX-License-Identifier: MIT
"""Unpacks Debian's libraries for another architecture into a separate folder. Nothing is installed: the machine's own
packages stay unchanged."""

import shutil
import subprocess

from proving.job import Failed


def wanted(top):
    """The packages that the set, the plug-in and their tests are compiled against; tools/packages.txt names them."""
    lines = (top / "tools/packages.txt").read_text(encoding="utf-8").splitlines()
    return [line.split()[1] for line in lines if line.startswith("sysroot ")]


def apt(folder, architecture, *arguments):
    """Runs apt-get as on a machine of this architecture without installed packages. Returns success and output."""
    state = folder / "apt"
    for name in ("lists/partial", "cache/archives/partial"):
        (state / name).mkdir(parents=True, exist_ok=True)
    (state / "status").touch()
    options = {"APT::Architecture": architecture, "APT::Architectures": architecture, "Dir::State": state,
               "Dir::State::status": state / "status", "Dir::Cache": state / "cache", "APT::Sandbox::User": "root",
               "Debug::NoLocking": "true"}
    command = ["apt-get", "-qq", *(f"-o={name}={value}" for name, value in options.items()), *arguments]
    done = subprocess.run(command, text=True, errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.returncode == 0, done.stdout


def download(folder, architecture, packages):
    """Downloads these packages and their dependencies. Returns the files."""
    # One of several lists may be broken; that matters only if requesting the packages fails.
    _, listing = apt(folder, architecture, "update")
    done, asking = apt(folder, architecture, "install", "--yes", "--no-install-recommends", "--download-only", *packages)
    if not done:
        raise Failed(f"cannot fetch packages of {architecture}:\n{listing}{asking}".strip())
    return sorted((folder / "apt/cache/archives").glob("*.deb"))


def point_inwards(root):
    """Changes absolute links so that they point below `root`."""
    for link in root.rglob("*"):
        if link.is_symlink() and (to := link.readlink()).is_absolute():
            link.unlink()
            link.symlink_to(root / to.relative_to("/"))


def fetch(top, folder, architecture):
    """The sysroot of an architecture in `folder`, fetched if it is missing or was made from other packages."""
    packages = wanted(top)
    root, made_of = folder / "root", folder / "packages"
    if made_of.exists() and made_of.read_text(encoding="utf-8").split() == packages:
        return root
    shutil.rmtree(folder, ignore_errors=True)
    root.mkdir(parents=True)
    for package in download(folder, architecture, packages):
        subprocess.run(["dpkg", "--extract", package, root], check=True)
    point_inwards(root)
    shutil.rmtree(folder / "apt")
    made_of.write_text("\n".join(packages) + "\n", encoding="utf-8")
    return root
