// SPDX-License-Identifier: MIT
// Lack of memory, while an engine is made and while it runs a command.
#include "support/allocation/Allocations.h"

#include <cstdlib>
#include <memory>
#include <new>

#include "kel/CKELDebug.h"
#include "settings/vconf.h"
#include "support/Channels.h"
#include "support/LogLines.h"

namespace {

using support::banner;
using support::engineFile;
using support::failedAllocations;
using support::FailingAllocations;
using support::Lines;
using support::place;

using Engine = std::unique_ptr<kel::CEmpEngineBase>;

class AllocationTest : public support::TvTest {
 protected:
  AllocationTest() { channels::furnish(tv()); }

  /// An engine whose worker could not be allocated.
  Engine withoutWorker() {
    const FailingAllocations failing({.size = sizeof(kel::CEmpTaskWindow)});
    return Engine(app().CreateEmpEngine());
  }
};

TEST_F(AllocationTest, AnEngineWithoutMemoryForItsWorkerStandsBehindABanner) {
  forget();
  const Engine engine = withoutWorker();
  EXPECT_EQ(failedAllocations(), 1U);
  ASSERT_NE(engine, nullptr);
  EXPECT_EQ(logs(),
            (Lines{"0 [CEmpEngineWindow::CEmpEngineWindow][*] begin.", place("CEmpEngineWindow", 0, engineFile),
                   "0 Exception Handled by CEmpEngineWindow std::bad_alloc", banner(3, "CEmpEngineWindow", engineFile),
                   "0 [CEmpEngineWindow::CEmpEngineWindow][*] end."}));
  EXPECT_EQ(calls(), Lines());
}

TEST_F(AllocationTest, AnEngineWithoutAWorkerRefusesEveryCommandAndLeavesTheReplyUntouched) {
  const Engine engine = withoutWorker();
  ASSERT_NE(engine, nullptr);
  for (const std::string command : {"GetChannel_Size", "NoSuchCommand", ""}) {
    forget();
    std::string ret = "untouched";
    EXPECT_FALSE(engine->Execute(ret, command, "1", "2", "3", "4"));
    EXPECT_EQ(ret, "untouched");
    const std::string call = "[" + command + "][1][2][3][4]";
    EXPECT_EQ(logs(), (Lines{"0 [CEmpEngineWindow::Execute][*] " + call + ",pid = *",
                             "3 [CEmpEngineWindow::Execute][*] " + call + " but m_pEmpTaskWindow is NULL!!",
                             banner(3, "Execute", engineFile)}));
  }
  EXPECT_EQ(calls(), Lines());
}

TEST_F(AllocationTest, AnEngineWithoutAWorkerRefusesCommandsWithAParameterListAsAnyOther) {
  const Engine engine = withoutWorker();
  ASSERT_NE(engine, nullptr);
  std::string ret = "untouched";
  EXPECT_FALSE(engine->ExecuteWithParamList(ret, "", kel::ParamList()));
  EXPECT_EQ(ret, "untouched");
  EXPECT_FALSE(engine->ExecuteWithParamList(ret, "NoSuchCommand", kel::ParamList()));
  EXPECT_EQ(virtualtv::framework::decode(ret)->number, -1);
}

TEST_F(AllocationTest, AnEngineWithoutAWorkerAnswersACropFromAParameterListWithMinusOne) {
  const Engine engine = withoutWorker();
  ASSERT_NE(engine, nullptr);
  forget();
  std::string ret = "untouched";
  EXPECT_TRUE(engine->ExecuteWithParamList(ret, "SetScreenCropRect", kel::ParamList(Lines(9, "1"))));
  EXPECT_EQ(virtualtv::framework::decode(ret)->number, -1);
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), (Lines{"0 CEmpEngineWindow::ExecuteWithParamList[SetScreenCropRect]\n",
                           "0 CEmpEngineWindow::ExecuteWithParamList Command[SetScreenCropRect] Finish result[-1]."}));
}

TEST_F(AllocationTest, AnEngineWithoutAWorkerEndsLikeAnyOther) {
  Engine engine = withoutWorker();
  ASSERT_NE(engine, nullptr);
  forget();
  engine.reset();
  EXPECT_EQ(logs(),
            (Lines{"0 [CEmpEngineWindow::~CEmpEngineWindow][*] begin.", place("~CEmpEngineWindow", 0, engineFile),
                   "0 [CEmpEngineWindow::~CEmpEngineWindow][*] end."}));
}

TEST_F(AllocationTest, WithoutMemoryForTheEngineThereIsNone) {
  const FailingAllocations failing({.nth = 1});
  EXPECT_EQ(app().CreateEmpEngine(), nullptr);
  EXPECT_EQ(failedAllocations(), 1U);
}

/// Stops log and trace, which allocate too: these tests are about the allocations of the plug-in and the set.
class SilentAllocationTest : public AllocationTest {
 protected:
  SilentAllocationTest() { listenNoMore(); }
};

TEST_F(SilentAllocationTest, MakingAnEngineSurvivesEachAllocationThatFails) {
  std::size_t tried = 0;
  for (;;) {
    Engine engine;
    {
      const FailingAllocations failing({.nth = ++tried});
      ASSERT_NO_THROW(engine.reset(app().CreateEmpEngine())) << tried;
    }
    if (failedAllocations() == 0) break;
    if (engine == nullptr) continue;
    std::string ret = "untouched";
    const bool accepted = engine->Execute(ret, "GetChannel_Size", "", "", "", "");
    EXPECT_EQ(accepted, ret != "untouched") << tried;
  }
  EXPECT_GT(tried, 10U);
}

TEST_F(SilentAllocationTest, ACommandSurvivesEachAllocationThatFails) {
  const Engine engine(app().CreateEmpEngine());
  ASSERT_NE(engine, nullptr);
  bool answered = false;
  for (const std::string command : {"GetFullChannelList", "GetCurrentChannelInfo", "FindChannel", "GetSource",
                                    "GetCurrentChannel_Name", "GetPreviousChannelInfo", "SetTVMode"}) {
    for (std::size_t tried = 1;; ++tried) {
      std::string ret = "untouched";
      const std::string parameter = "1";
      bool accepted = false;
      {
        const FailingAllocations failing({.nth = tried});
        ASSERT_NO_THROW(accepted = engine->Execute(ret, command, parameter, parameter, "", "")) << command << tried;
      }
      EXPECT_TRUE(accepted) << command << ' ' << tried;
      EXPECT_NE(ret, "untouched") << command << ' ' << tried;
      answered = answered || ret.find("-1") != std::string::npos;
      if (failedAllocations() == 0) break;
    }
  }
  EXPECT_TRUE(answered) << "some of them failed";
}

/// Each allocation of a traced call to the set fails in turn: before, within, and after the set's own part. The address
/// sanitizer reports leaks.
TEST_F(AllocationTest, ATextOfTheSetIsHandedOverOrTheCallLeavesWithAnException) {
  std::size_t tried = 0;
  std::size_t thrown = 0;
  for (;;) {
    char* text = nullptr;
    {
      const FailingAllocations failing({.nth = ++tried});
      try {
        text = vconf_get_str("db/boot/last_service");
      } catch (const std::bad_alloc&) {
        ++thrown;
      }
    }
    if (text != nullptr) {
      EXPECT_STREQ(text, "tv-service");
    }
    std::free(text);
    if (failedAllocations() == 0) break;
  }
  EXPECT_GT(thrown, 1U);
}

/// Without its location, the message would be taken for one of another operation.
TEST_F(AllocationTest, AMessageWhoseLocationThereIsNoMemoryForIsLostAndTheNextIsNot) {
  const auto log = [] {
    kel::CKELDebug::PrintLog(2, 0, "[KEL][%s(%d)] ", "SetDVBSIChannelDirectEx", 1);
    kel::CKELDebug::PrintLog(2, 0, " pSatelliteMgr is NULL !");
  };
  forget();
  {
    const FailingAllocations failing({.nth = 1});
    log();
  }
  EXPECT_EQ(failedAllocations(), 1U);
  EXPECT_EQ(logs(), Lines());
  log();
  EXPECT_EQ(logs(), Lines{"0  pSatelliteMgr is NULL !"});
}

}  // namespace
