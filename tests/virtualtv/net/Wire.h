// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

// A client of the server that works on bytes.

namespace virtualtv::net {

struct HttpResponse {
  int status = 0;
  std::map<std::string, std::string> headers;  ///< names in lower case
  std::string body;
};

struct Frame {
  int first = 0;  ///< the first byte: the final flag, reserved bits, the opcode
  std::string payload;

  /// The code in a close frame; 0 if it has none.
  int code() const;
};

inline constexpr int textFrame = 0x81;
inline constexpr int binaryFrame = 0x82;
inline constexpr int closeFrame = 0x88;
inline constexpr int pingFrame = 0x89;
inline constexpr int pongFrame = 0x8A;

/// A client's plain connection. If an answer does not come in time, the test fails.
class Wire {
 public:
  /// @param buffer  size of the system's receive buffer in bytes; 0 for the default.
  explicit Wire(unsigned short port, int buffer = 0);
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;
  ~Wire() { close(); }

  void send(std::string_view bytes);
  /// Sends as much as the peer takes. @return false once it takes no more.
  bool trySend(std::string_view bytes);
  /// From now on, stops sending when the peer has taken nothing for a short time.
  void sendImpatiently();
  void endSending();
  void close();
  /// Resets the connection, which the peer sees as an error.
  void reset();

  /// The next bytes; fewer if the connection ends.
  std::string read(std::size_t count);
  /// Everything up to and including the text `end`.
  std::string readUntil(std::string_view end);
  /// Everything until the connection ends.
  std::string readAll();
  /// True when the peer has already ended the connection.
  bool hasEnded() const;
  /// True when the peer ends the connection without sending anything more.
  bool isAtEnd() { return readAll().empty(); }

  /// An answer to a request. @param hasBody  false for the answer to a HEAD request.
  HttpResponse response(bool hasBody = true);
  /// Sends a request. @param lines  the header lines, separated by `\n`, without the empty line at their end.
  void sendRequest(const std::string& lines, const std::string& body = "");
  /// Sends a request, and reads its answer.
  HttpResponse ask(const std::string& lines, const std::string& body = "");

  /// Opens a session by a request. @return its id.
  std::string openSession();

  /// Requests an upgrade to WebSocket. @return the answer.
  HttpResponse upgrade(const std::string& target = "/rpc", const std::string& more = "");
  /// Sends a frame, masked as clients must.
  void sendFrame(int first, std::string_view payload);
  Frame frame();
  /// Sends a message, and reads the next one from the server.
  std::string call(const std::string& message);

 private:
  bool readMore();

  int socket_ = -1;
  std::string unread_;
};

/// A frame's bytes. @param masked  true for frames of clients.
std::string bytesOf(int first, std::string_view payload, bool masked = true);

/// A JSON-RPC request. @param parameters  a JSON text.
std::string requestOf(int id, const std::string& method, const std::string& parameters = "[]");
/// The header lines of a POST with this body.
std::string postOf(const std::string& body, const std::string& more = "");

/// A request that makes the server delay each answer to `heldBack` by the longest possible time.
std::string holdBack();
std::string heldBack(int id);
/// A command that the server answers at once.
std::string quick(int id);
/// The id of the request that a response is for; 0 when it is not a response.
int idOf(const std::string& response);

}  // namespace virtualtv::net
