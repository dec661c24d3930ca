#include "net/WebSocket.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/websocket/error.hpp>
#include <exception>
#include <string_view>
#include <utility>

namespace virtualtv::net {

namespace websocket = boost::beast::websocket;

void WebSocket::connect(const std::optional<std::string>& session) {
  client_ = site_.calls().connect(*this, session);
}

void WebSocket::open(Socket socket, const Request& upgrade, const Headers& headers) {
  stream_.emplace(std::move(socket));
  stream_->next_layer().onTeardown = [this] { after(site_.limits().closing, &WebSocket::end); };
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

/// Does what can be done next: has the message handled that was read, reads another one.
void WebSocket::proceed() {
  if (farewell_ || !client_) return;
  if (read_ && !asking_) return take();
  if (!read_ && !reading_ && unsent_ <= site_.limits().mostUnsent) read();
}

void WebSocket::read() {
  reading_ = true;
  stream_->async_read_some(in_, 0, [self = shared_from_this()](error_code error, std::size_t) {
    self->reading_ = false;
    if (error) return self->end();
    self->heard();
    if (self->farewell_) return;
    if (!self->stream_->got_text()) return self->close(CloseCode::unknown_data);
    self->read_ = self->stream_->is_message_done();
    self->proceed();
  });
}

void WebSocket::take() {
  asking_ = true;
  site_.handle(in_.size(), {}, [self = shared_from_this()] {
    if (self->farewell_ || !self->client_) return;
    self->handOn();
    self->proceed();
  });
}

void WebSocket::handOn() {
  constexpr std::size_t mostKept = 65536;  // of the memory that a message took
  within_ = true;
  try {
    const auto bytes = in_.cdata();
    client_->take(std::string_view(static_cast<const char*>(bytes.data()), bytes.size()), [weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->answered();
    });
  } catch (const std::exception& error) {
    site_.complain("cannot answer a message: " + std::string(error.what()));
    close(CloseCode::internal_error);
  }
  within_ = false;
  in_.clear();
  if (in_.capacity() > mostKept) in_.shrink_to_fit();
  read_ = false;
}

/// The server may be at work on it still, so what comes next is left to later.
void WebSocket::answered() {
  asking_ = false;
  if (!within_) asio::post(timer_.get_executor(), [self = shared_from_this()] { self->proceed(); });
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

/// Ends the connection once what waits is sent, or after a while.
void WebSocket::close(CloseCode code) {
  if (farewell_) return;
  farewell_ = code;
  after(site_.limits().closing, &WebSocket::end);
  if (isOpen_ && !writing_) farewell();
}

void WebSocket::farewell() {
  stream_->async_close(*farewell_, [self = shared_from_this()](error_code) { self->end(); });
}

/// Looks after a connection that is silent: asks for a sign of life, and ends it where none came.
void WebSocket::look() {
  const bool waitsForAnswer = asking_ && read_;  // nothing is read then, so nothing is heard
  if (waitsForAnswer) heard();
  if (std::chrono::steady_clock::now() - heard_ >= site_.limits().silence) return end();
  if (!std::exchange(pinging_, true)) {
    stream_->async_ping({}, [self = shared_from_this()](error_code) { self->pinging_ = false; });
  }
  after(site_.limits().silence / 2, &WebSocket::look);
}

/// Calls a function after a time, unless another one is to be called before that.
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
  if (!client_) return;
  client_.reset();
  timer_.cancel();
  error_code ignored;
  stream_->next_layer().close(ignored);
  site_.remove(*this);
}

}  // namespace virtualtv::net
