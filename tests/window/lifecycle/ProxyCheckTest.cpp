// SPDX-License-Identifier: MIT
// Proxies that are created when an operation first needs them.
#include <algorithm>
#include <functional>

#include "Proxies.h"

namespace {

using lifecycle::failures;
using lifecycle::made;
using lifecycle::slots;
using support::caught;
using support::Lines;
using support::WorkerProbe;

/// An operation that creates a missing proxy.
struct Check {
  std::string name;
  std::string factory;
  std::string missing;  ///< logged before the factory is called; the window's number follows
  std::string failed;
  bool (*run)(WorkerProbe& worker);
  bool (*there)(const WorkerProbe& worker);
};

template <auto Operation, auto Member>
Check check(const std::string& made, const std::string& proxy) {
  return {"t_Check" + made + "proxy",
          "TVServiceAPI::" + (made == "ServiceDataAux" ? made : "Create" + made),
          made == "Service" ? "src_ctrl_proxy is NULL t_eWindow =" : proxy + " is NULL, t_eWindow =",
          "0 CEmpTaskWindow " + proxy + " create is FAIL!!",
          [](WorkerProbe& worker) { return (worker.*Operation)(); },
          [](const WorkerProbe& worker) { return worker.*Member != nullptr; }};
}

const std::vector<Check>& checks() {
  using W = WorkerProbe;
  static const std::vector<Check> all{
      check<&W::t_CheckServiceNavigationproxy, &W::svc_navi_proxy>("ServiceNavigation", "svc_navi_proxy"),
      check<&W::t_CheckSourceControlproxy, &W::src_ctrl_proxy>("SourceControl", "src_ctrl_proxy"),
      check<&W::t_CheckVideoControlproxy, &W::video_ctrl_proxy>("VideoControl", "video_ctrl_proxy"),
      check<&W::t_CheckAVControlproxy, &W::av_ctrl_proxy>("AVControl", "av_ctrl_proxy"),
      check<&W::t_CheckServiceDataAuxproxy, &W::servicedata_aux_proxy>("ServiceDataAux", "servicedata_aux_proxy"),
      check<&W::t_CheckDataControlproxy, &W::svc_datacontrol_proxy>("DataControl", "svc_datacontrol_proxy"),
      check<&W::t_CheckTunerControlproxy, &W::tuner_ctrl_proxy>("TunerControl", "tuner_ctrl_proxy"),
      check<&W::t_CheckServiceproxy, &W::svc_proxy>("Service", "svc_proxy"),
  };
  return all;
}

class ProxyCheck : public support::BareWorkerTest, public ::testing::WithParamInterface<std::size_t> {
 protected:
  const Check& check() const { return checks()[GetParam()]; }
  std::string missing() const { return "0 " + check().missing + std::to_string(worker.t_eWindow); }
};

TEST_P(ProxyCheck, LeavesAProxyThatIsThere) {
  create();
  forget();
  EXPECT_TRUE(check().run(worker));
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), Lines());
}

TEST_P(ProxyCheck, MakesAMissingProxyForTheWindowDriven) {
  for (const int window : {0, 1, 3, -1}) {
    WorkerProbe fresh;
    fresh.t_eWindow = window;
    forget();
    EXPECT_TRUE(check().run(fresh));
    EXPECT_TRUE(check().there(fresh));
    EXPECT_EQ(calls(), Lines{made(check().factory, window == 0 ? 1 : 101)});
    EXPECT_EQ(logs(), Lines{"0 " + check().missing + std::to_string(window)});
    EXPECT_EQ(slots(fresh).main, lifecycle::none) << "it is kept for no window";
    EXPECT_EQ(slots(fresh).pip, lifecycle::none);
    EXPECT_TRUE(check().run(fresh));
    EXPECT_EQ(calls(), Lines()) << "it is made once";
    EXPECT_EQ(logs(), Lines());
  }
}

TEST_P(ProxyCheck, FailsWhenTheFactoryDoesAndTriesAgainTheNextTime) {
  for (const std::string& way : failures(check().factory)) {
    SCOPED_TRACE(way);
    clearFaults();
    forget();
    fault(check().factory + " " + way);
    EXPECT_FALSE(check().run(worker));
    EXPECT_TRUE(faultsHit());
    EXPECT_FALSE(check().there(worker));
    EXPECT_EQ(calls().size(), 1U);
    Lines expected{missing(), check().failed};
    if (way == "result=throw") expected.insert(expected.begin() + 1, caught(check().name, check().factory));
    EXPECT_EQ(logs(), expected);
  }
  EXPECT_TRUE(check().run(worker));
}

TEST_P(ProxyCheck, AfterAFailedCreateUsesThePictureInPictureProfileUntilAWindowIsSelected) {
  fault(check().factory + " result=null");
  ASSERT_FALSE(create());
  forget();
  EXPECT_TRUE(check().run(worker));
  EXPECT_EQ(calls(), Lines{made(check().factory, 101)});
  EXPECT_EQ(logs(), Lines{"0 " + check().missing + "3"});
}

TEST_P(ProxyCheck, IsNotWhatWindowSelectionKeeps) {
  fault(check().factory + " result=null");
  ASSERT_FALSE(create());
  ASSERT_TRUE(check().run(worker));
  forget();
  EXPECT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_MAIN), 1);
  const Lines seen = calls();
  const bool selected =
      check().factory != "TVServiceAPI::CreateService" && check().factory != "TVServiceAPI::CreateTunerControl";
  EXPECT_EQ(std::count(seen.begin(), seen.end(), made(check().factory, 1)), selected ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Each, ProxyCheck, ::testing::Range(std::size_t{0}, checks().size()),
                         [](const auto& test) { return checks()[test.param].name; });

}  // namespace
