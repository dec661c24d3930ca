// SPDX-License-Identifier: MIT
#include "shell/Hint.h"

#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

const Lines refused{"refused"};
const std::string unknown = "# no command has this name: '.help commands' lists those of the plug-in, Tab completes";

class HintTest : public SessionTest {
 protected:
  std::string hintOn(std::string_view line, const Lines& printed) { return shell::hintOn(*session, line, printed); }
  /// Runs a line. @return the hint below its output.
  std::string hintBelow(std::string_view line) { return hintOn(line, lines(line)); }
};

std::string meant(const std::string& line) {
  return "# did you mean: " + line;
}

TEST_F(HintTest, NamesTheCommandThatWasMisspelt) {
  EXPECT_EQ(hintOn("gettvmode", refused), meant("GetTVMode"));
  EXPECT_EQ(hintOn("GetSorce 2", refused), meant("GetSource 2"));
  EXPECT_EQ(hintOn("GetChannelName 'a b'", refused), meant("GetChannel_Name 'a b'"));
  EXPECT_EQ(hintOn("getfull", refused), meant("GetFullChannelList"));
}

TEST_F(HintTest, TakesAwayWhatACallInAProgramHas) {
  EXPECT_EQ(hintOn("SetChannel(3,0)", refused), meant("SetChannel 3 0"));
  EXPECT_EQ(hintOn("SetChannel( 3, \"0\" );", refused), meant("SetChannel 3 0"));
  EXPECT_EQ(hintOn("tv.setchannel('a, b', 0)", refused), meant("SetChannel 'a, b' 0"));
  EXPECT_EQ(hintOn("await tv.Execute('SetChannel', 3, 0)", refused), meant("SetChannel 3 0"));
  EXPECT_EQ(hintOn("GetSource()", refused), meant("GetSource"));
  EXPECT_EQ(hintOn("GetSource;", refused), meant("GetSource"));
}

TEST_F(HintTest, TakesAwayTheNameOfTheProgram) {
  EXPECT_EQ(hintOn("$ ./run exec GetSource 2", refused), meant("GetSource 2"));
  EXPECT_EQ(hintOn("build/release/emp-window exec getsource", refused), meant("GetSource"));
  EXPECT_EQ(hintOn("exec GetSource", refused), meant("GetSource"));
  EXPECT_EQ(hintOn("emp-window import a.conf", refused), meant(".import a.conf"));
}

TEST_F(HintTest, NamesTheCommandWhoseFullStopIsMissingOrTooMany) {
  EXPECT_EQ(hintOn("help", refused), meant(".help"));
  EXPECT_EQ(hintOn("Help GetSource", refused), meant(".help GetSource"));
  EXPECT_EQ(hintOn("set main.source 17", refused), meant(".set main.source 17"));
  EXPECT_EQ(hintOn("+ trace on", refused), meant(".trace on"));
  const Lines error{"error: there is no command"};
  EXPECT_EQ(hintOn(". help", error), meant(".help"));
  EXPECT_EQ(hintOn(".GetSource 2", error), meant("GetSource 2"));
}

TEST_F(HintTest, KnowsHowOtherShellsAreEndedAndAskedForHelp) {
  for (const char* word : {"exit", "quit", "Exit", "bye", "q", ":q", "logout", "exit 0", "exit()"}) {
    EXPECT_EQ(hintOn(word, refused), meant(".quit"));
  }
  for (const char* word : {"?", "h", "--help", "man", "usage"}) EXPECT_EQ(hintOn(word, refused), meant(".help"));
  EXPECT_EQ(hintOn(".exit", {"error: there is no command '.exit'"}), meant(".quit"));
}

TEST_F(HintTest, NamesTheDotCommandThatWasMisspelt) {
  const Lines error{"error: there is no command"};
  EXPECT_EQ(hintOn(".servces 3", error), meant(".services 3"));
  EXPECT_EQ(hintOn("> .Help", error), meant(".help"));
  EXPECT_EQ(hintOn(".re", error), "# did you mean one of: .reopen .reset .restart .restore");
  EXPECT_EQ(hintOn(".zzzzz", error), "");
}

TEST_F(HintTest, NamesTheTopicOfHelpThatWasMisspelt) {
  const Lines error{"error: there is no help on"};
  EXPECT_EQ(hintOn(".help gettvmode", error), meant(".help GetTVMode"));
  EXPECT_EQ(hintOn(".help set", error), meant(".help .set"));
  EXPECT_EQ(hintOn(".help zzzzz", error), "");
}

TEST_F(HintTest, NamesTheTopicInThePluralBeforeTheCommandOfTheSameName) {
  EXPECT_EQ(hintBelow(".help fault"), meant(".help faults"));
  EXPECT_EQ(hintBelow(".help knob"), meant(".help knobs"));
  EXPECT_EQ(hintBelow(".help .fault"), "");
}

TEST_F(HintTest, NamesTheKnobThatWasMisspelt) {
  EXPECT_EQ(hintBelow(".get regoin"), meant(".get region"));
  EXPECT_EQ(hintBelow(".set main.sorce 3"), meant(".set main.source 3"));
  EXPECT_EQ(hintBelow(".get input.13.plgged"), meant(".get input.13.plugged"));
  EXPECT_EQ(hintBelow(".get service.#1.nmae"), meant(".get service.#1.name"));
  EXPECT_EQ(hintBelow(".set latency.vconf_get_itn 5"), meant(".set latency.vconf_get_int 5"));
  EXPECT_EQ(hintBelow(".get zzzzz"), "");
}

TEST_F(HintTest, NamesNoKnobWhereTheNameIsRight) {
  EXPECT_EQ(hintBelow(".get main"), "");
  EXPECT_EQ(hintBelow(".set services 3"), "");
  EXPECT_EQ(hintBelow(".set main.source x"), "");
  EXPECT_EQ(hintBelow(".set main.pictre 3"), "");  // the meant knob can only be read
}

TEST_F(HintTest, NamesTheOperationThatWasMisspelt) {
  EXPECT_EQ(hintBelow(".fault IServiceNavigation::GetTvMod result=0"),
            meant(".fault IServiceNavigation::GetTvMode result=0"));
  EXPECT_EQ(hintBelow(".fault claer 1"), meant(".fault clear 1"));
  EXPECT_EQ(hintBelow(".fault vconf_get_int nht=1"), "");
  EXPECT_EQ(hintBelow(".fault clear 7"), "");
}

TEST_F(HintTest, LeavesOutTheParameterListThatACommandRefuses) {
  EXPECT_EQ(hintOn("+ GetSource 2", {"refused int -1"}), meant("GetSource 2"));
  EXPECT_EQ(hintOn("+ setscreencroprect 1 2", {"refused int -1"}), meant("+ SetScreenCropRect 1 2"));
}

TEST_F(HintTest, WritesAParameterListWhereThatIsHowACommandTakesSoManyParameters) {
  const std::string nine = "SetScreenCropRect 1 2 3 4 5 6 7 8 9";
  EXPECT_EQ(hintOn("SetScreenCropRect(1, 2, 3, 4, 5, 6, 7, 8, 9)", refused), meant("+ " + nine));
  EXPECT_EQ(hintOn("tv.Execute('setscreencroprect',1,2,3,4,5,6,7,8,9);", refused), meant("+ " + nine));
  const Lines error{"error: SetScreenCropRect: 9 parameters, at most 4 are passed"};
  EXPECT_EQ(hintOn(nine, error), meant("+ " + nine));
  EXPECT_EQ(hintOn("setscreencroprect 1 2 3 4 5 6 7 8 9", error), meant("+ " + nine));
  EXPECT_EQ(hintOn("SetScreenCropRect(1, 2, 3, 4)", refused), meant("SetScreenCropRect 1 2 3 4"));
  EXPECT_EQ(hintOn("tv.ExecuteWithParamList(\"SetScreenCropRect\", 1, 2)", refused), meant("+ SetScreenCropRect 1 2"));
}

TEST_F(HintTest, WritesNoParameterListForACommandThatTakesNone) {
  EXPECT_EQ(hintOn("+ getsource 2", {"refused int -1"}), meant("GetSource 2"));
  EXPECT_EQ(hintOn("tv.ExecuteWithParamList('GetSource', 2)", refused), meant("GetSource 2"));
  EXPECT_EQ(hintOn("+ FindChannel 1 2 3 4 5", {"refused int -1"}), meant("FindChannel"));
  EXPECT_EQ(hintOn("FindChannel 1 2 3 4 5", {"error: FindChannel: 5 parameters, at most 4 are passed"}), "");
}

TEST_F(HintTest, PutsWordsTogetherThatWereWrittenApart) {
  EXPECT_EQ(hintOn("Get Source", refused), meant("GetSource"));
  EXPECT_EQ(hintOn("get source 2", refused), meant("GetSource 2"));
  EXPECT_EQ(hintOn("Get Channel Name 0", refused), meant("GetChannel_Name 0"));
  EXPECT_EQ(hintOn("GetChannel Name 0", refused), meant("GetChannel_Name 0"));
  EXPECT_EQ(hintOn("Get Current Channel Info", refused), meant("GetCurrentChannelInfo"));
  EXPECT_EQ(hintOn("emp-window exec Set Channel 3 0", refused), meant("SetChannel 3 0"));
  EXPECT_EQ(hintOn("Set Channel 1 2 3 4", {"error: Set: 5 parameters, at most 4 are passed"}),
            meant("SetChannel 1 2 3 4"));
  EXPECT_EQ(hintOn("get main.source", refused), meant(".get main.source"));
  EXPECT_EQ(hintOn("get main", refused), meant(".get main"));
}

TEST_F(HintTest, SaysWhereNamesStandWhenNothingIsNear) {
  EXPECT_EQ(hintOn("zzzzz", refused), unknown);
  EXPECT_EQ(hintOn("GetChannel", refused), unknown);
  EXPECT_EQ(hintOn("''", refused), unknown);
}

TEST_F(HintTest, IsSilentWhereNothingIsToBeSaid) {
  EXPECT_EQ(hintOn("gettvmode", {"int 1"}), "");
  EXPECT_EQ(hintOn("gettvmode", {}), "");
  EXPECT_EQ(hintOn("GetSource 2", {"refused"}), "");
  EXPECT_EQ(hintOn("GetSource 'x", {"error: no closing ' for the one at column 11"}), "");
  EXPECT_EQ(hintOn(".trace maybe", {"error: usage: .trace on|off"}), "");
  EXPECT_EQ(hintOn(".help", {"error: of some other kind"}), "");
}

TEST_F(HintTest, IsOneLineThatCanStandInATranscript) {
  EXPECT_EQ(hintOn("getsource '\x01'", refused), "# did you mean: GetSource '\\x01'");
}

}  // namespace
}  // namespace virtualtv::shell
