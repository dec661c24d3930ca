#pragma once

#include <histedit.h>
#include <termios.h>

#include <csignal>
#include <string>
#include <string_view>

namespace virtualtv::program {

/// Reads what a person types, for an editor of lines, and handles the signals that arrive while it waits. A signal to
/// end or to stop does what it does to any program, once the terminal has its old settings back; when the program is
/// resumed, the line is shown again. Where no shell could resume it, the system does not stop it, and reading goes on.
class Keys {
 public:
  /// @param editor  outlives it, and has not begun with a line.
  /// @param end  a descriptor; when there is something to read, the input ends. -1 for none.
  /// @throws std::system_error when signals can't be listened to.
  explicit Keys(EditLine* editor, int end = -1);
  Keys(const Keys&) = delete;
  Keys& operator=(const Keys&) = delete;
  ~Keys();

  /// Leaves signals that come to this thread to `next` as long as it lives. At other times they do what they do to any
  /// program.
  class Tending {
   public:
    Tending();
    Tending(const Tending&) = delete;
    Tending& operator=(const Tending&) = delete;
    ~Tending();

   private:
    sigset_t before_{};
  };

  /// Waits for the next key, and handles signals meanwhile. A byte that is not part of a character in UTF-8 is a key of
  /// its own, which `textOf` turns back into the byte.
  /// @return 1 for a key, 0 at the end of the input, -1 with `errno` when it can't be read.
  int next(wchar_t& key);

  /// A text that was made of keys, as the bytes that were typed.
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
  termios before_{};   ///< the terminal's settings when this was made
  int signals_ = -1;   ///< the descriptor that they are read from
  std::string bytes_;  ///< that are not a whole character yet
};

}  // namespace virtualtv::program
