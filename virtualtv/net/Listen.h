// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/basic_socket_acceptor.hpp>
#include <string>
#include <vector>

#include "net/Asio.h"

namespace virtualtv::net {

using Acceptor = asio::basic_socket_acceptor<asio::ip::tcp, Executor>;

/// Reads an address and a port, as in `127.0.0.1:8090`, `[::1]:0` or `localhost:8090`.
/// @throws std::invalid_argument for other texts, with the expected form.
asio::ip::tcp::endpoint endpointIn(const std::string& text);

/// Host and port as in a URL: `127.0.0.1:8090`, `[::1]:8090`.
std::string textOf(const asio::ip::tcp::endpoint& endpoint);

/// True for an address that other machines can't reach.
bool isOfThisMachine(const asio::ip::address& address);

/// Listens at an endpoint. @throws std::runtime_error with a line for a person.
Acceptor listenOn(asio::io_context& context, const asio::ip::tcp::endpoint& endpoint);
/// The same on a socket that already listens. The acceptor takes ownership of the socket.
Acceptor listenOn(asio::io_context& context, int socket);

}  // namespace virtualtv::net
