#pragma once

#include <chrono>
#include <cstddef>

namespace virtualtv::net {

/// What the server bears of one connection.
struct Limits {
  using Time = std::chrono::milliseconds;

  Time forHead = std::chrono::seconds(30);     ///< from the first byte of a request to the end of its head
  Time forBody = std::chrono::seconds(300);    ///< for the rest of it
  Time forAnswer = std::chrono::seconds(300);  ///< until a client has taken an answer
  Time silence = std::chrono::seconds(300);    ///< between requests; on a WebSocket, without a sign of life
  Time closing = std::chrono::seconds(5);      ///< from when a connection is being closed until it is cut
  Time ending = std::chrono::seconds(2);       ///< the same of all connections, when the server ends

  /// Until something comes of a recording that plays, whenever its viewer waits for it.
  Time forPicture = std::chrono::seconds(10);

  /// Of a WebSocket that is read no further: how often it is looked at whether the other side is still there.
  Time attention = std::chrono::seconds(1);

  std::size_t mostPlays = 8;                 ///< recordings that play at a time, for all viewers
  std::size_t mostHead = 32 * 1024;          ///< bytes
  std::size_t mostBody = 32 * 1024 * 1024;   ///< bytes of a body or a message
  std::size_t mostAtOnce = 1024 * 1024;      ///< bytes of a message that need not wait for its turn
  std::size_t mostAhead = 1024 * 1024;       ///< bytes of memory of messages that wait; what comes then is not read
  std::size_t mostUnsent = 8 * 1024 * 1024;  ///< bytes; a connection with more than that is read no further
};

}  // namespace virtualtv::net
