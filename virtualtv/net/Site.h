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

/// A client's connection, while it lives.
class Connection {
 public:
  virtual ~Connection() = default;
  /// Ends it as soon as may be, since the server ends.
  virtual void goAway() = 0;
  /// Ends it now.
  virtual void cut() = 0;
};

/// What all connections share. Outlives them.
class Site {
 public:
  using Say = std::function<void(const std::string& line)>;

  /// @param complain  tells whoever runs the server what went wrong.
  /// @param log  is told of each request; may be empty.
  Site(const Executor& executor, rpc::Server& calls, Plays& plays, const Access& access, const Limits& limits,
       Say complain, Say log);

  rpc::Server& calls() { return calls_; }
  Plays& plays() { return plays_; }
  const Access& access() const { return access_; }
  const Limits& limits() const { return limits_; }
  bool isEnding() const { return static_cast<bool>(whenEmpty_); }

  /// Has a message handled: now, or where it is large, in its turn among the large ones.
  /// @param session  that it names. Messages with the same one are handled in the order in which they came; an empty
  /// one stands for none.
  void handle(std::size_t bytes, const std::string& session, std::function<void()> work);

  void add(const std::shared_ptr<Connection>& connection);
  void remove(Connection& connection);
  /// Has all connections end. @param whenEmpty  called once there is none: at once or later.
  void end(std::function<void()> whenEmpty);
  /// Ends those that are left.
  void cut();

  void complain(const std::string& line) const { complain_(line); }
  /// The same, but only for the first of many equal lines.
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
