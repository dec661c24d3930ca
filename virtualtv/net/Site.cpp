// SPDX-License-Identifier: MIT
#include "net/Site.h"

#include <utility>
#include <vector>

namespace virtualtv::net {

Site::Site(const Executor& executor, rpc::Server& calls, Plays& plays, const Access& access, const Limits& limits,
           Say complain, Say log)
    : turns_(executor),
      calls_(calls),
      plays_(plays),
      access_(access),
      limits_(limits),
      complain_(std::move(complain)),
      log_(std::move(log)) {}

void Site::handle(std::size_t bytes, const std::string& session, std::function<void()> work) {
  const bool waitsBehindOthers = !session.empty() && turns_.holds(session);
  if (bytes <= limits_.mostAtOnce && !waitsBehindOthers) return work();
  turns_.add(session, std::move(work));
}

void Site::add(const std::shared_ptr<Connection>& connection) {
  connections_.emplace(connection.get(), connection);
}

void Site::remove(Connection& connection) {
  if (connections_.erase(&connection) > 0 && connections_.empty() && whenEmpty_) whenEmpty_();
}

void Site::end(std::function<void()> whenEmpty) {
  whenEmpty_ = std::move(whenEmpty);
  if (connections_.empty()) return whenEmpty_();
  const auto connections = connections_;  // a copy, since connections that end at once leave the list
  for (const auto& [key, connection] : connections) connection->goAway();
}

void Site::cut() {
  const auto connections = connections_;
  for (const auto& [key, connection] : connections) connection->cut();
}

void Site::complainOnce(const std::string& line) {
  constexpr std::size_t mostTold = 1000;  // beyond it nothing is reported, so that a client with ever new names can't
                                          // fill the log
  if (told_.size() < mostTold && told_.insert(line).second) complain_(line);
}

}  // namespace virtualtv::net
