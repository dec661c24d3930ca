// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/serializer.hpp>
#include <boost/beast/http/string_body.hpp>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "broadcast/Scanner.h"
#include "net/Access.h"
#include "net/Asio.h"
#include "net/RequestBody.h"
#include "net/Site.h"

namespace virtualtv::net {

/// A response to a request.
struct Response {
  int status = 200;
  std::string body = {};
  std::string_view type = "text/plain; charset=utf-8";
  Headers headers = {};
};

/// A response with a line for a person.
Response line(int status, const std::string& text, Headers headers = {});

/// A client's connection over HTTP. Requests are read and answered one after the other.
class HttpConnection final : public Connection, public std::enable_shared_from_this<HttpConnection> {
 public:
  HttpConnection(Site& site, Socket socket);

  /// Serves the connection until it ends, or until a WebSocket takes over its socket.
  void start();

  void goAway() override;
  void cut() override { end(); }

 private:
  using Message = boost::beast::http::response<boost::beast::http::string_body>;

  void awaitRequest();
  void awaitBytes();
  void readHead();
  void takeHead(error_code error);
  void route();
  void takeCall();
  void takeScan();
  void awaitBody();
  void readBody();
  void takeBody(error_code error);
  void call();
  void tellScan();
  void handOn();
  void upgrade();
  std::optional<Response> refusalOfUpgrade() const;
  Response pageOrFile(std::string_view path) const;
  /// Answers a message that can't be read.
  void refuse(error_code error);
  void answer(Response response);
  void write();
  void next();
  void prepareHead(int status, const Headers& more);
  void play(WindowId window);
  void awaitLeaving();
  void sayWhatPlays();
  void sendPiece();
  void takePiece(std::string_view piece);
  void endPlay();
  void log(int status);
  void sayGoodbye();
  void within(Limits::Time time);
  void end();

  std::string_view header(boost::beast::http::field name) const;
  std::string_view target() const;
  /// The session that the request names.
  std::optional<std::string> sessionNamed() const;
  std::string_view unread() const;
  bool isUpgrade() const;

  Site& site_;
  Socket socket_;
  Timer timer_;
  boost::beast::flat_buffer in_;
  std::optional<boost::beast::http::request_parser<RequestBody>> parser_;
  std::chrono::steady_clock::time_point begun_;  ///< start of the request
  Verdict verdict_;
  std::unique_ptr<broadcast::Scanner> scanner_;  ///< scans the body of a request that sends a broadcast
  std::shared_ptr<Play> play_;                   ///< the recording that the client watches; null for none
  std::optional<Message> message_;
  std::optional<boost::beast::http::response_serializer<boost::beast::http::string_body>> serializer_;
  int emptyLines_ = 0;  ///< number of empty lines dropped before the request
  bool idle_ = false;   ///< between two requests
  bool last_ = false;   ///< no request may follow
  bool ended_ = false;
};

}  // namespace virtualtv::net
