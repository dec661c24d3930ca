// SPDX-License-Identifier: MIT
// The worker before it is created, and its end.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>

#include "Proxies.h"

namespace {

using lifecycle::slots;
using support::Lines;
using support::WorkerProbe;

const Lines constructed{"3 [CEmpTaskWindow::CEmpTaskWindow][*] begin.", "3 [CEmpTaskWindow::CEmpTaskWindow][*] end."};
const Lines destroyed{"3 [CEmpTaskWindow::Destroy][*] begin.", "3 [CEmpTaskWindow::Destroy][*] end."};
const std::string endBegins = "3 [CEmpTaskWindow::~CEmpTaskWindow][*] begin.";
const std::string endEnds = "3 [CEmpTaskWindow::~CEmpTaskWindow][*] end.";

/// A record that tells when it is deleted.
class Counted : public TCServiceData {
 public:
  explicit Counted(int& deleted) : deleted_(deleted) {}
  ~Counted() override { ++deleted_; }

 private:
  int& deleted_;
};

using LifeTest = support::BareWorkerTest;

TEST_F(LifeTest, StartsWithoutProxiesKeysAndChannelsDrivingNoWindow) {
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
}

TEST_F(LifeTest, IsNotCreatedUntilCreateIsCalledAlsoWhenThatFails) {
  EXPECT_FALSE(worker.FlagCreate());
  fault("TVServiceAPI::CreateService result=1");
  EXPECT_FALSE(create());
  EXPECT_TRUE(worker.FlagCreate());
}

TEST_F(LifeTest, HasItsBaseScreenFromTheStart) {
  EXPECT_EQ(worker.m_baseScrW, 1920);
  EXPECT_EQ(worker.m_baseScrH, 1080);
}

TEST_F(LifeTest, TellsItsConstruction) {
  const WorkerProbe fresh;
  EXPECT_EQ(logs(), constructed);
  EXPECT_EQ(calls(), Lines());
}

TEST_F(LifeTest, WithoutCreateEndsWithoutDestroying) {
  std::optional<WorkerProbe> fresh;
  fresh.emplace();
  forget();
  fresh.reset();
  EXPECT_EQ(logs(), (Lines{endBegins, endEnds}));
}

TEST_F(LifeTest, DestroysItselfWhenItEnds) {
  std::optional<WorkerProbe> fresh;
  fresh.emplace();
  fresh->Create("CEmpTaskWindow", &engine);
  forget();
  fresh.reset();
  EXPECT_EQ(logs(), support::join({{endBegins}, destroyed, {endEnds}}));
}

TEST_F(LifeTest, DestroyDeletesTheFoundChannels) {
  create();
  int deleted = 0;
  for (int count = 0; count < 3; ++count) worker.m_ChannelList.push_back(new Counted(deleted));
  forget();
  worker.Destroy();
  EXPECT_EQ(deleted, 3);
  EXPECT_TRUE(worker.m_ChannelList.empty());
  EXPECT_EQ(logs(), destroyed);
}

TEST_F(LifeTest, EndDeletesTheFoundChannels) {
  int deleted = 0;
  {
    WorkerProbe fresh;
    fresh.Create("CEmpTaskWindow", &engine);
    fresh.m_ChannelList.push_back(new Counted(deleted));
  }
  EXPECT_EQ(deleted, 1);
}

TEST_F(LifeTest, DestroyTwiceIsHarmless) {
  create();
  int deleted = 0;
  worker.m_ChannelList.push_back(new Counted(deleted));
  worker.Destroy();
  worker.Destroy();
  EXPECT_EQ(deleted, 1);
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

TEST_F(LifeTest, IsDeletedThroughItsBase) {
  const std::unique_ptr<kel::CEmpTaskWindow> fresh = std::make_unique<WorkerProbe>();
  EXPECT_FALSE(fresh->FlagCreate());
}

TEST_F(LifeTest, KeepsItsDataInTheStatedOrder) {
  const auto at = [](const auto& member) { return reinterpret_cast<std::uintptr_t>(&member); };
  const WorkerProbe& w = worker;
  const std::vector<std::uintptr_t> order{at(w.m_pEngine),
                                          at(w.m_baseScrW),
                                          at(w.m_baseScrH),
                                          at(w.m_SourceVconf),
                                          at(w.m_PreviousSourceVconf),
                                          at(w.svc_navi_proxy),
                                          at(w.svc_navi_proxy_main),
                                          at(w.svc_navi_proxy_pip),
                                          at(w.src_ctrl_proxy),
                                          at(w.src_ctrl_proxy_main),
                                          at(w.src_ctrl_proxy_pip),
                                          at(w.video_ctrl_proxy),
                                          at(w.video_ctrl_proxy_main),
                                          at(w.video_ctrl_proxy_pip),
                                          at(w.av_ctrl_proxy),
                                          at(w.av_ctrl_proxy_main),
                                          at(w.av_ctrl_proxy_pip),
                                          at(w.servicedata_aux_proxy),
                                          at(w.servicedata_aux_proxy_main),
                                          at(w.servicedata_aux_proxy_pip),
                                          at(w.svc_datacontrol_proxy),
                                          at(w.svc_datacontrol_proxy_main),
                                          at(w.svc_datacontrol_proxy_pip),
                                          at(w.tuner_ctrl_proxy),
                                          at(w.svc_proxy),
                                          at(w.m_ChannelList),
                                          at(w.t_eWindow)};
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

}  // namespace
