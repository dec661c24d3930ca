#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace virtualtv::program {

/// How far a file is read, on a line of the terminal that standard error is; nothing where it is none.
class Progress {
 public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Wipes the line.
  ~Progress();

  /// Another file starts. @param size  its bytes, 0 when not known.
  void start(const std::string& file, std::uint64_t size);
  /// So many more bytes are read.
  void advance(std::uint64_t bytes);

 private:
  void show();

  bool isTerminal_;
  std::string file_;
  std::uint64_t size_ = 0;
  std::uint64_t read_ = 0;
  std::chrono::steady_clock::time_point next_;  ///< when to show it again
};

}  // namespace virtualtv::program
