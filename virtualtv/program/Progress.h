// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace virtualtv::program {

/// Shows the progress of reading a file in a line on standard error, if that is a terminal.
class Progress {
 public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Wipes the line.
  ~Progress();

  /// Starts another file. @param size  its size in bytes, 0 when unknown.
  void start(const std::string& file, std::uint64_t size);
  /// Adds to the number of bytes read.
  void advance(std::uint64_t bytes);

 private:
  void show();

  bool isTerminal_;
  std::string file_;
  std::uint64_t size_ = 0;
  std::uint64_t read_ = 0;
  std::chrono::steady_clock::time_point next_;  ///< time of the next update
};

}  // namespace virtualtv::program
