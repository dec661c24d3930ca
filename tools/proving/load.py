# SPDX-License-Identifier: MIT
"""Runs the server with a thousand clients, with misbehaving clients, for many calls, and kills it.

The short form makes 100,000 calls from clients that come and go, and kills 20 servers while clients write; the long one
makes a million and kills 200.
"""

from proving.job import at_least, at_most, more_than

CONNECTIONS = 1000
LARGEST_CONNECTION = 65536  # bytes for an idle connection with an engine and a subscription
LARGE_MESSAGES = 20  # messages of 32 MiB at once; each is held once as received and once as parsed
MEBIBYTES = 1500
GROWTH = 8 << 20  # bytes: commands in the history differ in size, and the allocator retains some freed memory


def run(job):
    folder = job.build("release-tests", "emp-window")
    calls, kills = (1_000_000, 200) if job.long else (100_000, 20)
    found = job.measure(["node", job.top / "tests/proof/load/proof_load.js", folder / "emp-window", "--connections",
                         CONNECTIONS, "--calls", calls, "--kills", kills, "--seed", job.seed])
    return [
        at_least("load: connections served", CONNECTIONS, found.get("connections served")),
        more_than("load: events heard", 100 * CONNECTIONS, found.get("events heard")),
        at_most("load: bytes a connection", LARGEST_CONNECTION, found.get("bytes a connection")),
        at_least("load: messages of 32 MiB answered", LARGE_MESSAGES, found.get("messages of 32 MiB answered")),
        at_least("load: slow readers closed", 10, found.get("slow readers closed")),
        at_least("load: requests a byte at a time answered", 20, found.get("requests a byte at a time answered")),
        at_most("load: mebibytes under abuse", MEBIBYTES, found.get("mebibytes at most")),
        more_than("load: calls of one that behaves meanwhile", 100, found.get("calls of one that behaves")),
        at_least("load: calls of clients that come and go", calls, found.get("calls")),
        at_most("load: bytes more", GROWTH, found.get("bytes more")),
        at_least("load: servers killed", kills, found.get("servers killed")),
        at_least("load: killed behind an answer", kills // 2, found.get("killed behind an answer")),
        *[at_most(f"load: {name}", 0, found.get(name))
          for name in ("subscribers that missed events", "descriptors more", "sessions left behind",
                       "sessions of the soak left behind", "writes lost", "status of the server in the crowd",
                       "status of the server behind the abuse", "status of the server behind the soak")],
    ]
