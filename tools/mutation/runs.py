# SPDX-License-Identifier: MIT
"""Runs programs with a mutant, which may do anything, and ends all processes that they started."""

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
    """All runs were stopped; the result of this one is unknown."""


class Runs:
    """Runs programs, several at a time, each in its own process group, so that the processes it started end with it."""

    def __init__(self):
        self._lock = threading.Lock()
        self._groups = set()
        self._stopped = False

    def stop(self):
        """Ends all runs, and starts no more."""
        with self._lock:
            self._stopped = True
            for group in self._groups:
                os.killpg(group, signal.SIGKILL)

    def fails(self, seconds, command, folder, env):
        """True when a command fails. Raises subprocess.TimeoutExpired when it takes longer, Stopped when all were
        ended."""
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
            with self._lock:  # until it is waited for, no other process can get its id
                self._groups.discard(process.pid)
                os.killpg(process.pid, signal.SIGKILL)
            status = process.wait()
        if self._stopped:
            raise Stopped
        if not has_ended:
            raise subprocess.TimeoutExpired(command, seconds)
        return status != 0


def ends_within(seconds, process):
    """True when a process ends within this time. It can still be waited for afterwards."""
    end = os.pidfd_open(process)
    try:
        return bool(select.select([end], [], [], seconds)[0])
    finally:
        os.close(end)


def limit(seconds):
    """Limits a mutant: it can't take all memory or leave a core file. Its run ends when this process ends. Processes
    that it started end when they have used more processor time than all processors offer in this many seconds."""
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    most = math.ceil(seconds * os.cpu_count()) + 1
    resource.setrlimit(resource.RLIMIT_CPU, (most, most))
    LIBRARY.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
