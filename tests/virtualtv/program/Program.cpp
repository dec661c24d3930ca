// SPDX-License-Identifier: MIT
#include "virtualtv/program/Program.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <utility>

namespace virtualtv::shell {

namespace {

constexpr int patience = 30000;  // milliseconds without output

[[noreturn]] void become(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  ::execv(program.c_str(), pointers.data());
  std::_Exit(127);
}

/// Restores the default actions of signals. Some shells ignore signals in background jobs, and a child inherits that.
void heedSignals() {
  for (const int signal : {SIGINT, SIGQUIT, SIGHUP, SIGTERM}) ::signal(signal, SIG_DFL);
}

/// Waits until a process ends. @param used  receives the resources that it used. @return its exit status, -1 when a
/// signal ended it.
int statusOf(int process, rusage& used) {
  int status = 0;
  if (::wait4(process, &status, 0, &used) != process || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

void open(const std::filesystem::path& file, int flags, int descriptor) {
  const int opened = ::open(file.c_str(), flags, 0600);
  if (opened < 0 || ::dup2(opened, descriptor) < 0) std::_Exit(126);
}

/// Runs the program with files as its standard streams. @param prepare  is called in the new process.
Ending runWith(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
               const std::filesystem::path& input, const std::function<void()>& prepare) {
  const int process = ::fork();
  if (process < 0) throw std::runtime_error("no process for the test");
  if (process == 0) {
    open(input, O_RDONLY, STDIN_FILENO);
    open(folder / "stdout", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    open(folder / "stderr", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    heedSignals();
    prepare();
    become(EMP_WINDOW, arguments);
  }
  Ending run;
  rusage used{};
  run.status = statusOf(process, used);
  run.memory = used.ru_maxrss;
  run.out = test::contentOf(folder / "stdout");
  run.err = test::contentOf(folder / "stderr");
  return run;
}

}  // namespace

int lineCount(const std::string& text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

void expectError(const Ending& run, const std::vector<std::string>& mentioned) {
  EXPECT_NE(run.status, 0);
  EXPECT_EQ(lineCount(run.err), 1) << run.err;
  EXPECT_TRUE(run.err.starts_with("emp-window: ")) << run.err;
  for (const std::string& text : mentioned) EXPECT_NE(run.err.find(text), std::string::npos) << run.err;
}

Ending ProgramTest::run(std::vector<std::string> arguments, const std::string& input) {
  return runOn(made("stdin", input), std::move(arguments));
}

Ending ProgramTest::runOn(const std::filesystem::path& input, std::vector<std::string> arguments) {
  return runWith(folder.path(), arguments, input, [this] { ::setenv("XDG_STATE_HOME", (folder / "xdg").c_str(), 1); });
}

Ending ProgramTest::runIn(const std::vector<std::string>& environment, std::vector<std::string> arguments) {
  return runWith(folder.path(), arguments, "/dev/null", [&] {
    ::unsetenv("XDG_STATE_HOME");
    ::unsetenv("HOME");
    for (const std::string& setting : environment) ::putenv(const_cast<char*>(setting.c_str()));
  });
}

Ending ProgramTest::runOnFullDisk(const std::vector<std::string>& arguments, const std::string& input) {
  return runWith(folder.path(), arguments, made("stdin", input), [this] {
    ::setenv("XDG_STATE_HOME", (folder / "xdg").c_str(), 1);
    open("/dev/full", O_WRONLY, STDOUT_FILENO);
  });
}

Ending ProgramTest::runWithout(const std::vector<int>& streams, std::vector<std::string> arguments) {
  return runWith(folder.path(), arguments, "/dev/null", [&] {
    for (const int stream : streams) ::close(stream);
  });
}

std::string ProgramTest::made(const std::string& name, const std::string& content) const {
  test::write(folder / name, content);
  return (folder / name).string();
}

Running::Running(const std::vector<std::string>& arguments, const std::function<void()>& prepare) {
  int input[2];
  int output[2];
  int errors[2];
  for (int* const ends : {input, output, errors}) {
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe for the test");
  }
  process_ = ::fork();
  if (process_ < 0) throw std::runtime_error("no process for the test");
  if (process_ == 0) {
    ::dup2(input[0], STDIN_FILENO);
    ::dup2(output[1], STDOUT_FILENO);
    ::dup2(errors[1], STDERR_FILENO);
    heedSignals();
    prepare();
    become(EMP_WINDOW, arguments);
  }
  for (const int end : {input[0], output[1], errors[1]}) ::close(end);
  input_ = input[1];
  output_ = output[0];
  errors_ = errors[0];
}

Running::~Running() {
  endInput();
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    wait();
  }
  ::close(output_);
  ::close(errors_);
}

std::string Running::line() {
  for (char byte = 0; ::read(output_, &byte, 1) == 1;) {
    if (byte == '\n') return std::exchange(unread_, {});
    unread_ += byte;
  }
  return {};
}

void Running::send(int signal) const {
  EXPECT_EQ(::kill(process_, signal), 0);
}

void Running::endInput() {
  if (input_ >= 0) ::close(std::exchange(input_, -1));
}

Ending Running::wait() {
  const auto rest = [](int descriptor) {
    std::string text;
    char chunk[4096];
    for (ssize_t count = 0; (count = ::read(descriptor, chunk, sizeof chunk)) > 0;) {
      text.append(chunk, static_cast<std::size_t>(count));
    }
    return text;
  };
  Ending ending;
  ending.out = rest(output_);
  ending.err = rest(errors_);
  rusage used{};
  ending.status = statusOf(std::exchange(process_, -1), used);
  ending.memory = used.ru_maxrss;
  return ending;
}

OnTerminal::OnTerminal(const std::vector<std::string>& arguments, unsigned short columns, const std::string& program) {
  const winsize size{40, columns, 0, 0};
  process_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
  if (process_ < 0) throw std::runtime_error("no terminal for the test");
  if (process_ == 0) {
    ::setenv("TERM", "vt100", 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
    heedSignals();
    become(program, arguments);
  }
}

OnTerminal::~OnTerminal() {
  ::close(terminal_);
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    wait();
  }
}

void OnTerminal::type(const std::string& keys) const {
  if (::write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) ADD_FAILURE() << "can't type";
}

std::string OnTerminal::readUntil(const std::string& text) {
  while (unread_.find(text) == std::string::npos) {
    pollfd waiting{terminal_, POLLIN, 0};
    char chunk[4096];
    const ssize_t count = ::poll(&waiting, 1, patience) == 1 ? ::read(terminal_, chunk, sizeof chunk) : 0;
    if (count <= 0) return std::exchange(unread_, {});
    unread_.append(chunk, static_cast<std::size_t>(count));
  }
  std::string shown = unread_.substr(0, unread_.find(text) + text.size());
  unread_.erase(0, shown.size());
  return shown;
}

void OnTerminal::widen(unsigned short columns) const {
  const winsize size{40, columns, 0, 0};
  EXPECT_EQ(::ioctl(terminal_, TIOCSWINSZ, &size), 0);
}

void OnTerminal::send(int signal) const {
  EXPECT_EQ(::kill(process_, signal), 0);
}

void OnTerminal::settle() const {
  const std::string file = "/proc/" + std::to_string(process_) + "/status";
  const auto isSettled = [&] {
    const std::string status = test::contentOf(file);
    return status.find("State:\tS") != std::string::npos &&
           status.find("ShdPnd:\t0000000000000000") != std::string::npos;
  };
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(patience);
  while (!isSettled()) {
    const bool hasEnded = test::contentOf(file).find("State:\tZ") != std::string::npos;
    if (hasEnded || std::chrono::steady_clock::now() > end) return ADD_FAILURE() << "does not settle";
    ::sched_yield();
  }
}

bool OnTerminal::echoes() const {
  return (settings().c_lflag & ECHO) != 0;
}

bool OnTerminal::interrupts() const {
  const termios now = settings();
  return (now.c_lflag & ISIG) != 0 && now.c_cc[VINTR] == '\x03';
}

termios OnTerminal::settings() const {
  termios settings{};
  EXPECT_EQ(::tcgetattr(terminal_, &settings), 0);
  return settings;
}

int OnTerminal::wait() {
  rusage used{};
  return statusOf(std::exchange(process_, -1), used);
}

}  // namespace virtualtv::shell
