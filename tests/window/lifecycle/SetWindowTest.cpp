// SPDX-License-Identifier: MIT
// Window selection: the proxies and the source keys of the main and the picture-in-picture window.
#include <algorithm>

#include "Proxies.h"

namespace {

using lifecycle::failures;
using lifecycle::made;
using lifecycle::slots;
using support::caught;
using support::join;
using support::Lines;
using support::place;

constexpr auto mainWindow = PL_WINDOW_WINDOW_MAIN;
constexpr auto pipWindow = PL_WINDOW_WINDOW_PIP;

const Lines beginMain{place("SetWindow", 0), "0 PL_WINDOW_WINDOW_MAIN"};
const Lines beginPip{place("SetWindow", 0), "0 PL_WINDOW_WINDOW_PIP"};

const Lines pipCalls{made("TVServiceAPI::CreateServiceNavigation", 101), made("TVServiceAPI::CreateSourceControl", 101),
                     made("TVServiceAPI::CreateVideoControl", 101),      made("TVServiceAPI::CreateAVControl", 101),
                     made("TVServiceAPI::ServiceDataAux", 101),          made("TVServiceAPI::CreateDataControl", 1)};

using SetWindowTest = support::WorkerTest;
using Proxies = std::vector<const void*>;

/// The proxies of each kind: those in use, and those stored for each window.
Proxies inUse(const support::WorkerProbe& w) {
  return {w.svc_navi_proxy, w.src_ctrl_proxy,        w.video_ctrl_proxy,
          w.av_ctrl_proxy,  w.servicedata_aux_proxy, w.svc_datacontrol_proxy};
}
Proxies ofMain(const support::WorkerProbe& w) {
  return {w.svc_navi_proxy_main, w.src_ctrl_proxy_main,        w.video_ctrl_proxy_main,
          w.av_ctrl_proxy_main,  w.servicedata_aux_proxy_main, w.svc_datacontrol_proxy_main};
}
Proxies ofPip(const support::WorkerProbe& w) {
  return {w.svc_navi_proxy_pip, w.src_ctrl_proxy_pip,        w.video_ctrl_proxy_pip,
          w.av_ctrl_proxy_pip,  w.servicedata_aux_proxy_pip, w.svc_datacontrol_proxy_pip};
}

TEST_F(SetWindowTest, ToTheMainWindowAfterCreateMakesOnlyTheVideoAndDataControlThatItLacks) {
  const Proxies created = inUse(worker);
  EXPECT_EQ(worker.SetWindow(mainWindow), 1);
  EXPECT_EQ(calls(), (Lines{made("TVServiceAPI::CreateVideoControl", 1), made("TVServiceAPI::CreateDataControl", 1)}));
  EXPECT_EQ(logs(), beginMain);
  EXPECT_EQ(slots(worker).main, lifecycle::all);
  EXPECT_EQ(inUse(worker), ofMain(worker));
  for (std::size_t at = 0; at < created.size(); ++at) {
    const bool replaced = at == 2 || at == 5;
    EXPECT_EQ(inUse(worker)[at] != created[at], replaced) << at;
  }
}

TEST_F(SetWindowTest, SwitchesTheProxiesAndTheSourceKeysAndMakesEachProxyOnce) {
  auto* const service = worker.svc_proxy;
  auto* const tuner = worker.tuner_ctrl_proxy;
  worker.m_ChannelList.push_back(new TCServiceData);
  setSetting("db/emp/mainsource", 43);
  EXPECT_EQ(worker.SetWindow(pipWindow), 1);
  EXPECT_EQ(calls(), pipCalls) << "the data control with the main window's profile";
  EXPECT_EQ(logs(), beginPip);
  EXPECT_EQ(slots(worker).pip, lifecycle::all);
  const Proxies pip = ofPip(worker);
  worker.SetWindow(mainWindow);
  const Proxies main = ofMain(worker);
  forget();
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(worker.SetWindow(pipWindow), 1);
    EXPECT_EQ(inUse(worker), pip);
    EXPECT_EQ(worker.t_eWindow, 1);
    EXPECT_EQ(worker.m_SourceVconf, "db/emp/pipsource");
    EXPECT_EQ(worker.m_PreviousSourceVconf, "db/emp/previouspipsource");
    EXPECT_EQ(worker.SetWindow(mainWindow), 1);
    EXPECT_EQ(inUse(worker), main);
    EXPECT_EQ(worker.t_eWindow, 0);
    EXPECT_EQ(worker.m_SourceVconf, "db/emp/mainsource");
    EXPECT_EQ(worker.m_PreviousSourceVconf, "db/emp/previousmainsource");
  }
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(worker.svc_proxy, service);
  EXPECT_EQ(worker.tuner_ctrl_proxy, tuner);
  EXPECT_EQ(worker.m_ChannelList.size(), 1U);
  EXPECT_EQ(intSetting("db/emp/mainsource"), 43);
}

TEST_F(SetWindowTest, ToAnyOtherNumberIsPictureInPicture) {
  for (const int number : {2, 3, 100, -1, 2147483647, -2147483647 - 1}) {
    worker.SetWindow(mainWindow);
    forget();
    EXPECT_EQ(worker.SetWindow(static_cast<_PL_WINDOW_WINDOW>(number)), 1) << number;
    EXPECT_EQ(logs(), beginPip) << number;
    EXPECT_EQ(worker.t_eWindow, number);
    EXPECT_EQ(worker.src_ctrl_proxy, worker.src_ctrl_proxy_pip);
    EXPECT_EQ(worker.m_SourceVconf, "db/emp/pipsource");
  }
}

/// A factory whose failure stops the selection: its name in the messages for each window, and how many of the proxies
/// (navigation, source, video, AV, auxiliary, data) are active afterwards.
struct Stop {
  std::string factory;
  std::string mainName;  ///< its name in messages for the main window
  std::string pipName;
  std::size_t active;
};

const std::vector<Stop>& stops() {
  static const std::vector<Stop> all{
      {"TVServiceAPI::CreateServiceNavigation", "CreateServiceNavigation", "CreateSourceControl", 0},
      {"TVServiceAPI::CreateSourceControl", "CreateSourceControl", "CreateSourceControl", 1},
      {"TVServiceAPI::CreateVideoControl", "CreateVideoControl", "CreateVideoControl", 2},
      {"TVServiceAPI::CreateAVControl", "CreateAVControl", "CreateAVControl", 3},
      {"TVServiceAPI::ServiceDataAux", "ServiceDataAux", "ServiceDataAux", 4},
  };
  return all;
}

/// The log lines of the selection for the failure.
Lines reported(const Stop& stop, const std::string& way, bool pip) {
  const std::string name = pip ? stop.pipName : stop.mainName;
  const std::string null = "0 " + name + " returned NULL!!!";
  if (way == "result=null" || way == "result=unwritten") return {null};
  const std::string refused = "0 " + name + " returned false for [p:" + (pip ? "101" : "1") + ",s:0] failed.";
  if (way != "result=throw") return {refused};
  return {caught("SetWindow", stop.factory), name == "ServiceDataAux" ? null : refused};
}

struct Stopping {
  std::size_t stop;
  std::string way;
  bool pip;
};

/// The worker was never created, so it has no proxies.
class SetWindowStopped : public support::BareWorkerTest, public ::testing::WithParamInterface<Stopping> {};

TEST_P(SetWindowStopped, KeepsWhatWasSelectedBeforeTheFailure) {
  const Stop& stop = stops()[GetParam().stop];
  const auto& [number, way, pip] = GetParam();
  fault(stop.factory + " " + way);
  EXPECT_EQ(worker.SetWindow(pip ? pipWindow : mainWindow), 0);
  EXPECT_TRUE(faultsHit());

  EXPECT_EQ(logs(), join({pip ? beginPip : beginMain, reported(stop, way, pip)}));
  std::vector<bool> before(6, false);
  std::fill_n(before.begin(), stop.active, true);
  EXPECT_EQ(slots(worker).active, before);
  EXPECT_EQ(pip ? slots(worker).pip : slots(worker).main, before);
  EXPECT_EQ(calls().size(), stop.active + 1) << "nothing is made after the failure";
  EXPECT_EQ(worker.t_eWindow, pip ? 1 : 0) << "the window is stored first";
  const std::string key = pip ? "db/emp/pipsource" : "db/emp/mainsource";
  EXPECT_EQ(worker.m_SourceVconf, stop.active >= 2 ? key : "") << "the keys come after the source control";
  EXPECT_EQ(worker.m_PreviousSourceVconf.empty(), stop.active < 2);

  forget();
  EXPECT_EQ(worker.SetWindow(pip ? pipWindow : mainWindow), 1) << "the next selection makes the rest";
  EXPECT_EQ(calls().size(), 6 - stop.active);
  EXPECT_EQ(slots(worker).active, lifecycle::all);
}

std::vector<Stopping> eachStop() {
  std::vector<Stopping> each;
  for (std::size_t at = 0; at < stops().size(); ++at) {
    for (const std::string& way : failures(stops()[at].factory)) {
      for (const bool pip : {false, true}) each.push_back({at, way, pip});
    }
  }
  return each;
}

std::string nameOf(const ::testing::TestParamInfo<Stopping>& info) {
  const std::string factory = stops()[info.param.stop].factory;
  std::string name = factory.substr(factory.rfind(':') + 1) + "_" + info.param.way.substr(7);
  std::replace(name.begin(), name.end(), '-', 'm');
  return name + (info.param.pip ? "_pip" : "_main");
}

INSTANTIATE_TEST_SUITE_P(Each, SetWindowStopped, ::testing::ValuesIn(eachStop()), nameOf);

const std::string dataControl = "TVServiceAPI::CreateDataControl";

/// The log line of the selection when there is no data control.
std::string noDataControl(bool pip) {
  return pip ? "0 SetWindow svc_datacontrol_proxy_pip create is FAIL!!"
             : "0 SetWindow svc_datacontrol_proxy_main create is FAIL!!";
}

TEST_F(SetWindowTest, WithoutDataControlOnlyAnExceptionFailsTheSelectionAndTheOthersAreBound) {
  for (const std::string& way : failures(dataControl)) {
    for (const bool pip : {false, true}) {
      SCOPED_TRACE(way + (pip ? " pip" : " main"));
      const bool throws = way == "result=throw";
      const auto window = pip ? pipWindow : mainWindow;
      worker.svc_datacontrol_proxy_main = worker.svc_datacontrol_proxy_pip = nullptr;
      EXPECT_EQ(under(dataControl + " " + way, [&] { return worker.SetWindow(window); }), throws ? 0 : 1);
      const Lines thrown = throws ? Lines{caught("SetWindow", dataControl)} : Lines();
      EXPECT_EQ(logs(), join({pip ? beginPip : beginMain, thrown, {noDataControl(pip)}}));
      EXPECT_NE(calls().back().find(dataControl + "(profile=1, index=0) -> "), std::string::npos);
      EXPECT_EQ(slots(worker).active, (std::vector<bool>{true, true, true, true, true, false}));
      EXPECT_EQ(inUse(worker), pip ? ofPip(worker) : ofMain(worker));
      EXPECT_EQ(worker.t_eWindow, pip ? 1 : 0);
      EXPECT_EQ(worker.m_SourceVconf, pip ? "db/emp/pipsource" : "db/emp/mainsource");
      EXPECT_EQ(worker.SetWindow(window), 1) << "the next selection makes it";
      EXPECT_EQ(calls(), Lines{made(dataControl, 1)});
    }
  }
}

}  // namespace
