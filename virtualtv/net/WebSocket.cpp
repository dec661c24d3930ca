// SPDX-License-Identifier: MIT
#include "net/WebSocket.h"

#include <poll.h>

#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/websocket/error.hpp>
#include <exception>
#include <string_view>
#include <utility>

namespace virtualtv::net {

namespace websocket = boost::beast::websocket;

namespace {

/// True when the other side has ended the connection, even while there is unread input.
bool hasEnded(Socket& socket) {
  pollfd state{socket.native_handle(), POLLRDHUP, 0};
  return ::poll(&state, 1, 0) > 0;
}

}  // namespace

void WebSocket::connect(const std::optional<std::string>& session) {
  client_ = site_.calls().connect(*this, session);
}

void WebSocket::open(Socket socket, const Request& upgrade, const Headers& headers) {
  stream_.emplace(std::move(socket));
  stream_->next_layer().onTeardown = [this] {
    after(site_.limits().closing, &WebSocket::end);
    client_.reset();
  };
  stream_->set_option(websocket::stream_base::timeout{site_.limits().forHead, websocket::stream_base::none(), false});
  stream_->set_option(websocket::stream_base::decorator([headers](websocket::response_type& response) {
    response.set(boost::beast::http::field::server, "emp-window");
    for (const auto& [name, value] : headers) response.set(name, value);
  }));
  stream_->read_message_max(site_.limits().mostBody);
  stream_->auto_fragment(false);
  stream_->text(true);
  stream_->control_callback([this](websocket::frame_type, boost::beast::string_view) { heard(); });
  site_.add(shared_from_this());
  stream_->async_accept(upgrade, [self = shared_from_this()](error_code error) {
    if (error) return self->end();
    self->isOpen_ = true;
    if (self->farewell_) return self->farewell();
    self->heard();
    self->after(self->site_.limits().silence / 2, &WebSocket::look);
    if (!self->out_.empty()) self->write();
    self->proceed();
  });
}

void WebSocket::send(std::shared_ptr<const std::string> message) {
  if (farewell_) return;
  unsent_ += message->size();
  out_.push_back(std::move(message));
  if (isOpen_ && !writing_) write();
}

void WebSocket::cutOff() {
  while (out_.size() > (writing_ ? 1 : 0)) {
    unsent_ -= out_.back()->size();
    out_.pop_back();
  }
  close(CloseCode::try_again_later);
}

void WebSocket::goAway() {
  close(CloseCode::going_away);
}

/// Does what can be done next: passes on the next message, or reads another one.
void WebSocket::proceed() {
  if (farewell_ || !client_ || unsent_ > site_.limits().mostUnsent) return;
  if (!waiting_.empty() && !asking_) take();
  if (reading_ || inTurn_ || !client_) return;
  if (ahead_ < site_.limits().mostAhead) return read();
  if (!std::exchange(isDeaf_, true)) after(site_.limits().attention, &WebSocket::look);
}

void WebSocket::read() {
  reading_ = true;
  isDeaf_ = false;
  stream_->async_read_some(in_, 0, [self = shared_from_this()](error_code error, std::size_t) {
    self->reading_ = false;
    if (error) return self->end();
    self->heard();
    if (self->farewell_) return;
    if (!self->stream_->got_text()) return self->close(CloseCode::unknown_data);
    if (self->stream_->is_message_done()) {
      self->ahead_ += self->in_.capacity();
      self->waiting_.push_back(std::exchange(self->in_, {}));
    }
    self->proceed();
  });
}

/// All messages sent before the close must be handled, so nothing is read while a large message waits for its turn.
void WebSocket::take() {
  asking_ = inTurn_ = true;
  site_.handle(waiting_.front().size(), {}, [self = shared_from_this()] {
    self->inTurn_ = false;
    if (self->farewell_ || !self->client_) return;
    self->handOn();
    self->proceed();
  });
}

void WebSocket::handOn() {
  const boost::beast::flat_buffer message = std::move(waiting_.front());
  waiting_.pop_front();
  ahead_ -= message.capacity();
  try {
    const auto bytes = message.cdata();
    client_->take(std::string_view(static_cast<const char*>(bytes.data()), bytes.size()), [weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->answered();
    });
  } catch (const std::exception& error) {
    site_.complain("cannot answer a message: " + std::string(error.what()));
    close(CloseCode::internal_error);
  }
}

/// The server may still be handling the message, so the next step is posted.
void WebSocket::answered() {
  asio::post(timer_.get_executor(), [self = shared_from_this()] {
    self->asking_ = false;
    self->proceed();
  });
}

void WebSocket::write() {
  writing_ = true;
  stream_->async_write(asio::buffer(*out_.front()), [self = shared_from_this()](error_code error, std::size_t) {
    self->writing_ = false;
    if (error) return self->end();
    self->heard();
    self->unsent_ -= self->out_.front()->size();
    self->out_.pop_front();
    if (!self->out_.empty()) return self->write();
    if (self->farewell_) return self->farewell();
    self->proceed();
  });
}

/// Ends the connection when all waiting messages are sent, or after a while.
void WebSocket::close(CloseCode code) {
  if (farewell_) return;
  farewell_ = code;
  after(site_.limits().closing, &WebSocket::end);
  if (isOpen_ && !writing_) farewell();
}

void WebSocket::farewell() {
  stream_->async_close(*farewell_, [self = shared_from_this()](error_code) { self->end(); });
}

/// Checks a silent connection: asks for a sign of life, and ends the connection when none arrives. While reading is
/// stopped no sign can arrive, so this asks the system whether the connection has ended.
void WebSocket::look() {
  const Limits& limits = site_.limits();
  if (isDeaf_ && hasEnded(stream_->next_layer())) return end();
  if (isDeaf_ || inTurn_) heard();
  if (std::chrono::steady_clock::now() - heard_ >= limits.silence) return end();
  ping();
  after(isDeaf_ ? limits.attention : limits.silence / 2, &WebSocket::look);
}

void WebSocket::ping() {
  if (std::exchange(pinging_, true)) return;
  stream_->async_ping({}, [self = shared_from_this()](error_code) { self->pinging_ = false; });
}

/// Calls a function after a time. Replaces an earlier pending call.
void WebSocket::after(Limits::Time time, void (WebSocket::*next)()) {
  timer_.expires_after(time);
  timer_.async_wait([weak = weak_from_this(), next](error_code error) {
    const auto self = error ? nullptr : weak.lock();
    if (self && self->timer_.expiry() <= std::chrono::steady_clock::now()) (self.get()->*next)();
  });
}

/// Ends the connection now, and the client's session with it. The last operations on the stream then fail.
void WebSocket::end() {
  const auto self = shared_from_this();
  if (std::exchange(ended_, true)) return;
  client_.reset();
  timer_.cancel();
  error_code ignored;
  stream_->next_layer().close(ignored);
  site_.remove(*this);
}

}  // namespace virtualtv::net
