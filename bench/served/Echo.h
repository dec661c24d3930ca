// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

namespace bench {

/// The library's WebSocket server with nothing around it, on a thread of its own: what the set's server is held
/// against.
class Echo {
 public:
  /// Sends each message back.
  Echo();
  Echo(const Echo&) = delete;
  Echo& operator=(const Echo&) = delete;
  /// Ends it, connections too.
  ~Echo();

  unsigned short port() const;
  /// From now on sends this in place of a message; `toOthers` to all that are connected but the one that sent it, who
  /// gets the message back behind that. Called while no message is on its way.
  void sendInstead(std::string text, bool toOthers);

 private:
  class Body;
  std::unique_ptr<Body> body_;
};

}  // namespace bench
