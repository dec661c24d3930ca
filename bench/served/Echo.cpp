// SPDX-License-Identifier: MIT
#include "Echo.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/role.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <cstddef>
#include <set>
#include <thread>
#include <utility>

namespace asio = boost::asio;
using boost::system::error_code;

namespace bench {

class Echo::Body {
 public:
  Body() {
    accept();
    thread_ = std::thread([this] { context_.run(); });
  }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  ~Body() {
    context_.stop();
    thread_.join();
  }

  unsigned short port() const { return acceptor_.local_endpoint().port(); }

  void sendInstead(std::string text, bool toOthers) {
    text_ = std::move(text);
    toOthers_ = toOthers;
  }

 private:
  class Connection : public std::enable_shared_from_this<Connection> {
   public:
    Connection(Body& body, asio::ip::tcp::socket socket) : body_(body), stream_(std::move(socket)) {
      stream_.next_layer().set_option(asio::ip::tcp::no_delay(true));
      stream_.auto_fragment(false);
      stream_.text(true);
    }

    void start() {
      stream_.async_accept([self = shared_from_this()](error_code error) {
        if (error) return;
        self->body_.connections_.insert(self.get());
        self->read();
      });
    }

    ~Connection() { body_.connections_.erase(this); }

    /// Sends a text, and keeps it alive until it is sent. @param then  called afterwards.
    template <typename Then>
    void send(asio::const_buffer text, Then then) {
      stream_.async_write(text, [self = shared_from_this(), then](error_code error, std::size_t) {
        if (!error) then(*self);
      });
    }

   private:
    void read() {
      in_.clear();
      stream_.async_read(in_, [self = shared_from_this()](error_code error, std::size_t) {
        if (!error) self->answer();
      });
    }

    void answer() {
      const bool isOwn = body_.text_.empty() || body_.toOthers_;
      const auto text = asio::buffer(body_.text_);
      for (Connection* const other : body_.connections_) {
        if (body_.toOthers_ && other != this) other->send(text, [](Connection&) {});
      }
      send(isOwn ? asio::const_buffer(in_.cdata()) : text, [](Connection& self) { self.read(); });
    }

    Body& body_;
    boost::beast::websocket::stream<asio::ip::tcp::socket, false> stream_;
    boost::beast::flat_buffer in_;
  };

  void accept() {
    acceptor_.async_accept([this](error_code error, asio::ip::tcp::socket socket) {
      if (error) return;
      std::make_shared<Connection>(*this, std::move(socket))->start();
      accept();
    });
  }

  std::string text_;
  bool toOthers_ = false;
  std::set<Connection*> connections_;
  asio::io_context context_{1};
  asio::ip::tcp::acceptor acceptor_{context_, {asio::ip::address_v4::loopback(), 0}};
  std::thread thread_;
};

Echo::Echo() : body_(std::make_unique<Body>()) {}

Echo::~Echo() = default;

unsigned short Echo::port() const {
  return body_->port();
}

void Echo::sendInstead(std::string text, bool toOthers) {
  body_->sendInstead(std::move(text), toOthers);
}

}  // namespace bench
