// SPDX-License-Identifier: MIT
#include "net/Turns.h"

#include <algorithm>
#include <boost/asio/post.hpp>
#include <chrono>
#include <utility>

namespace virtualtv::net {

void Turns::add(std::string owner, std::function<void()> work) {
  waiting_.push_back({std::move(owner), std::move(work)});
  if (!std::exchange(isTurning_, true)) pause();
}

bool Turns::holds(const std::string& owner) const {
  return std::any_of(waiting_.begin(), waiting_.end(), [&](const Work& work) { return work.owner == owner; });
}

/// From its first byte to its answer, a small call takes several turns of the loop. The pause leaves enough time for
/// that, and is short compared to the work.
void Turns::pause() {
  constexpr std::chrono::milliseconds time(1);
  pause_.expires_after(time);
  pause_.async_wait([this](error_code error) {
    if (!error) next();
  });
}

void Turns::next() {
  if (waiting_.empty()) {
    isTurning_ = false;
    return;
  }
  const Work work = std::move(waiting_.front());
  waiting_.pop_front();
  asio::post(pause_.get_executor(), [this] { pause(); });  // first, in case the work throws
  work.run();
}

}  // namespace virtualtv::net
