// SPDX-License-Identifier: MIT
#pragma once

#include <histedit.h>
#include <termios.h>

#include <csignal>
#include <string>
#include <string_view>

namespace virtualtv::program {

/// Reads the keys that a person types, for a line editor, and handles the signals that arrive meanwhile. A signal that
/// ends or stops the program has its default effect, after the terminal settings were restored. When the program is
/// resumed, the line is shown again. If no shell could resume the program, the system does not stop it, and reading
/// continues.
class Keys {
 public:
  /// @param editor  outlives this object, and has not started a line.
  /// @param end  a descriptor that ends the input when it becomes readable; -1 for none.
  /// @throws std::system_error when signals can't be received.
  explicit Keys(EditLine* editor, int end = -1);
  Keys(const Keys&) = delete;
  Keys& operator=(const Keys&) = delete;
  ~Keys();

  /// Lets `next` handle the signals of this thread for the lifetime of this object. At other times they have their
  /// default effect.
  class Tending {
   public:
    Tending();
    Tending(const Tending&) = delete;
    Tending& operator=(const Tending&) = delete;
    ~Tending();

   private:
    sigset_t before_{};
  };

  /// Waits for the next key, and handles signals meanwhile. A byte that is not part of a UTF-8 character is a key of
  /// its own, which `textOf` converts back to the byte.
  /// @return 1 for a key, 0 at the end of the input, -1 with `errno` when it can't be read.
  int next(wchar_t& key);

  /// Converts keys back to the bytes that were typed.
  static std::string textOf(std::wstring_view keys);

 private:
  bool take(wchar_t& key);
  bool waitForInput();
  void tendTo(int signal);
  void yieldTo(int signal);
  void prepareTerminal();
  void restoreTerminal();

  EditLine* editor_;
  int end_;
  termios before_{};   ///< the terminal's settings when this object was created
  int signals_ = -1;   ///< descriptor for reading signals
  std::string bytes_;  ///< bytes of an incomplete character
};

}  // namespace virtualtv::program
