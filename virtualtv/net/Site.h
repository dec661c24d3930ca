// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "net/Access.h"
#include "net/Asio.h"
#include "net/Limits.h"
#include "net/Plays.h"
#include "net/Turns.h"
#include "rpc/Server.h"

namespace virtualtv::net {

/// The connection of a client.
class Connection {
 public:
  virtual ~Connection() = default;
  /// Ends the connection as soon as possible, since the server ends.
  virtual void goAway() = 0;
  /// Ends the connection now.
  virtual void cut() = 0;
};

/// The shared part of all connections. Outlives them.
class Site {
 public:
  using Say = std::function<void(const std::string& line)>;

  /// @param complain  reports what went wrong to whoever runs the server. @param log  called for each request; may be
  /// empty.
  Site(const Executor& executor, rpc::Server& calls, Plays& plays, const Access& access, const Limits& limits,
       Say complain, Say log);

  rpc::Server& calls() { return calls_; }
  Plays& plays() { return plays_; }
  const Access& access() const { return access_; }
  const Limits& limits() const { return limits_; }
  bool isEnding() const { return static_cast<bool>(whenEmpty_); }

  /// Handles a message: a small one now, a large one in its turn. @param session  the session that the message names;
  /// empty for none. Messages of one session are handled in order.
  void handle(std::size_t bytes, const std::string& session, std::function<void()> work);

  void add(const std::shared_ptr<Connection>& connection);
  void remove(Connection& connection);
  /// Ends all connections. @param whenEmpty  called once none is left: at once or later.
  void end(std::function<void()> whenEmpty);
  /// Cuts the remaining connections.
  void cut();

  void complain(const std::string& line) const { complain_(line); }
  /// The same, but repeated lines are reported once.
  void complainOnce(const std::string& line);
  void log(const std::string& line) const {
    if (log_) log_(line);
  }

 private:
  Turns turns_;
  rpc::Server& calls_;
  Plays& plays_;
  const Access& access_;
  const Limits& limits_;
  Say complain_;
  Say log_;
  std::map<Connection*, std::shared_ptr<Connection>> connections_;
  std::function<void()> whenEmpty_;
  std::set<std::string> told_;
};

}  // namespace virtualtv::net
