// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>

namespace virtualtv::net {

/// Limits for connections.
struct Limits {
  using Time = std::chrono::milliseconds;

  Time forHead = std::chrono::seconds(30);     ///< from the first byte of a request to the end of its head
  Time forBody = std::chrono::seconds(300);    ///< for the body of a request
  Time forAnswer = std::chrono::seconds(300);  ///< until a client has taken an answer
  Time silence = std::chrono::seconds(300);    ///< between requests; on a WebSocket, without a sign of life
  Time closing = std::chrono::seconds(5);      ///< from the start of closing a connection until it is cut
  Time ending = std::chrono::seconds(2);       ///< the same for all connections when the server ends

  /// Until the next data of a recording arrives while its viewer waits.
  Time forPicture = std::chrono::seconds(10);

  /// How often to check whether the other side still exists, for a WebSocket that is not being read.
  Time attention = std::chrono::seconds(1);

  std::size_t mostPlays = 8;                 ///< recordings playing at the same time, for all viewers
  std::size_t mostHead = 32 * 1024;          ///< bytes
  std::size_t mostBody = 32 * 1024 * 1024;   ///< bytes of a body or a message
  std::size_t mostAtOnce = 1024 * 1024;      ///< bytes; a larger message waits for its turn
  std::size_t mostAhead = 1024 * 1024;       ///< bytes of memory of waiting messages; beyond it nothing more is read
  std::size_t mostUnsent = 8 * 1024 * 1024;  ///< bytes waiting to be sent; beyond it the connection is not read
};

}  // namespace virtualtv::net
