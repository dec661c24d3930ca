// SPDX-License-Identifier: MIT
// Tuning: what a tune changes, where a step of zapping leads, which service a number means.
#include "virtualtv/set/SetTest.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;
using Fields = std::map<int, std::uint64_t>;

const TSTvMode cable(ANTENNA_CABLE, EServiceMode{});
constexpr int anyMinor = 65535;

class Tune : public SetTest {
 protected:
  Tune() {
    tv->import({serviceOf(10, 0, 1), serviceOf(20, 0, 2), serviceOf(30, 0, 3), serviceOf(40, 1, 1), serviceOf(50, 1, 9),
                serviceOf(60, 0, 4, {{HIDDEN, 1}}), serviceOf(70, 0, 5, {{Data::LOCK, 1}})},
               false);
  }
};

TEST_F(Tune, ChangesCurrentAndPreviousServiceOfItsWindowOnly) {
  const WindowState pip = window(WindowId::pip);
  EXPECT_GT(tune(20), 0);
  EXPECT_EQ(current(), 20U);
  EXPECT_EQ(previous(), 10U);
  EXPECT_EQ(window(WindowId::pip), pip);

  const WindowState main = window();
  EXPECT_GT(tune(30, WindowId::pip), 0);
  EXPECT_EQ(current(WindowId::pip), 30U);
  EXPECT_EQ(window(), main);
}

TEST_F(Tune, ToTheServiceOnScreenKeepsThePreviousOne) {
  tune(20);
  EXPECT_GT(tune(20), 0);
  EXPECT_EQ(current(), 20U);
  EXPECT_EQ(previous(), 10U);
}

TEST_F(Tune, ToAServiceThatTheSetDoesNotHaveChangesNothing) {
  tune(20);
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const std::uint64_t id : {std::uint64_t{0}, std::uint64_t{11}, ~std::uint64_t{0}}) EXPECT_EQ(tune(id), 0) << id;
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(tv->revision(), revision);
}

TEST_F(Tune, LeavesTheSourceAlone) {
  switchTo(hdmi1);
  EXPECT_GT(tune(20), 0);
  EXPECT_EQ(window().source, hdmi1);
}

TEST_F(Tune, TheTvModeFollowsTheAntennaOfTheService) {
  EXPECT_GT(tune(40), 0);
  EXPECT_EQ(window().mode, (TvMode{1, 0}));
  EXPECT_EQ(window(WindowId::pip).mode, (TvMode{0, 0}));
}

TEST_F(Tune, OnTheSameAntennaTheListStays) {
  tv->setMode(WindowId::main, {0, 21});
  tune(20);
  EXPECT_EQ(window().mode, (TvMode{0, 21}));
}

TEST_F(Tune, ReachesHiddenAndLockedServicesById) {
  EXPECT_GT(tune(60), 0);
  EXPECT_EQ(current(), 60U);
  EXPECT_GT(tune(70), 0);
  EXPECT_EQ(current(), 70U);
}

TEST_F(Tune, IsToldToListeners) {
  noteEvents();
  tune(20, WindowId::pip);
  tune(99);
  ASSERT_EQ(events.size(), 1U);
  const auto& change = changeOf<ScreenChanged>(events[0]);
  EXPECT_EQ(change.window, WindowId::pip);
  EXPECT_EQ(change.before, (WindowScreen{0, 0}));
  EXPECT_EQ(change.after, (WindowScreen{*tv->services().keyOf(20), 0}));
  EXPECT_EQ(events[0].revision, tv->revision());
}

TEST_F(Tune, TakesTheTimeThatItsLatencySays) {
  auto& seam = seam::Seam::instance();
  seam.setLatency(seam::op("IServiceNavigation::TuneService"), 700);
  tune(20);
  EXPECT_EQ(tv->state().clock, 700U);
  tune(99);
  EXPECT_EQ(tv->state().clock, 1400U) << "to find nothing takes its time, too";
  switchTo(hdmi1);
  next(10);
  EXPECT_EQ(tv->state().clock, 1400U);
}

// Zapping.

TEST_F(Tune, AStepWrapsAroundAtBothEndsOfTheList) {
  EXPECT_EQ(next(10), 20U);
  EXPECT_EQ(next(30), 10U) << "past the hidden one and the locked one behind it";
  EXPECT_EQ(beforeThat(10), 30U);
  EXPECT_EQ(beforeThat(30), 20U);
}

TEST_F(Tune, AStepGoesPastServicesThatNobodyCanTuneTo) {
  tv->setField(*tv->services().keyOf(20), Data::SERVICE_ID, {});
  EXPECT_EQ(next(10), 30U);
  EXPECT_EQ(beforeThat(30), 10U);
}

TEST_F(Tune, AStepFromAHiddenOrLockedServiceGoesOnFromItsPlace) {
  tv->setField(*tv->services().keyOf(20), HIDDEN, std::uint64_t{1});
  EXPECT_EQ(next(20), 30U);
  EXPECT_EQ(beforeThat(20), 10U);
  EXPECT_EQ(next(70), 10U);
  EXPECT_EQ(beforeThat(70), 30U);
}

TEST_F(Tune, AStepStaysInTheListOfItsMode) {
  EXPECT_EQ(next(40, cable), 50U);
  EXPECT_EQ(next(50, cable), 40U);
  EXPECT_EQ(beforeThat(40, cable), 50U);
}

TEST_F(Tune, AStepInAListOfOneStaysThere) {
  tv->import({serviceOf(10, 0, 1), serviceOf(80, 0, 2, {{HIDDEN, 1}})}, false);
  EXPECT_EQ(next(10), 10U);
  EXPECT_EQ(beforeThat(10), 10U);
  EXPECT_EQ(next(10, cable), 0U) << "and finds nothing in an empty one";
}

TEST_F(Tune, AStepTunesNothingItself) {
  const TvState before = tv->state();
  next(10);
  EXPECT_EQ(tv->state(), before);
}

// Numbers.

TEST_F(Tune, ANumberMeansTheServiceOnTheWindowsOwnAntenna) {
  EXPECT_EQ(best(1, 0), 10U);
  EXPECT_EQ(best(1, 0, WindowId::pip), 10U);
  tv->setMode(WindowId::main, {1, 0});
  EXPECT_EQ(best(1, 0), 40U);
  EXPECT_EQ(best(1, 0, WindowId::pip), 10U);
}

TEST_F(Tune, ANumberThatTheOwnAntennaDoesNotHaveMeansThatOfAnotherOne) {
  EXPECT_EQ(best(9, 0), 50U);
  tv->setMode(WindowId::main, {2, 0});
  EXPECT_EQ(best(2, 0), 20U);
}

TEST_F(Tune, ANumberReachesHiddenServices) {
  EXPECT_EQ(best(4, 0), 60U);
}

TEST_F(Tune, ANumberNeedsItsMinorUnlessAnyWillDo) {
  tv->import({serviceOf(10, 0, 5, {{Data::MINOR, 2}}), serviceOf(20, 0, 5, {{Data::MINOR, 1}})}, false);
  EXPECT_EQ(best(5, 1), 20U);
  EXPECT_EQ(best(5, 2), 10U);
  EXPECT_EQ(best(5, 3), 0U);
  EXPECT_EQ(best(5, anyMinor), 20U) << "the first in list order";
  EXPECT_EQ(best(6, anyMinor), 0U);
}

// The signal.

TEST_F(Tune, TheSignalDependsOnTheFrequency) {
  tv->import({serviceOf(10, 0, 1, {{Data::FREQUENCY, 474000}}), serviceOf(20, 0, 2, {{Data::FREQUENCY, 474000}}),
              serviceOf(30, 0, 3, {{Data::FREQUENCY, 498000}})},
             false);
  const auto first = signal();
  ASSERT_TRUE(first);
  EXPECT_GT(*first, 0);
  EXPECT_LE(*first, 255);
  tune(20);
  EXPECT_EQ(signal(), first) << "on one frequency services share their signal";
  tune(30);
  EXPECT_NE(signal(), first);
}

TEST_F(Tune, TheSignalFadesDownToNothing) {
  const int full = signal().value_or(-1);
  ASSERT_GT(full, 40);
  const auto fade = [&](int by) {
    tv->adjust([=](TvState& state) { state.fade = by; });
    return signal();
  };
  EXPECT_EQ(fade(40), full - 40);
  EXPECT_EQ(fade(255), 0);
  EXPECT_EQ(fade(0), full);
}

TEST_F(Tune, ThereIsNoSignalWithoutAService) {
  EXPECT_EQ(signal(WindowId::pip), std::nullopt);
  tune(20, WindowId::pip);
  EXPECT_NE(signal(WindowId::pip), std::nullopt);
  EXPECT_EQ(signal(WindowId::main, 1), std::nullopt) << "nor from a tuner that the window does not have";
}

}  // namespace
}  // namespace virtualtv::test
