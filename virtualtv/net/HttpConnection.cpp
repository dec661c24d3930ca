// SPDX-License-Identifier: MIT
#include "net/HttpConnection.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/string.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/status.hpp>
#include <boost/beast/http/verb.hpp>
#include <boost/beast/http/write.hpp>
#include <boost/beast/websocket/rfc6455.hpp>
#include <cstddef>
#include <exception>
#include <utility>
#include <vector>

#include "net/Head.h"
#include "net/Pages.h"
#include "net/WebSocket.h"
#include "text/Units.h"

namespace virtualtv::net {

namespace http = boost::beast::http;

namespace {

Response notAllowed(const std::string& allowed) {
  return line(405, "this address takes " + allowed, {{"Allow", allowed}});
}

bool isOfHttp(error_code error) {
  return error.category() == make_error_code(http::error::bad_method).category();
}

}  // namespace

Response line(int status, const std::string& text, Headers headers) {
  return {status, text + "\n", "text/plain; charset=utf-8", std::move(headers)};
}

HttpConnection::HttpConnection(Site& site, Socket socket)
    : site_(site), socket_(std::move(socket)), timer_(socket_.get_executor()), in_(2 * site.limits().mostHead) {}

void HttpConnection::start() {
  site_.add(shared_from_this());
  awaitRequest();
}

void HttpConnection::goAway() {
  last_ = true;
  if (idle_ || play_) end();
}

void HttpConnection::awaitRequest() {
  parser_.emplace();
  parser_->header_limit(static_cast<std::uint32_t>(site_.limits().mostHead));
  parser_->body_limit(boost::none);  // no limit until the head is known
  emptyLines_ = 0;
  awaitBytes();
}

/// Waits for the first bytes of a request. Drops a few empty lines, which some clients send before it.
void HttpConnection::awaitBytes() {
  constexpr int mostDropped = 4;
  constexpr std::string_view lineEnd = "\r\n";
  for (; emptyLines_ < mostDropped && unread().starts_with(lineEnd); ++emptyLines_) in_.consume(lineEnd.size());
  const bool isHalfALine = unread() == lineEnd.substr(0, 1);
  if (in_.size() > 0 && !isHalfALine) return readHead();
  constexpr std::size_t some = 1024;
  idle_ = true;
  within(site_.limits().silence);
  socket_.async_read_some(in_.prepare(some), [self = shared_from_this()](error_code error, std::size_t count) {
    self->idle_ = false;
    if (error) return self->end();
    self->in_.commit(count);
    self->awaitBytes();
  });
}

void HttpConnection::readHead() {
  begun_ = std::chrono::steady_clock::now();
  within(site_.limits().forHead);
  http::async_read_header(socket_, in_, *parser_,
                          [self = shared_from_this()](error_code error, std::size_t) { self->takeHead(error); });
}

void HttpConnection::takeHead(error_code error) {
  verdict_ = site_.access().judge(askingIn(parser_->get(), error ? unread() : std::string_view()));
  if (error) return refuse(error);
  if (const Verdict refusal = refusalOfHead(parser_->get()); refusal.status != 0) {
    last_ = true;
    return answer(line(refusal.status, refusal.reason));
  }
  if (verdict_.status == 0) return route();
  if (verdict_.status == 403) site_.complainOnce(verdict_.reason);
  answer(verdict_.status == 204 ? Response{.status = 204} : line(verdict_.status, verdict_.reason));
}

void HttpConnection::route() {
  const std::string_view path = pathOf(target());
  const http::verb method = parser_->get().method();
  const bool isGet = method == http::verb::get || method == http::verb::head;
  if (path == "/rpc") {
    if (method == http::verb::post) return takeCall();
    return isGet ? upgrade() : answer(notAllowed("GET, HEAD, POST"));
  }
  if (path == "/scan") return method == http::verb::post ? takeScan() : answer(notAllowed("POST"));
  for (const WindowId window : windowIds) {
    if (path == std::string("/live/") + nameOf(window)) return isGet ? play(window) : answer(notAllowed("GET, HEAD"));
  }
  Response found = pageOrFile(path);
  answer(found.status == 404 || isGet ? std::move(found) : notAllowed("GET, HEAD"));
}

Response HttpConnection::pageOrFile(std::string_view path) const {
  if (path == "/openrpc.json") return {200, site_.calls().openRpc(), "application/json"};
  std::optional<File> file = fileAt(path, site_.access().origins());
  if (!file) return line(404, "there is nothing at this address");
  Headers headers{{"Vary", "Origin, Accept-Encoding"}};
  if (!file->policy.empty()) headers.emplace_back("Content-Security-Policy", std::move(file->policy));
  const bool isCompressed = takesGzip(parser_->get());
  if (isCompressed) headers.emplace_back("Content-Encoding", "gzip");
  return {200, std::string(isCompressed ? file->compressed : file->content), file->type, std::move(headers)};
}

void HttpConnection::takeCall() {
  if (!isOfType(parser_->get(), "application/json"))
    return answer(line(415, "a body of the type application/json is wanted"));
  if (isEncoded(parser_->get())) {
    return answer(line(415, "a body without a Content-Encoding is wanted", {{"Accept-Encoding", "identity"}}));
  }
  const auto length = parser_->content_length();
  if (length && *length > site_.limits().mostBody) return refuse(http::error::body_limit);
  parser_->body_limit(site_.limits().mostBody);
  awaitBody();
}

/// Scans a broadcast while it arrives. It may have any length, and there is no time limit while more of it arrives.
void HttpConnection::takeScan() {
  if (!isOfType(parser_->get(), "application/octet-stream") || isEncoded(parser_->get())) {
    return answer(line(415, "a body of the type application/octet-stream is wanted, without a Content-Encoding"));
  }
  try {
    if (const auto session = sessionNamed()) site_.calls().requireSession(*session);
  } catch (const rpc::NoSuchSession& error) {
    return answer(line(404, text::printable(error.what())));
  }
  parser_->body_limit(boost::none);
  scanner_ = std::make_unique<broadcast::Scanner>();
  parser_->get().body().take = [this](std::span<const std::uint8_t> piece) {
    scanner_->feed(piece);
    within(site_.limits().forBody);
  };
  awaitBody();
}

void HttpConnection::awaitBody() {
  if (parser_->is_done()) return scanner_ ? tellScan() : call();
  within(site_.limits().forBody);
  if (!boost::beast::iequals(parser_->get()[http::field::expect], "100-continue")) return readBody();
  asio::async_write(socket_, asio::buffer(std::string_view("HTTP/1.1 100 Continue\r\n\r\n")),
                    [self = shared_from_this()](error_code error, std::size_t) {
                      if (error) return self->end();
                      self->readBody();
                    });
}

void HttpConnection::readBody() {
  constexpr std::size_t atATime = 65536;
  in_.reserve(std::min(in_.max_size(), atATime));  // limits the size of each read
  http::async_read(socket_, in_, *parser_,
                   [self = shared_from_this()](error_code error, std::size_t) { self->takeBody(error); });
}

void HttpConnection::takeBody(error_code error) {
  if (error) return refuse(error);
  in_.shrink_to_fit();
  scanner_ ? tellScan() : call();
}

void HttpConnection::tellScan() {
  timer_.cancel();
  const std::unique_ptr<broadcast::Scanner> scanner = std::move(scanner_);
  scanner->endStream();
  const auto isAsked = [&](const char* name) { return queryValue(target(), name) == "1"; };
  try {
    const rpc::Server::ScanWishes wishes{isAsked("import"), isAsked("add"), sessionNamed()};
    answer({200, site_.calls().scanned(scanner->finish(), wishes), "application/json"});
  } catch (const std::exception& error) {
    site_.complain("cannot answer a request: " + std::string(error.what()));
    answer(line(500, text::printable(error.what())));
  }
}

void HttpConnection::call() {
  timer_.cancel();  // an answer may be delayed for long
  site_.handle(parser_->get().body().text.size(), sessionNamed().value_or(""),
               [self = shared_from_this()] { self->handOn(); });
}

void HttpConnection::handOn() {
  if (ended_) return;
  const auto reply = [self = shared_from_this()](std::optional<std::string> text) {
    if (!text) return self->answer(line(503, "as many sessions are open as may be"));
    self->answer(text->empty() ? Response{.status = 204} : Response{200, *std::move(text), "application/json"});
  };
  try {
    site_.calls().post(parser_->get().body().text, sessionNamed(), reply);
  } catch (const std::exception& error) {
    site_.complain("cannot answer a request: " + std::string(error.what()));
    if (!serializer_) answer(line(500, "something went wrong here"));
  }
}

void HttpConnection::upgrade() {
  if (std::optional<Response> refusal = refusalOfUpgrade()) return answer(*std::move(refusal));
  const auto webSocket = std::make_shared<WebSocket>(site_, socket_.get_executor());
  try {
    webSocket->connect(queryValue(target(), "session"));
  } catch (const rpc::NoSuchSession& error) {
    return answer(line(404, text::printable(error.what())));
  } catch (const rpc::TooManySessions& error) {
    return answer(line(503, error.what()));
  }
  log(101);
  Headers headers = verdict_.headers;
  headers.emplace_back("X-Content-Type-Options", "nosniff");
  timer_.cancel();
  ended_ = true;
  webSocket->open(std::move(socket_), parser_->get(), headers);
  site_.remove(*this);
}

/// Why a request can't become a WebSocket; nothing when it can.
std::optional<Response> HttpConnection::refusalOfUpgrade() const {
  const Headers wanted{{"Connection", "Upgrade"}, {"Upgrade", "websocket"}, {"Sec-WebSocket-Version", "13"}};
  if (site_.isEnding()) return line(503, "the server is ending");
  if (!isUpgrade()) return line(426, "calls come by POST, or over a WebSocket", wanted);
  if (header(http::field::sec_websocket_version) != "13") return line(426, "WebSocket of version 13 is wanted", wanted);
  constexpr std::size_t lengthOfKey = 24;
  if (header(http::field::sec_websocket_key).size() != lengthOfKey) return line(400, "a Sec-WebSocket-Key is wanted");
  if (!parser_->is_done() || in_.size() > 0) return line(400, "nothing may follow an upgrade before its answer");
  return std::nullopt;
}

void HttpConnection::refuse(error_code error) {
  if (!isOfHttp(error) || error == http::error::end_of_stream || error == http::error::partial_message) return end();
  last_ = true;
  if (error == http::error::body_limit) {
    return answer(line(413, "a body has at most " + std::to_string(site_.limits().mostBody) + " bytes"));
  }
  if (error == http::error::header_limit || error == http::error::buffer_overflow) {
    return answer(line(431, "the head of a request has at most " + std::to_string(site_.limits().mostHead) + " bytes"));
  }
  answer(line(400, "not a request in HTTP/1.1: " + error.message()));
}

/// The head of an answer.
void HttpConnection::prepareHead(int status, const Headers& more) {
  const auto& request = parser_->get();
  log(status);
  message_.emplace(static_cast<http::status>(status), request.version() == 10 ? 10U : 11U);
  Message& message = *message_;
  message.set(http::field::server, "emp-window");
  message.set("X-Content-Type-Options", "nosniff");
  if (status != 204) message.set(http::field::cache_control, "no-store");
  for (const Headers& headers : {verdict_.headers, more}) {
    for (const auto& [name, value] : headers) message.set(name, value);
  }
  // Close unless the body was read to its end: the rest would be read as the next request.
  last_ = last_ || site_.isEnding() || !request.keep_alive() || !parser_->is_done();
  message.keep_alive(!last_);
}

void HttpConnection::answer(Response response) {
  if (ended_) return;
  prepareHead(response.status, response.headers);
  if (response.status != 204) {
    message_->set(http::field::content_type, boost::beast::string_view(response.type.data(), response.type.size()));
    message_->body() = std::move(response.body);
    message_->prepare_payload();
  }
  write();
}

void HttpConnection::write() {
  within(site_.limits().forAnswer);
  serializer_.emplace(*message_);
  const auto then = [self = shared_from_this()](error_code error, std::size_t) {
    self->serializer_.reset();
    if (error && error != http::error::end_of_stream) return self->end();
    self->next();
  };
  if (parser_->get().method() == http::verb::head) {
    serializer_->split(true);
    return http::async_write_header(socket_, *serializer_, then);
  }
  http::async_write(socket_, *serializer_, then);
}

/// Continues after an answer.
void HttpConnection::next() {
  last_ ? sayGoodbye() : awaitRequest();
}

/// Logs the request. Leaves out the query, which may contain a token.
void HttpConnection::log(int status) {
  const auto& request = parser_->get();
  const auto took = std::chrono::steady_clock::now() - begun_;
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(took).count();
  site_.log(text::printable(view(request.method_string())) + " " + text::printable(pathOf(target())) + " " +
            std::to_string(status) + " " + std::to_string(milliseconds) + " ms");
}

/// Ends the connection so that the client gets the last answer, even while it still sends.
void HttpConnection::sayGoodbye() {
  error_code ignored;
  const bool isSilent = parser_->is_done() && in_.size() == 0 && socket_.available(ignored) == 0;
  if (isSilent) return end();
  within(site_.limits().closing);
  endGently(socket_, [self = shared_from_this()](error_code) { self->end(); });
}

/// Ends the connection unless the next step starts within a time.
void HttpConnection::within(Limits::Time time) {
  timer_.expires_after(time);
  timer_.async_wait([weak = weak_from_this()](error_code error) {
    const auto self = error ? nullptr : weak.lock();
    if (self && self->timer_.expiry() <= std::chrono::steady_clock::now()) self->end();
  });
}

void HttpConnection::end() {
  if (std::exchange(ended_, true)) return;
  const auto self = shared_from_this();
  timer_.cancel();
  if (play_) play_->end();
  error_code ignored;
  socket_.close(ignored);
  site_.remove(*this);
}

std::string_view HttpConnection::header(http::field name) const {
  return view(parser_->get()[name]);
}

std::string_view HttpConnection::target() const {
  return view(parser_->get().target());
}

std::string_view HttpConnection::unread() const {
  const auto bytes = in_.cdata();
  return {static_cast<const char*>(bytes.data()), bytes.size()};
}

std::optional<std::string> HttpConnection::sessionNamed() const {
  const auto field = parser_->get().find("Emp-Session");
  return field != parser_->get().end() ? std::optional(std::string(view(field->value()))) : std::nullopt;
}

bool HttpConnection::isUpgrade() const {
  return boost::beast::websocket::is_upgrade(parser_->get());
}

}  // namespace virtualtv::net
