// SPDX-License-Identifier: MIT
#include "net/Listen.h"

#include <sys/socket.h>

#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/address_v4.hpp>
#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "text/Numbers.h"

namespace virtualtv::net {

using asio::ip::tcp;

tcp::endpoint endpointIn(const std::string& text) {
  const auto refuse = [&] {
    throw std::invalid_argument("--listen: an address and a port are wanted, as in 127.0.0.1:8090, not '" + text + "'");
  };
  const std::size_t colon = text.rfind(':');
  if (colon == std::string::npos) refuse();
  std::string host = text.substr(0, colon);
  const auto port = text::numberIn<std::uint16_t>(std::string_view(text).substr(colon + 1));
  const bool isBracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (isBracketed) host = host.substr(1, host.size() - 2);
  if (host == "localhost") host = "127.0.0.1";
  error_code error;
  const asio::ip::address address = asio::ip::make_address(host, error);
  if (error || !port || address.is_v6() != isBracketed) refuse();
  return {address, *port};
}

std::string textOf(const tcp::endpoint& endpoint) {
  const std::string address = endpoint.address().to_string();
  return (endpoint.address().is_v6() ? "[" + address + "]" : address) + ":" + std::to_string(endpoint.port());
}

bool isOfThisMachine(const asio::ip::address& address) {
  const bool isMapped = address.is_v6() && address.to_v6().is_v4_mapped();
  return isMapped ? asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6()).is_loopback()
                  : address.is_loopback();
}

Acceptor listenOn(asio::io_context& context, const tcp::endpoint& endpoint) {
  try {
    return {context.get_executor(), endpoint};
  } catch (const boost::system::system_error& error) {
    throw std::runtime_error("cannot listen on " + textOf(endpoint) + ": " + error.code().message());
  }
}

Acceptor listenOn(asio::io_context& context, int socket) {
  const auto refuse = [&](const std::string& why) {
    throw std::runtime_error("cannot listen on the socket " + std::to_string(socket) + " that was handed over: " + why);
  };
  int listens = 0;
  socklen_t size = sizeof listens;
  if (::getsockopt(socket, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) != 0) {
    refuse(std::generic_category().message(errno));
  }
  sockaddr_storage address{};
  size = sizeof address;
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
  const bool isTcp = address.ss_family == AF_INET || address.ss_family == AF_INET6;
  if (listens == 0 || !isTcp) refuse("it does not listen for TCP");
  return {context.get_executor(), address.ss_family == AF_INET ? tcp::v4() : tcp::v6(), socket};
}

}  // namespace virtualtv::net
