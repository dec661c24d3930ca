// SPDX-License-Identifier: MIT
// The commands of crop, plane order, show and mute through the engine: what they read as parameters, what they answer.
#include <algorithm>

#include "Picture.h"
#include "support/Channels.h"

namespace {

using picture::mainAv;
using picture::mainVideo;
using support::commandLogs;
using support::join;
using support::Lines;
using support::noNumbers;
using support::place;
using virtualtv::WindowId;

const std::string crop = "SetScreenCropRect";
const Lines corner{"10", "20", "300", "400"};

/// An engine on a set whose main window shows the source 5 (the plug-in's 20) all over the base screen.
class PictureCommand : public channels::ChannelEngineTest {
 protected:
  void SetUp() override {
    ChannelEngineTest::SetUp();
    showSource(WindowId::main, 5);
  }

  const virtualtv::Plane& plane(WindowId window = WindowId::main) { return tv().state()[window].plane; }
};

// SetScreenCropRect: shows the crop where the picture stands, in the plug-in's space.

std::string cropped(const std::string& display, const std::string& result = "1") {
  return mainVideo + "SetCropArea(crop=10,20,300,400, display=" + display + ") -> " + result;
}

TEST_F(PictureCommand, CropAsksWhereThePictureStandsAndCropsIntoThatPlace) {
  EXPECT_EQ(execute(crop, corner), "int 1");
  EXPECT_EQ(calls(), join({picture::askSource(),
                           {mainVideo + "GetSize() x=0 y=0 height=1080 width=1920 -> 1"},
                           picture::askSource(),
                           {cropped("0,0,540,960")}}))
      << "width and height come in each other's place";
  EXPECT_EQ(logs(), commandLogs(crop, corner,
                                join({{place("GetScreenRect", 0)},
                                      picture::sourceLogs(),
                                      {"3 GetScreenRect success!\n"},
                                      picture::sourceLogs(),
                                      {"3 SetSize success!\n"}}),
                                1));
}

TEST_F(PictureCommand, CropIsRefusedWhereThePictureStandsNobodyCanTell) {
  for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
    EXPECT_EQ(executeUnder("IVideoControl::GetSize " + way, crop, corner), "int -1") << way;
    EXPECT_EQ(callsOf("SetCropArea"), Lines()) << way;
    EXPECT_EQ(finished(), "-1") << way;
  }
}

TEST_F(PictureCommand, CropGoesAheadIntoZerosWhereThePlaceCannotBeAskedFor) {
  const std::string once = "ISourceControl::GetCurrentSourceInfo result=0";
  EXPECT_EQ(executeUnder(once, crop, corner), "int 0") << "the set refuses an empty rectangle";
  EXPECT_EQ(callsOf("SetCropArea"), Lines{cropped("0,0,0,0", "0")});
  EXPECT_EQ(finished(), "0");
  fault(once);
  fault("IVideoControl::SetCropArea result=1");
  EXPECT_EQ(execute(crop, corner), "int 1");
  EXPECT_TRUE(faultsHit());
  EXPECT_EQ(callsOf("SetCropArea"), Lines{cropped("0,0,0,0", "1 [fault]")});
  EXPECT_EQ(finished(), "1");
}

TEST_F(PictureCommand, CropAnswersMinusOneWithoutASource) {
  EXPECT_EQ(executeUnder("ISourceControl::GetCurrentSourceInfo always result=0", crop, corner), "int -1");
  const Lines made = calls();
  EXPECT_EQ(made.size(), 4U) << "the source is asked for by either operation";
  EXPECT_EQ(finished(), "-1");
}

TEST_F(PictureCommand, CropTriesTwiceForTheVideoControl) {
  close();
  fault("TVServiceAPI::CreateVideoControl always result=-1");
  ASSERT_TRUE(open());
  forget();
  EXPECT_EQ(execute(crop, corner), "int -1");
  EXPECT_EQ(calls().size(), 2U) << "the factory, by either operation";
  const Lines lines = logs();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "0 VideoControlproxy is NULL"), 2);
  clearFaults();
  EXPECT_EQ(executeUnder("TVServiceAPI::CreateVideoControl result=-1", crop, corner), "int 0");
  EXPECT_EQ(callsOf("SetCropArea").size(), 1U) << "the second try succeeds";
}

TEST_F(PictureCommand, CropTakesAPlaceThatIsNotWrittenForZeros) {
  EXPECT_EQ(executeUnder("IVideoControl::GetSize result=unwritten", crop, corner), "int 0");
  EXPECT_EQ(callsOf("SetCropArea"), Lines{cropped("0,0,0,0", "0")});
}

TEST_F(PictureCommand, CropAnswersZeroWhatTheSetRefuses) {
  EXPECT_EQ(executeUnder("IVideoControl::SetCropArea result=0", crop, corner), "int 0");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(executeUnder("IVideoControl::SetCropArea result=throw", crop, corner), "int 0");
  EXPECT_EQ(finished(), "0");
}

TEST_F(PictureCommand, CropWithoutFourNumbersAnswersMinusOneWithoutACall) {
  for (const std::string& text : noNumbers) {
    for (std::size_t at = 0; at < corner.size(); ++at) {
      Lines parameters = corner;
      parameters[at] = text;
      forget();
      EXPECT_EQ(execute(crop, parameters), "int -1") << ::testing::PrintToString(parameters);
      EXPECT_EQ(calls(), Lines());
      EXPECT_EQ(logs(), commandLogs(crop, parameters, {}, -1));
    }
  }
  EXPECT_EQ(plane().crop, std::nullopt);
}

TEST_F(PictureCommand, CropReadsWholeNumbersOfEitherSign) {
  fault("IVideoControl::SetCropArea result=1");
  EXPECT_EQ(execute(crop, {"+1", "-02", "2147483647", "-2147483648"}), "int 1");
  EXPECT_EQ(callsOf("SetCropArea"),
            Lines{mainVideo + "SetCropArea(crop=1,-2,2147483647,-2147483648, display=0,0,540,960) -> 1 [fault]"});
}

TEST_F(PictureCommand, CropIsThatOfTheWindowSelected) {
  ASSERT_EQ(execute("SetWindow", {"1"}), "int 1");
  showSource(WindowId::pip, 5);
  EXPECT_EQ(execute(crop, corner), "int 1");
  EXPECT_EQ(callsOf("IVideoControl[pip#2]::SetCropArea").size(), 1U);
  EXPECT_EQ(plane().crop, std::nullopt);
  EXPECT_NE(plane(WindowId::pip).crop, std::nullopt);
}

// GetScreenCropRect.

TEST_F(PictureCommand, CropIsReadAsText) {
  tv().crop(WindowId::main, {{10, 20, 300, 400}, {5, 6, 70, 80}});
  forget();
  EXPECT_EQ(execute("GetScreenCropRect"), "ascii {crop:{x:10,y:20,w:300,h:400},display:{x:5,y:6,w:70,h:80},plane:0}");
  EXPECT_EQ(calls(),
            join({picture::askSource(), {mainVideo + "GetCropArea() crop=10,20,300,400 display=5,6,70,80 -> 1"}}));
  EXPECT_EQ(logs(),
            commandLogs("GetScreenCropRect", {}, join({picture::sourceLogs(), {"3 GetScreenCropRect success!\n"}}), 1));
}

TEST_F(PictureCommand, CropTextHoldsTheLongestNumbers) {
  const std::string least = "-2147483648";
  const std::string four = least + "," + least + "," + least + "," + least;
  const std::string rect = "{x:" + least + ",y:" + least + ",w:" + least + ",h:" + least + "}";
  EXPECT_EQ(executeUnder("IVideoControl::GetCropArea result=1 out.crop=" + four + " out.display=" + four,
                         "GetScreenCropRect", {least}),
            "ascii {crop:" + rect + ",display:" + rect + ",plane:" + least + "}");
  EXPECT_EQ(executeUnder("IVideoControl::GetCropArea result=1 out.crop=2147483647,0,-1,1 out.display=1,2,3,2147483647",
                         "GetScreenCropRect", {"2147483647"}),
            "ascii {crop:{x:2147483647,y:0,w:-1,h:1},display:{x:1,y:2,w:3,h:2147483647},plane:2147483647}");
}

TEST_F(PictureCommand, CropTextEchoesThePlane) {
  const std::string zeros = "ascii {crop:{x:0,y:0,w:0,h:0},display:{x:0,y:0,w:0,h:0},plane:";
  const std::string unwritten = "IVideoControl::GetCropArea result=unwritten";
  for (const auto& [text, plane] : std::vector<std::pair<std::string, std::string>>{
           {"0", "0"}, {"1", "1"}, {"-3", "-3"}, {"+7", "7"}, {"007", "7"}}) {
    EXPECT_EQ(executeUnder(unwritten, "GetScreenCropRect", {text}), zeros + plane + "}") << text;
  }
  for (const std::string& text : noNumbers) {
    EXPECT_EQ(executeUnder(unwritten, "GetScreenCropRect", {text}), zeros + "0}") << '\'' << text << '\'';
    EXPECT_EQ(finished(), "1");
  }
}

TEST_F(PictureCommand, CropThatCannotBeReadAnswersTheResult) {
  for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
    EXPECT_EQ(executeUnder("IVideoControl::GetCropArea " + way, "GetScreenCropRect", {"5"}), "int 0") << way;
    EXPECT_EQ(finished(), "0");
  }
  EXPECT_EQ(executeUnder("ISourceControl::GetCurrentSourceInfo result=0", "GetScreenCropRect", {"5"}), "int -1");
  EXPECT_EQ(finished(), "-1");
}

// SetScreenZorder.

TEST_F(PictureCommand, EveryOrderButZeroRaisesThePlane) {
  for (const std::string text : {"1", "2", "-1", "99", "2147483647", "-2147483648"}) {
    forget();
    EXPECT_EQ(execute("SetScreenZorder", {text}), "int 1") << text;
    EXPECT_EQ(calls(), Lines{mainVideo + "SetZOrder(order=2) -> 0"}) << text;
    EXPECT_EQ(logs(), commandLogs("SetScreenZorder", {text}, {"3 SetScreenRect by order : result : 0"}, 1));
  }
  for (const std::string text : {"0", "-0", "+0", "000"}) {
    forget();
    EXPECT_EQ(execute("SetScreenZorder", {text}), "int 1") << text;
    EXPECT_EQ(calls(), Lines{mainVideo + "SetZOrder(order=0) -> 0"}) << text;
  }
}

TEST_F(PictureCommand, AnOrderThatIsNoNumberAnswersMinusOneWithoutACall) {
  for (const std::string& text : noNumbers) {
    forget();
    EXPECT_EQ(execute("SetScreenZorder", {text}), "int -1") << '\'' << text << '\'';
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs("SetScreenZorder", {text}, {}, -1));
  }
}

TEST_F(PictureCommand, AnOrderThatTheSetRefusesAnswersMinusOne) {
  EXPECT_EQ(executeUnder("IVideoControl::SetZOrder result=-5", "SetScreenZorder", {"1"}), "int -1");
  EXPECT_EQ(finished(), "-1");
}

// Show: digits at the front, 0 without any.

TEST_F(PictureCommand, ShowHidesShowsOrRefuses) {
  const std::vector<std::pair<std::string, std::string>> mutes{
      {"0", "1"}, {"1", "0"}, {"2", "1"}, {"3", "0"}, {"", "1"}, {"abc", "1"}, {"1x", "0"}, {" 3", "0"}, {"0x1", "1"}};
  for (const auto& [text, mute] : mutes) {
    forget();
    EXPECT_EQ(execute("Show", {text}), "int 1") << text;
    EXPECT_EQ(calls(), Lines{mainAv + "MuteVideo(mute=" + mute + ") -> 1"}) << '\'' << text << '\'';
    EXPECT_EQ(finished(), "1");
    EXPECT_EQ(plane().muted, mute == "1");
  }
  for (const std::string text : {"4", "5", "6", "7", "9", "-1", "4294967296", "99999999999999999999"}) {
    forget();
    EXPECT_EQ(execute("Show", {text}), "int -1") << text;
    EXPECT_EQ(calls(), Lines()) << text;
    EXPECT_EQ(finished(), "-1");
  }
}

TEST_F(PictureCommand, ShowLogsWhyItRefuses) {
  execute("Show", {"5"});
  EXPECT_EQ(
      logs(),
      commandLogs("Show", {"5"},
                  {"3 eShowType=[5]", support::banner(0, "Show"), "0 eShowType=[5] is NOT supported in VELUN."}, -1));
  execute("Show", {"9"});
  EXPECT_EQ(logs(), commandLogs("Show", {"9"},
                                {"3 eShowType=[9]", "0 eShowType=[9],NOT defined.", support::banner(0, "Show")}, -1));
}

// MuteVideo.

TEST_F(PictureCommand, EveryMuteButZeroHidesThePicture) {
  const std::vector<std::pair<std::string, std::string>> mutes{{"0", "0"},  {"1", "1"},  {"2", "1"},
                                                               {"-1", "1"}, {"-0", "0"}, {"-2147483648", "1"}};
  for (const auto& [text, mute] : mutes) {
    forget();
    EXPECT_EQ(execute("MuteVideo", {text}), "int 1") << text;
    EXPECT_EQ(calls(), Lines{mainAv + "MuteVideo(mute=" + mute + ") -> 1"}) << text;
    EXPECT_EQ(logs(), commandLogs("MuteVideo", {text}, {}, 1));
    EXPECT_EQ(plane().muted, mute == "1");
  }
}

TEST_F(PictureCommand, AMuteThatIsNoNumberAnswersMinusOneWithoutACall) {
  for (const std::string& text : noNumbers) {
    forget();
    EXPECT_EQ(execute("MuteVideo", {text}), "int -1") << '\'' << text << '\'';
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs("MuteVideo", {text}, {}, -1));
  }
}

TEST_F(PictureCommand, ShowDemandsOneOfTheSetWhereMuteVideoTakesAnyNumberButZero) {
  for (const auto& [result, shown, muted] : std::vector<std::tuple<std::string, std::string, std::string>>{
           {"0", "int -1", "int -1"}, {"1", "int 1", "int 1"}, {"2", "int -1", "int 1"}, {"-1", "int -1", "int 1"}}) {
    EXPECT_EQ(executeUnder("IAVControl::MuteVideo result=" + result, "Show", {"0"}), shown) << result;
    EXPECT_EQ(executeUnder("IAVControl::MuteVideo result=" + result, "MuteVideo", {"1"}), muted) << result;
  }
}

TEST_F(PictureCommand, WithoutControlsEveryCommandAnswersMinusOne) {
  close();
  fault("TVServiceAPI::CreateVideoControl always result=null");
  fault("TVServiceAPI::CreateAVControl always result=null");
  ASSERT_TRUE(open());
  for (const auto& [command, parameters] : std::vector<std::pair<std::string, Lines>>{{crop, corner},
                                                                                      {"GetScreenCropRect", {}},
                                                                                      {"SetScreenZorder", {"1"}},
                                                                                      {"Show", {"1"}},
                                                                                      {"MuteVideo", {"1"}}}) {
    EXPECT_EQ(execute(command, parameters), "int -1") << command;
    EXPECT_EQ(finished(), "-1") << command;
  }
}

}  // namespace
