# SPDX-License-Identifier: MIT
"""Builds the container image: a root with the program's package and its dependencies, in the form for `docker load` and
`podman load`. That needs no container runtime."""

import hashlib
import io
import json
import re
import shlex
import tarfile
import tempfile
from pathlib import Path

from shipping import packages, roots
from shipping.packages import said

SCRIPTS = Path(__file__).resolve().parent / "image"
PROGRAMS = "/usr/local/bin"  # folder of the scripts in the image, with names that start with PREFIX
PREFIX = "emp-window-"
STATE = "/var/lib/emp-window"
USER = 10001
SECOND = 10**9  # the image's times are in nanoseconds
CONFIGURATION = {
    "User": f"{USER}:{USER}",
    "ExposedPorts": {"8090/tcp": {}},
    "Env": [f"PATH={roots.ENVIRONMENT['PATH']}", "LANG=C.UTF-8", f"HOME={STATE}"],
    "Entrypoint": [f"{PROGRAMS}/{PREFIX}serve"],
    "Cmd": None,
    "WorkingDir": "/",
    "Volumes": {STATE: {}},
    "StopSignal": "SIGTERM",
    "Healthcheck": {"Test": ["CMD", f"{PROGRAMS}/{PREFIX}healthy"], "Interval": 30 * SECOND, "Timeout": 5 * SECOND,
                    "StartPeriod": 10 * SECOND, "Retries": 3},
    "Labels": {"org.opencontainers.image.title": "emp-window", "org.opencontainers.image.licenses": "MIT"},
}
# Manuals are not needed in the image; licences stay.
LEFT_OUT = ("path-exclude=/usr/share/doc/*", "path-include=/usr/share/doc/*/copyright", "path-exclude=/usr/share/man/*",
            "path-exclude=/usr/share/locale/*", "path-exclude=/usr/share/info/*")


def make(top, made):
    """Builds the image from these packages, in their folder. Returns its file."""
    architecture = made.program.stem.rpartition("_")[2]
    image = made.program.with_name(f"emp-window_{made.version}_{architecture}.image.tar")
    moment = packages.moment_of(top)
    with tempfile.TemporaryDirectory(dir=made.program.parent) as folder:
        tree = Path(folder) / "layer.tar"
        roots.make(tree, f"--include={made.program}", "--hook-dir=/usr/share/mmdebstrap/hooks/file-mirror-automount",
                   *(f"--dpkgopt={option}" for option in LEFT_OUT), *hooks(), variant="essential",
                   environment={"SOURCE_DATE_EPOCH": moment})
        write(tree, image, name_of(made.version), architecture, int(moment))
    return image


def name_of(version):
    """The name of a version's image, without characters that are invalid there."""
    return f"emp-window:{re.sub('[+~]', '-', version)}"


def hooks():
    """The steps after the installation of the packages: a user, its folder, the scripts."""
    account = f"emp-window:x:{USER}:{USER}::{STATE}:/usr/sbin/nologin"
    yield f"--customize-hook=echo {account} >>\"$1/etc/passwd\""
    yield f"--customize-hook=echo emp-window:x:{USER}: >>\"$1/etc/group\""
    yield f"--customize-hook=install -d -m 700 -o {USER} -g {USER} \"$1{STATE}\""
    for script in sorted(SCRIPTS.iterdir()):
        yield f"--customize-hook=install -m 755 {shlex.quote(str(script))} \"$1{PROGRAMS}/{PREFIX}{script.name}\""


def write(tree, image, name, architecture, moment):
    """Writes a root's tar file as an image with one layer."""
    layer = digest_of(tree)
    configuration = {
        "architecture": architecture, "os": "linux", "created": utc(moment), "config": CONFIGURATION,
        "rootfs": {"type": "layers", "diff_ids": [f"sha256:{layer}"]},
        "history": [{"created": utc(moment), "created_by": "tools/package --image"}],
    }
    described = json.dumps(configuration).encode()
    described_as = f"{hashlib.sha256(described).hexdigest()}.json"
    manifest = [{"Config": described_as, "RepoTags": [name], "Layers": [f"{layer}.tar"]}]
    with tarfile.open(image, "w", format=tarfile.GNU_FORMAT) as tar:  # not compressed, since not every loader accepts compression
        for path, content in ((described_as, described), ("manifest.json", json.dumps(manifest).encode())):
            add(tar, path, io.BytesIO(content), len(content), moment)
        with tree.open("rb") as content:
            add(tar, f"{layer}.tar", content, tree.stat().st_size, moment)


def add(tar, path, content, size, moment):
    entry = tarfile.TarInfo(path)
    entry.size, entry.mtime = size, moment
    tar.addfile(entry, content)


def digest_of(file):
    digest = hashlib.sha256()
    with file.open("rb") as content:
        while block := content.read(1 << 20):
            digest.update(block)
    return digest.hexdigest()


def utc(moment):
    return said("date", "--utc", f"--date=@{moment}", "+%Y-%m-%dT%H:%M:%SZ").strip()
