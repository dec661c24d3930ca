# SPDX-License-Identifier: MIT
"""The first steps of a new user, by the commands that the pages show."""

import re
import time
from contextlib import contextmanager
from textwrap import dedent

from proving.job import Failed
from shipping import states
from shipping.packages import said
from shipping.workplace import USER, emp_window, expect, expect_same

HOME = f"/home/{USER}"
CLONE = f"{HOME}/emp-window"

# For the lab: a channel list, and the wait until its sets can be asked.
LIST = """North One;Cable:330000:C0M256:C:6900:100:101=swe:0:0:1:1:1:0
North Two;Cable:330000:C0M256:C:6900:200:201=swe:0:0:2:1:1:0
"""
UNTIL_ALL_LISTEN = "for port in {8101..8200}; do until (: </dev/tcp/127.0.0.1/$port) 2>/dev/null; do sleep 0.1; done; done"


@contextmanager
def cloned(place, name):
    """Creates a root with a user who can use sudo and has a clone of the tree."""
    with place.root(name) as root:
        root.connect()
        root.install("git", "sudo")
        root.run("useradd", "--create-home", "--shell", "/bin/bash", USER)
        root.inside("/etc/sudoers.d/lab").write_text(f"{USER} ALL=(ALL) NOPASSWD: ALL\n", encoding="utf-8")
        said("git", "clone", "--quiet", "--bare", place.top, root.inside("/srv/emp-window.git"))
        root.run("chown", "--recursive", f"{USER}:{USER}", "/srv/emp-window.git")
        root.run("git", "clone", "--quiet", "/srv/emp-window.git", CLONE, user=USER)
        yield root


def by_new_user(root, script, folder=CLONE, **options):
    """Runs a script as the user in the clone, or in another folder. Returns its standard output."""
    log = "/tmp/progress"
    try:
        return root.run("bash", "-ec", f"cd {folder}\nexec 2>{log}\n{script}", user=USER, **options)
    except Failed as failure:
        raise Failed(f"{failure}\n{root.inside(log).read_text(encoding='utf-8', errors='replace')}") from failure


def minutes_since(begin):
    return f"{(time.monotonic() - begin) / 60:.0f} min from nothing"


# The README.


def session_on(page):
    """The first session with the shell that a page shows."""
    return re.search(r"^```\n((?:> .*\n)(?:[^`].*\n)*)```$", page.read_text(encoding="utf-8"), re.MULTILINE)[1]


def try_clone(place, _):
    """Follows the README literally: a clone, and ./run."""
    session = session_on(place.top / "README.md")
    with cloned(place, "clone") as root:
        begin = time.monotonic()
        got = by_new_user(root, "./run", told=states.told_to(session))
        took = minutes_since(begin)
        expect_same(session, got, "what ./run answers")
    return f"cloned, built, answers as the README shows, {took}"


def try_tests(place, _):
    """Runs all tests of a clone."""
    with cloned(place, "tests") as root:
        begin = time.monotonic()
        summary = re.search(r"^100% tests passed, 0 tests failed out of \d+$", by_new_user(root, "./test"), re.MULTILINE)[0]
        took = minutes_since(begin)
    return f"cloned, {summary.removeprefix('100% tests passed, ')}, {took}"


def app_on(page):
    """The first app's page that a page shows."""
    return re.search(r"^```html\n(<!doctype html>\n.*?)```$", page.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)[1]


def try_app(place, _):
    """Builds the TV for an app's page, copies it beside the README's first app, opens that from a file, and clicks its button."""
    app = app_on(place.top / "README.md")
    pressed = f"{app}<script type='module'>document.getElementById('next').click()</script>\n"
    with cloned(place, "app") as root:
        begin = time.monotonic()
        made = by_new_user(root, "tools/wasm").splitlines()[-1]
        took = minutes_since(begin)
        script = root.inside(made) / "tv.js"
        size = script.stat().st_size
        root.bring(script, f"{HOME}/app/tv.js")
        root.install("chromium")
        for name, page, wanted in (("app", app, "Lighthouse One"), ("pressed", pressed, "Lighthouse Two")):
            root.inside(f"{HOME}/app/{name}.html").write_text(page, encoding="utf-8")
            expect_shown(root, f"{HOME}/app/{name}.html", wanted)
    return f"cloned, made, tv.js has {size / 1e6:.1f} MB, the README's app shows what is on and switches, {took}"


def expect_shown(root, file, wanted):
    """Checks that the app's page, opened from a file in a browser, shows that name."""
    document = by_new_user(root, f"chromium --headless --no-sandbox --disable-gpu --virtual-time-budget=10000 --dump-dom file://{file}", HOME)
    shown = re.search(r'<b id="name">(.*?)</b>', document)
    expect_same(wanted, shown and shown[1], f"what {file} shows")


# The guide for those who build a set.


def blocks_of(page, heading):
    """The blocks of code below a heading of a page, up to the next heading."""
    below = re.split(rf"^#+ {re.escape(heading)}$", page, flags=re.MULTILINE)[1]
    section = re.split(r"^##+ ", below, flags=re.MULTILINE)[0]  # one # begins a remark in a block
    return [dedent(block) for block in re.findall(r"^ *```\n(.*?)^ *```$", section, re.MULTILINE | re.DOTALL)]


def lines_for_a_set(page):
    """The guide's commands that build and install the process, with paths in the clone in place of DIR, FILE and PLACE."""
    commands = "".join(blocks_of(page, "Line by line")) + re.search(r"`(cmake --install .*? PLACE)`", page)[1]
    for name, stands_for in (("DIR", "$PWD/SDK"), ("FILE", "$PWD/toolchain.cmake"), ("PLACE", "$PWD/set")):
        expect(re.search(rf"\b{name}\b", commands), f"docs/porting.md does not say where {name} goes")
        commands = re.sub(rf"\b{name}\b", stands_for, commands)
    return commands


def try_porting(place, _):
    """Runs the guide's commands line by line up to the bring-up, with the stand-in in place of a set's SDK."""
    page = (place.top / "docs/porting.md").read_text(encoding="utf-8")
    [stand_in], [bring_up] = blocks_of(page, "A stand-in"), blocks_of(page, "Bring-up")
    with cloned(place, "porting") as root:
        begin = time.monotonic()
        checked = by_new_user(root, stand_in).splitlines()[-1]
        expect(" 0 failed" in checked, f"the process on the stand-in: {checked}")
        root.inside(f"{CLONE}/toolchain.cmake").write_text("set(CMAKE_CXX_COMPILER g++)\n", encoding="utf-8")
        root.inside(f"{CLONE}/bring-up.txt").write_text(bring_up, encoding="utf-8")
        needed = re.findall(r"NEEDED.*\[(.*?)\]", by_new_user(root, f"rm -r build/set\n{lines_for_a_set(page)}"))
        expect("libKelEmp.so" in needed, f"the process needs {' '.join(needed)}")
        installed = by_new_user(root, "set/bin/emp-window check bring-up.txt", variables={"LD_LIBRARY_PATH": f"{CLONE}/SDK/lib"})
        expect(" 0 failed" in installed, f"the bring-up of the process: {installed}")
        took = minutes_since(begin)
    return f"each line as the guide has it: on the stand-in {checked}, the bring-up as shown; {took}"


# The lab.


def try_lab(place, made):
    """Installs the package, and runs the commands of docs/lab.md for a machine without a service manager."""
    page = (place.top / "docs/lab.md").read_text(encoding="utf-8")
    [_, states_of_sets, start, *_], [run] = blocks_of(page, "A hundred sets on one machine"), blocks_of(page, "Transcripts over all of them")
    with place.root("lab") as root:
        root.connect()
        root.run("useradd", "--create-home", USER)
        root.bring(made.program, "/tmp/program.deb")
        root.install("/tmp/program.deb", "nodejs", "npm")
        for file in ("lab.js", *(f"transcripts/{name}" for name in ("list.txt", "on-screen.txt"))):
            root.bring(place.top / "examples/guide" / file, f"{HOME}/guide/{file}")
        root.inside(f"{HOME}/guide/package.json").write_text('{"type": "module"}\n', encoding="utf-8")
        root.inside(f"{HOME}/guide/cable-sweden.conf").write_text(LIST, encoding="utf-8")
        root.run("chown", "--recursive", f"{USER}:{USER}", HOME)
        by_new_user(root, f"npm install --offline /usr/share/emp-window/javascript\n{states_of_sets}", f"{HOME}/guide")
        channels = emp_window(root, "--state", f"{HOME}/.local/state/emp-window/sets/8140", "export", "--format", "vdr")
        expect_same(LIST, channels, "the channels of one of the sets")
        begin = time.monotonic()
        report = by_new_user(root, f"mkdir reports\n{start}\n{UNTIL_ALL_LISTEN}\n{run}", f"{HOME}/guide")
        seconds = time.monotonic() - begin
        expect("2 passed, 0 failed" in report, f"the transcripts over the lab: {report}")
        suites = root.inside(f"{HOME}/guide/reports/lab.xml").read_text(encoding="utf-8").count("<testsuite ")
        expect_same(2, suites, "the transcripts in the report")
    return f"installed; a hundred sets started and answered in {seconds:.0f} s, {report.splitlines()[-1]}"
