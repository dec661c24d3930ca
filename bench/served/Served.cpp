// SPDX-License-Identifier: MIT
#include "Served.h"

#include <string>
#include <utility>

namespace bench {

namespace {

std::unique_ptr<Served> current;
std::size_t servicesOfCurrent = 0;

}  // namespace

Served& Served::with(std::size_t services) {
  if (current == nullptr || servicesOfCurrent != services) {
    drop();
    current = std::make_unique<Served>(services);
    servicesOfCurrent = services;
  }
  return *current;
}

void Served::drop() {
  current.reset();
}

Served::Served(std::size_t services) : thread_([this, services] { serve(services); }) {
  ready_.get_future().wait();
}

Served::~Served() {
  server_->end();
  thread_.join();
}

void Served::serve(std::size_t services) {
  Television television(services);
  virtualtv::net::Options options;
  options.listen = "127.0.0.1:0";
  virtualtv::net::Server server(television.device(), std::move(options));
  const std::string address = server.address();
  port_ = static_cast<unsigned short>(std::stoi(address.substr(address.rfind(':') + 1)));
  television_ = &television;
  server_ = &server;
  ready_.set_value();
  server.run();
}

void Served::onDevice(const std::function<void(Television&)>& work) {
  television_->device().loop().call([&] { work(*television_); });
}

}  // namespace bench
