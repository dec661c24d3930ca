// SPDX-License-Identifier: MIT
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

/// The set was switched on. Its revision continues from the last one.
struct SetStarted {
  std::string why;  ///< "restart", "reset", "restore"
};

/// A fault was set, hit a call, or was removed.
struct FaultSet {
  std::uint64_t id;
  std::string fault;  ///< in the words of `.fault`
};
struct FaultHit {
  std::uint64_t id;
  std::uint64_t hits;  ///< including this one
};
struct FaultGone {
  std::uint64_t id;
  bool withSet = false;  ///< it was removed because the set was switched off
};

/// A session has run a command. The happenings that the command caused were reported before, with the same caller.
struct CommandRun {
  std::string session;              ///< its name
  std::string engine;               ///< the session's name for it
  seam::Caller caller{};            ///< the engine's key, and the number of the command
  std::vector<std::string> words;   ///< name and parameters
  bool list = false;                ///< the parameters were passed as a list
  std::optional<bool> accepted{};   ///< the result of the engine; nothing when it threw
  std::string reply{};              ///< encoded, empty when there is none
  std::uint64_t delay = 0;          ///< delay by latencies, milliseconds on the set's clock
  std::chrono::nanoseconds took{};  ///< duration in real time
};

// Acts: what a client did to the set, with everything needed to do it again. The changes that an act causes are
// reported before it, like any change. Restarts and resets are reported as `SetStarted`.

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
  std::optional<Setting> value;  ///< nothing when the key was removed
};
struct ListImported {
  std::string content;
  ImportOptions options;
  ImportReport report;
};
/// Services found in broadcasts were imported. The broadcasts are too large to be stored here.
struct ScanImported {
  std::vector<std::string> files;  ///< empty when a client sent the broadcasts
  std::shared_ptr<const broadcast::Scan> scan;
  bool add;
  ImportReport report;
};
/// A snapshot was restored. The engines were closed before; `SetStarted` follows.
struct SnapshotRestored {
  std::shared_ptr<const Snapshot> snapshot;  ///< a pointer, since every happening has the size of the largest one
};
/// A client has identified itself while its engine was open.
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

  std::uint64_t revision;  ///< revision of the set right after it
  seam::Caller caller;     ///< the running engine and the number of its command; empty without one
  std::uint64_t command;   ///< number of the running command, counted over all sessions; 0 without one
  What what;
  std::chrono::system_clock::time_point time = std::chrono::system_clock::now();
};

/// Approximate memory use, in bytes.
std::size_t sizeOf(const Happening& happening);

/// The level that includes all log lines.
inline constexpr int allLevels = 3;

/// What a subscriber wants to receive.
struct Wants {
  bool events = false;  ///< everything except calls, log lines and acts
  bool calls = false;
  bool acts = false;
  int logLevel = -1;                                            ///< log lines up to this level
  std::size_t limit = std::numeric_limits<std::size_t>::max();  ///< largest number of waiting happenings; beyond it the
                                                                ///< oldest are dropped
  /// Called by the device's loop when the first happening starts to wait. It blocks all other subscribers, so a
  /// subscriber with much work should only notify its own thread. Exceptions are ignored.
  std::function<void()> wake{};
};

/// A subscription: a queue of the happenings that have not been taken yet, oldest first. It starts empty, and ends when
/// the last pointer to it is gone. Any thread may call `take`.
class Feed {
 public:
  explicit Feed(Wants wants) : wants_(std::move(wants)) {}

  struct Taken {
    std::vector<std::shared_ptr<const Happening>> happenings;
    std::size_t dropped = 0;  ///< happenings dropped before the first of these
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
  /// Sets whether the subscriber takes happenings by itself, so that it need not be woken. Called on the device's
  /// thread.
  void attend(bool isAttended) { isAttended_ = isAttended; }
  bool isAttended() const { return isAttended_; }
  /// @return true when the queue was empty before. When there is no memory, drops the happening and returns false.
  bool push(std::shared_ptr<const Happening> happening) noexcept;

 private:
  const Wants wants_;
  std::mutex mutex_;
  std::deque<std::shared_ptr<const Happening>> waiting_;
  std::size_t dropped_ = 0;
  bool isAttended_ = false;
};

}  // namespace virtualtv::device
