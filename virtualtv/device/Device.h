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

/// Puts the process's device aside for as long as it lives: another one on the same application object can be made
/// meanwhile, has engines, calls and log messages of its own, and must be gone before this. Not to be made while a
/// command runs.
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

/// Owns the set, hosts the plug-in's engines on it, and tells subscribers what happens on the two. One a process at a
/// time, but for `DeviceAside`: it makes the process's `Tv`, and has the seam for itself. It outlives restarts and
/// resets of the set. Everything but `post`, `call` and `Feed::take` belongs on the thread of its loop.
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
  /// Never goes back, also over a restart.
  std::uint64_t revision() const { return tv_ ? tv_->revision() : revision_; }

  /// What happens from now on, as far as it is wanted. Nothing is kept for nobody: calls are not recorded and log lines
  /// are not made while no feed wants them.
  std::shared_ptr<Feed> subscribe(Wants wants);
  /// Ends a subscription at once. One whose last pointer has gone gets nothing any more, and what was listened to for
  /// it is not listened to any more once the loop has been turned behind the next thing that happens.
  void unsubscribe(const std::shared_ptr<Feed>& feed);

  /// Switches the set off and on. Engines are closed, faults and latencies are gone.
  /// @throws StoreError when the storage can't be read; then the set is off.
  void restart();
  /// The same, back to the embedded set.
  void reset();
  /// The same, with a snapshot in place of all that the set persists. @throws what `Tv::restore` throws; the set is
  /// then as it was, but for its engines, which are closed.
  void restore(const Snapshot& snapshot);
  /// Closes all engines. @param why  in a word or two.
  void closeEngines(const std::string& why);

  // What is done from outside to the set that is on. It can be done to `tv()` as well, but then feeds that want acts do
  // not learn of it.

  /// @throws what `virtualtv::setKnob` throws.
  void setKnob(const std::string& name, const std::string& value);
  /// @throws what `virtualtv::editService` throws.
  void editService(const std::string& service, const std::string& edit, const std::string& value);
  /// @throws StoreError.
  void setSetting(const std::string& key, const Setting& value);
  /// @return false when it was not set. @throws StoreError.
  bool removeSetting(const std::string& key);
  /// @param name  what messages call the list. @throws what `importServices` throws.
  ImportReport import(const std::string& name, const std::string& content, const ImportOptions& options);
  /// Imports what was found in broadcasts. @param files  that were scanned, none where they were not read from files.
  /// @param recordings  where these are. @throws what `importScan` throws.
  ImportReport import(const std::vector<std::string>& files, const broadcast::Scan& scan, bool add,
                      const RecordingFiles& recordings = {});

  // Faults: seam::parseFault reads them from words.

  /// @return its number, by which it can be removed.
  std::uint64_t addFault(seam::Fault fault);
  /// @return false when there is none of that number.
  bool removeFault(std::uint64_t id);
  void clearFaults();
  const std::vector<seam::Fault>& faults() const { return seam::Seam::instance().faults(); }

  /// From now on the last commands are held in a history, with their calls and log messages.
  void remember(History::Bounds bounds = {});
  /// Null where nothing is held.
  const History* history() const { return history_.get(); }
  /// Makes the set what it persisted right behind a command that is held, as `restore` does.
  /// @throws std::invalid_argument when it is not; and as `restore`.
  void goBack(std::uint64_t command);

  /// True while anybody wants to know of commands.
  bool isHeard() const { return hearsSet_; }
  /// A session begins to run a command: what happens belongs to it until `tell`. @return its number, from 1 on.
  std::uint64_t begin() { return running_ = ++commands_; }
  /// The command has ended: tells feeds that want events.
  void tell(CommandRun command);
  /// Tells feeds that want acts of one.
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
  std::uint64_t revision_ = 0;  ///< at the last switch-off
  TvState before_;              ///< likewise
  std::vector<std::weak_ptr<Feed>> feeds_;
  bool hearsSet_ = false;
  bool hearsActs_ = false;
  int logLevel_ = -1;  ///< that is listened to
  bool hearsCalls_ = false;
  std::vector<std::string> complaints_;
  std::uint64_t commands_ = 0;                     ///< that sessions have begun
  std::uint64_t running_ = 0;                      ///< the one at work, 0 for none
  std::unique_ptr<History> history_;               ///< null while nothing is remembered
  std::shared_ptr<const ServiceImage> replacing_;  ///< services that are being replaced, where the history wants them
  std::vector<notify::Subscription> engines_;
  notify::Subscription set_;
  notify::Subscription services_;
  notify::Subscription log_;
};

}  // namespace virtualtv::device
