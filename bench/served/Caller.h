// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bench {

/// A lightweight WebSocket client: it blocks, and supports only the frames that a server's messages need.
class Caller {
 public:
  /// Connects to a server on this machine. @throws std::runtime_error when the connection fails.
  explicit Caller(unsigned short port);
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;
  ~Caller();

  /// Sends frames as `frameOf` makes them.
  void send(std::string_view frames);
  /// Waits for the next message. @return the message, valid until the next call.
  std::string_view take();
  /// Sends a message and waits for the next one.
  std::string call(std::string_view message);

 private:
  /// Consumes and returns the next bytes.
  std::string_view bytes(std::size_t count);

  int socket_ = -1;
  std::string in_;
  std::size_t begin_ = 0;  ///< start of the unread bytes in `in_`
  std::size_t end_ = 0;
};

/// A text message in the frame that a client sends.
std::string frameOf(std::string_view text);

}  // namespace bench
