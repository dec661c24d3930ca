# SPDX-License-Identifier: MIT
"""Bare Debian systems, created by mmdebstrap from this machine's own package sources."""

import os
import shutil
from pathlib import Path

from proving.job import Failed
from shipping.packages import said

SUITE = "bookworm"
# The only variables of the caller's environment that programs in a root get: those for network access.
PASSED = ("http_proxy", "https_proxy", "no_proxy", "HTTP_PROXY", "HTTPS_PROXY", "NO_PROXY")
CERTIFICATES = "/etc/ssl/certs/ca-certificates.crt"  # those that this machine trusts
BROUGHT = "/etc/ssl/machine-certificates.crt"  # the same file in a root
# Mounts the terminals of a root, which need not have a program for that, and runs the words behind it.
TERMINALS = 'mount -t devpts -o newinstance,ptmxmode=0666 devpts "$0/dev/pts" && exec "$@"'
ENVIRONMENT = {"PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8",
               "DEBIAN_FRONTEND": "noninteractive"}


def sources():
    """The lines of this machine's apt sources."""
    lines = said("apt-get", "indextargets", "--format", "deb $(REPO_URI) $(RELEASE) $(COMPONENT)", "Created-By: Packages",
                 "Origin: Debian").splitlines()
    lines = sorted({line for line in lines if line.split()[2].startswith(SUITE)})
    if not lines:
        raise Failed(f"this machine knows no package lists of Debian's {SUITE}; apt-get update fetches them")
    return "".join(f"{line}\n" for line in lines)


def make(target, *options, variant="apt", environment=None):
    """Creates a root of Debian packages as a tar file."""
    said("mmdebstrap", "--quiet", f"--variant={variant}", *options, SUITE, target, "-", input=sources(),
         env={**os.environ, **(environment or {})})


class Root:
    """A separate root, unpacked from a tar file into a folder, and removed at the end of `with`. Needs to run as
    root."""

    def __init__(self, tar, folder):
        self.folder = Path(folder)
        self.tar = tar

    def __enter__(self):
        self.folder.mkdir(parents=True)
        said("tar", "--extract", "--numeric-owner", "--xattrs", "--file", self.tar, "--directory", self.folder)
        return self

    def __exit__(self, *_):
        said("rm", "-rf", "--one-file-system", self.folder)

    def inside(self, path):
        """The path of a file of the root on this machine."""
        return self.folder / str(path).lstrip("/")

    def bring(self, file, path):
        """Copies a file of this machine into the root."""
        self.inside(path).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(file, self.inside(path))

    def connect(self):
        """Gives programs in the root access to the package sources, and fetches the lists."""
        for file in ("/etc/resolv.conf", "/etc/hosts"):
            if Path(file).exists():
                self.bring(file, file)
        if Path(CERTIFICATES).exists():  # a proxy may have one of its own
            self.bring(CERTIFICATES, BROUGHT)
        # If the machine uses a proxy, the root uses it too.
        lines = said("apt-config", "dump", "Acquire").splitlines()
        proxies = [line for line in lines if "::proxy" in line.partition(" ")[0].lower()]
        self.inside("/etc/apt/apt.conf.d/90machine").write_text("".join(f"{line}\n" for line in proxies), encoding="utf-8")
        self.run("apt-get", "--quiet", "update")

    def install(self, *packages):
        """Installs these packages and only their dependencies. Returns apt's output."""
        return self.run("apt-get", "--quiet", "--yes", "--no-install-recommends", "install", *packages)

    def command(self, words, user="root", variables=None):
        """The command that runs a program in the root, as this user, with separate processes, mounts and terminals."""
        passed = {name: os.environ[name] for name in PASSED if name in os.environ}
        if self.inside(BROUGHT).exists():
            passed["NODE_EXTRA_CA_CERTS"] = BROUGHT
        home = "/root" if user == "root" else f"/home/{user}"
        environment = {**ENVIRONMENT, **passed, "HOME": home, "USER": user, **(variables or {})}
        return ["unshare", "--mount", "sh", "-c", TERMINALS, self.folder,
                "unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", f"--root={self.folder}",
                "--wd=/", "env", "-i", *(f"{name}={value}" for name, value in environment.items()),
                *([] if user == "root" else ["setpriv", f"--reuid={user}", f"--regid={user}", "--init-groups"]),
                *map(str, words)]

    def run(self, *words, told="", **options):
        """Runs a program in the root with this input. Returns its output. For the other options see `command`. Raises
        Failed when it fails."""
        return said(*self.command(words, **options), input=told)


def expect_root():
    """Raises Failed if this process can't enter a root."""
    if os.geteuid() != 0:
        raise Failed("only root can enter clean roots")
