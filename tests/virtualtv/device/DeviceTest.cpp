// SPDX-License-Identifier: MIT
// What a device tells its subscribers: each change, each engine, each fault; and nothing without subscribers.
#include "virtualtv/device/DeviceTest.h"

#include <algorithm>
#include <stdexcept>

#include "framework/Reply.h"
#include "services/ServiceStore.h"

namespace virtualtv::device {

int DeviceTest::number(Session& session, std::vector<std::string> words) {
  std::string ret;
  session.execute(words, false, ret);
  const auto reply = framework::decode(ret);
  return reply ? reply->number : -1000;
}

namespace {

using framework::EngineClosed;
using framework::EngineOpened;

// Engines and faults.

TEST_F(DeviceTest, EnginesAreToldWhenTheyAreOpenedAndClosedAndWhy) {
  {
    Session session(device(), "one");
    session.setApplication({"app", "widget"});
    number(session, {"GetSource"});
    session.use("second");
    session.reopen();
    const auto opened = happened<EngineOpened>();
    ASSERT_EQ(opened.size(), 3U);
    EXPECT_EQ(opened[0].engine, "one:main");
    EXPECT_EQ(opened[0].client.appId, "app");
    EXPECT_EQ(opened[1].engine, "one:second");
    device().restart();
    std::vector<std::string> why;
    for (const EngineClosed& closed : happened<EngineClosed>()) why.push_back(closed.engine + " " + closed.why);
    EXPECT_EQ(why, (std::vector<std::string>{"one:main restart", "one:second restart"}));
    number(session, {"GetSource"});
  }
  const auto closed = happened<EngineClosed>();
  ASSERT_EQ(closed.size(), 1U);
  EXPECT_EQ(closed[0].why, "session ended");
}

TEST_F(DeviceTest, FaultsAreToldWhenTheyAreSetHitAndGone) {
  Session session(device());
  number(session, {"GetTVMode"});
  const std::uint64_t id = device().addFault(seam::parseFault({"IServiceNavigation::GetTvMode", "result=0", "always"}));
  EXPECT_EQ(number(session, {"GetTVMode"}), -1);
  EXPECT_EQ(number(session, {"GetTVMode"}), -1);
  EXPECT_TRUE(device().removeFault(id));
  EXPECT_FALSE(device().removeFault(id));
  EXPECT_EQ(number(session, {"GetTVMode"}), 1);
  const Feed::Taken taken = feed->take();
  std::vector<std::string> told;
  for (const auto& happening : taken.happenings) {
    if (const auto* set = std::get_if<FaultSet>(&happening->what)) told.emplace_back("set " + set->fault);
    if (const auto* hit = std::get_if<FaultHit>(&happening->what)) {
      told.push_back("hit " + std::to_string(hit->hits) + " by " + happening->caller.engine.str());
    }
    if (std::holds_alternative<FaultGone>(happening->what)) told.emplace_back("gone");
  }
  EXPECT_EQ(told, (std::vector<std::string>{"set IServiceNavigation::GetTvMode always result=0", "hit 1 by main",
                                            "hit 2 by main", "gone"}));
}

// Restarts.

TEST_F(DeviceTest, ARestartTellsWhatIsAnotherBehindItAndTheRevisionGoesOn) {
  tv().place(WindowId::main, {1, 2, 3, 4});
  tv().setLatency(seam::op("IService::FindService"), 5);
  device().addFault(seam::parseFault({"IService::FindService", "result=0"}));
  feed->take();
  const std::uint64_t before = device().revision();
  device().restart();
  EXPECT_GT(device().revision(), before);
  std::vector<std::string> told;
  std::uint64_t last = before;
  for (const auto& happening : feed->take().happenings) {
    EXPECT_GE(happening->revision, last);
    last = happening->revision;
    if (std::holds_alternative<FaultGone>(happening->what)) told.emplace_back("fault gone");
    if (const auto* started = std::get_if<SetStarted>(&happening->what)) told.push_back("started: " + started->why);
    const Change* const change = std::get_if<Change>(&happening->what);
    if (change == nullptr) continue;
    if (const auto* knob = std::get_if<KnobChanged>(change)) told.push_back(knob->name + " " + knob->after);
    if (const auto* plane = std::get_if<PlaneChanged>(change)) told.push_back(std::to_string(plane->after.rect.width));
  }
  EXPECT_EQ(told,
            (std::vector<std::string>{"fault gone", "latency.IService::FindService 0", "started: restart", "1920"}));
  device().reset();
  EXPECT_GT(device().revision(), last);
}

// Actions from outside.

TEST_F(DeviceTest, ActsAreToldToThoseWhoWantThemAsTheyWereAskedFor) {
  const auto acts = device().subscribe({.acts = true});
  device().setKnob("region", "7");
  EXPECT_THROW(device().setKnob("region", "x"), std::invalid_argument);
  device().setSetting("key", std::string("text"));
  EXPECT_TRUE(device().removeSetting("key"));
  EXPECT_FALSE(device().removeSetting("key"));
  device().restore(tv().snapshot());
  Session session(device(), "one");
  session.setApplication({"before", "it is opened"});
  number(session, {"GetTVMode"});
  session.setApplication({"app", "widget"});
  std::vector<std::string> told;
  for (const auto& happening : acts->take().happenings) {
    const auto& act = std::get<Act>(happening->what);
    if (const auto* turned = std::get_if<KnobTurned>(&act)) told.push_back(turned->name + " " + turned->value);
    if (const auto* given = std::get_if<SettingGiven>(&act)) told.push_back(given->key + (given->value ? " set" : ""));
    if (std::holds_alternative<SnapshotRestored>(act)) told.emplace_back("restored");
    if (const auto* given = std::get_if<ApplicationGiven>(&act)) told.push_back(given->engine + " " + given->appId);
  }
  EXPECT_EQ(told, (std::vector<std::string>{"region 7", "key set", "key", "restored", "one:main app"}));
  for (const auto& happening : feed->take().happenings) EXPECT_FALSE(std::holds_alternative<Act>(happening->what));
}

TEST_F(DeviceTest, AnotherOneCanTakeItsPlaceForAWhile) {
  Session session(device());
  number(session, {"GetTVMode"});
  device().setKnob("region", "7");
  device().setKnob("latency.IServiceNavigation::GetTvMode", "5");
  device().addFault(seam::parseFault({"IServiceNavigation::GetTvMode", "result=0", "always"}));
  const auto log = device().subscribe({.calls = true, .logLevel = 3});
  feed->take();
  {
    const DeviceAside aside(device().app());
    Storage storage;
    Device other(device().app(), storage);
    EXPECT_EQ(&Tv::current(), &other.tv());
    EXPECT_TRUE(other.host().engines().empty());
    Session beside(other);
    EXPECT_EQ(number(beside, {"GetTVMode"}), 1);
    EXPECT_EQ(other.tv().state().clock, 0U);
    EXPECT_EQ(framework::logLevel(), -1);
    other.reset();
  }
  EXPECT_EQ(&Tv::current(), &device().tv());
  EXPECT_EQ(feed->take().happenings.size() + log->take().happenings.size(), 0U);
  EXPECT_EQ(device().host().engines(), std::vector<std::string>{"main"});
  EXPECT_EQ(number(session, {"GetTVMode"}), -1);
  EXPECT_EQ(tv().state().clock, 5U);
  EXPECT_GT(log->take().happenings.size(), 1U);
}

// Feeds.

TEST_F(DeviceTest, NothingIsRecordedOrRenderedForNobody) {
  device().unsubscribe(feed);
  Session session(device());
  number(session, {"GetTVMode"});
  EXPECT_FALSE(seam::Seam::observed());
  EXPECT_EQ(framework::logLevel(), -1);
  auto calls = device().subscribe({.calls = true});
  EXPECT_TRUE(seam::Seam::observed());
  const auto lines = device().subscribe({.logLevel = 0});
  EXPECT_EQ(framework::logLevel(), 0);
  number(session, {"GetTVMode"});
  EXPECT_FALSE(calls->take().happenings.empty());
  EXPECT_FALSE(lines->take().happenings.empty());
  calls.reset();
  number(session, {"GetTVMode"});
  device().loop().turn();
  EXPECT_FALSE(seam::Seam::observed());
}

TEST_F(DeviceTest, CallsAreNotRecordedOnceTheLastFaultIsGone) {
  const std::uint64_t id = device().addFault(seam::parseFault({"vconf_set_int", "result=-1"}));
  EXPECT_TRUE(seam::Seam::observed());
  device().removeFault(id);
  EXPECT_FALSE(seam::Seam::observed());
  device().addFault(seam::parseFault({"vconf_set_int", "result=-1"}));
  device().clearFaults();
  EXPECT_FALSE(seam::Seam::observed());
}

TEST_F(DeviceTest, AFeedMayEndWhileACallIsMade) {
  device().unsubscribe(feed);
  Session session(device());
  number(session, {"GetTVMode"});
  auto calls = device().subscribe({.calls = true});
  device().addFault(seam::parseFault({"IServiceNavigation::GetTvMode", "times=always", "result=0"}));
  EXPECT_EQ(number(session, {"GetTVMode"}), -1);
  calls.reset();
  EXPECT_EQ(number(session, {"GetTVMode"}), -1);
}

TEST_F(DeviceTest, EachLineIsToldOnceWhereAFeedHasEnded) {
  Session session(device());
  number(session, {"GetTVMode"});
  auto all = device().subscribe({.logLevel = 3});
  const auto some = device().subscribe({.logLevel = 0});
  number(session, {"SetSource", "31"});
  some->take();
  number(session, {"SetSource", "31"});
  const std::size_t before = some->take().happenings.size();
  all.reset();
  number(session, {"SetSource", "31"});
  number(session, {"SetSource", "31"});
  EXPECT_EQ(some->take().happenings.size(), 2 * before);
}

TEST_F(DeviceTest, EachFeedHasWhatItAskedForInTheOrderInWhichItHappened) {
  const auto all = device().subscribe({.events = true, .calls = true, .logLevel = 3});
  Session session(device());
  number(session, {"SetSource", "31"});
  std::size_t calls = 0;
  std::size_t lines = 0;
  bool writtenAfterItsCallBegan = false;
  for (const auto& happening : all->take().happenings) {
    if (std::holds_alternative<seam::Call>(happening->what)) ++calls;
    if (std::holds_alternative<framework::LogLine>(happening->what)) ++lines;
    if (std::holds_alternative<Change>(happening->what)) writtenAfterItsCallBegan = lines > 0;
  }
  EXPECT_GT(calls, 0U);
  EXPECT_GT(lines, 0U);
  EXPECT_TRUE(writtenAfterItsCallBegan);
  for (const auto& happening : feed->take().happenings) {
    EXPECT_FALSE(std::holds_alternative<seam::Call>(happening->what));
    EXPECT_FALSE(std::holds_alternative<framework::LogLine>(happening->what));
  }
}

TEST_F(DeviceTest, WhatNobodyTakesDoesNotPileUp) {
  const auto slow = device().subscribe({.events = true, .limit = 3});
  for (int value = 0; value < 10; ++value) tv().setSetting("a/key", value);
  const Feed::Taken taken = slow->take();
  EXPECT_EQ(taken.happenings.size(), 3U);
  EXPECT_EQ(taken.dropped, 7U);
  const auto& last = std::get<SettingChanged>(std::get<Change>(taken.happenings.back()->what));
  EXPECT_EQ(last.after, Setting(9));
  EXPECT_EQ(slow->take().dropped, 0U);
}

TEST_F(DeviceTest, AFeedWakesItsSubscriberOutsideTheVerbAndOnceUntilItIsTaken) {
  int woken = 0;
  const auto waking = device().subscribe({.events = true, .wake = [&] { ++woken; }});
  tv().setSetting("a/key", 1);
  tv().setSetting("a/key", 2);
  EXPECT_EQ(woken, 0);
  device().loop().turn();
  EXPECT_EQ(woken, 1);
  waking->take();
  tv().setSetting("a/key", 3);
  device().loop().turn();
  EXPECT_EQ(woken, 2);
}

TEST_F(DeviceTest, ASubscriberThatAttendsIsNotWoken) {
  int woken = 0;
  const auto waking = device().subscribe({.events = true, .wake = [&] { ++woken; }});
  waking->attend(true);
  tv().setSetting("a/key", 1);
  EXPECT_EQ(waking->take().happenings.size(), 1U);
  waking->attend(false);
  device().loop().turn();
  EXPECT_EQ(woken, 0);
  tv().setSetting("a/key", 2);
  device().loop().turn();
  EXPECT_EQ(woken, 1);
}

TEST_F(DeviceTest, AFeedThatHoldsLittleWakesOnceToo) {
  int woken = 0;
  const auto waking = device().subscribe({.events = true, .limit = 1, .wake = [&] { ++woken; }});
  for (int value = 0; value < 5; ++value) tv().setSetting("a/key", value);
  device().loop().turn();
  EXPECT_EQ(woken, 1);
}

TEST_F(DeviceTest, NobodyIsWokenWhoseSubscriptionHasEnded) {
  int woken = 0;
  const auto waking = device().subscribe({.events = true, .wake = [&] { ++woken; }});
  tv().setSetting("a/key", 1);
  device().unsubscribe(waking);
  device().loop().turn();
  EXPECT_EQ(woken, 0);
}

TEST_F(DeviceTest, ASubscriberThatThrowsHarmsNobody) {
  const auto bad = device().subscribe({.events = true, .wake = [] { throw std::runtime_error("bad subscriber"); }});
  int woken = 0;
  const auto good = device().subscribe({.events = true, .wake = [&] { ++woken; }});
  tv().setSetting("a/key", 1);
  device().loop().turn();
  EXPECT_EQ(woken, 1);
  EXPECT_FALSE(good->take().happenings.empty());
}

// Sessions.

TEST_F(DeviceTest, SessionsHaveEnginesOfTheirOwnOnOneSet) {
  Session first(device(), "first");
  Session second(device(), "second");
  EXPECT_EQ(number(first, {"FindChannel", "0", "1"}), 1);
  EXPECT_GT(number(first, {"GetChannel_Size"}), 0);
  EXPECT_EQ(number(second, {"GetChannel_Size"}), 0) << "which has found none";
  EXPECT_EQ(number(first, {"SetSource", "31"}), 1);
  EXPECT_EQ(number(second, {"GetSource", "0"}), 31) << "of the same set";
  EXPECT_EQ(first.openEngines(), std::vector<std::string>{"main"});
  first.closeEngines("test");
  EXPECT_EQ(first.openEngines(), std::vector<std::string>{});
  EXPECT_EQ(second.openEngines(), std::vector<std::string>{"main"});
}

TEST_F(DeviceTest, NamesOfSessionsAndEnginesDoNotMix) {
  Session unnamed(device());
  Session named(device(), "a");
  EXPECT_NE(unnamed.key("a:main"), named.key("main"));
  EXPECT_EQ(unnamed.key("main"), "main");
}

TEST_F(DeviceTest, AFaultOfOneWindowLeavesTheOtherAlone) {
  Session session(device());
  number(session, {"SetWindow", "1"});
  device().addFault(seam::parseFault({"ISourceControl::GetSourceState", "window=pip", "always", "result=0"}));
  EXPECT_EQ(number(session, {"GetSourceState"}), -1);
  number(session, {"SetWindow", "0"});
  EXPECT_EQ(number(session, {"GetSourceState"}), 2);
}

}  // namespace
}  // namespace virtualtv::device
