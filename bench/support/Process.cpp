// SPDX-License-Identifier: MIT
#include "support/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace bench {

Process::Process(std::vector<std::string> words) : name_(words.front()) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  std::array<int, 2> pipe{};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0) throw std::runtime_error("there is no pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
  const int error = posix_spawnp(&process_, arguments.front(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(pipe[1]);
  output_ = pipe[0];
  if (error == 0) return;
  ::close(output_);
  throw std::runtime_error(name_ + " can't be started");
}

Process::~Process() {
  if (process_ != 0) end();
  ::close(output_);
}

void Process::awaitOutput() {
  if (!read()) throw std::runtime_error(name_ + " says nothing");
}

void Process::awaitEnd() {
  if (end() != 0) throw std::runtime_error(name_ + " fails");
}

/// @return false at the end of the output.
bool Process::read() {
  std::array<char, 4096> dropped{};
  return ::read(output_, dropped.data(), dropped.size()) > 0;
}

int Process::end() {
  while (read()) continue;
  int status = -1;
  ::waitpid(std::exchange(process_, 0), &status, 0);
  return status;
}

}  // namespace bench
