// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <boost/asio/basic_stream_socket.hpp>
#include <boost/asio/basic_waitable_timer.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/compose.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/role.hpp>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

// The library's types as used here: all on one executor type, known at compile time.

namespace virtualtv::net {

namespace asio = boost::asio;
using boost::system::error_code;

using Executor = asio::io_context::executor_type;
using Timer =
    asio::basic_waitable_timer<std::chrono::steady_clock, asio::wait_traits<std::chrono::steady_clock>, Executor>;

/// A socket of a connection.
class Socket : public asio::basic_stream_socket<asio::ip::tcp, Executor> {
 public:
  using Base = asio::basic_stream_socket<asio::ip::tcp, Executor>;
  explicit Socket(Base&& accepted) : Base(std::move(accepted)) {}

  std::function<void()> onTeardown;  ///< called when a WebSocket on this socket starts to close
};

/// Reads and discards the remaining input.
struct Draining {
  using Scratch = std::array<char, 16384>;

  Socket& socket;
  std::unique_ptr<Scratch> scratch = std::make_unique<Scratch>();

  template <typename Self>
  void operator()(Self& self, error_code error = {}, std::size_t = 0) {
    if (error) return self.complete(error);
    const auto into = asio::buffer(*scratch);
    socket.async_read_some(into, std::move(self));
  }
};

/// Ends sending, and waits for the other side to end. Closing the socket while input arrives could make the other side
/// lose the last answer. @param done  called with the error that ended the connection, `asio::error::eof` on success.
template <typename Done>
void endGently(Socket& socket, Done&& done) {
  error_code ignored;
  socket.shutdown(Socket::shutdown_send, ignored);
  asio::async_compose<Done, void(error_code)>(Draining{socket}, done, socket);
}

/// Ends the connection below a WebSocket. The library finds this function by its name.
template <typename Done>
void async_teardown(boost::beast::role_type, Socket& socket, Done&& done) {  // NOLINT(readability-identifier-naming)
  if (socket.onTeardown) socket.onTeardown();
  endGently(socket, std::forward<Done>(done));
}

}  // namespace virtualtv::net
