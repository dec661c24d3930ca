# SPDX-License-Identifier: MIT
"""The trials on bare Debian systems: the packages, the container image, and the first steps of a new user."""

import json
import socket
import subprocess
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

from measuring.lab import command_of, free_ports
from shipping import image, newcomers, packages, states
from shipping.workplace import USER, emp_window, expect, expect_same

PATIENCE = 30  # seconds within which a container must become healthy


# The packages.


def try_packages(place, made):
    """Installs an earlier version, upgrades, runs and removes the program; builds on the libraries."""
    earlier, gone = packages.as_earlier(made.program, f"{made.version}~earlier", place.folder)
    with place.root("packages") as root:
        root.connect()
        root.run("useradd", "--create-home", USER)
        root.bring(earlier, "/tmp/earlier.deb")
        root.bring(made.program, "/tmp/program.deb")
        root.bring(made.libraries, "/tmp/libraries.deb")
        root.install("/tmp/earlier.deb")
        expect(root.inside(gone).exists(), "the earlier package is not installed")
        keep_states(place.top, root)
        said_of_upgrade = root.install("/tmp/program.deb")
        expect("1 upgraded" in said_of_upgrade, f"apt did not upgrade the package:\n{said_of_upgrade}")
        expect(not root.inside(gone).exists(), "what the earlier package had is still there")
        expect_at_work(place.top, root)
        expect_states(place.top, root)
        root.install("/tmp/libraries.deb", "g++", "cmake", "ninja-build")
        expect_to_build(place.top, root)
        files = files_of(root, "emp-window") + files_of(root, "libemp-window-dev")
        root.run("apt-get", "--yes", "purge", "emp-window", "libemp-window-dev")
        left = [str(file) for file in files if root.inside(file).exists()]
        expect(not left, f"the packages leave behind: {' '.join(left)}")
        expect(root.inside(state_of("kept")).exists(), "the state of a user goes with the package")
    return f"installed, upgraded, run, built on, removed; {made.sizes()}"


def state_of(name):
    return f"/home/{USER}/.local/state/emp-window/sets/{name}"


def keep_states(top, root):
    """Lets the earlier package's program store a state, and puts states of older versions beside it."""
    emp_window(root, "--state", state_of("kept"), "exec", "SetSource", "31", "0")
    for file in older_states(top):
        states.lay(file, root.inside(state_of(file.stem)))
    root.run("chown", "--recursive", f"{USER}:{USER}", f"/home/{USER}")


def older_states(top):
    return sorted((top / "tests/install/states").glob("*.sql"))


def expect_states(top, root):
    """Expects all those states after the upgrade, in the newest schema."""
    said_of_source = emp_window(root, "--state", state_of("kept"), "exec", "GetSource", "0")
    expect_same("int 31\n", said_of_source, "the state that was kept before the upgrade")
    newest = states.schema_of(root.inside(state_of("kept")))
    session = (top / "tests/install/states" / states.SESSION).read_text(encoding="utf-8")
    for file in older_states(top):
        got = emp_window(root, "--state", state_of(file.stem), "shell", told=states.told_to(session))
        expect_same(session, got, f"the state {file.stem}")
        expect_same(newest, states.schema_of(root.inside(state_of(file.stem))), f"the schema of the state {file.stem}")


def expect_at_work(top, root):
    """Expects that the program runs with only the dependencies of its package, and that the package's other files are
    in their places."""
    owned = files_of(root, "emp-window")
    missing = [str(file) for file in owned if not root.inside(file).exists()]
    expect(not missing, f"the package lacks {' '.join(missing)}")
    for wanted in ("/usr/share/man/man1/emp-window-serve.1.gz", "/usr/lib/systemd/user/emp-window@.service",
                   "/usr/share/zsh/vendor-completions/_emp-window", "/usr/share/bash-completion/completions/emp-window",
                   "/usr/share/doc/emp-window/copyright"):
        expect(Path(wanted) in owned, f"the package lacks {wanted}")
    expect(not root.inside("/usr/bin/ffmpeg").exists(), "the package brings ffmpeg")
    root.bring(top / "docs/examples.txt", "/tmp/examples.txt")
    expect("1 passed, 0 failed" in emp_window(root, "check", "/tmp/examples.txt"), "the examples of the commands are not as told")
    expect_served(root)


def expect_served(root):
    """Expects that the unit's command serves, started like the service manager would start it."""
    unit = root.inside("/usr/lib/systemd/user/emp-window@.service").read_text(encoding="utf-8")
    started = root.command(command_of(unit, "served"), user=USER, variables={"OPTIONS": "--listen 127.0.0.1:0 --until-eof"})
    with subprocess.Popen(started, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True) as process:
        line = process.stdout.readline()
        process.stdin.close()
        expect("http://127.0.0.1:" in line, f"what the unit starts says: {line}{process.stdout.read()}")
    expect(process.returncode == 0, f"what the unit starts ends with status {process.returncode}")


def expect_to_build(top, root):
    """Expects that a program can be built with the libraries by CMake and by pkg-config, and works."""
    for file in ("CMakeLists.txt", "main.cpp"):
        root.bring(top / "tests/install/consumer" / file, f"/tmp/consumer/{file}")
    script = ("cmake -G Ninja -S /tmp/consumer -B /tmp/built && ninja -C /tmp/built && cp /tmp/built/consumer /tmp/by-cmake && "
              "c++ -std=c++20 $(pkg-config --cflags emp-window virtualtv) /tmp/consumer/main.cpp -o /tmp/by-pkg-config "
              "$(pkg-config --libs emp-window virtualtv)")
    root.run("sh", "-ec", script)
    for program in ("/tmp/by-cmake", "/tmp/by-pkg-config"):
        expect_same('unicode "Lighthouse One"\n', root.run(program, "GetCurrentChannel_Name"), program)


def files_of(root, package):
    """The files, not the folders, that a package has in a root."""
    listed = [Path(line) for line in root.run("dpkg", "--listfiles", package).splitlines()]
    return [path for path in listed if not root.inside(path).is_dir()]


# The container image.


class Containers:
    """Containers with a separate storage."""

    def __init__(self, folder):
        self._options = ["--root", folder / "root", "--runroot", folder / "run", "--storage-driver", "vfs", "--cgroup-manager",
                         "cgroupfs", "--runtime", "runc", "--log-level", "fatal"]

    def call(self, *words):
        return subprocess.run(["podman", *map(str, [*self._options, *words])], text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False)

    def run(self, *words):
        done = self.call(*words)
        expect(done.returncode == 0, f"podman {' '.join(map(str, words))} ended with status {done.returncode}:\n{done.stdout}")
        return done.stdout.strip()

    def health(self, name):
        return self.call("healthcheck", "run", name).returncode

    def wait_for_health(self, name):
        end = time.monotonic() + PATIENCE
        while self.health(name) != 0:
            expect(time.monotonic() < end, f"the container is not healthy after {PATIENCE} s:\n{self.call('logs', name).stdout}")
            time.sleep(0.5)


def try_image(place, made):
    """Loads the image, runs it, and checks that its health check distinguishes a set that answers from one that does
    not."""
    file = image.make(place.top, made)
    with tempfile.TemporaryDirectory(prefix="emp-") as folder:  # not below the tree, since container runtimes need short paths
        containers = Containers(Path(folder))
        name = containers.run("load", "--input", file).rpartition(" ")[2]
        try:
            expect_container(containers, name)
        finally:
            containers.call("rm", "--force", "--all")
            containers.call("rmi", "--force", "--all")
    return f"loaded, run, healthy, unhealthy when stopped, state kept; {file.stat().st_size / 1e6:.0f} MB"


def expect_container(containers, name):
    [port] = free_ports(1)
    started = ["run", "--detach", "--network", "host", "--ulimit", "nofile=1024:1024", "--ulimit", "nproc=1000:1000",
               "--env", f"EMP_WINDOW_PORT={port}", "--env", "EMP_WINDOW_TOKEN=first", "--volume", "kept:/var/lib/emp-window"]
    containers.run(*started, "--name", "one", name)
    containers.wait_for_health("one")
    expect_same({"accepted": True, "kind": "int", "value": 1}, asked(port, "first", "window.SetSource", [31, 0]), "a command")
    expect(asked(port, "wrong", "tv.state", []) is None, "the set of the container answers whoever does not know its token")
    containers.run("kill", "--signal", "STOP", "one")
    expect(containers.health("one") != 0, "a set that does not answer is taken for healthy")
    containers.run("kill", "--signal", "CONT", "one")
    containers.wait_for_health("one")
    containers.run("stop", "one")
    expect_same("0", containers.run("wait", "one"), "the status of a container that was stopped")
    containers.run(*started, "--name", "two", name, "--no-wait")
    containers.wait_for_health("two")
    expect_same({"accepted": True, "kind": "int", "value": 31}, asked(port, "first", "window.GetSource", [0]), "the state in the volume")


def asked(port, token, method, parameters):
    """The result of a call; None if the server refuses it."""
    call = json.dumps({"jsonrpc": "2.0", "id": 1, "method": method, "params": parameters})
    head = f"POST /rpc HTTP/1.1\r\nHost: localhost\r\nAuthorization: Bearer {token}\r\nConnection: close\r\n"
    with socket.create_connection(("127.0.0.1", port), timeout=10) as connection, connection.makefile("r") as reader:
        connection.sendall(f"{head}Content-Type: application/json\r\nContent-Length: {len(call)}\r\n\r\n{call}".encode())
        answer = reader.read()
    return json.loads(answer.rpartition("\n")[2])["result"] if " 200 " in answer.partition("\n")[0] else None


@dataclass(frozen=True)
class Trial:
    """A trial: its name, its description, its function, and whether it needs the packages. The function returns what
    was observed, and raises Failed when that is wrong."""

    name: str
    summary: str
    attempt: Callable
    wants_packages: bool = True


ALL = {trial.name: trial for trial in (
    Trial("packages", "the packages are installed, upgraded from an earlier version with states of older schemas, run, built on, removed",
          try_packages),
    Trial("image", "the container image is loaded and run, and its health check tells when the set does not answer", try_image),
    Trial("lab", "a hundred sets of the package, and transcripts over them, as docs/lab.md says", newcomers.try_lab),
    Trial("clone", "git clone and ./run, as the README says", newcomers.try_clone, wants_packages=False),
    Trial("tests", "git clone and ./test", newcomers.try_tests, wants_packages=False),
    Trial("app", "git clone, tools/wasm and the first app in a browser, as the README says", newcomers.try_app, wants_packages=False),
    Trial("porting", "git clone and docs/porting.md line by line, on the stand-in", newcomers.try_porting, wants_packages=False))}
