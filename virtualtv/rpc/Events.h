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

/// What clients can be told of, as events.json has it.
struct Topic {
  std::string name;
  std::string help;
  std::vector<std::string> kinds;  ///< names of the schemas of its events, each of another kind
};
const std::vector<Topic>& topics();
/// Stands for all of them.
inline constexpr std::string_view everyTopic = "*";
/// True when a topic is among those that a client has chosen.
bool haveTopic(const std::set<std::string>& chosen, std::string_view topic);

/// Something that clients are told of. It is written out when somebody wants it.
struct Event {
  std::uint64_t number = 0;  ///< counted from 1 over all topics
  std::string_view topic;
  std::uint64_t command = 0;  ///< the server's number of the command that it belongs to, 0 for none
  std::uint64_t revision = 0;
  std::chrono::system_clock::time_point time = std::chrono::system_clock::now();
  /// What happened; several are the log messages of a command.
  std::vector<std::shared_ptr<const device::Happening>> happenings;
  std::string session;                      ///< of an event of the topic `session`
  const char* what = nullptr;               ///< likewise: "opened", "closed"
  std::shared_ptr<const std::string> text;  ///< as it goes out, once it was written
};

/// What happens on the device as numbered events, of which the last are held. What a command caused is told at once,
/// that it ran when its reply goes out.
class Events {
 public:
  /// @param tell  is given each event when it has its number; must not call this object.
  Events(device::Device& device, std::function<void(Event&)> tell);
  Events(const Events&) = delete;
  Events& operator=(const Events&) = delete;
  ~Events();

  /// Commands that ran, and have not been told of.
  struct Ran {
    std::vector<Event> commands;
    std::uint64_t delay = 0;  ///< milliseconds that the set's latencies held them up
  };
  /// Numbers and tells what has happened since the last time.
  Ran collect();
  /// Does something on the device, and collects. Nobody has to be woken for what that causes.
  template <typename Work>
  Ran collectFrom(Work work) {
    const Attending attending(feed_);
    work();
    return collect();
  }
  /// Numbers and tells that commands ran.
  void tell(Ran ran);
  /// Numbers and tells that a session was opened or closed.
  void tellOfSession(const std::string& session, const char* what);

  /// Has `wake` called by the device's loop when there may be something to collect.
  void onWake(std::function<void()> wake);
  /// From now on platform calls or log messages are told too, where the topics have them.
  void hear(const std::set<std::string>& topics);

  /// Number of the last event.
  std::uint64_t number() const { return number_; }
  /// True when all events behind that one are held.
  bool holdsAfter(std::uint64_t number) const;
  /// Calls `take` with each event that is held, behind that number.
  void replay(std::uint64_t after, const std::function<void(Event&)>& take);
  /// The event as a notification.
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
  std::uint64_t revision_ = 0;                      ///< of the last event
  Event log_;                                       ///< messages of one command, not told yet
  std::deque<std::pair<Event, std::size_t>> held_;  ///< with the bytes that each is counted as
  std::size_t bytes_ = 0;
};

}  // namespace virtualtv::rpc
