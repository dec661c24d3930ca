// SPDX-License-Identifier: MIT
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

/// Runs tasks on one thread, in the order in which any threads posted them. The loop has no thread of its own. It
/// belongs to the thread that created it, or to the thread that last called `run`.
class Loop {
 public:
  Loop() : thread_(std::this_thread::get_id()) {}
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  /// Runs `task` on the loop's thread. Any thread may call this, also from within a task. Exceptions of tasks are
  /// ignored.
  void post(std::function<void()> task);

  /// Runs `function` on the loop's thread and waits for its end; on that thread itself, runs it at once. The loop must
  /// be running meanwhile. @return the result of `function`. Its exceptions propagate.
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
  /// Makes the loop belong to this thread, and runs tasks until `stop`.
  void run();
  /// Ends `run` after the tasks posted so far. Tasks that these post are not run. Any thread may call this.
  void stop();

  /// Sets a function that is called on the posting thread when the first task starts to wait, for an owner with its own
  /// event loop.
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
