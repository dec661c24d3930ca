// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "rpc/Events.h"
#include "rpc/Failure.h"
#include "rpc/Scans.h"
#include "rpc/Server.h"
#include "shell/FileAccess.h"
#include "shell/Session.h"

namespace virtualtv::rpc {

struct Job;
struct Request;

/// A session: the state of one client, and its waiting messages.
struct Seat {
  Seat(device::Device& device, const std::string& name, const shell::FileAccess& files)
      : id(name), shell(device, name, files) {}

  std::string id;
  shell::Session shell;
  Outlet* outlet = nullptr;                ///< null while it is not connected
  TopicNames topics;                       ///< topics of its subscriptions
  std::deque<std::shared_ptr<Job>> queue;  ///< waiting messages, the current one first
  bool isAtWork = false;                   ///< the first message is being handled
  bool isHeld = false;                     ///< the first message waits for a delay
  std::uint64_t uses = 0;                  ///< number of messages so far
  bool isShared = false;                   ///< used by all requests that name no session
  bool hasEnded = false;                   ///< the session was closed
};

/// Sorts session names in the order in which the sessions were opened: after a common prefix, each name has a greater
/// number than the one before.
struct Earlier {
  bool operator()(const std::string& left, const std::string& right) const {
    return left.size() != right.size() ? left.size() < right.size() : left < right;
  }
};

/// The implementation of the server: sessions, waiting calls, events.
class Core {
 public:
  Core(device::Device& device, Options options);
  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;
  ~Core();

  device::Device& device() { return device_; }
  Events& events() { return events_; }
  Scans& scans() { return scans_; }
  /// The directory with the state of the set; empty for a set in memory.
  const std::filesystem::path& state() const { return options_.state; }
  /// The files that clients can use.
  const shell::FileAccess& files() const;
  /// Identifies this run of the server.
  const std::string& id() const { return id_; }
  const std::string& openRpc();
  /// The result of methods that change the set: its `revision`.
  Json::Value revision() const;

  // Sessions.

  /// @throws TooManySessions.
  Seat& open();
  /// Opens a session without a connection. It ends after a while without a call. @throws Failure when there are too
  /// many such sessions.
  Seat& openWaiting();
  /// @throws NoSuchSession.
  Seat& seat(const std::string& id);
  void close(const std::string& id);
  using Seats = std::map<std::string, std::shared_ptr<Seat>, Earlier>;
  const Seats& seats() const { return seats_; }

  /// The session of all requests that name no session. Opened on first use. @throws TooManySessions.
  Seat& shared();

  /// Receives the reply to a message, like `answer` of `Server::post`.
  using Answered = std::function<void(std::optional<std::string>)>;

  /// Queues a message behind the waiting messages of the session, and handles it as soon as its turn comes.
  void enqueue(Seat& seat, std::string_view message, Answered answered);
  /// Handles a message of a client that is not connected. @param session  as for `Server::post`.
  void post(std::string_view message, const std::optional<std::string>& session, Answered answered);
  /// Refuses a message: answers all its requests with the failure, and runs none.
  static void refuse(std::string_view message, const Failure& failure, const Answered& answered);
  /// Reports what the set could not read or persist.
  void complain(const std::vector<std::string>& complaints) const;
  /// Sends an event to a session, if it is connected. Cuts off a client that is too slow.
  void send(Seat& seat, Event& event);

 private:
  void openFor(std::string_view message, Answered answered);
  void work(const std::shared_ptr<Seat>& seat);
  bool goOn(const std::shared_ptr<Seat>& seat, Job& job);
  void hold(const std::shared_ptr<Seat>& seat, Events::Ran ran, std::string response);
  std::string answer(Seat& seat, std::string_view text, Job& job);
  void appendResult(Seat& seat, const Request& request, std::vector<std::function<void()>>& behind,
                    std::string& response);
  void endWhenUnused(const Seat& seat);
  void deliver(Event& event);

  device::Device& device_;
  Options options_;
  std::string id_;
  std::uint64_t lastSession_ = 0;
  Seats seats_;
  std::string openRpc_;
  Events events_;
  Scans scans_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< checked by delayed functions
};

}  // namespace virtualtv::rpc
