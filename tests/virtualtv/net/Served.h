// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "device/Device.h"
#include "net/Server.h"
#include "virtualtv/net/Wire.h"

namespace virtualtv::net {

/// A server on a port and a thread of its own, with a set in memory.
class Served {
 public:
  explicit Served(Options options = {});
  Served(const Served&) = delete;
  Served& operator=(const Served&) = delete;
  /// Ends the server and waits for its end.
  ~Served();

  unsigned short port() const { return port_; }
  std::string host() const { return "127.0.0.1:" + std::to_string(port_); }
  /// Ends the server as a signal does.
  void end();
  /// Waits until it has ended.
  void wait();
  /// Runs `work` on the server's thread, and waits for it.
  void onDevice(const std::function<void(device::Device&)>& work);

  std::vector<std::string> complaints();
  std::vector<std::string> log();

 private:
  void serve(Options options);
  std::function<void(const std::string&)> noteIn(std::vector<std::string>& lines);

  std::mutex mutex_;
  std::vector<std::string> complaints_;
  std::vector<std::string> log_;
  device::Device* device_ = nullptr;
  Server* server_ = nullptr;
  unsigned short port_ = 0;
  std::promise<void> ready_;
  std::thread thread_;
};

}  // namespace virtualtv::net
