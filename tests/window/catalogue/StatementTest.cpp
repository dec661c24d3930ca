// SPDX-License-Identifier: MIT
// Statements of the help texts that go beyond the codes of answers.
#include <gtest/gtest.h>

#include "support/TvTest.h"

namespace {

using virtualtv::WindowId;

constexpr const char* mainKey = "db/emp/mainsource";
constexpr const char* pipKey = "db/emp/pipsource";

class StatementTest : public support::EngineTest {
 protected:
  /// Opens the engine anew while a factory of the set fails once.
  void startWithout(const std::string& factory) {
    close();
    fault("TVServiceAPI::" + factory + " result=null");
    open();
    clearFaults();
    forget();
  }

  virtualtv::ServiceKey on(WindowId window) { return tv().state()[window].service; }
};

// The selected window.

TEST_F(StatementTest, AConnectionThatFailedAtTheStartIsMadeForPictureInPictureUntilAWindowIsSelected) {
  startWithout("CreateVideoControl");
  EXPECT_EQ(execute("GetScreenRect"), "ascii x:648,y:351,w:288,h:162") << "the place of picture-in-picture";
  EXPECT_EQ(execute("GetSource", {"0"}), "int 0") << "what was connected is the main window's";
  EXPECT_EQ(execute("SetWindow", {"0"}), "int 1");
  EXPECT_EQ(execute("GetScreenRect"), "ascii x:0,y:0,w:960,h:540");
}

TEST_F(StatementTest, WithoutTheNavigationThatFailedAtTheStartListsAreEmptyUntilTheMainWindowIsSelected) {
  startWithout("CreateServiceNavigation");
  EXPECT_EQ(execute("FindChannel", {"0", "1"}), "int 0");
  EXPECT_EQ(execute("GetFullChannelList"), "int -1");
  EXPECT_EQ(execute("SetWindow", {"0"}), "int 1");
  EXPECT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
}

TEST_F(StatementTest, AWindowIsSelectedWithoutAConnectionForSubtitles) {
  fault("TVServiceAPI::CreateDataControl result=null");
  EXPECT_EQ(execute("SetWindow", {"1"}), "int 1");
  EXPECT_EQ(execute("GetScreenRect"), "ascii x:648,y:351,w:288,h:162");
}

TEST_F(StatementTest, ASelectionThatFailsChangesOnlyTheConnectionsMadeBefore) {
  fault("TVServiceAPI::CreateVideoControl result=null");
  EXPECT_EQ(execute("SetWindow", {"1"}), "int 0");
  EXPECT_EQ(execute("GetSource", {"0"}), "int 43") << "the source is that of picture-in-picture";
  EXPECT_EQ(execute("GetScreenRect"), "ascii x:0,y:0,w:960,h:540") << "the place is the main window's";
}

TEST_F(StatementTest, TheSignalIsThatOfTheMainWindowsTunerWhicheverIsSelected) {
  ASSERT_EQ(execute("SetWindow", {"1"}), "int 1");
  ASSERT_EQ(execute("SetChannel", {"5", "1"}), "int 1");
  ASSERT_NE(on(WindowId::pip), on(WindowId::main));
  forget();
  EXPECT_EQ(execute("GetSignalStrength"), "int " + std::to_string(tv().signalStrength(WindowId::main).value_or(-1)));
  EXPECT_EQ(callsOf("ITunerControl[main#1]::GetSignalStrength").size(), 1U);
}

TEST_F(StatementTest, InPictureInPictureTracksAreListedAndHeardThereButSubtitlesChangeInTheMainWindow) {
  tv().adjust([](virtualtv::TvState& state) { state[WindowId::pip].bring(3); });
  ASSERT_EQ(tv().state()[WindowId::main].inUse.subtitle, -1);
  ASSERT_EQ(execute("SetWindow", {"1"}), "int 1");
  EXPECT_NE(ask("GetSubtitleInfo").text().find("\"NumOfSubtitle\" : 1"), std::string::npos)
      << "three belong to the service in the main window";
  EXPECT_NE(ask("GetMultiAudioInfo").text().find("\"pid\" : 1031"), std::string::npos);
  EXPECT_NE(ask("GetCurrentAudioInfo").text().find("\"pid\" : 1031"), std::string::npos);

  EXPECT_EQ(execute("ChangeSubtitle", {"1"}), "int 1") << "the service in picture-in-picture has no such subtitle";
  EXPECT_EQ(execute("GetCurrentSubtitle"), "int 6579573");
  EXPECT_EQ(tv().state()[WindowId::main].inUse.subtitle, 1);
  EXPECT_EQ(tv().state()[WindowId::pip].inUse.subtitle, -1);
}

// Sources.

TEST_F(StatementTest, NumbersThatStandForNoSourceAreRefusedOrShowLiveTvAndAreRecordedAsTheyStand) {
  for (int number = 0; number <= 42; ++number) {
    ASSERT_EQ(execute("SetSource", {"31"}), "int 1");
    const bool refused = (number >= 1 && number <= 7) || (number >= 11 && number <= 14);
    if (refused) {
      EXPECT_EQ(execute("SetSource", {std::to_string(number)}), "int 0") << number;
      EXPECT_EQ(execute("GetSource", {"0"}), "int 31") << number;
    } else if (number == 8 || number == 9 || number == 10 || number == 18 || number == 22 || number == 26 ||
               number == 30 || number == 38 || number == 42) {
      EXPECT_EQ(execute("SetSource", {std::to_string(number)}), "int 1") << number;
      EXPECT_EQ(execute("GetSource", {"0"}), "int 0") << number;
      EXPECT_EQ(intSetting(mainKey), number);
    }
  }
}

TEST_F(StatementTest, Source53IsToldButNotSwitchedTo) {
  showSource(WindowId::main, 31);
  EXPECT_EQ(execute("GetSource", {"0"}), "int 53");
  ASSERT_EQ(execute("SetSource", {"0"}), "int 1");
  EXPECT_EQ(execute("SetSource", {"53"}), "int 1");
  EXPECT_EQ(execute("GetSource", {"0"}), "int 43");
  EXPECT_EQ(intSetting(mainKey), 53);
}

TEST_F(StatementTest, AWindowWhoseStateIsNotToldShowsNoSource) {
  fault("ISourceControl::GetSourceState result=0");
  EXPECT_EQ(execute("GetSource", {"0"}), "int 43");
}

TEST_F(StatementTest, InPictureInPictureASwitchIsASuccessOnlyWhereItIsShownAndTheKeyAgreesOrIsMissing) {
  ASSERT_EQ(execute("SetWindow", {"1"}), "int 1");
  for (const std::string source : {"0", "31"}) {
    EXPECT_EQ(execute("SetSource", {source}), "int 0");
    EXPECT_EQ(execute("GetSource", {"0"}), "int " + source) << "it is shown all the same";
  }
  EXPECT_EQ(execute("SetSource", {"31"}), "int 0");
  EXPECT_EQ(execute("DisconnectSource"), "int 0");
  EXPECT_EQ(execute("DisconnectSource"), "int 0");
  setSetting(pipKey, 43);
  EXPECT_EQ(execute("DisconnectSource"), "int 1");
  setSetting(pipKey, "missing as a number");
  EXPECT_EQ(execute("DisconnectSource"), "int 1");
  EXPECT_EQ(execute("SetSource", {"31"}), "int 0");
  EXPECT_EQ(execute("SetSource", {"31"}), "int 1");
  EXPECT_EQ(execute("SetChannel", {"1", "0"}), "int 0") << "the source left can't be recorded";
  EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 1") << "and the channel is shown";
}

TEST_F(StatementTest, AStartWithoutASourceInTheMainWindowLeavesPictureInPicturesKeyAlone) {
  close();
  setSetting(pipKey, 7);
  tv().deactivate(WindowId::main);
  open();
  EXPECT_EQ(intSetting(pipKey), 7);
  close();
  tv().switchSource(WindowId::main, 0);
  open();
  EXPECT_EQ(intSetting(pipKey), 0);
}

// Channels and tracks.

TEST_F(StatementTest, TheLastMinorNumberStandsForAny) {
  for (const std::string minor : {"65535", "-1"}) {
    EXPECT_EQ(execute("SetChannel", {"5", minor}), "int 1");
    EXPECT_EQ(execute("GetCurrentChannel_Minor"), "int 1");
    ASSERT_EQ(execute("SetChannel", {"1", "0"}), "int 1");
  }
}

TEST_F(StatementTest, TracksThatCannotBeCountedAreNone) {
  fault("ServiceDataAux::GetAudioSize result=0");
  EXPECT_EQ(ask("GetMultiAudioInfo").text(), "{\n   \"NumOfAudio\" : 0\n}\n");
}

}  // namespace
