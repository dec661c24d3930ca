// SPDX-License-Identifier: MIT
#include "Caller.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <stdexcept>

namespace bench {

namespace {

constexpr std::string_view upgrade =
    "GET /rpc HTTP/1.1\r\nHost: localhost\r\nConnection: Upgrade\r\nUpgrade: websocket\r\n"
    "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n";
constexpr std::string_view accepted = "HTTP/1.1 101";
constexpr std::size_t mostAtOnce = 256 * 1024;  // bytes
constexpr std::size_t lengthInTwo = 126;        // this value means that a longer length follows in two bytes
constexpr std::size_t lengthInEight = 127;

void appendNumber(std::string& frame, std::size_t number, std::size_t digits) {
  constexpr unsigned bits = 8;
  for (std::size_t digit = digits; digit > 0; --digit) frame += static_cast<char>(number >> (bits * (digit - 1)));
}

int connected(unsigned short port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int yes = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return socket;
  ::close(socket);
  throw std::runtime_error("nobody listens");
}

}  // namespace

std::string frameOf(std::string_view text) {
  constexpr unsigned char finalText = 0x81;
  constexpr unsigned char masked = 0x80;
  constexpr std::array mask{'\x11', '\x22', '\x33', '\x44'};
  constexpr std::size_t mostInTwo = 0xFFFF;
  std::string frame(1, static_cast<char>(finalText));
  const std::size_t kind = text.size() < lengthInTwo  ? text.size()
                           : text.size() <= mostInTwo ? lengthInTwo
                                                      : lengthInEight;
  frame += static_cast<char>(masked | kind);
  if (kind == lengthInTwo) appendNumber(frame, text.size(), 2);
  if (kind == lengthInEight) appendNumber(frame, text.size(), 8);
  frame.append(mask.data(), mask.size());
  for (std::size_t at = 0; at < text.size(); ++at) frame += static_cast<char>(text[at] ^ mask[at % mask.size()]);
  return frame;
}

Caller::Caller(unsigned short port) : socket_(connected(port)), in_(mostAtOnce, '\0') {
  send(upgrade);
  std::string head;
  while (!head.ends_with("\r\n\r\n")) head += bytes(1);
  if (!head.starts_with(accepted)) throw std::runtime_error("the server answers " + head);
}

Caller::~Caller() {
  ::close(socket_);
}

void Caller::send(std::string_view frames) {
  while (!frames.empty()) {
    const ssize_t count = ::send(socket_, frames.data(), frames.size(), MSG_NOSIGNAL);
    if (count <= 0) throw std::runtime_error("the server has gone");
    frames.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::string_view Caller::bytes(std::size_t count) {
  if (begin_ == end_) begin_ = end_ = 0;
  if (begin_ + count > in_.size()) {
    std::memmove(in_.data(), in_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    if (count > in_.size()) in_.resize(count);
  }
  while (end_ - begin_ < count) {
    const ssize_t read = ::recv(socket_, in_.data() + end_, in_.size() - end_, 0);
    if (read <= 0) throw std::runtime_error("the server has gone");
    end_ += static_cast<std::size_t>(read);
  }
  begin_ += count;
  return std::string_view(in_).substr(begin_ - count, count);
}

std::string_view Caller::take() {
  auto length = static_cast<std::size_t>(static_cast<unsigned char>(bytes(2)[1]));
  if (length >= lengthInTwo) {
    const std::string_view digits = bytes(length == lengthInTwo ? 2 : 8);
    length = 0;
    for (const char digit : digits) length = length * 256 + static_cast<unsigned char>(digit);
  }
  return bytes(length);
}

std::string Caller::call(std::string_view message) {
  send(frameOf(message));
  return std::string(take());
}

}  // namespace bench
