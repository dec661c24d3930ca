# SPDX-License-Identifier: MIT
"""The targets of the plug-in's process, and how to build for them."""

import os
import subprocess
from dataclasses import dataclass

from porting import sysroot
from proving.job import Failed

SDK = ["stand_in_KelEmp", "stand_in_D2tvMgr", "stand_in_vconf"]  # these depend on the others


def run(command, **options):
    """Runs a program that must succeed. Returns its output."""
    done = subprocess.run([str(word) for word in command], text=True, errors="replace", stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    if done.returncode:
        raise Failed(f"{' '.join(map(str, command[:4]))} ... ends with {done.returncode}:\n{done.stdout[-4000:].strip()}")
    return done.stdout


@dataclass(frozen=True)
class Target:
    """A processor and a compiler. A target without an architecture is for this machine, with the SDK from its own
    compiler."""

    name: str
    summary: str
    compiler: str
    architecture: str = ""  # Debian's name for it
    triple: str = ""        # GNU's
    emulator: str = ""
    has_tests: bool = False  # the plug-in's own tests are built and run, too

    def folder(self, top):
        return top / "build/targets" / self.name

    def sdk(self, top):
        return (self if self.architecture else OWN).folder(top) / "sdk"

    def root(self, top):
        return self.folder(top) / "sysroot/root"

    def program(self, top):
        return self.folder(top) / "process/emp-window"

    def command(self, top, program):
        """The command that runs a program of the target here."""
        return [self.emulator, "-L", str(self.root(top)), str(program)] if self.emulator else [str(program)]

    def environment(self, top):
        """The environment for such a program."""
        if not self.triple or self.emulator:
            return dict(os.environ)
        places = [f"{self.root(top)}/{place}/{self.libraries()}" for place in ("lib", "usr/lib")]
        return {**os.environ, "LD_LIBRARY_PATH": ":".join(places), "GCONV_PATH": f"{places[1]}/gconv"}

    def libraries(self):
        return "i386-linux-gnu" if self.architecture == "i386" else self.triple

    def compiler_version(self):
        return f"{self.compiler} {run([self.compiler, '-dumpversion']).strip()}"

    def options(self, top):
        """The options for CMake."""
        if not self.triple:
            return [f"-DCMAKE_CXX_COMPILER={self.compiler}"]
        return ["--toolchain", top / "tools/porting/toolchain.cmake", f"-DTARGET_TRIPLE={self.triple}",
                f"-DTARGET_SYSROOT={self.root(top)}", f"-DTARGET_EMULATOR={self.emulator}"]


OWN = Target("amd64", "this machine: what the others are held against", "g++", "amd64")
ALL = {target.name: target for target in (
    OWN,
    Target("gcc-11", "this machine, with an older compiler", "g++-11"),
    Target("clang-13", "this machine, with another compiler", "clang++-13"),
    Target("arm64", "64 bits; char has no sign", "aarch64-linux-gnu-g++", "arm64", "aarch64-linux-gnu", "qemu-aarch64"),
    Target("armhf", "32 bits; char has no sign", "arm-linux-gnueabihf-g++", "armhf", "arm-linux-gnueabihf", "qemu-arm"),
    Target("i386", "32 bits; char has a sign, floating point more digits", "i686-linux-gnu-g++", "i386", "i686-linux-gnu",
           has_tests=True))}


def build_set(top, target):
    """Builds the virtual TV as an SDK in the target's folder. It is compiled without optimisation, since it does not
    ship. This machine uses the SDK of the tests."""
    tree = target.folder(top) / "set" if target.triple else top / "build/debug"
    if target.triple:
        run(["cmake", "-G", "Ninja", "-S", top, "-B", tree, *target.options(top), "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_FLAGS_DEBUG=-g0", "-DBUILD_SHARED_LIBS=ON", "-DLLD=OFF", "-DEMP_WINDOW_SOURCES_AT_ONCE=0",
             f"-DEMP_WINDOW_TESTS={'ON' if target.has_tests else 'OFF'}"])
        run(["ninja", "-C", tree, *SDK])
    else:
        run([top / "tools/build", "debug", *SDK])
    run(["cmake", "--install", tree, "--component", "sdk", "--prefix", target.sdk(top)])


def build(top, target):
    """Builds the process against the target's SDK, as it would ship."""
    if target.triple:
        sysroot.fetch(top, target.folder(top) / "sysroot", target.architecture)
    if target.architecture:
        build_set(top, target)
    tree = target.program(top).parent
    run(["cmake", "-G", "Ninja", "-S", top, "-B", tree, *target.options(top), "-DCMAKE_BUILD_TYPE=Release",
         "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG", f"-DWINDOW_SDK={target.sdk(top)}"])
    run(["ninja", "-C", tree])
