// SPDX-License-Identifier: MIT
#include "virtualtv/net/Served.h"

#include <utility>

#include "EmpAppWindow.h"
#include "support/Assembly.h"

namespace virtualtv::net {

Served::Served(Options options) {
  options.listen = "127.0.0.1:0";
  options.complain = noteIn(complaints_);
  options.log = noteIn(log_);
  thread_ = std::thread([this, options = std::move(options)]() mutable { serve(std::move(options)); });
  ready_.get_future().wait();
}

Served::~Served() {
  end();
  wait();
}

void Served::serve(Options options) {
  support::Assembly<kel::CEmpAppWindow> television;
  Server server(television.device, std::move(options));
  const std::string address = server.address();
  port_ = static_cast<unsigned short>(std::stoi(address.substr(address.rfind(':') + 1)));
  device_ = &television.device;
  server_ = &server;
  ready_.set_value();
  server.run();
  const std::lock_guard lock(mutex_);
  server_ = nullptr;
}

void Served::end() {
  const std::lock_guard lock(mutex_);
  if (server_ != nullptr) server_->end();
}

void Served::wait() {
  if (thread_.joinable()) thread_.join();
}

void Served::onDevice(const std::function<void(device::Device&)>& work) {
  device_->loop().call([&] { work(*device_); });
}

std::function<void(const std::string&)> Served::noteIn(std::vector<std::string>& lines) {
  return [this, &lines](const std::string& line) {
    const std::lock_guard lock(mutex_);
    lines.push_back(line);
  };
}

std::vector<std::string> Served::complaints() {
  const std::lock_guard lock(mutex_);
  return complaints_;
}

std::vector<std::string> Served::log() {
  const std::lock_guard lock(mutex_);
  return log_;
}

}  // namespace virtualtv::net
