// SPDX-License-Identifier: MIT
#pragma once

#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/websocket/rfc6455.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "net/Asio.h"
#include "net/RequestBody.h"
#include "net/Site.h"
#include "rpc/Server.h"

namespace virtualtv::net {

/// A client's connection over WebSocket. Each message is passed on when the previous one is answered. Meanwhile further
/// messages are read, so that pings are answered and the end of the connection is noticed while an answer is delayed.
/// When too many messages wait, reading stops; a periodic check then notices when the other side has ended.
class WebSocket final : public rpc::Outlet, public Connection, public std::enable_shared_from_this<WebSocket> {
 public:
  using Request = boost::beast::http::request<RequestBody>;

  WebSocket(Site& site, Executor executor) : site_(site), timer_(executor) {}

  /// Takes a session, before there is a connection: a new one, or one that was opened before.
  /// @throws rpc::NoSuchSession, rpc::TooManySessions.
  void connect(const std::optional<std::string>& session);
  /// Answers the upgrade request, then serves the connection until it ends. @param headers  headers for the answer.
  void open(Socket socket, const Request& upgrade, const Headers& headers);

  void send(std::shared_ptr<const std::string> message) override;
  std::size_t unsent() const override { return unsent_; }
  void cutOff() override;

  void goAway() override;
  void cut() override { end(); }

 private:
  using Stream = boost::beast::websocket::stream<Socket, false>;
  using CloseCode = boost::beast::websocket::close_code;

  void proceed();
  void read();
  void take();
  void handOn();
  void answered();
  void write();
  void close(CloseCode code);
  void farewell();
  void look();
  void ping();
  void after(Limits::Time time, void (WebSocket::*next)());
  void heard() { heard_ = std::chrono::steady_clock::now(); }
  void end();

  Site& site_;
  Timer timer_;
  std::unique_ptr<rpc::Client> client_;  ///< null once the connection starts to end, which also ends the session
  std::optional<Stream> stream_;
  boost::beast::flat_buffer in_;
  std::deque<boost::beast::flat_buffer> waiting_;       ///< messages not passed on yet
  std::size_t ahead_ = 0;                               ///< memory of the waiting messages, bytes
  std::deque<std::shared_ptr<const std::string>> out_;  ///< messages to send; the first is being sent while `writing_`
  std::size_t unsent_ = 0;
  std::chrono::steady_clock::time_point heard_;  ///< the last sign of life
  std::optional<CloseCode> farewell_;            ///< why the connection is being closed
  bool isOpen_ = false;
  bool reading_ = false;
  bool asking_ = false;  ///< a message was passed on, or is about to be, and is not answered
  bool inTurn_ = false;  ///< that message waits for its turn among the large ones
  bool isDeaf_ = false;  ///< reading is stopped, since too many messages wait
  bool ended_ = false;
  bool writing_ = false;
  bool pinging_ = false;
};

}  // namespace virtualtv::net
