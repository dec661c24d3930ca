// SPDX-License-Identifier: MIT
// Creating the worker: the proxies that it makes, and what it does when that fails.
#include <algorithm>
#include <map>

#include "Proxies.h"

namespace {

using lifecycle::factories;
using lifecycle::failures;
using lifecycle::made;
using lifecycle::slots;
using support::caught;
using support::join;
using support::leveled;
using support::Lines;

const std::string begin = "3 [CEmpTaskWindow::Create][*] begin.";

std::string end(int errors) {
  return "3 [CEmpTaskWindow::Create][*] end.[nError:" + std::to_string(errors) + "]";
}

/// The calls that seed the source keys on a set whose main window shows the TV source, and their log lines.
const Lines seedCalls{"ISourceControl[main#1]::GetSourceState() state=2 -> 1",
                      "ISourceControl[main#1]::GetCurrentSourceInfo() source=0 -> 1",
                      "vconf_set_int(key=\"db/emp/mainsource\", value=0) -> 0",
                      "ISourceControl[main#1]::GetCurrentSourceInfo() source=0 -> 1",
                      "vconf_set_int(key=\"db/emp/previousmainsource\", value=0) -> 0",
                      "vconf_set_int(key=\"db/emp/pipsource\", value=0) -> 0"};
const Lines seedLogs =
    leveled(3, {"This is t_GetCurrentSourceInfo", "GetSourceState start", "GetSourceState = 2",
                "GetCurrentSourceInfo successfully eTVSSource = 0", "t_IsConvertable input eTVSSource = 0",
                "t_IsConvertable output ePLSource = 0", "Set vconf db/emp/mainsource = 0 success",
                "GetCurrentSourceInfo successfully eTVSSource = 0", "t_IsConvertable input eTVSSource = 0",
                "t_IsConvertable output ePLSource = 0", "Set vconf db/emp/previousmainsource = 0 success",
                "Set vconf db/emp/pipsource = 0 success"});

const Lines screenLogs = leveled(3, {"resolution is RES_1920x1080", "[m_baseScrW = 1920,[m_baseScrH:1080]"});

/// The log line of `Create` for the failure of each factory, in the order of the factories.
const Lines failureLogs{"0 CEmpTaskWindow::Create. svc_proxy create is FAIL!!",
                        "0 CEmpTaskWindow::Create. src_ctrl_proxy create is FAIL!!",
                        "0 CEmpTaskWindow::Create. svc_navi_proxy create is FAIL!!",
                        "0 CEmpTaskWindow::Create. av_ctrl_proxy create is FAIL!!",
                        "0 CEmpTaskWindow::Create. servicedata_aux_proxy create is FAIL!!",
                        "0 CEmpTaskWindow::Create. video_ctrl_proxy create is FAIL!!",
                        "3 CEmpTaskTV::Create. tuner_ctrl_proxy create is FAIL!!",
                        "0 CEmpTaskWindow::Create. svc_datacontrol_proxy create is FAIL!!"};

class CreateTest : public support::BareWorkerTest {
 protected:
  /// Checks the worker's window, and its keys, base screen and engine.
  void expectState(int window) {
    EXPECT_EQ(worker.t_eWindow, window);
    EXPECT_EQ(worker.m_SourceVconf, "db/emp/mainsource");
    EXPECT_EQ(worker.m_PreviousSourceVconf, "db/emp/previousmainsource");
    EXPECT_EQ(worker.m_baseScrW, 1920);
    EXPECT_EQ(worker.m_baseScrH, 1080);
    EXPECT_EQ(worker.m_pEngine, &engine);
    EXPECT_TRUE(worker.FlagCreate());
  }
};

TEST_F(CreateTest, MakesEveryProxyInOrderThenSeedsTheSourceKeys) {
  EXPECT_TRUE(worker.Create(nullptr, &engine)) << "the name does not matter";
  Lines expected;
  for (const char* factory : factories) expected.push_back(made(factory, 1));
  EXPECT_EQ(calls(), join({expected, seedCalls}));
  EXPECT_EQ(logs(), join({{begin}, screenLogs, {end(0)}, seedLogs}));
  const auto held = slots(worker);
  EXPECT_EQ(held.active, lifecycle::all);
  EXPECT_EQ(held.main, (std::vector<bool>{true, true, false, true, true, false})) << "but for video and data control";
  EXPECT_EQ(held.pip, lifecycle::none);
  EXPECT_TRUE(held.service);
  EXPECT_TRUE(held.tuner);
  EXPECT_EQ(worker.svc_navi_proxy, worker.svc_navi_proxy_main);
  EXPECT_EQ(worker.src_ctrl_proxy, worker.src_ctrl_proxy_main);
  EXPECT_EQ(worker.av_ctrl_proxy, worker.av_ctrl_proxy_main);
  EXPECT_EQ(worker.servicedata_aux_proxy, worker.servicedata_aux_proxy_main);
  expectState(0);
}

TEST_F(CreateTest, ASecondTimeCallsNoFactoryAndStillSeedsTheSourceKeys) {
  create();
  setSetting("db/emp/mainsource", 43);
  setSetting("db/emp/previousmainsource", 20);
  forget();
  support::BareEngine other;
  EXPECT_TRUE(worker.Create("CEmpTaskWindow", &other));
  EXPECT_EQ(calls(), seedCalls);
  EXPECT_EQ(logs(), join({{begin}, {end(0)}, seedLogs}));
  EXPECT_EQ(intSetting("db/emp/mainsource"), 0);
  EXPECT_EQ(intSetting("db/emp/previousmainsource"), 0);
  expectState(0);
}

TEST_F(CreateTest, ASecondTimeSelectsTheMainWindow) {
  create();
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  create();
  EXPECT_EQ(worker.t_eWindow, 0);
}

TEST_F(CreateTest, WithEveryFactoryFailingCountsEightAndSelectsNoWindow) {
  for (const char* factory : factories) fault(std::string(factory) + " always result=null");
  EXPECT_FALSE(create());
  EXPECT_EQ(logs(), join({{begin}, failureLogs, screenLogs, {end(8)}}));
  EXPECT_EQ(calls().size(), factories.size()) << "every proxy is tried, nothing else is asked";
  expectState(3);
  const auto held = slots(worker);
  EXPECT_EQ(held.active, lifecycle::none);
  EXPECT_EQ(held.main, lifecycle::none);
  EXPECT_FALSE(held.service);
  EXPECT_FALSE(held.tuner);
}

TEST_F(CreateTest, AgainAfterAFailureMakesOnlyTheSourceControlThatSeedingNeeds) {
  for (const char* factory : factories) fault(std::string(factory) + " always result=null");
  EXPECT_FALSE(create());
  clearFaults();
  forget();
  EXPECT_TRUE(create());
  EXPECT_EQ(worker.t_eWindow, 0);
  EXPECT_EQ(calls(), join({{made("TVServiceAPI::CreateSourceControl", 1)}, seedCalls}));
  EXPECT_EQ(worker.src_ctrl_proxy_main, nullptr);
}

/// The position of the factory that fails, and how it fails.
struct Failing {
  std::size_t factory;
  std::string way;
};

class CreateWithOneFactoryFailing : public support::BareWorkerTest, public ::testing::WithParamInterface<Failing> {
 protected:
  /// Which proxies exist, in the order of the factories. A proxy that is stored for the window counts as the active
  /// one.
  std::vector<bool> held() const {
    const auto held = slots(worker);
    return {held.service,   held.active[1], held.active[0], held.active[3],
            held.active[4], held.active[2], held.tuner,     held.active[5]};
  }
};

TEST_P(CreateWithOneFactoryFailing, MakesTheOthersCountsOneAndFails) {
  const auto& [failing, way] = GetParam();
  fault(std::string(factories[failing]) + " " + way);
  EXPECT_FALSE(create());
  EXPECT_TRUE(faultsHit());

  std::vector<bool> expected(factories.size(), true);
  expected[failing] = false;
  EXPECT_EQ(held(), expected);
  EXPECT_EQ(slots(worker).main, (std::vector<bool>{expected[2], expected[1], false, expected[3], expected[4], false}));
  EXPECT_EQ(worker.t_eWindow, 3);
  EXPECT_EQ(intSetting("db/emp/mainsource"), std::nullopt);

  Lines reported{failureLogs[failing]};
  if (way == "result=throw") reported.insert(reported.begin(), caught("Create", factories[failing]));
  EXPECT_EQ(logs(), join({{begin}, reported, screenLogs, {end(1)}}));
  EXPECT_EQ(calls().size(), factories.size());
}

std::vector<Failing> eachFailing() {
  std::vector<Failing> all;
  for (std::size_t at = 0; at < factories.size(); ++at) {
    for (const std::string& way : failures(factories[at])) all.push_back({at, way});
  }
  return all;
}

std::string nameOf(const ::testing::TestParamInfo<Failing>& info) {
  const std::string factory = factories[info.param.factory];
  std::string name = factory.substr(factory.rfind(':') + 1) + "_" + info.param.way.substr(7);
  std::replace(name.begin(), name.end(), '-', 'm');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Each, CreateWithOneFactoryFailing, ::testing::ValuesIn(eachFailing()), nameOf);

const std::string seedingFailed = "0 [CEmpTaskWindow::Create] t_InitSourceVconf failed";

TEST_F(CreateTest, FailsWhenTheSourceKeysCannotBeSeeded) {
  const std::map<std::string, std::string> failures{
      {"vconf_set_int result=-1", "0 Set vconf db/emp/mainsource failed"},
      {"ISourceControl::GetSourceState result=throw",
       caught("t_GetCurrentSourceInfo", "ISourceControl::GetSourceState")}};
  for (const auto& [words, told] : failures) {
    SCOPED_TRACE(words);
    setSetting("db/emp/mainsource", 77);
    EXPECT_FALSE(under(words, [this] { return create(); }));
    const Lines seen = logs();
    ASSERT_GE(seen.size(), 2U);
    EXPECT_EQ(seen.back(), seedingFailed);
    EXPECT_EQ(seen[seen.size() - 2], told);
    EXPECT_NE(calls().back().find("[fault]"), std::string::npos) << "nothing is asked or written behind it";
    EXPECT_EQ(intSetting("db/emp/mainsource"), 77);
    EXPECT_EQ(worker.t_eWindow, 0) << "the main window is selected before";
  }
  EXPECT_FALSE(under("vconf_set_int nth=3 result=-1", [this] { return create(); }));
  EXPECT_EQ(logs().back(), seedingFailed);
}

}  // namespace
