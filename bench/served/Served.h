// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "net/Server.h"
#include "support/Television.h"

namespace bench {

/// The set's server on its own port and thread, with a television in memory.
class Served {
 public:
  /// @param services  the services of the television.
  explicit Served(std::size_t services);
  Served(const Served&) = delete;
  Served& operator=(const Served&) = delete;
  /// Ends it.
  ~Served();

  /// The server with this number of services. There is one at a time: another number replaces it.
  static Served& with(std::size_t services);
  /// Ends it.
  static void drop();

  unsigned short port() const { return port_; }
  /// Runs something on the server's thread, and waits for it.
  void onDevice(const std::function<void(Television&)>& work);

 private:
  void serve(std::size_t services);

  Television* television_ = nullptr;
  virtualtv::net::Server* server_ = nullptr;
  unsigned short port_ = 0;
  std::promise<void> ready_;
  std::thread thread_;
};

}  // namespace bench
