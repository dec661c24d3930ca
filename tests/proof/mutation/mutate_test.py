"""What tools/mutate makes of a source: which changes it finds, and that each can be chosen when the program runs."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parents[3]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "tools"))

from mutation.rewrite import Sources  # noqa: E402  (needs the path above)

SOURCE = """\
#include <cstdio>
namespace kel {
constexpr int kStep = 4;
constexpr int kRoom = 8;
enum Kind : int { KIND_A, KIND_B };
int Narrow(int value) {
  char text[kRoom] = {};
  if (value > 5 && value != 7) return std::snprintf(text, sizeof text, "%d!", value);
  switch (value) {
    case 1:
      return KIND_B;
    default:
      return value + kStep;
  }
}
}  // namespace kel
"""

MAIN = """\
#include <cstdio>
#include <cstdlib>
namespace mutants { bool active(unsigned number) { return number == unsigned(std::atoi(std::getenv("MUTANT"))); } }
namespace kel { int Narrow(int value); }
int main() { for (int value = 0; value < 8; ++value) std::printf("%d ", kel::Narrow(value)); }
"""

# What the program prints: as it is, and with each change.
PLAIN = "4 1 6 7 8 9 2 11"
CHANGES = {
    "4 -> 5": "5 1 7 8 9 10 2 12",
    "value > 5 && value != 7 -> !(value > 5 && value != 7)": "2 2 2 2 2 2 10 2",
    "value > 5 && value != 7 -> value > 5 || value != 7": "2 2 2 2 2 2 2 2",
    "value > 5 -> value >= 5": "4 1 6 7 8 2 2 11",
    "5 -> 6": "4 1 6 7 8 9 10 11",
    "value != 7 -> value == 7": "4 1 6 7 8 9 10 2",
    "7 -> 8": "4 1 6 7 8 9 2 2",
    '"%d!" -> "~%d!"': "4 1 6 7 8 9 3 11",
    "case 1 -> no such case": "4 5 6 7 8 9 2 11",
    "KIND_B -> KIND_B + 1": "4 2 6 7 8 9 2 11",
    "value + kStep -> value - kStep": "-4 1 -2 -1 0 1 2 3",
}


class Mutants(unittest.TestCase):
    """The mutants of a small source."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "Narrow.cpp").write_text(SOURCE, encoding="utf-8")
        self.sources = Sources(self.folder, ["Narrow.cpp"], [], [])
        self.made = self.folder / "made"
        self.made.mkdir()
        (self.made / "mutants.h").write_text((TOP / "tools/mutation/mutants.h").read_text(encoding="utf-8"),
                                             encoding="utf-8")
        self.sources.write(self.made)

    def outputs(self):
        """What the program prints with each mutant, and under 0 without one."""
        (self.made / "main.cpp").write_text(MAIN, encoding="utf-8")
        program = self.made / "program"
        subprocess.run(["g++", "-w", "-o", program, self.made / "main.cpp", self.made / "Narrow.cpp"], check=True)
        return {number: subprocess.run([program], env={**os.environ, "MUTANT": str(number)}, capture_output=True,
                                       text=True, check=True).stdout.strip()
                for number in range(len(self.sources.mutants) + 1)}

    def test_are_all_that_the_source_offers(self):
        """The size of an array and the values of an enumeration are what the compiler needs; they stay."""
        self.assertEqual(sorted(mutant.change for mutant in self.sources.mutants), sorted(CHANGES))

    def test_tell_where_they_are(self):
        places = {mutant.change: mutant.where for mutant in self.sources.mutants}
        self.assertEqual(places["5 -> 6"], "Narrow.cpp:8:15")

    def test_do_what_they_say_and_one_at_a_time(self):
        outputs = self.outputs()
        self.assertEqual(outputs[0], PLAIN)
        self.assertEqual({mutant.change: outputs[mutant.number] for mutant in self.sources.mutants}, CHANGES)


if __name__ == "__main__":
    unittest.main()
