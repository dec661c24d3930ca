// SPDX-License-Identifier: MIT
// What happens to a set when a snapshot is restored into it.
#include "set/SnapshotJson.h"
#include "store/Statement.h"
#include "store/StoreError.h"
#include "virtualtv/set/SetTest.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

class Restore : public SetTest {
 protected:
  /// Makes a snapshot that differs from the built-in set in many values, then resets the set.
  Snapshot other() {
    tv->import({serviceOf(10, 0, 1), serviceOf(20, 1, 2)}, false);
    tv->tune(WindowId::main, 2);
    tv->switchSource(WindowId::main, hdmi2);
    tv->setSetting("db/a", 5);
    tv->adjust([](TvState& state) { state.country = 9; });
    Snapshot snapshot = tv->snapshot();
    tv->reset();
    return snapshot;
  }

  /// The revision of the events, which must all have the same one.
  std::uint64_t revisionOfEvents() {
    for (const Event& event : events) EXPECT_EQ(event.revision, events.front().revision);
    return events.empty() ? 0 : events.front().revision;
  }

  template <typename Kind>
  std::vector<Kind> changesOf() {
    std::vector<Kind> found;
    for (const Event& event : events) {
      if (const auto* const change = std::get_if<Kind>(&event.change)) found.push_back(*change);
    }
    return found;
  }

  /// Checks that `body` changes nothing and that no change is reported.
  template <typename Body>
  void expectUnchangedBy(Body body) {
    const Snapshot before = tv->snapshot();
    const TvState state = tv->state();
    const std::uint64_t revision = tv->revision();
    noteEvents();
    body();
    EXPECT_EQ(tv->snapshot(), before);
    EXPECT_EQ(tv->state(), state);
    EXPECT_EQ(tv->revision(), revision);
    EXPECT_TRUE(events.empty());
  }
};

TEST_F(Restore, TellsWhatChangedUnderOneRevision) {
  const Snapshot snapshot = other();
  const std::size_t before = tv->services().size();
  const std::uint64_t revision = tv->revision();
  noteEvents();
  tv->restore(snapshot);
  EXPECT_EQ(tv->revision(), revision + 1);
  EXPECT_EQ(revisionOfEvents(), revision + 1);
  ASSERT_EQ(changesOf<ServicesChanged>().size(), 1U);
  EXPECT_EQ(changesOf<ServicesChanged>().front().before, before);
  EXPECT_EQ(changesOf<ServicesChanged>().front().after, 2U);
  const auto settings = changesOf<SettingChanged>();
  ASSERT_EQ(settings.size(), 2U);
  EXPECT_EQ(settings[0].key, "db/a");
  EXPECT_EQ(settings[0].before, std::nullopt);
  EXPECT_EQ(settings[0].after, Setting(5));
  EXPECT_EQ(settings[1].key, lastServiceKey);
  ASSERT_EQ(changesOf<SourceChanged>().size(), 1U);
  EXPECT_EQ(changesOf<SourceChanged>().front().after.source, hdmi2);
  ASSERT_FALSE(changesOf<KnobChanged>().empty());
  EXPECT_EQ(changesOf<ScreenChanged>().size(), 1U);
}

TEST_F(Restore, IsLikeASwitchOnForWhatIsNotPersisted) {
  tv->place(WindowId::main, {1, 2, 30, 40});
  tv->advance(7);
  tv->adjust([](TvState& state) { state[WindowId::pip].resolution = 3; });
  const Snapshot snapshot = tv->snapshot();
  EXPECT_EQ(snapshot.state[WindowId::main].plane, Plane());
  noteEvents();
  tv->restore(snapshot);
  EXPECT_EQ(tv->state()[WindowId::main].plane, Plane());
  EXPECT_EQ(tv->state()[WindowId::pip].resolution, std::nullopt);
  EXPECT_EQ(tv->state().clock, 0U);
  ASSERT_EQ(changesOf<PlaneChanged>().size(), 1U);
  const TvState state = tv->state();
  restart();
  EXPECT_EQ(tv->state(), state);
}

TEST_F(Restore, KeepsKeysOfServices) {
  Snapshot snapshot = tv->snapshot();
  const Service lighthouse = snapshot.services.at(1);
  snapshot.services = {{5, serviceOf(50, 0, 1)}, {77, lighthouse}};
  snapshot.state[WindowId::main].service = 77;
  snapshot.state[WindowId::main].previousService = 5;
  tv->restore(snapshot);
  EXPECT_EQ(tv->services().read(77), lighthouse);
  EXPECT_EQ(current(), 1152959734176350309U);
  EXPECT_EQ(previous(), 50U);
}

TEST_F(Restore, WorksWithASnapshotOfASetToWhichAListWasAddedBehindTheGreatestKey) {
  Snapshot snapshot = tv->snapshot();
  snapshot.services[ServiceStore::greatestKey] = serviceOf(50, 0, 1);
  tv->restore(snapshot);
  EXPECT_EQ(tv->import({serviceOf(60, 0, 2), serviceOf(70, 0, 3)}, true), (ServiceChanges{2, 0, 0}));
  const Snapshot added = tv->snapshot();
  EXPECT_EQ(added.services.size(), snapshot.services.size() + 2);
  EXPECT_EQ(readSnapshot(writeSnapshot(added)), added);
  tv->reset();
  tv->restore(added);
  EXPECT_EQ(tv->snapshot(), added);
}

TEST_F(Restore, OfOneThatCannotBeKeptChangesNothing) {
  const Snapshot snapshot = other();
  breakStore();
  expectUnchangedBy([&] { EXPECT_NE(failureOf([&] { tv->restore(snapshot); }), ""); });
  mendStore();
  tv->restore(snapshot);
  EXPECT_EQ(tv->snapshot(), snapshot);
}

/// The failure comes when the state is persisted: services and settings are written by then.
TEST_F(Restore, ThatFailsMidwayChangesNothing) {
  const Snapshot snapshot = other();
  Statement(storage.parts().database,
            "CREATE TEMP TRIGGER midway BEFORE INSERT ON set_state BEGIN SELECT RAISE(ABORT, 'midway'); END", "prepare")
      .run();
  expectUnchangedBy([&] { EXPECT_EQ(failureOf([&] { tv->restore(snapshot); }).find("memory: cannot keep"), 0U); });
}

TEST_F(Restore, OfServicesThatNoSetCanHaveChangesNothing) {
  const Snapshot good = other();
  for (const auto& [key, field] : std::map<ServiceKey, int>{{0, 200}, {ServiceStore::greatestKey + 1, 200}, {3, 2}}) {
    Snapshot snapshot = good;
    snapshot.services[key].numbers[field] = 70000;
    expectUnchangedBy([&] { EXPECT_THROW(tv->restore(snapshot), std::invalid_argument); });
  }
}

}  // namespace
}  // namespace virtualtv::test
