# SPDX-License-Identifier: MIT
"""Runs programs with a mutant in them, which may do anything, and ends what they started."""

import ctypes
import math
import os
import resource
import select
import signal
import subprocess
import threading

MEMORY = 4 << 30
PR_SET_PDEATHSIG = 1  # as in linux/prctl.h
LIBRARY = ctypes.CDLL(None)


class Stopped(Exception):
    """No run is to go on; how this one would have ended is not known."""


class Runs:
    """Runs, some at a time, each in a process group of its own, so that all that it started ends with it."""

    def __init__(self):
        self._lock = threading.Lock()
        self._groups = set()
        self._stopped = False

    def stop(self):
        """Ends all runs, and lets none start any more."""
        with self._lock:
            self._stopped = True
            for group in self._groups:
                os.killpg(group, signal.SIGKILL)

    def fails(self, seconds, command, folder, env):
        """Whether a command fails. Raises subprocess.TimeoutExpired when it takes longer, Stopped when all were ended."""
        with self._lock:
            if self._stopped:
                raise Stopped
            process = subprocess.Popen(command, cwd=folder, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL, preexec_fn=lambda: limit(seconds),
                                       start_new_session=True)
            self._groups.add(process.pid)
        try:
            has_ended = ends_within(seconds, process.pid)
        finally:
            with self._lock:  # before it is waited for nobody else can have its number
                self._groups.discard(process.pid)
                os.killpg(process.pid, signal.SIGKILL)
            status = process.wait()
        if self._stopped:
            raise Stopped
        if not has_ended:
            raise subprocess.TimeoutExpired(command, seconds)
        return status != 0


def ends_within(seconds, process):
    """Whether a process ends in this time. It may still be waited for."""
    end = os.pidfd_open(process)
    try:
        return bool(select.select([end], [], [], seconds)[0])
    finally:
        os.close(end)


def limit(seconds):
    """A mutant may neither take all memory nor leave a core. When nobody is left to end its run that ends itself, and
    what it started when it has used more time than all processors have in so many seconds."""
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    most = math.ceil(seconds * os.cpu_count()) + 1
    resource.setrlimit(resource.RLIMIT_CPU, (most, most))
    LIBRARY.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
