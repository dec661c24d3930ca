// SPDX-License-Identifier: MIT
// The audio track and the subtitle in use in a window.
#include <climits>

#include "virtualtv/set/sound/SoundTest.h"

namespace virtualtv::test {
namespace {

constexpr WindowId pip = WindowId::pip;

/// Services 10 and 20 with tracks, 30 without; 10 is on the main window's screen.
class InUse : public SoundTest {
 protected:
  InUse() {
    tv->import({serviceOf(10, 0, 1), serviceOf(20, 0, 2), serviceOf(30, 0, 3)}, false);
    turn("service.10.audio", "256:eng,257:deu,!258:fra,257:spa");
    turn("service.10.subtitles", "356:eng,357:deu:teletext,!358:fra");
    turn("service.20.audio", "456:ita,457:por");
    turn("service.20.subtitles", "556:ita,557:por");
    noteEvents();
  }
};

TEST_F(InUse, AreTheFirstTrackAndNoSubtitleOfAServiceThatComesOnScreen) {
  EXPECT_EQ(currentAudio(), "0 eng");
  EXPECT_EQ(currentSubtitle(), "-1");
  ASSERT_GT(tune(20), 0);
  EXPECT_EQ(currentAudio(), "0 ita");
  EXPECT_EQ(currentSubtitle(), "-1");
}

TEST_F(InUse, AreWhatWasChosen) {
  EXPECT_EQ(selectAudio(1), 1);
  EXPECT_EQ(selectSubtitle(1), 1);
  EXPECT_EQ(currentAudio(), "1 deu");
  EXPECT_EQ(currentSubtitle(), "357:deu:1");
  EXPECT_EQ(selectAudio(0), 1);
  EXPECT_EQ(selectSubtitle(0), 1);
  EXPECT_EQ(currentAudio(), "0 eng");
  EXPECT_EQ(currentSubtitle(), "356:eng:0");
}

TEST_F(InUse, StayWhereThereIsNoTrackToChoose) {
  selectAudio(1);
  selectSubtitle(1);
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const int position : {-1, 4, INT_MIN, INT_MAX}) {
    EXPECT_EQ(selectAudio(position), 0) << position;
    EXPECT_EQ(selectSubtitle(position), 0) << position;
  }
  EXPECT_EQ(selectSubtitle(3), 0);
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(tv->revision(), revision);
}

TEST_F(InUse, AreNotToldWhereTheyCannotBeRead) {
  EXPECT_EQ(selectAudio(2), 1) << "it is there all the same";
  EXPECT_EQ(selectSubtitle(2), 1);
  EXPECT_EQ(currentAudio(), "fails");
  EXPECT_EQ(currentSubtitle(), "fails");
  EXPECT_EQ(knob("main.audio"), "2");
  EXPECT_EQ(knob("main.subtitle"), "2");
}

TEST_F(InUse, StartAnewWithEachService) {
  selectAudio(1);
  selectSubtitle(1);
  tune(20);
  selectAudio(1);
  tune(10);
  EXPECT_EQ(currentAudio(), "0 eng");
  EXPECT_EQ(currentSubtitle(), "-1");
}

TEST_F(InUse, StayWhenTheServiceOnScreenIsTunedAgain) {
  selectAudio(1);
  selectSubtitle(0);
  ASSERT_GT(tune(10), 0);
  ASSERT_GT(switchTo(antennaInput, 10), 0);
  EXPECT_EQ(currentAudio(), "1 deu");
  EXPECT_EQ(currentSubtitle(), "356:eng:0");
}

TEST_F(InUse, AreThoseOfTheServiceAlsoBehindAnotherInput) {
  selectAudio(1);
  selectSubtitle(0);
  switchTo(hdmi1);
  EXPECT_EQ(currentAudio(), "1 deu");
  EXPECT_EQ(selectAudio(3), 1);
  leaveSource();
  switchTo(antennaInput);
  EXPECT_EQ(currentAudio(), "3 spa");
  EXPECT_EQ(currentSubtitle(), "356:eng:0");
  switchTo(antennaInput, 20);
  EXPECT_EQ(currentAudio(), "0 ita");
  EXPECT_EQ(currentSubtitle(), "-1");
}

TEST_F(InUse, AreNoneOfAServiceWithoutTracks) {
  tune(30);
  EXPECT_EQ(currentAudio(), "fails");
  EXPECT_EQ(currentSubtitle(), "-1");
  EXPECT_EQ(selectAudio(0), 0);
  EXPECT_EQ(selectSubtitle(0), 0);
}

TEST_F(InUse, AreNoneWithoutAService) {
  EXPECT_EQ(currentAudio(pip), "fails");
  EXPECT_EQ(currentSubtitle(pip), "fails");
  EXPECT_EQ(selectAudio(0, pip), 0);
  EXPECT_EQ(selectSubtitle(0, pip), 0);
}

TEST_F(InUse, AreEachWindowsOwn) {
  tune(10, pip);
  selectAudio(1);
  selectSubtitle(1, pip);
  EXPECT_EQ(currentAudio(), "1 deu");
  EXPECT_EQ(currentSubtitle(), "-1");
  EXPECT_EQ(currentAudio(pip), "0 eng");
  EXPECT_EQ(currentSubtitle(pip), "357:deu:1");
}

TEST_F(InUse, AreTheirPositionsWhateverBecomesOfTheTracks) {
  selectAudio(1);
  selectSubtitle(1);
  turn("service.10.audio", "900:jpn,901:kor");
  turn("service.10.subtitles", "902:jpn");
  EXPECT_EQ(currentAudio(), "1 kor");
  EXPECT_EQ(currentSubtitle(), "fails");
  turn("service.10.audio", "none");
  EXPECT_EQ(currentAudio(), "fails");
}

TEST_F(InUse, StayWhenOtherServicesAreImported) {
  tune(20, pip);
  selectAudio(1);
  selectSubtitle(1);
  selectAudio(1, pip);
  tv->import({serviceOf(40, 0, 4)}, true);
  EXPECT_EQ(window().inUse, (TracksInUse{1, 1}));
  EXPECT_EQ(currentAudio(pip), "1 por");
}

TEST_F(InUse, StartAnewWhenTheServiceIsImportedWithOtherTracksOrGoes) {
  tune(20, pip);
  selectAudio(1);
  selectSubtitle(1);
  selectAudio(1, pip);
  tv->import({serviceOf(10, 0, 1)}, true);
  EXPECT_EQ(window().inUse, TracksInUse());
  tv->import({serviceOf(10, 0, 1)}, false);
  EXPECT_EQ(window(pip).inUse, TracksInUse());
}

TEST_F(InUse, StartAnewWhenTheServiceIsSetFromOutside) {
  selectAudio(1);
  selectSubtitle(1);
  turn("main.previous_service", "30");
  EXPECT_EQ(currentAudio(), "1 deu");
  turn("main.service", "20");
  EXPECT_EQ(currentAudio(), "0 ita");
  EXPECT_EQ(currentSubtitle(), "-1");
}

TEST_F(InUse, AreToldToListeners) {
  tune(20, pip);
  events.clear();
  selectAudio(1);
  selectSubtitle(1, pip);
  selectAudio(9);
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(changeOf<TracksChanged>(events[0]).window, WindowId::main);
  EXPECT_EQ(changeOf<TracksChanged>(events[0]).before, (TracksInUse{0, -1}));
  EXPECT_EQ(changeOf<TracksChanged>(events[0]).after, (TracksInUse{1, -1}));
  EXPECT_EQ(changeOf<TracksChanged>(events[1]).window, pip);
  EXPECT_EQ(changeOf<TracksChanged>(events[1]).after, (TracksInUse{0, 1}));
  EXPECT_GT(events[1].revision, events[0].revision);
}

TEST_F(InUse, AreKept) {
  tune(20, pip);
  selectAudio(3);
  selectSubtitle(1);
  selectAudio(1, pip);
  const TvState before = tv->state();
  restart();
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(currentAudio(), "3 spa");
  EXPECT_EQ(currentSubtitle(), "357:deu:1");
  EXPECT_EQ(currentAudio(pip), "1 por");
}

TEST_F(InUse, DoNotChangeWhereTheyCannotBeKept) {
  breakStore();
  EXPECT_EQ(selectAudio(1), 0);
  EXPECT_EQ(selectSubtitle(1), 0);
  EXPECT_EQ(tv->takeComplaints().size(), 2U);
  mendStore();
  EXPECT_EQ(currentAudio(), "0 eng");
  EXPECT_EQ(currentSubtitle(), "-1");
  EXPECT_TRUE(events.empty());
}

}  // namespace
}  // namespace virtualtv::test
