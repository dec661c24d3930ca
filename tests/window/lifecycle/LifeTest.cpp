// SPDX-License-Identifier: MIT
// The worker before it is created, and its end.
#include <algorithm>
#include <cstdint>
#include <memory>

#include "Proxies.h"

namespace {

using lifecycle::slots;
using support::Lines;
using support::WorkerProbe;

const Lines constructed{"3 [CEmpTaskWindow::CEmpTaskWindow][*] begin.", "3 [CEmpTaskWindow::CEmpTaskWindow][*] end."};
const Lines destroyed{"3 [CEmpTaskWindow::Destroy][*] begin.", "3 [CEmpTaskWindow::Destroy][*] end."};
const std::string endBegins = "3 [CEmpTaskWindow::~CEmpTaskWindow][*] begin.";
const std::string endEnds = "3 [CEmpTaskWindow::~CEmpTaskWindow][*] end.";

/// A record that counts its deletion.
class Counted : public TCServiceData {
 public:
  explicit Counted(int& deleted) : deleted_(deleted) {}
  ~Counted() override { ++deleted_; }

 private:
  int& deleted_;
};

using LifeTest = support::BareWorkerTest;

TEST_F(LifeTest, StartsWithoutProxiesKeysAndChannelsDrivingNoWindow) {
  forget();
  const WorkerProbe fresh;
  const auto held = slots(fresh);
  EXPECT_EQ(held.active, lifecycle::none);
  EXPECT_EQ(held.main, lifecycle::none);
  EXPECT_EQ(held.pip, lifecycle::none);
  EXPECT_FALSE(held.service);
  EXPECT_FALSE(held.tuner);
  EXPECT_EQ(fresh.m_pEngine, nullptr);
  EXPECT_EQ(fresh.m_SourceVconf, "");
  EXPECT_EQ(fresh.m_PreviousSourceVconf, "");
  EXPECT_TRUE(fresh.m_ChannelList.empty());
  EXPECT_EQ(fresh.t_eWindow, 3);
  EXPECT_EQ(fresh.m_baseScrW, 1920);
  EXPECT_EQ(fresh.m_baseScrH, 1080);
  EXPECT_EQ(logs(), constructed);
  EXPECT_EQ(calls(), Lines());
}

TEST_F(LifeTest, IsNotCreatedUntilCreateIsCalledAlsoWhenThatFails) {
  EXPECT_FALSE(worker.FlagCreate());
  fault("TVServiceAPI::CreateService result=1");
  EXPECT_FALSE(create());
  EXPECT_TRUE(worker.FlagCreate());
}

TEST_F(LifeTest, DestroysItselfWhenItEndsUnlessItWasNeverCreated) {
  int deleted = 0;
  for (const bool created : {false, true}) {
    std::unique_ptr<kel::CEmpTaskWindow> fresh = std::make_unique<WorkerProbe>();
    if (created) {
      fresh->Create("CEmpTaskWindow", &engine);
      static_cast<WorkerProbe&>(*fresh).m_ChannelList.push_back(new Counted(deleted));
    }
    forget();
    fresh.reset();
    EXPECT_EQ(logs(), support::join({{endBegins}, created ? destroyed : Lines(), {endEnds}}));
  }
  EXPECT_EQ(deleted, 1);
}

TEST_F(LifeTest, DestroyDeletesTheFoundChannelsOnce) {
  create();
  int deleted = 0;
  for (int count = 0; count < 3; ++count) worker.m_ChannelList.push_back(new Counted(deleted));
  for (int time = 0; time < 2; ++time) {
    forget();
    worker.Destroy();
    EXPECT_EQ(deleted, 3);
    EXPECT_TRUE(worker.m_ChannelList.empty());
    EXPECT_EQ(logs(), destroyed);
  }
}

TEST_F(LifeTest, DestroyKeepsTheProxiesAndTheEngine) {
  create();
  worker.Destroy();
  EXPECT_EQ(slots(worker).active, lifecycle::all);
  EXPECT_TRUE(worker.FlagCreate());
  EXPECT_EQ(worker.m_pEngine, &engine);
  auto source = PL_WINDOW_SOURCE_UNKNOWN;
  EXPECT_EQ(worker.GetSource(&source, _PL_WINDOW_SEEK{}), 1) << "it still works";
}

TEST_F(LifeTest, KeepsItsDataInTheStatedOrder) {
  const auto at = [](const auto& member) { return reinterpret_cast<std::uintptr_t>(&member); };
  const WorkerProbe& w = worker;
  std::vector<std::uintptr_t> order{at(w.m_pEngine), at(w.m_baseScrW), at(w.m_baseScrH), at(w.m_SourceVconf),
                                    at(w.m_PreviousSourceVconf)};
  const auto add = [&](const auto&... members) { order.insert(order.end(), {at(members)...}); };
  add(w.svc_navi_proxy, w.svc_navi_proxy_main, w.svc_navi_proxy_pip);
  add(w.src_ctrl_proxy, w.src_ctrl_proxy_main, w.src_ctrl_proxy_pip);
  add(w.video_ctrl_proxy, w.video_ctrl_proxy_main, w.video_ctrl_proxy_pip);
  add(w.av_ctrl_proxy, w.av_ctrl_proxy_main, w.av_ctrl_proxy_pip);
  add(w.servicedata_aux_proxy, w.servicedata_aux_proxy_main, w.servicedata_aux_proxy_pip);
  add(w.svc_datacontrol_proxy, w.svc_datacontrol_proxy_main, w.svc_datacontrol_proxy_pip);
  add(w.tuner_ctrl_proxy, w.svc_proxy, w.m_ChannelList, w.t_eWindow);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

}  // namespace
