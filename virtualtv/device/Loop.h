#pragma once

#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace virtualtv::device {

/// Runs on one thread what any thread posts, in the order in which it was posted. It has no thread of its own: the one
/// that made it turns it, or one that has called `run` since.
class Loop {
 public:
  Loop() : thread_(std::this_thread::get_id()) {}
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  /// Has `task` run on the loop's thread. Any thread may call it, tasks too. What a task throws is lost.
  void post(std::function<void()> task);

  /// Runs `function` on the loop's thread and waits for it: at once where this is that thread. The loop must be turned
  /// until then. @return what it returns. What it throws passes.
  template <typename Function>
  auto call(Function function) -> std::invoke_result_t<Function> {
    if (isMine()) return function();
    using Result = std::invoke_result_t<Function>;
    const auto task = std::make_shared<std::packaged_task<Result()>>(std::move(function));
    post([task] { (*task)(); });
    return task->get_future().get();
  }

  /// Runs the tasks that are waiting. @return false when there were none.
  bool turn();
  /// Takes the loop over for this thread, and turns it until `stop`.
  void run();
  /// Ends `run`, once the tasks that were posted before are done; those that they post are left. Any thread may call
  /// it.
  void stop();

  /// Has `wake` called, on the thread that posts, when a task waits and none did: for an owner with a loop of its own.
  void onPost(std::function<void()> wake);

 private:
  bool isMine() const;
  std::vector<std::function<void()>> takeTasks();

  mutable std::mutex mutex_;
  std::condition_variable posted_;
  std::vector<std::function<void()>> tasks_;
  std::function<void()> wake_;
  std::thread::id thread_;
  bool stopping_ = false;
};

}  // namespace virtualtv::device
