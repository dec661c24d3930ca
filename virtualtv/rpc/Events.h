// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "device/Device.h"

namespace virtualtv::rpc {

/// Names of topics, such as those that a client is subscribed to.
using TopicNames = std::set<std::string, std::less<>>;

/// An event for clients. Its text is created on first use.
struct Event {
  std::uint64_t number = 0;  ///< counted from 1 over all topics
  std::string_view topic;
  std::uint64_t command = 0;  ///< server's number of the command that the event belongs to, 0 for none
  std::uint64_t revision = 0;
  std::chrono::system_clock::time_point time = std::chrono::system_clock::now();
  /// What happened. There are several only for the log messages of a command.
  std::vector<std::shared_ptr<const device::Happening>> happenings;
  std::string session;                      ///< session of an event of the topic `session`
  const char* what = nullptr;               ///< for the same topic: "opened", "closed"
  std::shared_ptr<const std::string> text;  ///< the text to send; null until it is first needed
};

/// Turns happenings on the device into numbered events, and keeps the last ones. The effects of a command are sent at
/// once. The event that reports the command itself is sent with its reply.
class Events {
 public:
  /// @param tell  called with each event once it has its number; must not call this object.
  Events(device::Device& device, std::function<void(Event&)> tell);
  Events(const Events&) = delete;
  Events& operator=(const Events&) = delete;
  ~Events();

  /// Commands that have run, but whose events have not been sent yet.
  struct Ran {
    std::vector<Event> commands;
    std::uint64_t delay = 0;  ///< their delay by latencies of the set, milliseconds
  };
  /// Numbers and sends what has happened since the last call, except the events of commands. @return these events.
  Ran collect();
  /// Runs `work`, which uses the device, and collects its effects as `collect` does, without being woken for them.
  template <typename Work>
  Ran collectFrom(Work work) {
    const Attending attending(feed_);
    work();
    return collect();
  }
  /// Numbers and sends the events of commands.
  void tell(Ran ran);
  /// Numbers and sends the event for a session that was opened or closed. @param what  "opened" or "closed"; a literal.
  void tellOfSession(const std::string& session, const char* what);

  /// Sets the function that the device's loop calls when there may be something to collect.
  void onWake(std::function<void()> wake);
  /// Also subscribes to platform calls and log messages, if the topics include them.
  void hear(const TopicNames& topics);

  /// Number of the last event.
  std::uint64_t number() const { return number_; }
  /// True when all events after that number are still kept.
  bool holdsAfter(std::uint64_t number) const;
  /// Calls `take` with each kept event after that number.
  void replay(std::uint64_t after, const std::function<void(Event&)>& take);
  /// The text of an event as a notification.
  std::shared_ptr<const std::string> textOf(Event& event) const;

  static constexpr std::size_t mostHeld = 10'000;
  static constexpr std::size_t mostBytes = 64U << 20U;

 private:
  struct Attending {
    explicit Attending(std::shared_ptr<device::Feed> attended) : feed(std::move(attended)) { feed->attend(true); }
    Attending(const Attending&) = delete;
    Attending& operator=(const Attending&) = delete;
    ~Attending() { feed->attend(false); }
    const std::shared_ptr<device::Feed> feed;
  };

  void listen();
  static Event eventOf(const std::shared_ptr<const device::Happening>& happening);
  void addLogLine(const std::shared_ptr<const device::Happening>& happening);
  void tellOfLog();
  void add(Event event);

  device::Device& device_;
  std::function<void(Event&)> tell_;
  device::Wants wants_;
  std::shared_ptr<device::Feed> feed_;
  std::uint64_t number_ = 0;
  std::uint64_t revision_ = 0;                      ///< revision of the last event
  Event log_;                                       ///< log messages of one command, not sent yet
  std::deque<std::pair<Event, std::size_t>> held_;  ///< the kept events, each with its counted size in bytes
  std::size_t bytes_ = 0;
};

}  // namespace virtualtv::rpc
