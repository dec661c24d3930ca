// SPDX-License-Identifier: MIT
// What the user set up survives an import: it follows the ids of services, whatever else the new list says of them.
#include "store/StoreError.h"
#include "virtualtv/set/SetTest.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;

constexpr WindowId pip = WindowId::pip;
const TvMode satelliteList{2, 21};

std::vector<Service> listOf(std::initializer_list<std::uint64_t> ids) {
  std::vector<Service> services;
  for (const std::uint64_t id : ids) services.push_back(serviceOf(id, 0, static_cast<int>(services.size()) + 1));
  return services;
}

/// A list of services 10 to 50. The main window shows 30 and showed 20 before; the other window shows 40 and showed 50.
/// The set starts with service 20 on another source.
class Import : public SetTest {
 protected:
  Import() {
    tv->import(listOf({10, 20, 30, 40, 50}), false);
    for (const std::uint64_t id : {20U, 30U}) tune(id);
    for (const std::uint64_t id : {50U, 40U}) tune(id, pip);
    tv->adjust([](TvState& state) {
      state.startServiceId = 20;
      state.startSource = hdmi1;
      state[WindowId::main].mode = satelliteList;
    });
    before = tv->state();
  }

  /// Expects everything as the constructor left it.
  void expectNothingMoved() {
    EXPECT_EQ(current(), 30U);
    EXPECT_EQ(previous(), 20U);
    EXPECT_EQ(current(pip), 40U);
    EXPECT_EQ(previous(pip), 50U);
    EXPECT_EQ(tv->state().startServiceId, 20U);
    EXPECT_EQ(tv->state().startSource, hdmi1);
    EXPECT_EQ(window().mode, satelliteList);
    EXPECT_EQ(window(pip).mode, before[pip].mode);
  }

  Service kept(std::uint64_t id) { return tv->services().read(tv->services().keyOf(id).value()).value(); }

  TvState before;
};

TEST_F(Import, OfTheSameListChangesNothing) {
  for (const bool add : {false, true}) {
    EXPECT_EQ(tv->import(listOf({10, 20, 30, 40, 50}), add), ServiceChanges{});
    EXPECT_EQ(tv->state(), before);
  }
}

TEST_F(Import, WithoutAServiceBehindAnotherInputChangesServiceAndModeAndLeavesTheSource) {
  ASSERT_EQ(switchTo(hdmi1), 1);
  tv->import({serviceOf(60, 1, 1), serviceOf(70, 0, 2)}, false);
  EXPECT_EQ(current(), 60U);
  EXPECT_EQ(window().mode, (TvMode{1, 0}));
  EXPECT_EQ(window().source, hdmi1);
}

TEST_F(Import, ToAddMovesNothing) {
  EXPECT_EQ(tv->import(listOf({5, 60}), true), (ServiceChanges{2, 0, 0}));
  EXPECT_EQ(tv->state(), before);
  tv->adjust([](TvState& state) {
    state[WindowId::main].service = 0;
    state.startServiceId = 99;
  });
  before = tv->state();
  tv->import(listOf({70}), true);
  EXPECT_EQ(tv->state(), before) << "what was not there stays away";
}

TEST_F(Import, KeepsWhatIsStillThereInWhateverOrderItComes) {
  EXPECT_EQ(tv->import(listOf({60, 50, 40, 30, 20}), false), (ServiceChanges{1, 4, 1}));
  expectNothingMoved();
  EXPECT_NE(window().service, before[WindowId::main].service) << "its key is another one";
}

TEST_F(Import, TellsWhatItAddedChangedAndRemoved) {
  std::vector<Service> list = listOf({10, 20, 30, 60, 70});
  list[1].texts[Data::CHANNEL_NAME] = u"News";
  list[2].group = "Films";
  EXPECT_EQ(tv->import(list, false), (ServiceChanges{2, 2, 2}));
  list[0].audio = {{.pid = 256}};
  EXPECT_EQ(tv->import(list, true), (ServiceChanges{0, 1, 0}));
}

TEST_F(Import, MovesAWindowWhoseServiceIsGoneToTheFirstOfTheList) {
  std::vector<Service> list = listOf({60, 20, 40, 50});
  list[0].numbers[Data::ANTENNA_MODE] = 1;
  tv->import(list, false);
  EXPECT_EQ(current(), 60U);
  EXPECT_EQ(window().mode, (TvMode{1, 0}));
  EXPECT_EQ(previous(), 20U);
  EXPECT_EQ(current(pip), 40U) << "the other window's service is still there";
  EXPECT_EQ(window(pip).mode, before[pip].mode);
  EXPECT_EQ(tv->state().startServiceId, 20U);
}

TEST_F(Import, LeavesTheOtherWindowWithoutAServiceThatIsGone) {
  std::vector<Service> list = listOf({60, 20, 30});
  list[0].numbers[Data::ANTENNA_MODE] = 1;
  tv->import(list, false);
  EXPECT_EQ(window(pip).service, 0);
  EXPECT_EQ(window(pip).previousService, 0);
  EXPECT_EQ(window(pip).mode, (TvMode{1, 0}));
  EXPECT_EQ(current(), 30U);
  EXPECT_EQ(window().mode, satelliteList);
}

TEST_F(Import, MovesTheStartServiceOnlyWhereItIsGone) {
  tv->import(listOf({60, 30, 40}), false);
  EXPECT_EQ(tv->state().startServiceId, 60U);
  EXPECT_EQ(tv->state().startSource, antennaInput);
  EXPECT_EQ(current(), 30U);
}

TEST_F(Import, OfAnotherListStartsWithItsFirstService) {
  std::vector<Service> list = listOf({60, 70});
  list[0].numbers[Data::ANTENNA_MODE] = 1;
  EXPECT_EQ(tv->import(list, false), (ServiceChanges{2, 0, 5}));
  EXPECT_EQ(current(), 60U);
  EXPECT_EQ(window().previousService, 0);
  EXPECT_EQ(window(pip).service, 0);
  EXPECT_EQ(tv->state().startServiceId, 60U);
  for (const WindowId id : windowIds) EXPECT_EQ(window(id).mode, (TvMode{1, 0}));
  EXPECT_EQ(window().service, 1) << "keys count anew";
}

TEST_F(Import, TakesAWindowWithoutAServiceAlongWithTheMainOne) {
  turn("pip.service", "0");
  turn("pip.mode", "2,21");
  tv->import(listOf({30, 60}), false);
  EXPECT_EQ(window(pip).mode, satelliteList);
  tv->import(listOf({70}), false);
  EXPECT_EQ(window(pip).mode, (TvMode{0, 0}));
  EXPECT_EQ(window(pip).service, 0);
}

TEST_F(Import, PutsAServiceOnAMainWindowWithoutOne) {
  turn("main.service", "0");
  tv->import(listOf({10, 20}), false);
  EXPECT_EQ(current(), 10U);
}

TEST_F(Import, KeepsWhatTheUserMadeOfAService) {
  turn("service.30.lock", "1");
  turn("service.30.hidden", "1");
  turn("service.30.service_mode", "21");
  turn("service.30.picture_width", "720");
  turn("service.30.attached", "{}");
  turn("service.30.2000", "5");
  turn("service.30.2001", "\"text\"");
  turn("service.30.favourites", "1=1,7=0");
  turn("service.20.lock", "unset");
  const Service users = kept(30);
  const Service unlocked = kept(20);
  for (const bool add : {true, false}) {
    tv->import(listOf({10, 20, 30, 40, 50}), add);
    EXPECT_EQ(kept(30), users);
    EXPECT_EQ(kept(20), unlocked);
  }
}

TEST_F(Import, TakesFromTheListWhatListsTell) {
  turn("service.30.name", "Mine");
  turn("service.30.major", "900");
  turn("service.30.frequency", "1");
  turn("service.30.audio", "900:jpn");
  turn("service.30.subtitles", "901:jpn");
  turn("service.30.lock", "1");
  Service listed = serviceOf(30, 1, 7, {{Data::PTC, 5}});
  listed.texts[Data::CHANNEL_NAME] = u"Three";
  listed.group = "Films";
  listed.audio = {{.pid = 256}};
  for (const bool add : {true, false}) {
    tv->import({listed}, add);
    Service expected = listed;
    expected.numbers[Data::LOCK] = 1;
    EXPECT_EQ(kept(30), expected);
  }
}

TEST_F(Import, ForgetsWhatTheUserMadeOfServicesThatAreGone) {
  turn("service.40.favourites", "1=1");
  tv->import(listOf({30}), false);
  tv->import(listOf({30, 40}), false);
  EXPECT_EQ(knob("service.40.favourites"), "none");
}

TEST_F(Import, KeepsTheTracksInUseOfAServiceWhoseTracksAreTheSame) {
  std::vector<Service> list = listOf({10, 20, 30, 40, 50});
  list[2].audio = {{.pid = 256}, {.pid = 257}};
  list[2].subtitles = {{.pid = 300}, {.pid = 301}};
  tv->import(list, true);
  tv->selectAudio(WindowId::main, 1);
  tv->selectSubtitle(WindowId::main, 0);
  tv->import(list, false);
  tv->import(listOf({60}), true);
  EXPECT_EQ(window().inUse, (TracksInUse{1, 0}));
  list[2].audio.pop_back();
  tv->import(list, false);
  EXPECT_EQ(window().inUse, (TracksInUse{0, 0}));
  list[2].subtitles = {{.pid = 301}};
  tv->import(list, true);
  EXPECT_EQ(window().inUse, TracksInUse());
}

TEST_F(Import, IsKeptByTheNextStart) {
  turn("service.30.favourites", "1=1");
  tv->import(listOf({60, 50, 40, 30, 20}), false);
  restart();
  expectNothingMoved();
  EXPECT_EQ(knob("service.30.favourites"), "1=1");
}

TEST_F(Import, ThatFailsChangesNothing) {
  const std::vector<ServiceKey> keys = tv->services().keys();
  breakStore();
  EXPECT_THROW(tv->import(listOf({60}), false), StoreError);
  mendStore();
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(tv->services().keys(), keys);
  EXPECT_THROW(tv->import({}, true), std::invalid_argument);
}

}  // namespace
}  // namespace virtualtv::test
