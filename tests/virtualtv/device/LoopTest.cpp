// SPDX-License-Identifier: MIT
#include "device/Loop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace virtualtv::device {
namespace {

TEST(LoopTest, RunsWhatWasPostedInItsOrderWhenItIsTurned) {
  Loop loop;
  std::string ran;
  loop.post([&] { ran += "a"; });
  loop.post([&] { ran += "b"; });
  EXPECT_EQ(ran, "");
  EXPECT_TRUE(loop.turn());
  EXPECT_EQ(ran, "ab");
  EXPECT_FALSE(loop.turn());
}

TEST(LoopTest, RunsWhatATaskPostsInTheNextTurn) {
  Loop loop;
  std::string ran;
  loop.post([&] {
    ran += "a";
    loop.post([&] { ran += "b"; });
  });
  loop.turn();
  EXPECT_EQ(ran, "a");
  loop.turn();
  EXPECT_EQ(ran, "ab");
}

TEST(LoopTest, StopsAlsoWhereEachTaskPostsAnother) {
  Loop loop;
  int ran = 0;
  std::function<void()> task = [&] {
    if (++ran == 3) loop.stop();
    loop.post(task);
  };
  loop.post(task);
  loop.run();
  EXPECT_GE(ran, 3);
  EXPECT_TRUE(loop.turn()) << "what was posted later waits";
}

TEST(LoopTest, ATaskThatThrowsHarmsNoOther) {
  Loop loop;
  bool ran = false;
  loop.post([] { throw std::runtime_error("lost"); });
  loop.post([&] { ran = true; });
  EXPECT_TRUE(loop.turn());
  EXPECT_TRUE(ran);
}

TEST(LoopTest, ACallFromItsOwnThreadRunsAtOnce) {
  Loop loop;
  EXPECT_EQ(loop.call([] { return 5; }), 5);
  EXPECT_THROW(loop.call([] { throw std::runtime_error("passes"); }), std::runtime_error);
}

TEST(LoopTest, ACallFromAnotherThreadIsAnsweredAndItsExceptionPasses) {
  Loop loop;
  std::thread other([&] {
    EXPECT_EQ(loop.call([] { return std::this_thread::get_id(); }) == std::this_thread::get_id(), false);
    EXPECT_THROW(loop.call([] { throw std::runtime_error("passes"); }), std::runtime_error);
    loop.stop();
  });
  loop.run();
  other.join();
}

TEST(LoopTest, DoesWhatWasPostedBeforeItStops) {
  Loop loop;
  int ran = 0;
  for (int task = 0; task < 3; ++task) loop.post([&] { ++ran; });
  loop.stop();
  loop.run();
  EXPECT_EQ(ran, 3);
}

TEST(LoopTest, WakesItsOwnerOnceForTasksThatWaitTogether) {
  Loop loop;
  int woken = 0;
  loop.onPost([&] { ++woken; });
  loop.post([] {});
  loop.post([] {});
  EXPECT_EQ(woken, 1);
  loop.turn();
  loop.post([] {});
  EXPECT_EQ(woken, 2);
}

TEST(LoopTest, TakesTasksFromAllThreads) {
  constexpr int threads = 4;
  constexpr int tasks = 500;
  Loop loop;
  int ran = 0;
  std::atomic<int> going = threads;
  std::vector<std::thread> posting;
  posting.reserve(threads);
  for (int thread = 0; thread < threads; ++thread) {
    posting.emplace_back([&] {
      for (int task = 0; task < tasks; ++task) loop.post([&] { ++ran; });
      if (--going == 0) loop.stop();
    });
  }
  loop.run();
  for (std::thread& thread : posting) thread.join();
  loop.turn();
  EXPECT_EQ(ran, threads * tasks);
}

}  // namespace
}  // namespace virtualtv::device
