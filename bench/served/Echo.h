// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

namespace bench {

/// The library's bare WebSocket server on its own thread, as the reference for the set's server.
class Echo {
 public:
  /// Sends each message back.
  Echo();
  Echo(const Echo&) = delete;
  Echo& operator=(const Echo&) = delete;
  /// Ends the server and its connections.
  ~Echo();

  unsigned short port() const;
  /// From now on answers each message with this one. With `toOthers`, sends it to all other clients first, and then
  /// returns the original message to the sender. Call while no message is in transit.
  void sendInstead(std::string text, bool toOthers);

 private:
  class Body;
  std::unique_ptr<Body> body_;
};

}  // namespace bench
