# SPDX-License-Identifier: MIT
"""The libraries of another architecture, as Debian's packages of it hold them, in a folder of their own. Nothing is installed:
the machine's own packages stay as they are."""

import shutil
import subprocess

from proving.job import Failed


def wanted(top):
    """The packages that the set, the plug-in and their tests are compiled against; tools/packages.txt names them."""
    lines = (top / "tools/packages.txt").read_text(encoding="utf-8").splitlines()
    return [line.split()[1] for line in lines if line.startswith("sysroot ")]


def apt(folder, architecture, *arguments):
    """Runs apt-get with packages of this architecture alone, and none installed. Returns whether it was done, and what it said."""
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
    """The files of these packages and of those that they stand on."""
    # One of several lists may be out of order; what that means is seen when the packages are asked for.
    _, listing = apt(folder, architecture, "update")
    done, asking = apt(folder, architecture, "install", "--yes", "--no-install-recommends", "--download-only", *packages)
    if not done:
        raise Failed(f"cannot fetch packages of {architecture}:\n{listing}{asking}".strip())
    return sorted((folder / "apt/cache/archives").glob("*.deb"))


def point_inwards(root):
    """Links that name a place on the set name the one below `root` then."""
    for link in root.rglob("*"):
        if link.is_symlink() and (to := link.readlink()).is_absolute():
            link.unlink()
            link.symlink_to(root / to.relative_to("/"))


def fetch(top, folder, architecture):
    """The sysroot of an architecture in `folder`, fetched where it is not there or was made of other packages."""
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
