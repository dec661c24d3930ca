// SPDX-License-Identifier: MIT
// The inputs of the set: switching, plugging, what the platform records, and the secondary stack.
#include "d2tv/D2TVCAPI.h"
#include "virtualtv/set/SetTest.h"

namespace virtualtv::test {
namespace {

class Inputs : public SetTest {
 protected:
  /// The state, the current and the previous source that a window's source control reports; "none" for an unknown
  /// source.
  std::string told(WindowId on = WindowId::main) {
    ISourceControl* control = nullptr;
    EXPECT_EQ(TVServiceAPI::CreateSourceControl(on == WindowId::main ? PROFILE_MAIN : PROFILE_PIP, 0, &control), 0);
    int state = -7;
    EXPECT_EQ(control->GetSourceState(&state), 1);
    ESource now{};
    ESource before{};
    const bool shown = control->GetCurrentSourceInfo(now) > 0;
    const bool knowsBefore = control->GetPreviousSourceInfo(before) > 0;
    return std::to_string(state) + " " + (shown ? std::to_string(now) : "none") + " " +
           (knowsBefore ? std::to_string(before) : "none");
  }
};

TEST_F(Inputs, TheBuiltInSetShowsTvAndShowedHdmi) {
  EXPECT_EQ(told(), "2 0 13");
  EXPECT_EQ(told(WindowId::pip), "-1 none none");
}

TEST_F(Inputs, ASwitchShowsAPluggedInputAndRemembersTheOneBefore) {
  EXPECT_GT(switchTo(hdmi2), 0);
  EXPECT_EQ(told(), "2 14 0");
  EXPECT_GT(switchTo(hdmi1), 0);
  EXPECT_EQ(told(), "2 13 14");
  EXPECT_EQ(told(WindowId::pip), "-1 none none");
}

TEST_F(Inputs, ASwitchToTheInputShownKeepsTheOneBefore) {
  switchTo(hdmi2);
  EXPECT_GT(switchTo(hdmi2), 0);
  EXPECT_EQ(told(), "2 14 0");
}

TEST_F(Inputs, AnInputWithNothingPluggedInHasNoSignal) {
  EXPECT_GT(switchTo(hdmi3), 0);
  EXPECT_EQ(told(), "1 15 0");
}

TEST_F(Inputs, ThePictureComesAndGoesWithThePlug) {
  switchTo(hdmi1);
  switchTo(hdmi1, WindowId::pip);
  tv->plug(hdmi1, false);
  EXPECT_EQ(told(), "1 13 0");
  EXPECT_EQ(told(WindowId::pip), "1 13 none");
  tv->plug(hdmi1, true);
  EXPECT_EQ(told(), "2 13 0");
  EXPECT_EQ(told(WindowId::pip), "2 13 none");
}

TEST_F(Inputs, APlugElsewhereIsNotNoticedUntilTheSwitch) {
  tv->plug(hdmi3, true);
  EXPECT_EQ(told(), "2 0 13");
  switchTo(hdmi3);
  EXPECT_EQ(told(), "2 15 0");
}

TEST_F(Inputs, AWindowWithoutASourceStaysWithoutWhenSomethingIsPluggedIn) {
  leaveSource();
  tv->plug(avInput, true);
  EXPECT_EQ(told(), "-1 none 0");
}

TEST_F(Inputs, AnInputThatTheSetDoesNotHaveIsRefused) {
  const TvState before = tv->state();
  for (const int source : {-1, 2, 12, 43, 99}) EXPECT_EQ(switchTo(source), 0) << source;
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(lastService(), "tv-service");
}

TEST_F(Inputs, AWindowLeftWithoutASourceRemembersTheLastOne) {
  switchTo(hdmi1);
  EXPECT_GT(leaveSource(), 0);
  EXPECT_EQ(told(), "-1 none 13");
  EXPECT_GT(leaveSource(), 0);
  EXPECT_EQ(told(), "-1 none 13");
  switchTo(hdmi2);
  EXPECT_EQ(told(), "2 14 13");
}

TEST_F(Inputs, ASwitchWithAServiceShowsBoth) {
  tv->import({serviceOf(10, 0, 1), serviceOf(40, 1, 2)}, false);
  switchTo(hdmi1);
  EXPECT_GT(switchTo(antennaInput, 40), 0);
  EXPECT_EQ(told(), "2 0 13");
  EXPECT_EQ(current(), 40U);
  EXPECT_EQ(previous(), 10U);
  EXPECT_EQ(window().mode, (TvMode{1, 0}));
}

TEST_F(Inputs, ASwitchToAServiceThatThereIsNoneOfChangesNothing) {
  switchTo(hdmi1);
  const TvState before = tv->state();
  EXPECT_EQ(switchTo(antennaInput, 11), 0);
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(lastService(), "av-service");
}

TEST_F(Inputs, ASwitchIsToldToListeners) {
  noteEvents();
  switchTo(hdmi1, WindowId::pip);
  ASSERT_EQ(events.size(), 1U);
  const auto& change = changeOf<SourceChanged>(events[0]);
  EXPECT_EQ(change.window, WindowId::pip);
  EXPECT_EQ(change.before, (WindowSource{SOURCE_STATE_NONE, -1, -1}));
  EXPECT_EQ(change.after, (WindowSource{SOURCE_STATE_SHOWN, hdmi1, -1}));
}

// What the platform records.

TEST_F(Inputs, TheLastServiceFollowsTheMainWindow) {
  EXPECT_EQ(lastService(), "tv-service");
  switchTo(hdmi1);
  EXPECT_EQ(lastService(), "av-service");
  switchTo(antennaInput);
  EXPECT_EQ(lastService(), "tv-service");
}

TEST_F(Inputs, TheLastServiceStaysWhenTheWindowIsLeftWithoutASource) {
  switchTo(hdmi1);
  leaveSource();
  EXPECT_EQ(lastService(), "av-service");
}

TEST_F(Inputs, TheLastServiceDoesNotFollowPictureInPicture) {
  switchTo(hdmi1, WindowId::pip);
  EXPECT_EQ(lastService(), "tv-service");
}

// The secondary stack.

TEST_F(Inputs, TheIspSourceIsShownAndRecorded) {
  EXPECT_EQ(D2TVCAPI_setSourceISP(), 1);
  EXPECT_TRUE(tv->state().isp.shown);
  EXPECT_EQ(lastService(), "isp-service");
  leaveSource();
  EXPECT_TRUE(tv->state().isp.shown) << "it is not the TV service's to leave";
  EXPECT_EQ(lastService(), "isp-service");
}

TEST_F(Inputs, TheIspSourceGoesWhenTheMainWindowShowsAnInput) {
  for (const int source : {antennaInput, hdmi1}) {
    D2TVCAPI_setSourceISP();
    switchTo(hdmi2, WindowId::pip);
    EXPECT_TRUE(tv->state().isp.shown);
    switchTo(source);
    EXPECT_FALSE(tv->state().isp.shown);
    EXPECT_EQ(lastService(), source == antennaInput ? "tv-service" : "av-service");
  }
}

TEST_F(Inputs, TheIspSourceCannotBeShownWhenItsStackCannotBeReached) {
  tv->adjust([](TvState& state) { state.isp.present = false; });
  EXPECT_NE(D2TVCAPI_setSourceISP(), 1);
  EXPECT_FALSE(tv->state().isp.shown);
  EXPECT_EQ(lastService(), "tv-service");
}

}  // namespace
}  // namespace virtualtv::test
