// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <termios.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "virtualtv/support/Support.h"

namespace virtualtv::shell {

/// The result of a run of the program.
struct Ending {
  int status = -1;  ///< its exit status, -1 when a signal ended it
  std::string out;
  std::string err;
  long memory = 0;  ///< peak memory, in KB
};

int lineCount(const std::string& text);

/// Expects that a run failed, with one line of the program on standard error that contains all these texts.
void expectError(const Ending& run, const std::vector<std::string>& mentioned);

/// Starts the program, `emp-window`, with a separate state directory.
class ProgramTest : public ::testing::Test {
 protected:
  /// Runs the program to its end. @param input  its standard input.
  Ending run(std::vector<std::string> arguments, const std::string& input = "");
  /// Runs it with a file as its standard input.
  Ending runOn(const std::filesystem::path& input, std::vector<std::string> arguments);
  /// Runs it with these environment variables, and without a state directory of its own.
  Ending runIn(const std::vector<std::string>& environment, std::vector<std::string> arguments);

  /// Runs it with its standard output on a full disk.
  Ending runOnFullDisk(const std::vector<std::string>& arguments, const std::string& input);
  /// Runs it with the standard streams of these numbers closed.
  Ending runWithout(const std::vector<int>& streams, std::vector<std::string> arguments);

  std::filesystem::path state() const { return folder / "state"; }
  /// Writes a file into the test's folder. @return its path.
  std::string made(const std::string& name, const std::string& content) const;

  test::TemporaryDirectory folder;
};

/// The program, running beside the test, with pipes as its standard streams.
class Running {
 public:
  /// @param prepare  called in the new process.
  explicit Running(
      const std::vector<std::string>& arguments, const std::function<void()>& prepare = [] {});
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running();

  /// The next line of its output; empty if it ends first.
  std::string line();
  void send(int signal) const;
  /// Ends its standard input.
  void endInput();
  /// Waits for its end. @return its result, with the unread rest of standard output.
  Ending wait();

 private:
  int process_ = -1;
  int input_ = -1;
  int output_ = -1;
  int errors_ = -1;
  std::string unread_;
};

/// The program on a terminal of its own, as a person starts it.
class OnTerminal {
 public:
  /// @param columns  width of the terminal in characters.
  /// @param program  a different program to run.
  explicit OnTerminal(const std::vector<std::string>& arguments, unsigned short columns = 200,
                      const std::string& program = EMP_WINDOW);
  OnTerminal(const OnTerminal&) = delete;
  OnTerminal& operator=(const OnTerminal&) = delete;
  ~OnTerminal();

  void type(const std::string& keys) const;
  /// Reads the terminal until `text` appears. @return everything up to and including it; everything read when the
  /// program ends first, or prints nothing for long.
  std::string readUntil(const std::string& text);
  /// Changes the width of the terminal.
  void widen(unsigned short columns) const;
  /// Sends the program a signal.
  void send(int signal) const;
  /// Waits until the program has handled all signals sent to it and reads keys again.
  void settle() const;
  /// True when the terminal itself echoes what is typed, as it does unless a program reads keys.
  bool echoes() const;
  /// True when Ctrl-C sends an interrupt, as it does unless a program has changed that.
  bool interrupts() const;
  /// Waits for the end of the program. @return its exit status, -1 when a signal ended it.
  int wait();

 private:
  termios settings() const;

  int terminal_ = -1;
  int process_ = -1;
  std::string unread_;
};

}  // namespace virtualtv::shell
