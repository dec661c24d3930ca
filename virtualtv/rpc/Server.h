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

/// JSON-RPC 2.0 on the virtual TV, without sockets: whoever carries the messages stands around it.
namespace virtualtv::rpc {

/// Where what the server says to one client goes: its connection. Called on the device's thread.
class Outlet {
 public:
  virtual ~Outlet() = default;
  /// Sends a message: a JSON text. Messages arrive in the order in which they were sent. Must not call the server.
  virtual void send(std::shared_ptr<const std::string> message) = 0;
  /// Bytes that were sent and are not on their way yet.
  virtual std::size_t unsent() const = 0;
  /// Ends the connection of a subscriber that is too slow. Must not call the server.
  virtual void cutOff() = 0;
};

/// A session that a client names is not there (any more).
struct NoSuchSession : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};
/// As many sessions as there may be are open.
struct TooManySessions : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Options {
  /// Calls a function after a time, on the device's thread, never before this returns.
  std::function<void(std::chrono::milliseconds, std::function<void()>)> after{};
  bool waits = true;  ///< replies are held back as long as the latencies of the set's calls say
  std::size_t mostSessions = 2000;
  std::filesystem::path state{};  ///< where the set keeps its state, told to clients; empty for one in memory
  std::shared_ptr<const shell::FileAccess> files{};  ///< what clients reach of files; null for none
  /// Is told, a line each, what the set could not read or keep.
  std::function<void(const std::string&)> complain{};
};

/// Reads the tables of methods and events, which the first server and its first request do otherwise. They stay for as
/// long as the program.
void prepare();

class Core;

/// A client that is connected. Its session ends with it.
class Client {
 public:
  Client(Core& core, Outlet& outlet, std::string session);
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client();

  /// Handles a message, a request or a batch. What answers it goes to the outlet, none to notifications.
  /// @param done  called once it is answered: at once, or later where the answer is held back. The next message is not
  /// to be given before. Not called when the client ends before.
  void take(std::string_view message, std::function<void()> done);

 private:
  void openAnother();

  Core& core_;
  Outlet& outlet_;
  std::string session_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< for what is answered later
};

/// Serves clients on a device. Used on the device's thread, which ends it before the device.
class Server {
 public:
  /// @param device  outlives it.
  Server(device::Device& device, Options options);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// Connects a client. @param outlet  outlives the client.
  /// @param session  one that a request without connection has opened and that the client takes over.
  /// @throws NoSuchSession, TooManySessions.
  std::unique_ptr<Client> connect(Outlet& outlet, const std::optional<std::string>& session);

  /// Handles a request or a batch of a client that is not connected.
  /// @param session  whose it is; without one, that of all such requests.
  /// @param answer  called once with the reply, at once or later. The reply is empty where there is none, as for
  /// notifications; nothing where the request needs a new session and as many as may be are open.
  void post(std::string_view body, const std::optional<std::string>& session,
            std::function<void(std::optional<std::string> reply)> answer);

  /// What becomes of a broadcast that a client sends.
  struct ScanWishes {
    bool imports = false;                  ///< puts the services, if there are any, into the set
    bool add = false;                      ///< beside those there
    std::optional<std::string> session{};  ///< that what is found is kept for, if it is still there
  };
  /// What a client that sent a broadcast is told, as JSON: what was found in it.
  /// @throws StoreError when the set can't keep the services.
  std::string scanned(const broadcast::Scan& scan, const ScanWishes& wishes);

  /// @throws NoSuchSession.
  void requireSession(const std::string& session) const;

  /// The methods as an OpenRPC document.
  const std::string& openRpc();

 private:
  std::unique_ptr<Core> core_;
};

}  // namespace virtualtv::rpc
