// SPDX-License-Identifier: MIT
#include "store/StateDirectory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "store/StoreError.h"

namespace virtualtv {

namespace {

// The process that holds the lock, as it wrote into the lock file.
std::string holder(int lock) {
  std::array<char, 16> text{};
  const ssize_t length = pread(lock, text.data(), text.size(), 0);
  std::string process(text.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  process.resize(std::min(process.find_first_not_of("0123456789"), process.size()));
  return process.empty() ? "another process" : "process " + process;
}

// Overwrites the earlier id. Truncating the file first would wait for the disk while that id is still being written.
bool writeProcessId(int lock) {
  const std::string text = std::to_string(getpid()) + "\n";
  const auto size = static_cast<off_t>(text.size());
  return pwrite(lock, text.data(), text.size(), 0) == size && ftruncate(lock, size) == 0;
}

/// Takes the lock. @return 0 or an error number.
int take(int lock, const StateDirectory::Wait& wait) {
  while (flock(lock, LOCK_EX | LOCK_NB) != 0) {
    const int error = errno;
    if (error != EWOULDBLOCK || !wait()) return error;
  }
  return 0;
}

}  // namespace

StateDirectory::Wait StateDirectory::twoSeconds() {
  using Clock = std::chrono::steady_clock;
  return [end = Clock::now() + std::chrono::seconds(2)] {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return Clock::now() < end;
  };
}

StateDirectory::StateDirectory(const std::filesystem::path& path, const Wait& wait)
    : path_(std::filesystem::absolute(path).lexically_normal()) {
  make();
  lock(wait);
}

StateDirectory::~StateDirectory() {
  close(lock_);
}

void StateDirectory::make() const {
  std::filesystem::path part;
  for (const auto& name : path_) {
    part /= name;
    if (mkdir(part.c_str(), S_IRWXU) != 0 && errno != EEXIST) fail(std::strerror(errno));
  }
}

void StateDirectory::lock(const Wait& wait) {
  lock_ = open((path_ / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (lock_ < 0) fail(std::strerror(errno));
  std::string reason;
  if (const int error = take(lock_, wait); error != 0) {
    reason = error == EWOULDBLOCK ? holder(lock_) + " holds it" : std::strerror(error);
  } else if (!writeProcessId(lock_)) {
    reason = std::strerror(errno);
  }
  if (reason.empty()) return;
  close(lock_);
  fail(reason);
}

void StateDirectory::fail(const std::string& reason) const {
  throw StoreError(path_.string() + ": cannot use it as state directory: " + reason);
}

}  // namespace virtualtv
