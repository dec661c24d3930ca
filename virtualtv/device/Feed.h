#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "channels/ImportList.h"
#include "framework/Host.h"
#include "framework/Log.h"
#include "seam/Seam.h"
#include "set/Event.h"
#include "set/Snapshot.h"

namespace virtualtv::device {

/// The set was switched on; its revision goes on from the last one.
struct SetStarted {
  std::string why;  ///< "restart", "reset", "restore"
};

/// A fault was set, hit a call, or is gone.
struct FaultSet {
  std::uint64_t id;
  std::string fault;  ///< in the words of `.fault`
};
struct FaultHit {
  std::uint64_t id;
  std::uint64_t hits;  ///< with this one
};
struct FaultGone {
  std::uint64_t id;
  bool withSet = false;  ///< nobody removed it, the set was switched off
};

/// A session has run a command. What that caused came before, with the same engine and number as the caller.
struct CommandRun {
  std::string session;              ///< its name
  std::string engine;               ///< as the session calls it
  seam::Caller caller{};            ///< the engine's key, and the number of the command
  std::vector<std::string> words;   ///< name and parameters
  bool list = false;                ///< the parameters were given as a list
  std::optional<bool> accepted{};   ///< the engine's answer; nothing when it threw
  std::string reply{};              ///< encoded, empty when there is none
  std::uint64_t delay = 0;          ///< that latencies caused, milliseconds on the set's clock
  std::chrono::nanoseconds took{};  ///< of real time
};

// What somebody did to the set, as it was asked for and done: enough to do it again. What comes of it is told as any
// change is, before it. Restarts and resets are told as `SetStarted`.

struct KnobTurned {
  std::string name;
  std::string value;
};
struct ServiceEdited {
  std::string service;  ///< in the words of `.service`
  std::string edit;
  std::string value;
};
struct SettingGiven {
  std::string key;
  std::optional<Setting> value;  ///< nothing where it was removed
};
struct ListImported {
  std::string content;
  ImportOptions options;
  ImportReport report;
};
/// What was found in broadcasts, which are too much to be kept here.
struct ScanImported {
  std::vector<std::string> files;  ///< none where a client sent them
  std::shared_ptr<const broadcast::Scan> scan;
  bool add;
  ImportReport report;
};
/// Its engines were closed before; `SetStarted` follows.
struct SnapshotRestored {
  std::shared_ptr<const Snapshot> snapshot;  ///< apart, since a happening has room for the largest of all
};
/// A client has said who it is while its engine was open.
struct ApplicationGiven {
  std::string engine;  ///< its key
  std::string appId;
  std::string widgetId;
};

using Act = std::variant<KnobTurned, ServiceEdited, SettingGiven, ListImported, ScanImported, SnapshotRestored,
                         ApplicationGiven>;

/// Something that happened on a device.
struct Happening {
  using What = std::variant<Change, SetStarted, framework::EngineOpened, framework::EngineClosed, FaultSet, FaultHit,
                            FaultGone, CommandRun, seam::Call, framework::LogLine, Act>;

  std::uint64_t revision;  ///< of the set, right behind it
  seam::Caller caller;     ///< the engine at work, and the number of its command; empty where none is
  std::uint64_t command;   ///< that a session was running, counted over all of them; 0 where none was
  What what;
  std::chrono::system_clock::time_point time = std::chrono::system_clock::now();
};

/// What it takes of memory, about, in bytes.
std::size_t sizeOf(const Happening& happening);

/// The level of log lines that has all of them.
inline constexpr int allLevels = 3;

/// What a subscriber asks for.
struct Wants {
  bool events = false;  ///< all but calls, log lines and acts
  bool calls = false;
  bool acts = false;
  int logLevel = -1;                                            ///< log lines up to this level
  std::size_t limit = std::numeric_limits<std::size_t>::max();  ///< that wait to be taken; the oldest are dropped
  /// Called by the device's loop when something waits and nothing did. All others wait meanwhile: one that has much to
  /// do with what it takes does so on a thread of its own, which this tells. What it throws is lost.
  std::function<void()> wake{};
};

/// A subscription: what has happened since it began and was not taken yet, in the order in which it happened. It ends
/// with the last pointer to it. Any thread may take.
class Feed {
 public:
  explicit Feed(Wants wants) : wants_(std::move(wants)) {}

  struct Taken {
    std::vector<std::shared_ptr<const Happening>> happenings;
    std::size_t dropped = 0;  ///< before the first of these
  };
  Taken take();

  const Wants& wants() const { return wants_; }

  // For the device.
  bool wants(const seam::Call&) const { return wants_.calls; }
  bool wants(const framework::LogLine& line) const { return line.level <= wants_.logLevel; }
  bool wants(const Act&) const { return wants_.acts; }
  template <typename Other>
  bool wants(const Other&) const {
    return wants_.events;
  }
  /// While it is, the subscriber takes without being woken. Called on the device's thread.
  void attend(bool isAttended) { isAttended_ = isAttended; }
  bool isAttended() const { return isAttended_; }
  /// @return true when nothing waited before it.
  bool push(std::shared_ptr<const Happening> happening) noexcept;

 private:
  const Wants wants_;
  std::mutex mutex_;
  std::deque<std::shared_ptr<const Happening>> waiting_;
  std::size_t dropped_ = 0;
  bool isAttended_ = false;
};

}  // namespace virtualtv::device
