// SPDX-License-Identifier: MIT
#include "device/Loop.h"

namespace virtualtv::device {

void Loop::post(std::function<void()> task) {
  std::function<void()> wake;
  {
    const std::lock_guard lock(mutex_);
    if (tasks_.empty()) wake = wake_;
    tasks_.push_back(std::move(task));
  }
  posted_.notify_one();
  if (wake) wake();
}

bool Loop::turn() {
  const auto tasks = takeTasks();
  for (const auto& task : tasks) {
    try {
      task();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the task's own affair
    }
  }
  return !tasks.empty();
}

void Loop::run() {
  {
    const std::lock_guard lock(mutex_);
    thread_ = std::this_thread::get_id();
  }
  while (!std::exchange(stopping_, false)) {
    {
      std::unique_lock lock(mutex_);
      posted_.wait(lock, [this] { return !tasks_.empty(); });
    }
    turn();
  }
}

void Loop::stop() {
  post([this] { stopping_ = true; });
}

void Loop::onPost(std::function<void()> wake) {
  const std::lock_guard lock(mutex_);
  wake_ = std::move(wake);
}

bool Loop::isMine() const {
  const std::lock_guard lock(mutex_);
  return thread_ == std::this_thread::get_id();
}

std::vector<std::function<void()>> Loop::takeTasks() {
  const std::lock_guard lock(mutex_);
  return std::exchange(tasks_, {});
}

}  // namespace virtualtv::device
