// Memory that can't be had: while an engine is made, and while it runs a command. This program replaces the global
// allocation functions, so that one allocation of its choice fails.
#include <cstdlib>
#include <memory>
#include <new>

#include "support/Channels.h"
#include "support/LogLines.h"

namespace {

/// Which allocation fails, in the scope of an `Armed`.
struct Plan {
  bool armed = false;
  std::size_t size = 0;       ///< the first of this size, where it is not 0
  std::size_t countdown = 0;  ///< else the one at which this becomes 0
  bool failed = false;
};
Plan plan;

bool fails(std::size_t size) {
  if (!plan.armed || plan.failed) return false;
  plan.failed = plan.size != 0 ? size == plan.size : --plan.countdown == 0;
  return plan.failed;
}

void* allocate(std::size_t size) {
  if (fails(size)) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
// The library asks this way for room that it can do without, and gives it back like any other.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fails(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace {

using support::banner;
using support::engineFile;
using support::Lines;
using support::place;

/// While it lives, an allocation fails: the first of a size, or the n-th of all.
class Armed {
 public:
  static Armed size(std::size_t bytes) { return Armed({true, bytes, 0, false}); }
  static Armed nth(std::size_t count) { return Armed({true, 0, count, false}); }
  Armed(const Armed&) = delete;
  Armed& operator=(const Armed&) = delete;
  ~Armed() { plan.armed = false; }

 private:
  explicit Armed(Plan chosen) { plan = chosen; }
};

using Engine = std::unique_ptr<kel::CEmpEngineBase>;

class AllocationTest : public support::TvTest {
 protected:
  AllocationTest() { channels::furnish(tv()); }

  /// An engine whose worker could not be allocated.
  Engine withoutWorker() {
    const Armed armed = Armed::size(sizeof(kel::CEmpTaskWindow));
    return Engine(app().CreateEmpEngine());
  }
};

TEST_F(AllocationTest, AnEngineWithoutMemoryForItsWorkerStandsBehindABanner) {
  forget();
  const Engine engine = withoutWorker();
  EXPECT_TRUE(plan.failed);
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
  const Armed armed = Armed::nth(1);
  EXPECT_EQ(app().CreateEmpEngine(), nullptr);
  EXPECT_TRUE(plan.failed);
}

/// The log, the trace and the set allocate too; only the plug-in and the set are of interest here.
class SilentAllocationTest : public AllocationTest {
 protected:
  SilentAllocationTest() {
    virtualtv::framework::setLogLevel(-1);
    virtualtv::seam::Seam::instance().record(false);
  }
};

TEST_F(SilentAllocationTest, MakingAnEngineSurvivesEachAllocationThatFails) {
  std::size_t tried = 0;
  for (;;) {
    Engine engine;
    {
      const Armed armed = Armed::nth(++tried);
      ASSERT_NO_THROW(engine.reset(app().CreateEmpEngine())) << tried;
    }
    if (!plan.failed) break;
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
        const Armed armed = Armed::nth(tried);
        ASSERT_NO_THROW(accepted = engine->Execute(ret, command, parameter, parameter, "", "")) << command << tried;
      }
      EXPECT_TRUE(accepted) << command << ' ' << tried;
      EXPECT_NE(ret, "untouched") << command << ' ' << tried;
      answered = answered || ret.find("-1") != std::string::npos;
      if (!plan.failed) break;
    }
  }
  EXPECT_TRUE(answered) << "some of them failed";
}

}  // namespace
