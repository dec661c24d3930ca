// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <string>

#include "net/Asio.h"

namespace virtualtv::net {

/// Does large pieces of work one at a time, in order. Between two of them the loop runs, so that small requests need
/// not wait for all of them. Outlives the loop's last turn.
class Turns {
 public:
  explicit Turns(const Executor& executor) : pause_(executor) {}

  /// @param owner  the owner of the work, see `holds`.
  void add(std::string owner, std::function<void()> work);
  /// True while work of that owner waits.
  bool holds(const std::string& owner) const;

 private:
  struct Work {
    std::string owner;
    std::function<void()> run;
  };

  void pause();
  void next();

  Timer pause_;
  std::deque<Work> waiting_;
  bool isTurning_ = false;  ///< a pause is under way or about to be
};

}  // namespace virtualtv::net
