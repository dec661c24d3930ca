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
  std::vector<int> sockets;               ///< that listen already, in its place; the server closes them
  Access::Rules access;
  Limits limits;
  bool waits = true;  ///< replies are held back as long as the latencies of the set's calls say
  std::size_t mostSessions = 2000;
  std::filesystem::path state;  ///< where the set keeps its state, told to clients; empty for one in memory
  std::filesystem::path files;  ///< clients may read and write beneath it; empty where they may not
  std::function<void(const std::string& line)> complain;  ///< is told what went wrong
  std::function<void(const std::string& line)> log;       ///< is told of each request, never of a token; may be empty
};

/// The sockets that whoever started this process opened for it to listen on, as the environment tells. They are its
/// own from then on: the environment tells of none any more.
std::vector<int> takeInheritedSockets();

/// Serves a device over HTTP and WebSocket, on the thread of the device's loop, which it turns while it runs.
class Server {
 public:
  /// Listens: clients can connect from here on, and are answered once it runs.
  /// @param device  outlives it.
  /// @throws std::invalid_argument for options that can't be served, std::runtime_error when it can't listen; both with
  /// a line for a person.
  Server(device::Device& device, Options options);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// Where it is, as in `http://127.0.0.1:8090/`.
  std::string address() const;

  /// Has SIGINT, SIGTERM and SIGHUP end it, the last one unless it is ignored; a second one ends the process.
  void endOnSignals();
  /// Has the end of what can be read from a descriptor end it. What is read there is dropped.
  void endWithInput(int descriptor);

  /// Serves until it is ended and all connections are closed, or cut after a while.
  void run();
  /// Ends it. Any thread may call it.
  void end();

 private:
  class Body;
  std::unique_ptr<Body> body_;
};

}  // namespace virtualtv::net
