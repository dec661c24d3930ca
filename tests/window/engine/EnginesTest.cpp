// SPDX-License-Identifier: MIT
// The application object and its engines: the name and version of the plug-in, opening and closing, several engines at
// a time.
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

  /// Runs a command on the engine with this name.
  std::string on(const std::string& name, const std::string& command, const Lines& parameters = {}) {
    use(name);
    return execute(command, parameters);
  }

  /// The same on the engine with this number.
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

TEST_F(EnginesTest, AWorkerThatCannotBeMadeReadyIsToldOfAndKept) {
  const auto expectKept = [this](const std::string& told) {
    SCOPED_TRACE(told);
    forget();
    EXPECT_TRUE(open());
    const Lines lines = logs();
    EXPECT_EQ(Lines(lines.end() - 3, lines.end()),
              (Lines{told, banner(3, "CEmpEngineWindow", engineFile), engineStands}));
    EXPECT_EQ(execute("GetCurrentChannel_Major"), "int 7");
    EXPECT_TRUE(close());
    clearFaults();
  };
  fault("TVServiceAPI::CreateTunerControl result=1");
  expectKept("3 [CEmpTaskWindow::Create][*] end.[nError:1]");
  fault("vconf_set_int result=-1");
  expectKept("0 [CEmpTaskWindow::Create] t_InitSourceVconf failed");
  breakLog("resolution is RES_1920x1080");
  expectKept("0 Exception Handled by CEmpEngineWindow no log");
  breakLog("resolution is RES_1920x1080", Saying::nothing);
  expectKept("0 Exception Handled by CEmpEngineWindow unknown exception");
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
  for (const engine::Command& command : engine::everyCommand()) {
    EXPECT_EQ(execute(command.name, command.parameters), command.unconnected) << command.name;
  }
}

TEST_F(EnginesTest, EnginesStandUnderNamesOrNumbersWhichDoNotMix) {
  EXPECT_TRUE(open("5"));
  EXPECT_FALSE(open("5"));
  EXPECT_EQ(on(5, "GetTVMode"), "refused") << "the name is not the number";
  EXPECT_TRUE(app().Open(5, appId, widgetId, ""));
  EXPECT_FALSE(app().Open(5, appId, widgetId, ""));
  EXPECT_EQ(on(5, "GetTVMode"), "int 1");
  EXPECT_EQ(on("5", "GetTVMode"), "int 1");
  EXPECT_TRUE(close("5"));
  EXPECT_FALSE(close("5"));
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

TEST_F(EnginesTest, EachEngineHasInterfacesOfItsOwnAndOutlivesTheOthers) {
  open("one");
  open("two");
  forget();
  on("one", "GetSourceState");
  on("two", "GetSourceState");
  EXPECT_EQ(calls(), (Lines{"ISourceControl[main#1]::GetSourceState() state=2 -> 1",
                            "ISourceControl[main#2]::GetSourceState() state=2 -> 1"}));
  EXPECT_TRUE(close("one"));
  EXPECT_EQ(on("one", "GetCurrentChannel_Major"), "refused");
  EXPECT_EQ(on("two", "SetWindow", {"0"}), "int 1");
  EXPECT_EQ(on("two", "GetCurrentChannel_Major"), "int 7");
}

}  // namespace
