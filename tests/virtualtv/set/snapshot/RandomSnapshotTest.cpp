// SPDX-License-Identifier: MIT
// Snapshots of random sets: restoring one gives the same set.
#include "set/SnapshotJson.h"
#include "store/StoreError.h"
#include "virtualtv/set/SetTest.h"
#include "virtualtv/set/snapshot/RandomSet.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

constexpr unsigned sets = 12;

/// A set, and the text of its snapshot.
struct Written {
  Snapshot snapshot;
  std::string text;
};

Written randomSet(unsigned seed) {
  Storage storage;
  Tv tv(storage);
  RandomSet(seed).use(tv);
  Written written{tv.snapshot(), writeSnapshot(tv.snapshot())};
  for (const auto& [key, service] : written.snapshot.services) EXPECT_EQ(tv.services().read(key), service);
  EXPECT_EQ(keptOf(written.snapshot.state), keptOf(tv.state()));
  return written;
}

void expectSame(const Tv& tv, const Written& wanted) {
  EXPECT_EQ(tv.services().all(), wanted.snapshot.services);
  EXPECT_EQ(tv.settings().list(), wanted.snapshot.settings);
  EXPECT_EQ(tv.state(), wanted.snapshot.state);
  EXPECT_EQ(writeSnapshot(tv.snapshot()), wanted.text);
}

TEST(RandomSnapshots, RestoreTheSameSetOnAnother) {
  for (unsigned seed = 0; seed < sets; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Written written = randomSet(seed);
    const TemporaryDirectory directory;
    {
      Storage storage(directory.path());
      Tv tv(storage);
      RandomSet(seed + sets).use(tv);
      tv.restore(readSnapshot(written.text));
      expectSame(tv, written);
    }
    Storage storage(directory.path());
    const Tv tv(storage);
    expectSame(tv, written);
  }
}

TEST(RandomSnapshots, AreEqualAsDocumentsAndAsTexts) {
  for (unsigned seed = 0; seed < sets; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Written written = randomSet(seed);
    EXPECT_EQ(readSnapshot(written.text), written.snapshot);
    EXPECT_EQ(snapshotIn(documentOf(written.snapshot)), written.snapshot);
  }
}

}  // namespace
}  // namespace virtualtv::test
