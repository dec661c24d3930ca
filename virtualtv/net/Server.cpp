// SPDX-License-Identifier: MIT
#include "net/Server.h"

#include <unistd.h>

#include <array>
#include <boost/asio/basic_signal_set.hpp>
#include <boost/asio/posix/basic_stream_descriptor.hpp>
#include <boost/asio/post.hpp>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

#include "net/Asio.h"
#include "net/FilesBeneath.h"
#include "net/HttpConnection.h"
#include "net/Listen.h"
#include "net/Site.h"
#include "rpc/Server.h"

namespace virtualtv::net {

namespace {

bool isIgnored(int signal) {
  struct sigaction action {};
  ::sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

}  // namespace

class Server::Body {
 public:
  Body(device::Device& device, Options options)
      : device_(device),
        options_(std::move(options)),
        files_(options_.files.empty() ? nullptr : std::make_shared<FilesBeneath>(options_.files)),
        access_(options_.access),
        calls_(device, callOptions()),
        plays_(context_.get_executor(), device, files_, options_.limits),
        site_(context_.get_executor(), calls_, plays_, access_, options_.limits, options_.complain, options_.log) {
    listen();
    for (Acceptor& acceptor : acceptors_) accept(acceptor);
    device_.loop().onPost([this] { asio::post(context_, [this] { device_.loop().turn(); }); });
  }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  ~Body() {
    device_.loop().onPost({});
    site_.end([] {});
    site_.cut();
  }

  std::string address() const { return "http://" + textOf(acceptors_.front().local_endpoint()) + "/"; }

  void endOnSignals() {
    signals_.emplace(context_.get_executor(), SIGINT, SIGTERM);
    if (!isIgnored(SIGHUP))
      signals_->add(SIGHUP);  // an ignored SIGHUP means that the server must outlive its
                              // terminal, as under nohup
    signals_->async_wait([this](error_code error, int) {
      if (!error) end();
    });
  }

  void endWithInput(int descriptor) {
    if (!input_) input_.emplace(context_.get_executor(), ::dup(descriptor));
    // Input that can't be waited for, such as a file, is readable at once.
    input_->async_wait(Input::wait_read, [this](error_code error) {
      if (error != asio::error::operation_aborted) readInput();
    });
  }

  void run() {
    device_.loop().turn();  // tasks that were posted before `onPost` was set
    while (!context_.stopped()) {
      try {
        context_.run();
      } catch (const std::exception& error) {
        options_.complain("cannot serve a client: " + std::string(error.what()));
      }
    }
  }

  void endFromAnywhere() {
    asio::post(context_, [this] { end(); });
  }

 private:
  using Input = asio::posix::basic_stream_descriptor<Executor>;

  rpc::Options callOptions() {
    rpc::Options calls;
    calls.after = [this](std::chrono::milliseconds time, std::function<void()> then) {
      const auto timer = std::make_shared<Timer>(context_.get_executor(), time);
      timer->async_wait([timer, then = std::move(then)](error_code error) {
        if (!error) then();
      });
    };
    calls.waits = options_.waits;
    calls.mostSessions = options_.mostSessions;
    calls.state = options_.state;
    calls.files = files_;
    calls.complain = options_.complain;
    return calls;
  }

  void listen() {
    for (const int socket : options_.sockets) acceptors_.push_back(listenOn(context_, socket));
    if (acceptors_.empty()) {
      const asio::ip::tcp::endpoint endpoint = endpointIn(options_.listen);
      wantToken(endpoint);
      acceptors_.push_back(listenOn(context_, endpoint));
    }
    for (const Acceptor& acceptor : acceptors_) wantToken(acceptor.local_endpoint());
  }

  void wantToken(const asio::ip::tcp::endpoint& endpoint) const {
    if (isOfThisMachine(endpoint.address()) || !options_.access.token.empty()) return;
    throw std::invalid_argument("--listen: others can reach " + textOf(endpoint) + ", so --token FILE is wanted");
  }

  void accept(Acceptor& acceptor) {
    acceptor.async_accept([this, &acceptor](error_code error, Socket::Base socket) {
      if (site_.isEnding()) return;
      if (error) return acceptLater(acceptor);
      socket.set_option(asio::ip::tcp::no_delay(true), error);
      std::make_shared<HttpConnection>(site_, Socket(std::move(socket)))->start();
      accept(acceptor);
    });
  }

  /// Tries again soon, when a descriptor for another connection may be free.
  void acceptLater(Acceptor& acceptor) {
    constexpr std::chrono::milliseconds moment(100);
    const auto timer = std::make_shared<Timer>(context_.get_executor(), moment);
    timer->async_wait([this, timer, &acceptor](error_code error) {
      if (!error && !site_.isEnding()) accept(acceptor);
    });
  }

  void readInput() {
    std::array<char, 4096> dropped{};
    const ssize_t count = ::read(input_->native_handle(), dropped.data(), dropped.size());
    if (count > 0 || (count < 0 && (errno == EINTR || errno == EAGAIN))) return endWithInput(input_->native_handle());
    end();
  }

  void end() {
    if (site_.isEnding()) return;
    for (Acceptor& acceptor : acceptors_) acceptor.close();
    if (signals_) signals_->clear();  // another signal has its default effect
    patience_.expires_after(options_.limits.ending);
    patience_.async_wait([this](error_code error) {
      if (!error) site_.cut();
    });
    site_.end([this] { context_.stop(); });
  }

  device::Device& device_;
  Options options_;
  asio::io_context context_{1};
  Timer patience_{context_.get_executor()};
  std::vector<Acceptor> acceptors_;
  std::optional<asio::basic_signal_set<Executor>> signals_;
  std::optional<Input> input_;
  std::shared_ptr<const FilesBeneath> files_;  ///< null when clients can use no files
  Access access_;
  rpc::Server calls_;  // destroyed before the connections that receive its answers
  Plays plays_;
  Site site_;
};

Server::Server(device::Device& device, Options options) : body_(std::make_unique<Body>(device, std::move(options))) {}

Server::~Server() = default;

std::string Server::address() const {
  return body_->address();
}

void Server::endOnSignals() {
  body_->endOnSignals();
}

void Server::endWithInput(int descriptor) {
  body_->endWithInput(descriptor);
}

void Server::run() {
  body_->run();
}

void Server::end() {
  body_->endFromAnywhere();
}

}  // namespace virtualtv::net
