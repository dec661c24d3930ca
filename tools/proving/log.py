"""The log is a contract: all that the plug-in prints in its tests, held against what it is to print."""

from proving.job import Figure


def run(job):
    build = job.build("asan")
    figures = job.figures(job.run(["ctest", "--test-dir", build, "--verbose", "-R", "^log_contract$"]))
    return [Figure("log: messages in the contract", "more than 600", str(figures["messages in the contract"]),
                   figures["messages in the contract"] > 600),
            *[Figure(f"log: {name}", "0", str(figures[name]), figures[name] == 0)
              for name in ("never printed", "not in the contract")]]
