// SPDX-License-Identifier: MIT
// What a set persists of its tuning, and what happens to a change that can't be persisted.
#include "d2tv/D2TVCAPI.h"
#include "store/Statement.h"
#include "virtualtv/set/SetTest.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

/// Changes services, sources, inputs, modes, the tuner and the ISP source.
void changeEverything(Tv& tv) {
  tv.import({serviceOf(10, 0, 1), serviceOf(20, 0, 2), serviceOf(40, 1, 3)}, false);
  tv.tune(WindowId::main, *tv.services().keyOf(20));
  tv.tune(WindowId::main, *tv.services().keyOf(40));
  tv.switchSource(WindowId::main, hdmi2);
  tv.switchSource(WindowId::pip, antennaInput, *tv.services().keyOf(20));
  tv.plug(hdmi2, false);
  tv.plug(hdmi3, true);
  tv.setMode(WindowId::pip, {0, 21});
  tv.showIsp();
  tv.adjust([](TvState& state) {
    state.fade = 30;
    state.isp.present = false;
  });
}

class Keeping : public SetTest {};

TEST_F(Keeping, ARestartKeepsSourcesServicesModesAndInputs) {
  changeEverything(*tv);
  const TvState before = tv->state();
  restart();
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(current(), 40U);
  EXPECT_EQ(previous(), 20U);
  EXPECT_EQ(lastService(), "isp-service");
}

TEST_F(Keeping, ARestartStartsTheClockAnewAndEndsLatency) {
  seam::Seam::instance().setLatency(seam::op("IServiceNavigation::TuneService"), 50);
  tune(current());
  ASSERT_EQ(tv->state().clock, 50U);
  restart();
  EXPECT_EQ(tv->state().clock, 0U);
  tune(current());
  EXPECT_EQ(tv->state().clock, 0U);
}

TEST(KeepingOnDisk, TheNextProcessFindsWhatTheLastOneLeft) {
  const TemporaryDirectory directory;
  std::optional<TvState> before;
  {
    Storage storage(directory.path());
    Tv tv(storage);
    changeEverything(tv);
    before = tv.state();
  }
  Storage storage(directory.path());
  const Tv tv(storage);
  EXPECT_EQ(tv.state(), before);
}

/// The child process ends without switching the set off, as when the power goes.
TEST(KeepingOnDisk, WhatWasAnsweredIsKeptWhenThePowerGoes) {
  const TemporaryDirectory directory;
  const std::string answered = inChild([&] {
    Storage storage(directory.path());
    Tv tv(storage);
    return std::string(tv.switchSource(WindowId::main, hdmi2) ? "switched" : "refused");
  });
  ASSERT_EQ(answered, "switched");
  Storage storage(directory.path());
  const Tv tv(storage);
  EXPECT_EQ(tv.state()[WindowId::main].source, hdmi2);
}

/// A set with damaged state rows.
class KeepingDamaged : public SetTest {
 protected:
  std::string failureAfter(const std::string& sql) {
    Statement(storage.parts().database, sql, "damage the set").run();
    tv.reset();
    return failureOf([&] { tv.emplace(storage); });
  }

  std::string failureWith(const std::string& name, const std::string& value) {
    return failureAfter("UPDATE set_state SET value = '" + value + "' WHERE key = '" + name + "'");
  }

  static std::string unreadable(const std::string& name, const std::string& reason) {
    return "memory: cannot read " + name + " of the set that is kept: " + reason;
  }
};

TEST_F(KeepingDamaged, ANumberThatIsNoneIsRefused) {
  for (const char* const text : {"", "x", "13abc", " 13", "+13", "1.5", "2147483648", "99999999999999"}) {
    EXPECT_EQ(failureWith("main.source", text),
              unreadable("main.source",
                         "a number from -2147483648 to 2147483647 is wanted, not '" + std::string(text) + "'"));
  }
}

TEST_F(KeepingDamaged, ANumberMayBeWhateverItsPlaceHolds) {
  const std::string most = "18446744073709551615";
  EXPECT_EQ(failureWith("start.service", "-1"),
            unreadable("start.service", "a number from 0 to " + most + " is wanted, not '-1'"));
  EXPECT_EQ(failureWith("start.service", most), "");
  EXPECT_EQ(tv->state().startServiceId, ~std::uint64_t{0});
  EXPECT_EQ(failureWith("pip.previous_source", "-2147483648"), "");
}

TEST_F(KeepingDamaged, ANumberBeyondWhatItsPlaceTakesIsRefused) {
  for (const char* const text : {"-1", "256"}) {
    EXPECT_EQ(failureWith("tuner.fade", text),
              unreadable("tuner.fade", "a number from 0 to 255 is wanted, not '" + std::string(text) + "'"));
  }
  EXPECT_EQ(failureWith("tuner.fade", "255"), "");
  for (const char* const name : {"isp.width", "isp.height", "input.13.width", "input.13.height", "input.13.rate"}) {
    EXPECT_EQ(failureWith(name, "0"), unreadable(name, "a number from 1 to 2147483647 is wanted, not '0'"));
    EXPECT_EQ(failureWith(name, "1"), "");
  }
}

TEST_F(KeepingDamaged, ASwitchIsOnOrOff) {
  for (const char* const text : {"2", "-1", "on", ""}) {
    EXPECT_EQ(failureWith("isp.present", text),
              unreadable("isp.present", "a number from 0 to 1 is wanted, not '" + std::string(text) + "'"));
  }
}

/// Each value in turn is missing.
TEST_F(KeepingDamaged, AnyValueThatIsGoneIsRefused) {
  const auto kept = storage.parts().state.all();
  ASSERT_GT(kept.size(), 30U);
  for (const auto& [name, value] : kept) {
    EXPECT_EQ(failureAfter("DELETE FROM set_state WHERE key = '" + name + "'"), unreadable(name, "it is not there"));
    storage.parts().state.setAll(kept);
  }
}

/// Later versions added the tracks in use, the sizes of pictures, the ISP source and the tuner's loss, one after the
/// other.
TEST_F(KeepingDamaged, ASetThatWasKeptBeforeSomeValuesWereHasTheirDefaults) {
  tv->switchSource(WindowId::main, hdmi2);
  const TvState before = tv->state();
  for (const char* const later :
       {"key GLOB 'isp.*audio*' OR key GLOB 'isp.sub*' OR key GLOB '*.audio' OR key GLOB '*.subtitle'",
        "key GLOB '*.width' OR key GLOB '*.height' OR key GLOB '*.rate'", "key GLOB 'isp.*' OR key = 'tuner.fade'"}) {
    EXPECT_EQ(failureAfter(std::string("DELETE FROM set_state WHERE ") + later), "") << later;
    EXPECT_EQ(tv->state(), before);
  }
  tv->setMode(WindowId::pip, {0, 21});
  EXPECT_EQ(storage.parts().state.all(), keptOf(tv->state()));
}

TEST_F(Keeping, ResetGoesBackToTheBuiltInSet) {
  const TvState first = tv->state();
  changeEverything(*tv);
  tv->reset();
  EXPECT_EQ(tv->state(), first);
  EXPECT_EQ(lastService(), "tv-service");
}

TEST_F(Keeping, WhatCannotBeKeptDoesNotHappenAndIsComplainedAbout) {
  tv->import({serviceOf(10, 0, 1), serviceOf(20, 0, 2)}, false);
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  breakStore();
  EXPECT_EQ(tune(20), 0);
  EXPECT_EQ(switchTo(hdmi1), 0);
  EXPECT_EQ(switchTo(antennaInput, 20), 0);
  EXPECT_EQ(leaveSource(), 0);
  EXPECT_NE(D2TVCAPI_setSourceISP(), 1);
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(tv->revision(), revision);
  EXPECT_EQ(lastService(), "tv-service");
  EXPECT_EQ(tv->takeComplaints().size(), 5U);
  mendStore();
  EXPECT_GT(tune(20), 0);
  EXPECT_EQ(tv->takeComplaints(), std::vector<std::string>());
}

}  // namespace
}  // namespace virtualtv::test
