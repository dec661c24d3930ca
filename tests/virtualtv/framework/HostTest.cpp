// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/Host.h"
#include "framework/Reply.h"
#include "kel/CEmpAppBase.h"
#include "kel/CEmpEngineBase.h"
#include "seam/Seam.h"

namespace virtualtv::framework {
namespace {

using Lines = std::vector<std::string>;

/// What the engines of a test did, in order.
Lines* diary = nullptr;

void note(const std::string& line) {
  if (diary == nullptr) return;
  const seam::Caller& caller = seam::Seam::instance().caller();
  diary->push_back(line + " by " + caller.engine.str() + " " + std::to_string(caller.command));
}

class Engine : public kel::CEmpEngineBase {
 public:
  explicit Engine(int number) : number_(number) { note("made " + std::to_string(number_)); }
  ~Engine() override { note("deleted " + std::to_string(number_)); }

  bool Execute(std::string& ret, const std::string& cmd, const std::string& p1, const std::string& p2,
               const std::string& p3, const std::string& p4) override {
    note(cmd);
    if (cmd == "throw") throw std::runtime_error("thrown by the engine");
    if (cmd == "app") SetReturnValueASCII(ret, GetAppInfo(kel::eAPP_INFO_APP_ID).c_str());
    if (cmd == "widget") SetReturnValueASCII(ret, GetAppInfo(kel::eAPP_INFO_WIDGET_ID).c_str());
    if (cmd == "other") SetReturnValueASCII(ret, GetAppInfo(static_cast<kel::eAPP_INFO_TYPE>(3)).c_str());
    if (cmd == "number") SetReturnValueInteger(ret, number_);
    if (cmd == "join") SetReturnValueASCII(ret, (p1 + "," + p2 + "," + p3 + "," + p4).c_str());
    if (cmd == "nulls") SetReturnValueASCII(ret, static_cast<const char*>(nullptr));
    if (cmd == "units") {
      unsigned short units[] = {0xFEFF, 0xD800, 'a', 0, 'b'};
      SetReturnValueUNICODE(ret, units);
    }
    if (cmd == "no units") SetReturnValueUNICODE(ret, nullptr);
    if (cmd == "whole") {
      std::string text("a\0b", 3);
      SetReturnValueASCII(ret, text);
    }
    return cmd != "refuse";
  }

  bool ExecuteWithParamList(std::string& ret, const std::string& cmd, const kel::ParamList& params) override {
    note(cmd);
    SetReturnValueASCII(ret, (cmd + ":" + params.At(8) + ":" + params.At(9)).c_str());
    return true;
  }

  void Destroy() override {
    note("Destroy " + std::to_string(number_));
    if (destroyThrows) throw std::runtime_error("in Destroy");
  }

  static inline bool destroyThrows = false;

 private:
  int number_;
};

class App : public kel::CEmpAppBase {
 public:
  App() {
    m_name = "Window";
    m_id = "0001";
    m_version = "1.003";
  }

  kel::CEmpEngineBase* CreateEmpEngine() override {
    if (fails) return nullptr;
    if (throws) throw std::runtime_error("in CreateEmpEngine");
    return new Engine(++made);
  }

  int made = 0;
  bool fails = false;
  bool throws = false;
};

class HostTest : public ::testing::Test {
 protected:
  HostTest() { diary = &lines; }
  ~HostTest() override {
    app.reset();
    diary = nullptr;
    Engine::destroyThrows = false;
    seam::Seam::instance().reset();
  }

  template <typename Key>
  std::string ask(const Key& engine, const std::string& command, const Lines& p = {"", "", "", ""}) {
    std::string ret;
    const bool accepted = app->Execute(ret, engine, command, p[0], p[1], p[2], p[3]);
    return showAnswer(accepted, ret);
  }

  Lines lines;
  std::unique_ptr<App> app = std::make_unique<App>();
};

const kel::EmpType::type anyType{};

TEST_F(HostTest, KeepsTheThreeTextsOfTheApplicationObject) {
  EXPECT_EQ(app->Name(), "Window");
  EXPECT_EQ(app->Id(), "0001");
  EXPECT_EQ(app->Version(), "1.003");
}

TEST_F(HostTest, HostsSeveralEnginesUnderNamesAndNumbersThatDoNotMix) {
  EXPECT_TRUE(app->Open("one", "", "", ""));
  EXPECT_TRUE(app->Open("5", "", "", ""));
  EXPECT_TRUE(app->Open(5, "", "", ""));
  EXPECT_TRUE(app->Open("#5", "", "", ""));
  EXPECT_EQ(ask("one", "number"), "int 1");
  EXPECT_EQ(ask("5", "number"), "int 2");
  EXPECT_EQ(ask(5, "number"), "int 3");
  EXPECT_EQ(ask("#5", "number"), "int 4");
}

TEST_F(HostTest, ANameOrNumberIsTakenUntilItIsClosed) {
  EXPECT_TRUE(app->Open("one", "", "", ""));
  EXPECT_FALSE(app->Open("one", "", "", ""));
  EXPECT_TRUE(app->Open(1, "", "", ""));
  EXPECT_FALSE(app->Open(1, "", "", ""));
  EXPECT_EQ(app->made, 2);
  EXPECT_TRUE(app->Close("one", anyType));
  EXPECT_TRUE(app->Close(1));
  EXPECT_TRUE(app->Open("one", "", "", ""));
  EXPECT_TRUE(app->Open(1, "", "", ""));
}

TEST_F(HostTest, WithoutAnEngineCommandsAndClosingAnswerFalseAndWriteNothing) {
  std::string ret = "untouched";
  EXPECT_FALSE(app->Execute(ret, "one", "number", "", "", "", ""));
  EXPECT_FALSE(app->Execute(ret, 1, "number", "", "", "", ""));
  EXPECT_FALSE(app->ExecuteWithParamList(ret, "one", "number", {}));
  EXPECT_FALSE(app->ExecuteWithParamList(ret, 1, "number", {}));
  EXPECT_EQ(ret, "untouched");
  EXPECT_FALSE(app->Close("one", anyType));
  EXPECT_FALSE(app->Close(1));
}

TEST_F(HostTest, OpenFailsWhenNoEngineIsMade) {
  app->fails = true;
  EXPECT_FALSE(app->Open("one", "", "", ""));
  EXPECT_FALSE(app->Open(1, "", "", ""));
  app->fails = false;
  EXPECT_TRUE(app->Open("one", "", "", ""));
}

TEST_F(HostTest, OpenFailsWhenMakingTheEngineThrows) {
  app->throws = true;
  EXPECT_FALSE(app->Open("one", "", "", ""));
  EXPECT_EQ(ask("one", "number"), "refused");
}

TEST_F(HostTest, PassesCommandsParametersAndAnswers) {
  app->Open("one", "", "", "");
  EXPECT_EQ(ask("one", "join", {"a", "", "-1", "d e"}), "ascii a,,-1,d e");
  EXPECT_EQ(ask("one", "refuse"), "refused");
  EXPECT_EQ(ask("one", "nothing"), "empty");
  std::string ret;
  const kel::ParamList list({"1", "2", "3", "4", "5", "6", "7", "8", "9"});
  EXPECT_TRUE(app->ExecuteWithParamList(ret, "one", "list", list));
  EXPECT_EQ(showAnswer(true, ret), "ascii list:9:");
}

TEST_F(HostTest, EncodersKeepWhatTheyAreGiven) {
  app->Open(7, "", "", "");
  EXPECT_EQ(ask(7, "nulls"), "ascii");
  EXPECT_EQ(ask(7, "units"), "unicode \"\uFEFF\\uD800a\"");
  EXPECT_EQ(ask(7, "no units"), "unicode \"\"");
  EXPECT_EQ(ask(7, "whole"), "ascii |\n| a\\x00b\\");
}

TEST_F(HostTest, TheEngineKnowsWhoCallsIt) {
  app->Open("one", "org.example.tv", "widget7", "");
  EXPECT_EQ(ask("one", "app"), "ascii org.example.tv");
  EXPECT_EQ(ask("one", "widget"), "ascii widget7");
  EXPECT_EQ(ask("one", "other"), "ascii");
  EXPECT_TRUE(Host::of(*app).setClient("one", {0, "other", "", ""}));
  EXPECT_EQ(ask("one", "app"), "ascii other");
  EXPECT_EQ(ask("one", "widget"), "ascii");
  EXPECT_FALSE(Host::of(*app).setClient("two", {0, "other", "", ""}));
}

TEST_F(HostTest, AskingForTheApplicationPassesTheSeam) {
  app->Open("one", "tv", "", "");
  std::vector<seam::Call> calls;
  seam::Seam::instance().onCall([&](const seam::Call& call) { calls.push_back(call); });
  ask("one", "app");
  ask("one", "widget");
  seam::Seam::instance().onCall({});
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(seam::line(calls[0]), "CEmpEngineBase::GetAppInfo(type=1) -> \"tv\"");
  EXPECT_EQ(calls[0].caller.engine, "one");
  EXPECT_EQ(calls[1].caller.command, 2U);

  seam::Seam::instance().add(seam::parseFault({"CEmpEngineBase::GetAppInfo", "result=faked"}));
  EXPECT_EQ(ask("one", "app"), "ascii faked");
}

TEST_F(HostTest, EveryStepOfAnEngineRunsInItsName) {
  app->Open("one", "", "", "");
  ask("one", "first");
  ask("one", "second");
  app->Open(9, "", "", "");
  ask(9, "third");
  app->Close("one", anyType);
  const Lines expected{"made 1 by one 0", "first by one 1",     "second by one 2",   "made 2 by #9 0",
                       "third by #9 1",   "Destroy 1 by one 0", "deleted 1 by one 0"};
  EXPECT_EQ(lines, expected);
  EXPECT_EQ(seam::Seam::instance().caller().engine, "");
}

TEST_F(HostTest, CountsTheCommandsOfAnEngineSinceItWasOpened) {
  const Host& host = Host::of(*app);
  EXPECT_EQ(host.commands("one"), 0U);
  app->Open("one", "", "", "");
  ask("one", "first");
  ask("one", "second");
  EXPECT_EQ(host.commands("one"), 2U);
  app->Close("one", anyType);
  app->Open("one", "", "", "");
  EXPECT_EQ(host.commands("one"), 0U);
}

TEST_F(HostTest, WhatAnEngineThrowsInACommandReachesTheCaller) {
  app->Open("one", "", "", "");
  std::string ret;
  EXPECT_THROW(app->Execute(ret, "one", "throw", "", "", "", ""), std::runtime_error);
  EXPECT_EQ(seam::Seam::instance().caller().engine, "");
  EXPECT_EQ(ask("one", "number"), "int 1");
}

TEST_F(HostTest, AnEngineIsDeletedEvenIfItsDestroyThrows) {
  Engine::destroyThrows = true;
  app->Open("one", "", "", "");
  EXPECT_TRUE(app->Close("one", anyType));
  EXPECT_EQ(lines.back(), "deleted 1 by one 0");
}

TEST_F(HostTest, TellsWhichEngineIsGoneOnceItIsDeleted) {
  Lines closed;
  Host& host = Host::of(*app);
  const auto listening = host.onClosed([&](const EngineClosed& gone) {
    closed.push_back(gone.engine + ": " + gone.why);
    note("freed");
  });
  app->Open("one", "", "", "");
  app->Open(2, "", "", "");
  app->Close("one", anyType);
  EXPECT_EQ(closed, (Lines{"one: closed"}));
  EXPECT_EQ((Lines{lines.end() - 2, lines.end()}), (Lines{"deleted 1 by one 0", "freed by  0"}));
  host.close(engineKey(2), "restart");
  app->fails = true;
  app->Open("three", "", "", "");
  EXPECT_EQ(closed, (Lines{"one: closed", "#2: restart", "three: not made"}));
}

TEST_F(HostTest, DestroyClosesEveryEngine) {
  app->Open("one", "", "", "");
  app->Open(2, "", "", "");
  lines.clear();
  app->Destroy();
  EXPECT_EQ(lines.size(), 4U);
  EXPECT_EQ(ask("one", "number"), "refused");
  EXPECT_EQ(ask(2, "number"), "refused");
  app->Destroy();
}

TEST_F(HostTest, EnginesAreClosedWithTheApplicationObject) {
  app->Open("one", "", "", "");
  app.reset();
  EXPECT_EQ(lines.back(), "deleted 1 by one 0");
}

TEST_F(HostTest, EachApplicationObjectHasEnginesOfItsOwn) {
  App other;
  EXPECT_TRUE(app->Open("one", "", "", ""));
  EXPECT_TRUE(other.Open("one", "", "", ""));
  other.Destroy();
  EXPECT_EQ(ask("one", "number"), "int 1");
}

}  // namespace
}  // namespace virtualtv::framework
