// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "device/Device.h"
#include "shell/FileAccess.h"

namespace virtualtv::broadcast {
struct Scan;
}

/// JSON-RPC 2.0 on the virtual TV. Uses no sockets: the caller transports the messages.
namespace virtualtv::rpc {

/// The connection to one client, for the server's messages. Called on the device's thread.
class Outlet {
 public:
  virtual ~Outlet() = default;
  /// Sends a message, a JSON text. Messages must arrive in the order of the calls. Must not call the server.
  virtual void send(std::shared_ptr<const std::string> message) = 0;
  /// The number of bytes that wait to be sent.
  virtual std::size_t unsent() const = 0;
  /// Ends the connection of a subscriber that is too slow. Must not call the server.
  virtual void cutOff() = 0;
};

/// The session that a client names does not exist, or not any more.
struct NoSuchSession : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};
/// The limit of open sessions is reached.
struct TooManySessions : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Options {
  /// Calls a function after a time, on the device's thread. Must not call it before returning.
  std::function<void(std::chrono::milliseconds, std::function<void()>)> after{};
  bool waits = true;  ///< delay replies by the latencies of the set's calls
  std::size_t mostSessions = 2000;
  std::filesystem::path state{};  ///< the set's state directory, reported to clients; empty in memory
  std::shared_ptr<const shell::FileAccess> files{};  ///< the files that clients can use; null for none
  /// Called with each line about what the set could not read or persist.
  std::function<void(const std::string&)> complain{};
};

/// Reads the tables of methods and events ahead of time. Otherwise the first server and its first request read them.
/// They live as long as the program.
void prepare();

class Core;

/// A connected client. Its session ends with it.
class Client {
 public:
  Client(Core& core, Outlet& outlet, std::string session);
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client();

  /// Handles a message: a request or a batch. The reply goes to the outlet; notifications have none. @param done
  /// called once the message is answered: before this returns, or later when the reply is delayed. Pass the next
  /// message only after that. Not called when the client ends first. If the client has closed its session, its next
  /// message opens another one.
  void take(std::string_view message, std::function<void()> done);

 private:
  void openAnother();

  Core& core_;
  Outlet& outlet_;
  std::string session_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< checked by delayed replies
};

/// Serves clients on a device. Used on the device's thread, and destroyed there before the device.
class Server {
 public:
  /// @param device  outlives it.
  Server(device::Device& device, Options options);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// Connects a client. @param outlet  outlives the client.
  /// @param session  a session to take over, which a request without a connection has opened.
  /// @throws NoSuchSession, also when the session is already connected or is the shared one; TooManySessions.
  std::unique_ptr<Client> connect(Outlet& outlet, const std::optional<std::string>& session);

  /// Handles a request or a batch of a client that is not connected.
  /// @param session  the session of the request; without it, the session shared by all such requests.
  /// @param answer  called once with the reply, at once or later. The reply is empty when there is none, as for
  /// notifications. It is absent when the request needs a new session and the limit of sessions is reached.
  void post(std::string_view body, const std::optional<std::string>& session,
            std::function<void(std::optional<std::string> reply)> answer);

  /// What to do with a broadcast that a client sends.
  struct ScanWishes {
    bool imports = false;                  ///< import the services, if any
    bool add = false;                      ///< keep the existing services
    std::optional<std::string> session{};  ///< session to store the result for, if it still exists
  };
  /// The answer to a client that sent a broadcast: what was found in it, as JSON.
  /// @throws StoreError when the set can't persist the services.
  std::string scanned(const broadcast::Scan& scan, const ScanWishes& wishes);

  /// @throws NoSuchSession.
  void requireSession(const std::string& session) const;

  /// The methods as an OpenRPC document.
  const std::string& openRpc();

 private:
  std::unique_ptr<Core> core_;
};

}  // namespace virtualtv::rpc
