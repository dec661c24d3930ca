// SPDX-License-Identifier: MIT
// What the shell says when memory runs out: each allocation of an input fails in turn, one in each run.
#include <string>

#include "set/Knobs.h"
#include "shell/Check.h"
#include "shell/Files.h"
#include "support/allocation/Allocations.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

using support::AllocationPlan;
using support::failedAllocations;
using support::FailingAllocations;

class LackOfMemory : public SessionTest {
 protected:
  /// Runs `body` again and again, with a later allocation failing each time, and `look` after each failure. @return the
  /// number of failures.
  template <typename Body, typename Look>
  static int sweep(const Body& body, const Look& look) {
    int hits = 0;
    for (std::size_t nth = 1; !testing::Test::HasFailure(); nth += 1 + nth / 40) {
      {
        const FailingAllocations failing(AllocationPlan{.nth = nth});
        body();
      }
      if (failedAllocations() == 0) break;
      ++hits;
      SCOPED_TRACE(nth);
      look();
    }
    return hits;
  }
};

TEST_F(LackOfMemory, ForAnImportNamesTheFile) {
  test::write(folder / "list", std::string(":Group\n") + smallList);
  const std::string before = getKnob(tv(), "services");
  const std::string unread = "error: cannot read list: not enough memory";
  Lines printed;
  int told = 0;
  int unchanged = 0;
  const int hits = sweep([&] { printed = session->run(".import list"); },
                         [&] {
                           ASSERT_FALSE(printed.empty());
                           if (getKnob(tv(), "services") == before) ++unchanged;
                           run(".reset");
                           if (printed.back().starts_with("imported 2 services")) return;  // it went on without
                           ++told;
                           if (printed.back() == unread) return;
                           EXPECT_EQ(printed.back(), "error: not enough memory to run '.import list'");
                         });
  EXPECT_GT(hits, 50);
  EXPECT_GT(told, hits / 2);
  EXPECT_GT(unchanged, hits / 2);
}

TEST_F(LackOfMemory, ForATranscriptNamesTheFile) {
  session.reset();
  const device::DeviceAside aside(app);  // a transcript runs on a set of its own
  const std::string file = (folder / "t").string();
  test::write(file, "> .get region\nregion = 0\n");
  std::string error;
  int told = 0;
  const int hits = sweep(
      [&] {
        try {
          error = checkTranscript(app, file, false).error;
        } catch (const std::bad_alloc&) {
          error.clear();  // the failure came before the file's name was known
        }
      },
      [&] {
        if (error.empty()) return;
        ++told;
        if (error == "cannot read " + file + ": not enough memory") return;
        EXPECT_EQ(error, "not enough memory to check " + file);
      });
  EXPECT_GT(hits, 50);
  EXPECT_GT(told, 20);
}

TEST_F(LackOfMemory, ForAFileNamesIt) {
  const std::filesystem::path file = folder / "f";
  const std::string name = file.string();
  test::write(file, std::string(300'000, 'x'));
  std::string error;
  sweep(
      [&] {
        try {
          readFile(file, name);
        } catch (const std::runtime_error& thrown) {
          error = thrown.what();
        }
      },
      [&] { EXPECT_EQ(error, "cannot read " + name + ": not enough memory"); });
}

}  // namespace
}  // namespace virtualtv::shell
