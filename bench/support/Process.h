// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace bench {

/// A running program without input. Its output is read and discarded.
class Process {
 public:
  /// Starts it. @param words  its name and arguments. @throws std::runtime_error when it can't be started.
  explicit Process(std::vector<std::string> words);
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  /// Waits for its end.
  ~Process();

  /// Waits until the process has written something. @throws std::runtime_error when it ends before that.
  void awaitOutput();
  /// Waits for its end. @throws std::runtime_error when it fails.
  void awaitEnd();

 private:
  bool read();
  int end();

  std::string name_;
  pid_t process_ = 0;  ///< 0 once it has ended
  int output_ = -1;
};

}  // namespace bench
