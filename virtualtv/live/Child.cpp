// SPDX-License-Identifier: MIT
#include "live/Child.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <system_error>
#include <utility>

namespace virtualtv::live {

namespace {

[[noreturn]] void fail(const std::string& program) {
  throw std::system_error(errno, std::generic_category(), "cannot start " + program);
}

/// Descriptors of this process from this number on can't clash with those that the child gets.
constexpr int behindChilds = 10;

/// Creates a pipe. @return its read end and its write end.
std::pair<Descriptor, Descriptor> pipe(const std::string& program) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) fail(program);
  Descriptor reading(ends[0]);
  const Descriptor writing(ends[1]);
  if (::fcntl(reading.get(), F_SETFL, O_NONBLOCK) != 0) fail(program);
  Descriptor moved(::fcntl(writing.get(), F_DUPFD_CLOEXEC, behindChilds));
  if (moved.get() < 0) fail(program);
  return {std::move(reading), std::move(moved)};
}

/// Everything the child needs to start. It is prepared before the fork, since between fork and exec a child may do very
/// little.
struct Start {
  pid_t parent;
  const char* program;
  char* const* arguments;
  std::array<int, 4> descriptors;  ///< indexed by their number in the child; -1 for none
};

/// Becomes the program. Returns only on failure.
void become(const Start& start) {
  // The signal is sent when the forking thread ends, so the thread of the server must fork.
  if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || ::getppid() != start.parent) return;
  int most = 2;
  for (int wanted = 0; wanted < static_cast<int>(start.descriptors.size()); ++wanted) {
    const int given = start.descriptors.at(static_cast<std::size_t>(wanted));
    if (given < 0) continue;
    if (::dup2(given, wanted) != wanted) return;
    most = wanted;
  }
  if (::syscall(SYS_close_range, static_cast<unsigned>(most) + 1, UINT_MAX, 0U) != 0) return;
  for (int signal = 1; signal < NSIG; ++signal) ::signal(signal, SIG_DFL);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::execv(start.program, start.arguments);
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

Descriptor::~Descriptor() {
  if (number_ >= 0) ::close(number_);
}

int Descriptor::release() {
  return std::exchange(number_, -1);
}

Child::Child(const std::string& program, const std::vector<std::string>& arguments, int input) {
  auto [reading, writing] = pipe(program);
  auto [readingErrors, writingErrors] = pipe(program);
  const Descriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  if (nothing.get() < 0) fail(program);
  const Descriptor null(::fcntl(nothing.get(), F_DUPFD_CLOEXEC, behindChilds));
  if (null.get() < 0) fail(program);
  const Descriptor file(input < 0 ? -1 : ::fcntl(input, F_DUPFD_CLOEXEC, behindChilds));
  if (input >= 0 && file.get() < 0) fail(program);
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const Start start{
      ::getpid(), program.c_str(), pointers.data(), {null.get(), writing.get(), writingErrors.get(), file.get()}};
  process_ = ::fork();
  if (process_ < 0) fail(program);
  if (process_ == 0) {
    become(start);
    ::_exit(127);
  }
  output = std::move(reading);
  errors = std::move(readingErrors);
  ending = Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process_, 0U)));
  if (ending.get() >= 0) return;
  const int error = errno;
  kill();
  wait();
  errno = error;
  fail(program);
}

Child::~Child() {
  if (process_ < 0) return;
  kill();
  wait();
}

void Child::kill() const {
  if (process_ >= 0) ::kill(process_, SIGKILL);
}

int Child::wait() {
  if (process_ < 0) return status_;
  int status = 0;
  while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return status_;
}

}  // namespace virtualtv::live
