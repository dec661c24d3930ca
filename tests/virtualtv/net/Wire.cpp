// SPDX-License-Identifier: MIT
#include "virtualtv/net/Wire.h"

#include <arpa/inet.h>
#include <json/json.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace virtualtv::net {

namespace {

constexpr timeval patience{10, 0};  // seconds

Json::Value parsed(const std::string& text) {
  Json::Value value;
  std::istringstream stream(text);
  std::string errors;
  if (!Json::parseFromStream(Json::CharReaderBuilder(), stream, &value, &errors)) ADD_FAILURE() << text << errors;
  return value;
}

}  // namespace

int Frame::code() const {
  if (payload.size() < 2) return 0;
  return static_cast<unsigned char>(payload[0]) * 256 + static_cast<unsigned char>(payload[1]);
}

Wire::Wire(unsigned short port, int buffer) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  ::setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
  if (buffer > 0) ::setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &buffer, sizeof buffer);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("nobody listens");
  }
}

void Wire::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return ADD_FAILURE() << "can't send";
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

bool Wire::trySend(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void Wire::sendImpatiently() {
  constexpr timeval moment{0, 300'000};
  ::setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &moment, sizeof moment);
}

void Wire::endSending() {
  ::shutdown(socket_, SHUT_WR);
}

void Wire::close() {
  if (socket_ >= 0) ::close(std::exchange(socket_, -1));
}

void Wire::reset() {
  const linger atOnce{1, 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  close();
}

bool Wire::readMore() {
  char chunk[65536];
  const ssize_t count = ::recv(socket_, chunk, sizeof chunk, 0);
  if (count < 0 && errno == EAGAIN) ADD_FAILURE() << "nothing comes";
  if (count <= 0) return false;
  unread_.append(chunk, static_cast<std::size_t>(count));
  return true;
}

bool Wire::hasEnded() const {
  char byte = 0;
  const ssize_t count = ::recv(socket_, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  return count == 0 || (count < 0 && errno != EAGAIN);
}

std::string Wire::read(std::size_t count) {
  while (unread_.size() < count && readMore()) continue;
  std::string front = unread_.substr(0, count);
  unread_.erase(0, front.size());
  return front;
}

std::string Wire::readUntil(std::string_view end) {
  while (unread_.find(end) == std::string::npos && readMore()) continue;
  const std::size_t found = unread_.find(end);
  return read(found == std::string::npos ? unread_.size() : found + end.size());
}

std::string Wire::readAll() {
  while (readMore()) continue;
  return std::exchange(unread_, {});
}

HttpResponse Wire::response(bool hasBody) {
  HttpResponse response;
  std::istringstream head(readUntil("\r\n\r\n"));
  std::string line;
  std::getline(head, line);
  if (line.size() > 12) response.status = std::stoi(line.substr(9, 3));
  while (std::getline(head, line) && line.find(": ") != std::string::npos) {
    std::string name = line.substr(0, line.find(": "));
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    EXPECT_EQ(response.headers.count(name), 0U) << name;
    line.pop_back();
    response.headers[name] = line.substr(line.find(": ") + 2);
  }
  const auto length = response.headers.find("content-length");
  if (hasBody && length != response.headers.end()) response.body = read(std::stoul(length->second));
  return response;
}

void Wire::sendRequest(const std::string& lines, const std::string& body) {
  std::string head;
  for (const char character : lines + "\n") head += character == '\n' ? "\r\n" : std::string(1, character);
  send(head + body);
}

HttpResponse Wire::ask(const std::string& lines, const std::string& body) {
  sendRequest(lines, body);
  return response(!lines.starts_with("HEAD "));
}

std::string Wire::openSession() {
  const std::string request = requestOf(1, "session.open", "{}");
  return parsed(ask(postOf(request), request).body)["result"]["session"].asString();
}

HttpResponse Wire::upgrade(const std::string& target, const std::string& more) {
  return ask("GET " + target + " HTTP/1.1\nHost: localhost\nConnection: Upgrade\nUpgrade: websocket\n" +
             "Sec-WebSocket-Version: 13\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\n" + more);
}

void Wire::sendFrame(int first, std::string_view payload) {
  send(bytesOf(first, payload));
}

Frame Wire::frame() {
  const std::string head = read(2);
  if (head.size() < 2) return {};
  Frame frame;
  frame.first = static_cast<unsigned char>(head[0]);
  auto length = static_cast<std::size_t>(static_cast<unsigned char>(head[1]));
  EXPECT_LT(length, 128U) << "a server's frame is masked";
  if (length >= 126) {
    const std::string digits = read(length == 126 ? 2 : 8);
    length = 0;
    for (const char digit : digits) length = length * 256 + static_cast<unsigned char>(digit);
  }
  frame.payload = read(length);
  return frame;
}

std::string Wire::call(const std::string& message) {
  sendFrame(textFrame, message);
  return frame().payload;
}

std::string bytesOf(int first, std::string_view payload, bool masked) {
  constexpr char mask[] = {'\x11', '\x22', '\x33', '\x44'};
  std::string bytes(1, static_cast<char>(first));
  const int markOfMask = masked ? 0x80 : 0;
  const auto addLength = [&](int kind, int digits) {
    bytes += static_cast<char>(markOfMask + kind);
    for (int digit = digits - 1; digit >= 0; --digit) {
      bytes += static_cast<char>((static_cast<unsigned long>(payload.size()) >> (8 * digit)) & 0xFFU);
    }
  };
  if (payload.size() < 126) {
    addLength(static_cast<int>(payload.size()), 0);
  } else if (payload.size() < 65536) {
    addLength(126, 2);
  } else {
    addLength(127, 8);
  }
  if (!masked) return bytes.append(payload);
  bytes.append(mask, sizeof mask);
  for (std::size_t at = 0; at < payload.size(); ++at) bytes += static_cast<char>(payload[at] ^ mask[at % sizeof mask]);
  return bytes;
}

std::string requestOf(int id, const std::string& method, const std::string& parameters) {
  return R"({"jsonrpc":"2.0","id":)" + std::to_string(id) + R"(,"method":")" + method + R"(","params":)" + parameters +
         "}";
}

std::string postOf(const std::string& body, const std::string& more) {
  return "POST /rpc HTTP/1.1\nHost: localhost\nContent-Type: application/json\nContent-Length: " +
         std::to_string(body.size()) + "\n" + more;
}

std::string holdBack() {
  return requestOf(1, "tv.set", R"({"name":"latency.IServiceNavigation::GetTvMode","value":"600000"})");
}

std::string heldBack(int id) {
  return requestOf(id, "window.GetTVMode");
}

std::string quick(int id) {
  return requestOf(id, "tv.get", R"({"name":"region"})");
}

int idOf(const std::string& response) {
  return parsed(response)["id"].asInt();
}

}  // namespace virtualtv::net
