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

/// A session: what a client has of its own, and the messages that wait for it.
struct Seat {
  Seat(device::Device& device, const std::string& name, const shell::FileAccess& files)
      : id(name), shell(device, name, files) {}

  std::string id;
  shell::Session shell;
  Outlet* outlet = nullptr;                ///< null while it is not connected
  std::set<std::string> topics;            ///< that it is told of
  std::deque<std::shared_ptr<Job>> queue;  ///< messages, the one at work first
  bool isAtWork = false;                   ///< on the first of them
  bool isHeld = false;                     ///< that waits for a time
  std::uint64_t uses = 0;                  ///< messages so far
  bool isShared = false;                   ///< the one of all requests without a session
  bool hasEnded = false;                   ///< it was closed
};

/// Names of sessions in the order in which these were opened: a number grows behind the same front.
struct Earlier {
  bool operator()(const std::string& left, const std::string& right) const {
    return left.size() != right.size() ? left.size() < right.size() : left < right;
  }
};

/// The server behind its interface: sessions, the calls that wait, events.
class Core {
 public:
  Core(device::Device& device, Options options);
  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;
  ~Core();

  device::Device& device() { return device_; }
  Events& events() { return events_; }
  Scans& scans() { return scans_; }
  /// Where the set keeps its state; empty for one in memory.
  const std::filesystem::path& state() const { return options_.state; }
  /// What clients reach of files.
  const shell::FileAccess& files() const;
  /// Tells this server from others that were started.
  const std::string& id() const { return id_; }
  const std::string& openRpc();
  /// What methods answer that change the set: its `revision`.
  Json::Value revision() const;

  // Sessions.

  /// @throws TooManySessions.
  Seat& open();
  /// Opens one that nobody is connected to; it ends after a while without a call.
  /// @throws Failure when too many of them wait already.
  Seat& openWaiting();
  /// @throws NoSuchSession.
  Seat& seat(const std::string& id);
  void close(const std::string& id);
  using Seats = std::map<std::string, std::shared_ptr<Seat>, Earlier>;
  const Seats& seats() const { return seats_; }

  /// The session of requests that name none.
  Seat& shared();

  /// Receives the reply to a message, as `Server::post` has it.
  using Answered = std::function<void(std::optional<std::string>)>;

  /// Has a message handled once those before it are.
  void enqueue(Seat& seat, std::string_view message, Answered answered);
  /// Handles a message of a client that is not connected. @param session  as `Server::post` has it.
  void post(std::string_view message, const std::optional<std::string>& session, Answered answered);
  /// Answers a message without running anything of it.
  static void refuse(std::string_view message, const Failure& failure, const Answered& answered);
  /// Tells what the set could not read or keep.
  void complain(const std::vector<std::string>& complaints) const;
  /// Sends an event to a session that is connected; ends the connection of one that is too slow.
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
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< for what waits for a time
};

}  // namespace virtualtv::rpc
