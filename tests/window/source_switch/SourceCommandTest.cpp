// The commands that switch sources, through the engine: what they read as parameters, and what they answer.
#include "Switching.h"
#include "services/ServiceStore.h"

namespace switching {

namespace {

using support::commandLogs;
using support::place;
using virtualtv::WindowId;

/// An engine on a set that shows live TV.
class SourceCommandTest : public channels::ChannelEngineTest {
 protected:
  int shown(WindowId window = WindowId::main) { return tv().state()[window].source; }

  /// The line in which the worker tells what it was given.
  std::string given(const std::string& command, const Lines& parameters) {
    forget();
    execute(command, parameters);
    const Lines lines = logs();
    return lines.size() > 2 ? lines[2] : "nothing";
  }
};

/// Texts that are no whole number of 32 bits.
const Lines noNumbers{"",     " ",           "abc", "31x",  " 31",        "31 ",        "0x1F",
                      "31.0", "+",           "-",   "--31", "2147483648", "31\n",       "31,",
                      "\xff", "-2147483649", "1e1", "3 1",  "+-31",       "4294967327", "99999999999999999999"};

TEST_F(SourceCommandTest, SetSourceSwitches) {
  EXPECT_EQ(execute("SetSource", {"31", "0"}), "int 1");
  EXPECT_EQ(finished(), "1");
  EXPECT_EQ(shown(), 13);
  EXPECT_EQ(execute("GetSource"), "int 31");
  EXPECT_EQ(execute("GetSource", {"8"}), "int 0");
}

TEST_F(SourceCommandTest, SetSourceWithoutANumberAnswersMinusOneAndAsksTheWorkerNothing) {
  for (const std::string& source : noNumbers) {
    for (const char* seek : {"", "0", "8"}) {
      forget();
      EXPECT_EQ(execute("SetSource", {source, seek}), "int -1") << '\'' << source << '\'';
      EXPECT_EQ(calls(), Lines());
      EXPECT_EQ(logs(), commandLogs("SetSource", {source, seek}, {}, -1));
    }
  }
  EXPECT_EQ(shown(), 0);
}

TEST_F(SourceCommandTest, SetSourceReadsASeekThatIsNoNumberAs101) {
  for (const std::string& seek : noNumbers) {
    EXPECT_EQ(given("SetSource", {"31", seek}), "3 eSource=[31] nSeek=[101]") << '\'' << seek << '\'';
  }
  EXPECT_EQ(given("SetSource", {"31"}), "3 eSource=[31] nSeek=[101]");
}

TEST_F(SourceCommandTest, SetSourcePassesItsNumbersOn) {
  EXPECT_EQ(given("SetSource", {"+31", "-1"}), "3 eSource=[31] nSeek=[-1]");
  EXPECT_EQ(given("SetSource", {"032", "2147483647"}), "3 eSource=[32] nSeek=[2147483647]");
  EXPECT_EQ(given("SetSource", {"-2147483648", "08"}), "3 eSource=[-2147483648] nSeek=[8]");
}

TEST_F(SourceCommandTest, SetSourceWithAPreviousSeekGoesBack) {
  execute("SetSource", {"31", "0"});
  for (const char* seek : {"6", "8", "9"}) {
    const int before = shown();
    EXPECT_EQ(execute("SetSource", {"1000", seek}), "int 1");
    EXPECT_EQ(shown(), before == 13 ? 0 : 13) << seek;
  }
}

TEST_F(SourceCommandTest, SetSourceAnswersTheWorkersCode) {
  EXPECT_EQ(execute("SetSource", {"1", "0"}), "int 0");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(execute("SetSource", {"0", "0"}), "int 1") << "it is shown already";
  fault("vconf_get_int result=-1");
  EXPECT_EQ(execute("SetSource", {"0", "6"}), "int 0");
  EXPECT_EQ(finished(), "0");
}

TEST_F(SourceCommandTest, SetSourceAndTuneSwitchesToTheChannel) {
  ASSERT_EQ(execute("SetSource", {"31"}), "int 1");
  EXPECT_EQ(execute("SetSourceAndTune", {"0", "8"}), "int 1");
  EXPECT_EQ(finished(), "1");
  EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 8");
  EXPECT_EQ(execute("GetSource"), "int 0");
}

TEST_F(SourceCommandTest, SetSourceAndTuneSwitchesToAChannelWithTheMajorNumberZero) {
  ASSERT_TRUE(tv().setField(*tv().services().keyOf(282), TCServiceData::MAJOR, std::uint64_t{0}));
  ASSERT_EQ(execute("SetSource", {"31"}), "int 1");
  EXPECT_EQ(execute("SetSourceAndTune", {"0", "0"}), "int 1");
  EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 0");
}

TEST_F(SourceCommandTest, SetSourceAndTuneNeedsTwoNumbers) {
  for (const std::string& text : noNumbers) {
    for (const Lines& parameters : {Lines{text, "8"}, Lines{"31", text}, Lines{text, text}}) {
      forget();
      EXPECT_EQ(execute("SetSourceAndTune", parameters), "int -1") << ::testing::PrintToString(parameters);
      EXPECT_EQ(calls(), Lines());
      EXPECT_EQ(logs(), commandLogs("SetSourceAndTune", parameters, {}, -1));
    }
  }
  EXPECT_EQ(given("SetSourceAndTune", {"+31", "-2147483648"}), "3 eSource=[31], nMajor=[-2147483648]");
}

TEST_F(SourceCommandTest, SetSourceAndTuneAnswersTheWorkersCode) {
  ASSERT_EQ(execute("SetSource", {"31"}), "int 1");
  EXPECT_EQ(execute("SetSourceAndTune", {"0", "70"}), "int 0");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(shown(), 13);
}

TEST_F(SourceCommandTest, SetPreviousSourceGoesBackAndForth) {
  ASSERT_EQ(execute("SetSource", {"31"}), "int 1");
  for (const int source : {0, 13, 0}) {
    EXPECT_EQ(execute("SetPreviousSource"), "int 1");
    EXPECT_EQ(finished(), "1");
    EXPECT_EQ(shown(), source);
  }
}

TEST_F(SourceCommandTest, SetPreviousSourceAnswersTheWorkersCode) {
  fault("vconf_get_int result=-1");
  EXPECT_EQ(execute("SetPreviousSource"), "int 0");
  EXPECT_EQ(finished(), "0");
}

TEST_F(SourceCommandTest, DisconnectSourceAnswersOneOrZero) {
  EXPECT_EQ(execute("DisconnectSource"), "int 1");
  EXPECT_EQ(finished(), "1");
  EXPECT_EQ(shown(), -1);
  EXPECT_EQ(execute("GetSource"), "int 43");
  EXPECT_EQ(execute("DisconnectSource"), "int 1") << "and again";
  fault("ISourceControl::DeactivateSource result=0");
  EXPECT_EQ(execute("DisconnectSource"), "int 0");
  EXPECT_EQ(finished(), "0");
}

TEST_F(SourceCommandTest, ParametersThatACommandDoesNotHaveDoNotCount) {
  ASSERT_EQ(execute("SetSource", {"31", "", "8", "9"}), "int 1");
  EXPECT_EQ(execute("SetPreviousSource", {"33", "x"}), "int 1");
  EXPECT_EQ(shown(), 0);
  EXPECT_EQ(execute("DisconnectSource", {"x", "x", "x", "x"}), "int 1");
}

TEST_F(SourceCommandTest, WithoutSourceControlTheCommandsThatMakeNoneAnswerMinusOne) {
  close();
  fault("TVServiceAPI::CreateSourceControl always result=null");
  ASSERT_TRUE(open());
  EXPECT_EQ(execute("SetSource", {"31"}), "int -1");
  EXPECT_EQ(execute("SetSourceAndTune", {"31", "7"}), "int -1");
  EXPECT_EQ(execute("SetPreviousSource"), "int 0");
  EXPECT_EQ(execute("DisconnectSource"), "int 0");
}

TEST_F(SourceCommandTest, AnEngineInThePictureInPictureWindowFailsAfterItHasSwitched) {
  ASSERT_EQ(execute("SetWindow", {"1"}), "int 1");
  EXPECT_EQ(execute("SetSource", {"31"}), "int 0");
  EXPECT_EQ(shown(WindowId::pip), 13);
  EXPECT_EQ(shown(), 0);
  EXPECT_EQ(execute("GetSource"), "int 31");
  EXPECT_EQ(execute("GetSource", {"6"}), "int 43");
  EXPECT_EQ(execute("DisconnectSource"), "int 0");
  EXPECT_EQ(shown(WindowId::pip), -1);
}

TEST_F(SourceCommandTest, IspAndBack) {
  EXPECT_EQ(execute("SetSource", {"48"}), "int 1");
  EXPECT_EQ(execute("GetSource"), "int 43") << "the TV service shows none";
  EXPECT_EQ(execute("GetSource", {"6"}), "int 0");
  EXPECT_EQ(textSetting("db/boot/last_service"), "isp-service");
  EXPECT_EQ(execute("SetSource", {"0"}), "int 1");
  EXPECT_EQ(execute("GetSource"), "int 0");
  EXPECT_NE(textSetting("db/boot/last_service"), "isp-service");
}

TEST_F(SourceCommandTest, AllThatASwitchLogsStandsBetweenTheEnginesLines) {
  forget();
  execute("SetSource", {"1", "0"});
  EXPECT_EQ(logs(),
            commandLogs(
                "SetSource", {"1", "0"},
                join({{place("SetSource"), "3 eSource=[1] nSeek=[0]", "3 t_SetSource input ePLSource = 1, nMajor = -1"},
                      sources::currentLogs(0),
                      sources::converted(0, 0),
                      {"3 t_SetSource input eCurPLSource = 0", "3 ePLSource=[1], current db/emp/mainsource = 0 success",
                       "3 appid is test.app", "3 t_IsConvertable input ePLSource = 1",
                       "0 t_IsConvertable can't convert to  ESource", "0 t_SetSource failed\n"}}),
                0));
}

}  // namespace

}  // namespace switching
