// SPDX-License-Identifier: MIT
#include "program/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "text/Units.h"

namespace virtualtv::program {

namespace {

constexpr auto pause = std::chrono::milliseconds(100);
constexpr const char* wipe = "\r\033[K";

}  // namespace

Progress::Progress() : isTerminal_(::isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (isTerminal_) std::cerr << wipe << std::flush;
}

void Progress::start(const std::string& file, std::uint64_t size) {
  file_ = text::shortened(text::printable(file), 40);
  size_ = size;
  read_ = 0;
  next_ = std::chrono::steady_clock::now();
}

void Progress::advance(std::uint64_t bytes) {
  read_ += bytes;
  if (!isTerminal_ || std::chrono::steady_clock::now() < next_) return;
  next_ = std::chrono::steady_clock::now() + pause;
  show();
}

void Progress::show() {
  constexpr std::uint64_t megabyte = 1'000'000;
  std::cerr << wipe << file_ << ": " << read_ / megabyte << " MB";
  if (size_ > 0) std::cerr << ", " << std::min<std::uint64_t>(read_ * 100 / size_, 100) << " %";
  std::cerr << std::flush;
}

}  // namespace virtualtv::program
