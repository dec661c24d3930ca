// SPDX-License-Identifier: MIT
// The commands of the screen geometry: how they read their parameters and what they answer.
#include "Screen.h"
#include "window/lifecycle/Proxies.h"

namespace {

using support::commandLogs;
using support::Lines;
using support::place;

const Lines noNumbers{"", " ", "abc", "x1", "-", "+", "--1", ".5", "\xff", "%d"};

class ScreenCommandTest : public support::EngineTest {
 protected:
  /// The result code in the finish line of the last command; the other log lines are dropped.
  std::string finished() {
    const Lines lines = logs();
    const std::string before = "Finish result[";
    const std::size_t at = lines.empty() ? std::string::npos : lines.back().find(before);
    if (at == std::string::npos) return "none";
    const std::size_t start = at + before.size();
    return lines.back().substr(start, lines.back().find(']', start) - start);
  }

  /// Runs a command under a fault, which must be hit: its answer and its result code.
  std::string under(const std::string& words, const std::string& command, const Lines& parameters = {}) {
    const std::string answer = executeUnder(words, command, parameters);
    return answer + ", " + finished();
  }

  /// What the size call gets when these parameters are given, and a set accepts all.
  std::string sent(const Lines& parameters) {
    forget();
    EXPECT_EQ(under("IVideoControl::SetSize result=1", "SetScreenRect", parameters), "int 1, 1");
    const std::string call = calls().back();
    return call.substr(0, call.find(" -> "));
  }

  /// Opens an engine anew on a set whose proxies of a kind can't be made.
  void reopenWithout(const std::string& factory) {
    close();
    fault(factory + " always result=null");
    ASSERT_TRUE(open());
    forget();
  }

  const virtualtv::Rect& plane() { return tv().state()[virtualtv::WindowId::main].plane.rect; }
};

TEST_F(ScreenCommandTest, SetScreenRectPlacesThePictureAndGetScreenRectTellsIt) {
  EXPECT_EQ(execute("SetScreenRect", {"480", "270", "480", "270"}), "int 1");
  EXPECT_EQ(finished(), "1");
  EXPECT_EQ(calls().back(), "IVideoControl[main#1]::SetSize(x=960, y=540, height=540, width=960) -> 1");
  EXPECT_EQ(plane(), (virtualtv::Rect{960, 540, 960, 540}));
  EXPECT_EQ(execute("GetScreenRect"), "ascii x:480,y:270,w:480,h:270");
  EXPECT_EQ(finished(), "1");
}

TEST_F(ScreenCommandTest, SetScreenRectWithANegativePlaceFillsTheScreen) {
  for (const Lines& parameters : std::vector<Lines>{{"-1", "10", "20", "30"},
                                                    {"-1"},
                                                    {"-1", "abc", "%s", "\xff"},
                                                    {" -7x", "0", "0", "0"},
                                                    {"-99999999999999999999", "99999999999", "-1", "-1"}}) {
    ASSERT_EQ(execute("SetScreenRect", {"1", "2", "3", "4"}), "int 1");
    EXPECT_EQ(execute("SetScreenRect", parameters), "int 1");
    EXPECT_EQ(calls().back(), "IVideoControl[main#1]::SetDefaultSize() -> 1");
    EXPECT_EQ(plane(), virtualtv::baseScreen);
    EXPECT_EQ(execute("GetScreenRect"), "ascii x:0,y:0,w:960,h:540");
  }
}

TEST_F(ScreenCommandTest, SetScreenRectReadsTheDigitsAtTheFrontInTheOrderOfItsParameters) {
  EXPECT_EQ(sent({"1", "2", "3", "4"}), "IVideoControl[main#1]::SetSize(x=2, y=4, height=8, width=6)");
  EXPECT_EQ(sent({"+1", " 2", "03", "4.9"}), "IVideoControl[main#1]::SetSize(x=2, y=4, height=8, width=6)");
  EXPECT_EQ(sent({"1x", "-2", "3 4", "0x5"}), "IVideoControl[main#1]::SetSize(x=2, y=-4, height=0, width=6)");
}

TEST_F(ScreenCommandTest, SetScreenRectReadsWhatIsNoNumberAsZero) {
  for (const std::string& text : noNumbers) {
    EXPECT_EQ(sent({text, text, text, text}), "IVideoControl[main#1]::SetSize(x=0, y=0, height=0, width=0)") << text;
  }
  EXPECT_EQ(sent({}), "IVideoControl[main#1]::SetSize(x=0, y=0, height=0, width=0)");
}

TEST_F(ScreenCommandTest, SetScreenRectClampsNumbersAndTheirConversion) {
  EXPECT_EQ(sent({"2147483647", "-2147483648", "2147483648", "-2147483649"}),
            "IVideoControl[main#1]::SetSize(x=2147483647, y=-2147483648, height=-2147483648, width=2147483647)");
  EXPECT_EQ(sent({"4294967297", "-4294967295", "18446744073709551617", "99999999999999999999"}),
            "IVideoControl[main#1]::SetSize(x=2147483647, y=-2147483648, height=2147483647, width=2147483647)");
}

TEST_F(ScreenCommandTest, SetScreenRectAnswersZeroForEveryFailure) {
  const Lines corner{"480", "270", "480", "270"};
  for (const char* words : {"IVideoControl::SetSize result=0", "IVideoControl::SetSize result=throw",
                            "ISourceControl::GetCurrentSourceInfo result=0"}) {
    EXPECT_EQ(under(words, "SetScreenRect", corner), "int 0, 0");
  }
  EXPECT_EQ(under("IVideoControl::SetDefaultSize result=0", "SetScreenRect", {"-1"}), "int 0, 0");
  reopenWithout("TVServiceAPI::CreateVideoControl");
  EXPECT_EQ(execute("SetScreenRect", corner), "int 0");
  EXPECT_EQ(finished(), "0");
}

TEST_F(ScreenCommandTest, GetScreenRectAnswersTheEmptyTextForAResultOfZero) {
  EXPECT_EQ(under("IVideoControl::GetSize result=0", "GetScreenRect"), "ascii, 0");
  EXPECT_EQ(under("IVideoControl::GetSize result=throw", "GetScreenRect"), "ascii, 0");
  EXPECT_EQ(under("ISourceControl::GetCurrentSourceInfo result=0", "GetScreenRect"), "ascii, 0");
  reopenWithout("TVServiceAPI::CreateVideoControl");
  EXPECT_EQ(execute("GetScreenRect"), "ascii");
  EXPECT_EQ(finished(), "0");
}

TEST_F(ScreenCommandTest, GetScreenRectAnswersTheTextThatItsBufferHolds) {
  EXPECT_EQ(under(screen::sizeOf(-2000000000, -2000000000, -2000000000, -2000000000), "GetScreenRect"),
            "ascii x:-999999999,y:-999999999,w:-999999999,, 1");
}

TEST_F(ScreenCommandTest, GetAfdGeometryRectSizeAnswersTheTextOrTheEmptyOne) {
  const std::string call = "IVideoControl::GetAFDGeometryRectSize";
  EXPECT_EQ(under(call + " result=1 out.x=240 out.y=1 out.width=1440 out.height=1080", "GetAFDGeometryRectSize"),
            "ascii x:240,y:1,w:1440,h:1080, 1");
  EXPECT_EQ(under(call + " result=0", "GetAFDGeometryRectSize"), "ascii, 0");
  EXPECT_EQ(under(call + " result=throw", "GetAFDGeometryRectSize"), "ascii, 0");
  reopenWithout("TVServiceAPI::CreateVideoControl");
  EXPECT_EQ(execute("GetAFDGeometryRectSize"), "ascii");
  EXPECT_EQ(finished(), "0");
}

TEST_F(ScreenCommandTest, ModesAreAlwaysNine) {
  for (const char* command : {"GetScreenRect_PosMode", "GetScreenRect_SizeMode"}) {
    EXPECT_EQ(execute(command, {"1", "2"}), "int 9");
    EXPECT_EQ(logs(), commandLogs(command, {"1", "2"}, {place(command, 0)}, 0));
  }
  EXPECT_EQ(calls(), Lines());
}

TEST_F(ScreenCommandTest, SettingModesIsAlwaysMinusOne) {
  for (const Lines& parameters : std::vector<Lines>{{"0", "0"}, {"9", "9"}, {}, {"abc", "-1"}, {"99999999999", ""}}) {
    EXPECT_EQ(execute("SetScreenRect_PosSizeMode", parameters), "int -1");
    EXPECT_EQ(logs(),
              commandLogs("SetScreenRect_PosSizeMode", parameters, {place("SetScreenRect_PosSizeMode", 0)}, -1));
  }
  EXPECT_EQ(calls(), Lines());
}

TEST_F(ScreenCommandTest, GetStateShowAnswersTheStateOrTheNegativeResult) {
  const std::string call = "ISourceControl::GetSourceState";
  EXPECT_EQ(under(call + " out.state=2", "GetState_Show"), "int 1, 1");
  EXPECT_EQ(under(call + " out.state=1", "GetState_Show"), "int 3, 1");
  EXPECT_EQ(under(call + " out.state=0", "GetState_Show"), "int 4, 1");
  EXPECT_EQ(under(call + " out.state=-1", "GetState_Show"), "int 0, 1");
  EXPECT_EQ(under(call + " result=0", "GetState_Show"), "int -1, -1");
  EXPECT_EQ(under(call + " result=throw", "GetState_Show"), "int -1, -1");
}

TEST_F(ScreenCommandTest, GetStateShowWithoutASourceControlAnswersItsPreset) {
  reopenWithout("TVServiceAPI::CreateSourceControl");
  EXPECT_EQ(execute("GetState_Show"), "int 5");
  EXPECT_EQ(finished(), "0");
}

TEST_F(ScreenCommandTest, AnEngineWhoseWorkerFailedToConnectAsksThePictureInPictureWindow) {
  close();
  fault("TVServiceAPI::CreateSourceControl result=null");
  ASSERT_TRUE(open());
  forget();
  EXPECT_EQ(execute("GetState_Show"), "int 0") << "which has no source";
  EXPECT_EQ(calls(), (Lines{lifecycle::made("TVServiceAPI::CreateSourceControl", 101),
                            "ISourceControl[pip#2]::GetSourceState() state=-1 -> 1"}));
}

}  // namespace
