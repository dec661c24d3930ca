// SPDX-License-Identifier: MIT
// The application object and its engines: who the plug-in says it is, opening and closing, several at a time.
#include <algorithm>
#include <memory>

#include "support/Channels.h"
#include "support/Commands.h"
#include "support/LogLines.h"

namespace {

using support::banner;
using support::engineFile;
using support::join;
using support::Lines;
using support::place;

const std::string engineBegins = "0 [CEmpEngineWindow::CEmpEngineWindow][*] begin.";
const std::string engineStands = "0 [CEmpEngineWindow::CEmpEngineWindow][*] end.";
const std::string engineEnds = "0 [CEmpEngineWindow::~CEmpEngineWindow][*] begin.";
const std::string engineEnded = "0 [CEmpEngineWindow::~CEmpEngineWindow][*] end.";

class EnginesTest : public support::TvTest {
 protected:
  EnginesTest() { channels::furnish(tv()); }

  /// Runs a command on the engine of this name.
  std::string on(const std::string& name, const std::string& command, const Lines& parameters = {}) {
    use(name);
    return execute(command, parameters);
  }

  /// The same on the engine of this number.
  std::string on(int id, const std::string& command) {
    std::string ret = "untouched";
    const bool accepted = app().Execute(ret, id, command, "", "", "", "");
    if (ret == "untouched") return accepted ? "empty" : "refused";
    const auto reply = virtualtv::framework::decode(ret);
    return (accepted ? "" : "refused ") + (reply ? virtualtv::framework::show(*reply) : "undecodable");
  }
};

TEST_F(EnginesTest, ThePlugInTellsItsNameNumberAndVersion) {
  EXPECT_EQ(app().Name(), "Window");
  EXPECT_EQ(app().Id(), "0001");
  EXPECT_EQ(app().Version(), "1.003");
}

TEST_F(EnginesTest, EachEngineMadeIsANewOneOwnedByTheCaller) {
  const std::unique_ptr<kel::CEmpEngineBase> first(app().CreateEmpEngine());
  std::unique_ptr<kel::CEmpEngineBase> second(app().CreateEmpEngine());
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  std::string ret;
  EXPECT_TRUE(second->Execute(ret, "SetWindow", "1", "", "", ""));
  second.reset();
  EXPECT_TRUE(first->Execute(ret, "GetCurrentChannel_Major", "", "", "", ""));
  EXPECT_EQ(virtualtv::framework::decode(ret)->number, 7);
}

TEST_F(EnginesTest, OpeningAnEngineConnectsItsWorker) {
  forget();
  EXPECT_TRUE(open());
  const Lines lines = logs();
  ASSERT_GT(lines.size(), 10U);
  EXPECT_EQ(
      Lines(lines.begin(), lines.begin() + 5),
      (Lines{engineBegins, place("CEmpEngineWindow", 0, engineFile), "3 [CEmpTaskWindow::CEmpTaskWindow][*] begin.",
             "3 [CEmpTaskWindow::CEmpTaskWindow][*] end.", "3 [CEmpTaskWindow::Create][*] begin."}));
  EXPECT_EQ(Lines(lines.end() - 2, lines.end()), (Lines{"3 Set vconf db/emp/pipsource = 0 success", engineStands}));
}

TEST_F(EnginesTest, LinesOfAnEnginesBeginAndEndStandUnderItsOwnOperations) {
  open();
  close();
  for (const auto& line : messages()) {
    for (const std::string name : {"CEmpEngineWindow", "~CEmpEngineWindow"}) {
      const bool own = line.message.text().rfind("[CEmpEngineWindow::" + name + "]", 0) == 0;
      EXPECT_TRUE(!own || line.function == name) << line.message.text() << " under " << line.function.str();
    }
  }
}

TEST_F(EnginesTest, ClosingAnEngineDestroysItsWorkerTwice) {
  open();
  forget();
  EXPECT_TRUE(close());
  const Lines destroyed{"3 [CEmpTaskWindow::Destroy][*] begin.", "3 [CEmpTaskWindow::Destroy][*] end."};
  EXPECT_EQ(logs(), join({{engineEnds, place("~CEmpEngineWindow", 0, engineFile)},
                          destroyed,
                          {"3 [CEmpTaskWindow::~CEmpTaskWindow][*] begin."},
                          destroyed,
                          {"3 [CEmpTaskWindow::~CEmpTaskWindow][*] end.", engineEnded}}));
}

TEST_F(EnginesTest, AWorkerThatCannotConnectIsToldOfAndKept) {
  fault("TVServiceAPI::CreateTunerControl result=1");
  EXPECT_TRUE(open());
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.end() - 3, lines.end()), (Lines{"3 [CEmpTaskWindow::Create][*] end.[nError:1]",
                                                        banner(3, "CEmpEngineWindow", engineFile), engineStands}));
  EXPECT_EQ(execute("SetWindow", {"0"}), "int 1");
  EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 7");
}

TEST_F(EnginesTest, AWorkerThatCannotSeedItsKeysIsToldOfAndKept) {
  fault("vconf_set_int result=-1");
  EXPECT_TRUE(open());
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.end() - 3, lines.end()), (Lines{"0 [CEmpTaskWindow::Create] t_InitSourceVconf failed",
                                                        banner(3, "CEmpEngineWindow", engineFile), engineStands}));
  EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 7");
}

TEST_F(EnginesTest, AWorkerThatThrowsWhileItConnectsIsToldOfAndKept) {
  breakLog("resolution is RES_1920x1080");
  EXPECT_TRUE(open());
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.end() - 3, lines.end()), (Lines{"0 Exception Handled by CEmpEngineWindow no log",
                                                        banner(3, "CEmpEngineWindow", engineFile), engineStands}));
  EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 7");
}

TEST_F(EnginesTest, AnExceptionThatSaysNothingIsToldAsUnknown) {
  breakLog("resolution is RES_1920x1080", Saying::nothing);
  EXPECT_TRUE(open());
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.end() - 3, lines.end() - 1), (Lines{"0 Exception Handled by CEmpEngineWindow unknown exception",
                                                            banner(3, "CEmpEngineWindow", engineFile)}));
}

TEST_F(EnginesTest, AWorkerThatNeverBeganToConnectEndsWithoutBeingDestroyed) {
  breakLog("[CEmpTaskWindow::Create][*] begin.");
  EXPECT_TRUE(open());
  forget();
  EXPECT_TRUE(close());
  for (const std::string& line : logs()) EXPECT_EQ(line.find("Destroy"), std::string::npos) << line;
  EXPECT_EQ(calls(), Lines());
}

TEST_F(EnginesTest, AnEngineWhoseWorkerLacksAProxyMakesItLater) {
  for (const char* factory : engine::factories) {
    for (const char* way : {"result=1", "result=null", "result=throw"}) {
      if (std::string(factory) == "TVServiceAPI::ServiceDataAux" && std::string(way) == "result=1") continue;
      SCOPED_TRACE(std::string(factory) + " " + way);
      clearFaults();
      fault(std::string(factory) + " " + way);
      ASSERT_TRUE(open());
      EXPECT_TRUE(faultsHit());
      EXPECT_EQ(execute("SetWindow", {"0"}), "int 1");
      EXPECT_EQ(execute("GetSource", {"0"}), "int 0");
      EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 7");
      EXPECT_EQ(execute("GetStartChannel_Major"), "int 7");
      EXPECT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
      close();
    }
  }
}

TEST_F(EnginesTest, WithoutAnyInterfaceEveryCommandAnswersItsOwnFailure) {
  for (const char* factory : engine::factories) fault(std::string(factory) + " always result=null");
  fault("vconf_get_int always result=-1");
  ASSERT_TRUE(open());
  for (const engine::Call& call : engine::everyCall()) {
    EXPECT_EQ(execute(call.name, call.parameters), call.unconnected) << call.name;
  }
}

TEST_F(EnginesTest, ANameCanBeTakenOnce) {
  EXPECT_TRUE(open("one"));
  EXPECT_FALSE(open("one"));
  EXPECT_TRUE(close("one"));
  EXPECT_FALSE(close("one"));
  EXPECT_TRUE(open("one")) << "it is free again";
}

TEST_F(EnginesTest, EnginesStandUnderNamesOrNumbersWhichDoNotMix) {
  EXPECT_TRUE(open("5"));
  EXPECT_EQ(on(5, "GetTVMode"), "refused") << "the name is not the number";
  EXPECT_TRUE(app().Open(5, appId, widgetId, ""));
  EXPECT_FALSE(app().Open(5, appId, widgetId, ""));
  EXPECT_EQ(on(5, "GetTVMode"), "int 1");
  EXPECT_EQ(on("5", "GetTVMode"), "int 1");
  EXPECT_TRUE(close("5"));
  EXPECT_EQ(on("5", "GetTVMode"), "refused");
  EXPECT_EQ(on(5, "GetTVMode"), "int 1");
  EXPECT_TRUE(app().Close(5));
  EXPECT_FALSE(app().Close(5));
  EXPECT_EQ(on(5, "GetTVMode"), "refused");
}

TEST_F(EnginesTest, ACommandWithAParameterListReachesTheEngineOfANumber) {
  app().Open(7, appId, widgetId, "");
  std::string ret = "untouched";
  EXPECT_FALSE(app().ExecuteWithParamList(ret, 7, "NoSuchCommand", kel::ParamList()));
  EXPECT_EQ(virtualtv::framework::decode(ret)->number, -1);
  ret = "untouched";
  EXPECT_FALSE(app().ExecuteWithParamList(ret, 8, "NoSuchCommand", kel::ParamList()));
  EXPECT_EQ(ret, "untouched");
}

TEST_F(EnginesTest, ACommandForAnEngineThatIsNotOpenIsRefused) {
  EXPECT_EQ(on("nobody", "GetTVMode"), "refused");
  EXPECT_EQ(on(1, "GetTVMode"), "refused");
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), Lines());
}

TEST_F(EnginesTest, DestroyingTheApplicationObjectsEnginesClosesThemAll) {
  open("one");
  app().Open(2, appId, widgetId, "");
  forget();
  app().Destroy();
  const Lines lines = logs();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), engineEnded), 2);
  EXPECT_EQ(on("one", "GetTVMode"), "refused");
  EXPECT_EQ(on(2, "GetTVMode"), "refused");
}

// Several engines on one set.

TEST_F(EnginesTest, EnginesDoNotSeeEachOthersWindow) {
  tv().adjust([](virtualtv::TvState& state) {
    state[virtualtv::WindowId::pip].sourceState = virtualtv::SOURCE_STATE_SHOWN;
    state[virtualtv::WindowId::pip].source = 5;
  });
  open("one");
  open("two");
  EXPECT_EQ(on("one", "SetWindow", {"1"}), "int 1");
  EXPECT_EQ(on("one", "GetSource", {"0"}), "int 20");
  EXPECT_EQ(on("two", "GetSource", {"0"}), "int 0");
  open("three");
  EXPECT_EQ(on("three", "GetSource", {"0"}), "int 0") << "a new engine drives the main window";
  EXPECT_EQ(on("one", "GetSource", {"0"}), "int 20");
}

TEST_F(EnginesTest, EnginesDoNotSeeEachOthersFoundChannels) {
  open("one");
  open("two");
  EXPECT_EQ(on("one", "FindChannel", {"0", "1"}), "int 1");
  EXPECT_EQ(on("one", "GetChannel_Size"), "int 3");
  EXPECT_EQ(on("two", "GetChannel_Size"), "int 0");
  EXPECT_EQ(on("two", "FindChannel", {"3", "1"}), "int 1");
  EXPECT_EQ(on("two", "GetChannel_Major", {"0"}), "int 8");
  EXPECT_EQ(on("one", "GetChannel_Major", {"0"}), "int 7");
  close("two");
  EXPECT_EQ(on("one", "GetChannel_Size"), "int 3");
}

TEST_F(EnginesTest, EachEngineHasInterfacesOfItsOwn) {
  open("one");
  open("two");
  forget();
  on("one", "GetSourceState");
  on("two", "GetSourceState");
  EXPECT_EQ(calls(), (Lines{"ISourceControl[main#1]::GetSourceState() state=2 -> 1",
                            "ISourceControl[main#2]::GetSourceState() state=2 -> 1"}));
}

TEST_F(EnginesTest, OpeningAnyEngineSeedsTheSourceKeysAnewForAll) {
  open("one");
  setSetting("db/emp/mainsource", 43);
  setSetting("db/emp/previousmainsource", 99);
  setSetting("db/emp/pipsource", 20);
  EXPECT_EQ(on("one", "GetSource", {"6"}), "int 99");
  open("two");
  EXPECT_EQ(intSetting("db/emp/mainsource"), 0);
  EXPECT_EQ(intSetting("db/emp/previousmainsource"), 0);
  EXPECT_EQ(intSetting("db/emp/pipsource"), 0);
  EXPECT_EQ(on("one", "GetSource", {"6"}), "int 0");
}

TEST_F(EnginesTest, ClosingAnEngineLeavesTheOthersAtWork) {
  open("one");
  open("two");
  on("two", "SetWindow", {"1"});
  EXPECT_TRUE(close("one"));
  EXPECT_EQ(on("one", "GetCurrentChannel_Major"), "refused");
  EXPECT_EQ(on("two", "SetWindow", {"0"}), "int 1");
  EXPECT_EQ(on("two", "GetCurrentChannel_Major"), "int 7");
}

TEST_F(EnginesTest, EachEngineKnowsItsOwnApplication) {
  open("one", "first.app", "first.widget");
  open("two", "second.app", "second.widget");
  forget();
  on("one", "SetTVMode", {"5"});
  on("two", "SetTVMode", {"5"});
  const Lines seen = calls();
  ASSERT_EQ(seen.size(), 4U);
  EXPECT_EQ(seen[0], "CEmpEngineBase::GetAppInfo(type=1) -> \"first.app\"");
  EXPECT_NE(seen[1].find("\"first.app\""), std::string::npos) << seen[1];
  EXPECT_EQ(seen[2], "CEmpEngineBase::GetAppInfo(type=1) -> \"second.app\"");
  EXPECT_NE(seen[3].find("\"second.app\""), std::string::npos) << seen[3];
}

}  // namespace
