// SPDX-License-Identifier: MIT
#include "program/Keys.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cwchar>
#include <string_view>
#include <system_error>

namespace virtualtv::program {

namespace {

constexpr std::array signals{SIGTSTP, SIGCONT, SIGWINCH, SIGINT, SIGQUIT, SIGHUP, SIGTERM};

// A byte beyond ASCII is represented by a lone surrogate, which is never a character.
constexpr wchar_t firstOddByte = 0xDC80;
constexpr wchar_t lastOddByte = 0xDCFF;

wchar_t fromOddByte(char byte) {
  return static_cast<wchar_t>(firstOddByte - 0x80 + static_cast<unsigned char>(byte));
}

char toOddByte(wchar_t key) {
  return static_cast<char>(key - firstOddByte + 0x80);
}

sigset_t only(int signal) {
  sigset_t set;
  ::sigemptyset(&set);
  ::sigaddset(&set, signal);
  return set;
}

sigset_t tended() {
  sigset_t set;
  ::sigemptyset(&set);
  for (const int signal : signals) ::sigaddset(&set, signal);
  return set;
}

}  // namespace

Keys::Keys(EditLine* editor, int end) : editor_(editor), end_(end) {
  ::tcgetattr(STDIN_FILENO, &before_);
  const sigset_t set = tended();
  signals_ = ::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
  if (signals_ < 0) throw std::system_error(errno, std::generic_category(), "cannot listen to signals");
}

Keys::~Keys() {
  ::close(signals_);
}

Keys::Tending::Tending() {
  const sigset_t set = tended();
  ::pthread_sigmask(SIG_BLOCK, &set, &before_);
}

Keys::Tending::~Tending() {
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

int Keys::next(wchar_t& key) {
  while (!take(key)) {
    if (!waitForInput()) return 0;
    char byte = 0;
    const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
    if (count <= 0) return static_cast<int>(count);
    bytes_ += byte;
  }
  return 1;
}

/// Takes a character from the bytes read so far. @return false when they do not form one yet.
bool Keys::take(wchar_t& key) {
  constexpr auto invalid = static_cast<std::size_t>(-1);
  constexpr auto incomplete = static_cast<std::size_t>(-2);
  if (bytes_.empty()) return false;
  std::mbstate_t start{};
  const std::size_t length = std::mbrtowc(&key, bytes_.data(), bytes_.size(), &start);
  if (length == incomplete) return false;
  if (length == invalid) key = fromOddByte(bytes_.front());
  bytes_.erase(0, length == invalid || length == 0 ? 1 : length);
  return true;
}

/// Waits for input, or for the end of the input on the terminal. @return false when the input has been ended through
/// the descriptor `end`.
bool Keys::waitForInput() {
  std::array<pollfd, 3> sources{{{signals_, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}, {end_, POLLIN, 0}}};
  for (;;) {
    if (::poll(sources.data(), sources.size(), -1) < 0 && errno != EINTR) return true;
    signalfd_siginfo told{};
    if (::read(signals_, &told, sizeof told) == sizeof told) {
      tendTo(static_cast<int>(told.ssi_signo));
    } else if (sources[2].revents != 0) {
      return false;
    } else if (sources[1].revents != 0) {
      return true;
    }
  }
}

void Keys::tendTo(int signal) {
  switch (signal) {
    case SIGWINCH:
      el_resize(editor_);
      break;
    case SIGCONT:
      restoreTerminal();  // another program may have changed the terminal settings meanwhile
      prepareTerminal();
      el_set(editor_, EL_REFRESH);
      break;
    default:
      yieldTo(signal);
  }
}

/// Lets a signal have its default effect. After a stop signal this returns when the program is resumed. It returns at
/// once when nobody could resume the program, since the system then does not stop it.
void Keys::yieldTo(int signal) {
  restoreTerminal();
  const sigset_t one = only(signal);
  ::raise(signal);
  ::pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
  ::pthread_sigmask(SIG_BLOCK, &one, nullptr);
  prepareTerminal();
}

/// Sets the terminal to the settings for reading keys.
void Keys::prepareTerminal() {
  el_set(editor_, EL_PREP_TERM, 1);
}

/// Restores the earlier settings of the terminal. The editor's own settings for running a line differ: with them no key
/// interrupts.
void Keys::restoreTerminal() {
  el_set(editor_, EL_PREP_TERM, 0);
  ::tcsetattr(STDIN_FILENO, TCSADRAIN, &before_);
}

std::string Keys::textOf(std::wstring_view keys) {
  std::string text;
  std::mbstate_t state{};
  for (const wchar_t key : keys) {
    if (key >= firstOddByte && key <= lastOddByte) {
      text += toOddByte(key);
      continue;
    }
    std::array<char, MB_LEN_MAX> bytes{};
    const std::size_t length = std::wcrtomb(bytes.data(), key, &state);
    if (length <= bytes.size()) text.append(bytes.data(), length);
  }
  return text;
}

}  // namespace virtualtv::program
