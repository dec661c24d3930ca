// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "device/Device.h"
#include "net/Access.h"
#include "net/Limits.h"

namespace virtualtv::net {

struct Options {
  std::string listen = "127.0.0.1:8090";  ///< address and port; port 0 is any free one
  std::vector<int> sockets;               ///< listening sockets to use instead; the server closes them
  Access::Rules access;
  Limits limits;
  bool waits = true;  ///< delay replies by the latencies of the set's calls
  std::size_t mostSessions = 2000;
  std::filesystem::path state;  ///< directory with the state of the set, reported to clients; empty for a set in memory
  std::filesystem::path files;  ///< directory beneath which clients may read and write; empty for none
  std::function<void(const std::string& line)> complain;  ///< called with what went wrong
  std::function<void(const std::string& line)> log;       ///< called for each request, never with a token; may be empty
};

/// Serves a device over HTTP and WebSocket, on the thread of the device's loop, which it runs meanwhile.
class Server {
 public:
  /// Listens: clients can connect from here on, and are answered once `run` is called. @param device  outlives the
  /// server. @throws std::invalid_argument for invalid options, std::runtime_error when it can't listen. Both have a
  /// line for a person.
  Server(device::Device& device, Options options);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// The URL of the server, as in `http://127.0.0.1:8090/`.
  std::string address() const;

  /// Lets SIGINT, SIGTERM and, unless it is ignored, SIGHUP end the server. A second signal ends the process.
  void endOnSignals();
  /// Ends the server at the end of the input from a descriptor. The input itself is discarded.
  void endWithInput(int descriptor);

  /// Serves until `end` is called and all connections are closed. Connections that stay open are cut after a while.
  void run();
  /// Ends the server. Any thread may call this.
  void end();

 private:
  class Body;
  std::unique_ptr<Body> body_;
};

}  // namespace virtualtv::net
