// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "device/Feed.h"
#include "device/History.h"
#include "device/Loop.h"
#include "framework/Host.h"
#include "kel/CEmpAppBase.h"
#include "notify/Listeners.h"
#include "seam/Seam.h"
#include "set/Tv.h"

/// The set with the plug-in on it, for any number of clients.
namespace virtualtv::device {

/// Puts the process's device aside for the lifetime of this object. Meanwhile another device on the same application
/// object can be created, with its own engines, calls and log messages. It must be destroyed before this object. Must
/// not be created while a command runs.
class DeviceAside {
 public:
  /// @param app  outlives it.
  explicit DeviceAside(kel::CEmpAppBase& app) : host_(app) {}

 private:
  TvAside tv_;
  seam::SeamAside seam_;
  framework::LogAside log_;
  framework::Host host_;
};

/// Owns the set, hosts the plug-in's engines on it, and notifies subscribers of what happens on both. A process has one
/// device at a time (see `DeviceAside`), which creates the process's `Tv` and owns the seam. The device outlives
/// restarts and resets of the set. Everything except `Loop::post`, `Loop::call`, `Loop::stop` and `Feed::take` must run
/// on the thread of its loop.
class Device {
 public:
  /// Switches the set on. @param app, storage  outlive it. @throws StoreError when the storage can't be read.
  Device(kel::CEmpAppBase& app, Storage& storage);
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
  /// Closes the engines, switches the set off.
  ~Device();

  Loop& loop() { return loop_; }
  kel::CEmpAppBase& app() { return app_; }
  framework::Host& host() { return host_; }
  Storage& storage() { return storage_; }

  /// @throws std::runtime_error when a failed restart has left no set.
  Tv& tv();
  bool isOn() const { return tv_.has_value(); }
  /// Never decreases, not even over a restart.
  std::uint64_t revision() const { return tv_ ? tv_->revision() : revision_; }

  /// Subscribes to what happens from now on, as selected by `wants`. Calls and log lines are recorded only while some
  /// feed wants them.
  std::shared_ptr<Feed> subscribe(Wants wants);
  /// Ends a subscription at once. Dropping the last pointer to a feed ends it too, but calls and log lines that only
  /// this feed wanted are then recorded until the loop has run after the next happening.
  void unsubscribe(const std::shared_ptr<Feed>& feed);

  /// Switches the set off and on. Closes the engines and removes faults and latencies. @throws StoreError when the
  /// storage can't be read; the set is off then.
  void restart();
  /// The same, resetting to the embedded set.
  void reset();
  /// The same, replacing everything that the set persists by a snapshot. @throws what `Tv::restore` throws. The set is
  /// then unchanged, but its engines are closed.
  void restore(const Snapshot& snapshot);
  /// Closes all engines. @param why  in a word or two.
  void closeEngines(const std::string& why);

  // Changes to the running set from outside. They could also be made on `tv()`, but then feeds that want acts would not
  // be notified.

  /// @throws what `virtualtv::setKnob` throws.
  void setKnob(const std::string& name, const std::string& value);
  /// @throws what `virtualtv::editService` throws.
  void editService(const std::string& service, const std::string& edit, const std::string& value);
  /// @throws StoreError.
  void setSetting(const std::string& key, const Setting& value);
  /// @return false when the key was not set. @throws StoreError.
  bool removeSetting(const std::string& key);
  /// @param name  the name of the list in messages. @throws what `importServices` throws.
  ImportReport import(const std::string& name, const std::string& content, const ImportOptions& options);
  /// Imports the services found in broadcasts. @param files  the names of the scanned files; empty when the broadcasts
  /// did not come from files. @param recordings  the paths of these files. @throws what `importScan` throws.
  ImportReport import(const std::vector<std::string>& files, const broadcast::Scan& scan, bool add,
                      const RecordingFiles& recordings = {});

  // Faults: seam::parseFault reads them from words.

  /// @return the number of the fault, by which it can be removed.
  std::uint64_t addFault(seam::Fault fault);
  /// @return false when there is no fault with that number.
  bool removeFault(std::uint64_t id);
  void clearFaults();
  const std::vector<seam::Fault>& faults() const { return seam::Seam::instance().faults(); }

  /// Starts a history that holds the last commands, with their calls and log messages.
  void remember(History::Bounds bounds = {});
  /// Null without a history.
  const History* history() const { return history_.get(); }
  /// Restores what the set had persisted right after a command in the history, as `restore` does. @throws
  /// std::invalid_argument when the command is not in the history, and what `restore` throws.
  void goBack(std::uint64_t command);

  /// True while any feed wants to be notified of commands.
  bool isHeard() const { return hearsSet_; }
  /// Called by a session when it starts to run a command. Everything that happens until `tell` belongs to the command.
  /// @return the number of the command, counted from 1.
  std::uint64_t begin() { return running_ = ++commands_; }
  /// Called when the command has ended. Notifies feeds that want events.
  void tell(CommandRun command);
  /// Notifies feeds that want acts.
  void tell(const Act& act);

  /// Complaints of the set since the last call.
  std::vector<std::string> takeComplaints();

 private:
  void switchOn(const char* why);
  void switchOff(const std::string& why);
  bool dropFault(std::uint64_t id, bool withSet);
  template <typename What>
  void happened(What&& what) noexcept;
  void deliver(const std::shared_ptr<const Happening>& happening);
  void wake(const std::weak_ptr<Feed>& listed);
  void forgetEndedFeeds();
  void refresh();
  void listenToSet(bool on);
  void listenToCalls(bool on);
  void keepServices() noexcept;

  kel::CEmpAppBase& app_;
  framework::Host& host_;
  Storage& storage_;
  Loop loop_;
  std::optional<Tv> tv_;
  std::uint64_t revision_ = 0;  ///< revision at the last switch-off
  TvState before_;              ///< state at the last switch-off
  std::vector<std::weak_ptr<Feed>> feeds_;
  bool hearsSet_ = false;
  bool hearsActs_ = false;
  int logLevel_ = -1;  ///< log level that is currently subscribed to
  bool hearsCalls_ = false;
  std::vector<std::string> complaints_;
  std::uint64_t commands_ = 0;                     ///< number of commands started by sessions
  std::uint64_t running_ = 0;                      ///< number of the running command, 0 for none
  std::unique_ptr<History> history_;               ///< null without a history
  std::shared_ptr<const ServiceImage> replacing_;  ///< services that are being replaced, if the history wants them
  std::vector<notify::Subscription> engines_;
  notify::Subscription set_;
  notify::Subscription services_;
  notify::Subscription log_;
};

}  // namespace virtualtv::device
