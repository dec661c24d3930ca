// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bench {

/// A client's WebSocket that costs little: it blocks, and knows no more of frames than a server's messages need.
class Caller {
 public:
  /// Connects to a server on this machine. @throws std::runtime_error when that does not come about.
  explicit Caller(unsigned short port);
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;
  ~Caller();

  /// Sends frames as `frameOf` makes them.
  void send(std::string_view frames);
  /// Waits for the next message. @return it, until the next call.
  std::string_view take();
  /// Sends a message and waits for the next one.
  std::string call(std::string_view message);

 private:
  /// The next bytes, which stay taken.
  std::string_view bytes(std::size_t count);

  int socket_ = -1;
  std::string in_;
  std::size_t begin_ = 0;  ///< of what is left in `in_`
  std::size_t end_ = 0;
};

/// A text message as a client sends it.
std::string frameOf(std::string_view text);

}  // namespace bench
