#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "notify/Listeners.h"
#include "seam/Operations.h"
#include "services/Service.h"
#include "set/Event.h"
#include "set/Interfaces.h"
#include "set/Snapshot.h"
#include "set/State.h"

namespace virtualtv {

class ServiceStore;
class Tv;

/// Where a set keeps what it keeps: its databases. Outlives the set that runs on it.
class Storage {
 public:
  /// A store in memory, gone with this object.
  Storage();
  /// The store in a state directory, which it makes and holds for this process alone.
  /// @throws StoreError when it can't be had.
  explicit Storage(const std::filesystem::path& directory);
  ~Storage();

  struct Parts;
  Parts& parts() { return *parts_; }

 private:
  std::unique_ptr<Parts> parts_;
};

/// Puts the set of the process aside, if there is one, for as long as it lives: another one can be made meanwhile, and
/// must be gone before this.
class TvAside {
 public:
  TvAside();
  TvAside(const TvAside&) = delete;
  TvAside& operator=(const TvAside&) = delete;
  ~TvAside();

 private:
  Tv* aside_;
};

/// The TV set. One a process at a time; the adapters behind the platform interfaces find it by `current`. What it is,
/// services and settings keys included, only the verbs change. A verb that changes anything persists it, raises the
/// revision and tells the watchers what changed. Used from one thread. A verb throws `StoreError` when the set can't
/// persist what it should; the set is then as it was.
class Tv {
 public:
  /// Switches the set on: loads what `storage` keeps, which for a new one is the embedded set.
  /// @param revision  where its revisions go on from. @throws StoreError when that can't be read.
  explicit Tv(Storage& storage, std::uint64_t revision = 0);
  Tv(const Tv&) = delete;
  Tv& operator=(const Tv&) = delete;
  ~Tv();

  /// The set of this process. There must be one.
  static Tv& current();

  const TvState& state() const { return state_; }
  /// Grows with each verb that changes anything.
  std::uint64_t revision() const { return revision_; }
  const ServiceStore& services() const;
  const SettingsStore& settings() const;
  /// All that the set persists.
  Snapshot snapshot() const;
  /// What the set made for those who connected to it.
  Interfaces& interfaces() { return interfaces_; }

  /// Calls `watcher` with each change, inside the verb, when it is persisted: a watcher must not call a verb, nor
  /// throw.
  notify::Subscription watch(std::function<void(const Event&)> watcher);

  /// Calls `told` when the services are about to be replaced as a whole, with all as it was; that may still fail. It
  /// must not call a verb, nor throw.
  notify::Subscription watchReplacing(std::function<void()> told);

  /// Strength of the tuner's signal for what a window shows, 0 to 255: it depends on the frequency, less what fades.
  /// Nothing when no service is on its screen.
  std::optional<int> signalStrength(WindowId window);

  // Verbs.

  /// Puts a service on a window's screen; the one before becomes its previous one, and the TV mode follows the
  /// service's antenna. @return false when there is no such service.
  bool tune(WindowId window, ServiceKey service);
  /// Shows an input in a window and, where `service` is not 0, that service. @return false when the set has no such
  /// input or no such service; nothing is changed then.
  bool switchSource(WindowId id, int source, ServiceKey service = 0);
  /// Leaves a window without a source.
  void deactivate(WindowId id);
  /// Has the secondary TV stack show the ISP source. @return false when it can't be reached.
  bool showIsp();
  /// Plugs something into an input, or out of it; windows that show the input gain or lose its picture.
  void plug(int source, bool plugged);
  void setMode(WindowId window, TvMode mode);
  /// Places a window's picture, which ends a crop. @return false, and nothing changed, for an empty rectangle.
  bool place(WindowId window, const Rect& rect);
  /// Places it where it stands when the set is switched on: the main window fills the screen.
  void placeDefault(WindowId window);
  /// Shows a part of the picture. @return false, and nothing changed, where one of the rectangles is empty.
  bool crop(WindowId window, const Crop& crop);
  /// @return false, and nothing changed, for a negative one.
  bool setOrder(WindowId window, int order);
  void mute(WindowId window, bool muted);
  /// Takes the audio track at a position of the service on a window's screen into use, and likewise a subtitle. A
  /// service comes on screen with its first audio track and without subtitles. @return false, and nothing changed,
  /// where it has no track there.
  bool selectAudio(WindowId window, int position);
  bool selectSubtitle(WindowId window, int position);
  /// The same on the secondary TV stack. @return false also while it does not show the ISP source.
  bool selectIspAudio(int position);
  bool selectIspSubtitle(int position);
  /// Puts services into a favourite group or takes them out, by their ids: all of them, or none and false where the set
  /// does not have one.
  bool setFavourites(std::uint8_t group, const std::list<std::pair<unsigned long long, bool>>& members);
  /// Takes the services of a channel list in, in place of those of the set or, to `add`, beside them. A service is the
  /// same where its id is: what the user made of it stays, and so does what a window shows and the set starts with,
  /// where that is still there. What is gone gives way to the first service of the list; the TV mode of a window
  /// follows it then. All of it or nothing.
  /// @throws std::invalid_argument when there are no services.
  ServiceChanges import(const std::vector<Service>& services, bool add);
  /// Takes all services out of the set; its windows show none then.
  void removeServices();
  /// Takes one service out. A window that shows it shows the first of the others; the set starts with that where it
  /// started with this one. @return false when there is no such service.
  bool removeService(ServiceKey service);
  /// Puts a service where another one stands in the list: it gets that one's number, and those between the two places
  /// each get the number beside theirs. @return false, and nothing is changed, when there is no such service or one of
  /// them has no number.
  bool moveService(ServiceKey service, ServiceKey place);
  /// Back to the embedded set, settings keys included.
  void reset();
  /// Puts a snapshot in place of all that the set persists; the rest is as when it is switched on. All of it or
  /// nothing. @throws std::invalid_argument when the snapshot has a service that no set can have; says why.
  void restore(const Snapshot& snapshot);
  /// Sets a settings key, for the plug-in and from outside.
  void setSetting(const std::string& key, const Setting& value);
  /// @return false when it was not set.
  bool removeSetting(const std::string& key);
  /// Edits a service: its field gets a value, or becomes absent. @return false when there is no such service; so below.
  /// @throws std::invalid_argument when the field can't hold the value; says which and why.
  bool setField(ServiceKey service, int fieldId, const FieldValue& value);
  bool setAudioTracks(ServiceKey service, const std::vector<AudioTrack>& tracks);
  bool setSubtitleTracks(ServiceKey service, const std::vector<SubtitleTrack>& tracks);
  /// Puts these groups in place of all that the service had.
  bool setFavouritesOf(ServiceKey service, const std::map<std::uint8_t, bool>& groups);
  /// Each call of a platform operation takes this long from now on; 0 for no delay.
  void setLatency(const seam::Operation& operation, std::uint64_t milliseconds);
  /// Anything else that is set from outside: `change` edits the state.
  void adjust(const std::function<void(TvState&)>& change);
  /// Moves the clock.
  void pass(std::uint64_t milliseconds);

  /// What could not be kept, a line each, since the last call; the adapters report here what they can't answer.
  std::vector<std::string> takeComplaints();
  void complain(std::string line);

 private:
  void commit(TvState next, const char* lastService = nullptr);
  bool follow(WindowState& window, ServiceKey service);
  void show(WindowId window, const Plane& plane);
  ServiceChanges changeList(const char* what, const std::function<ServiceChanges(ServiceStore&, TvState&)>& change);
  bool edit(ServiceKey service, const std::function<bool(ServiceStore&)>& write);
  void raise(std::vector<Change> changes) noexcept;

  Storage& storage_;
  Interfaces interfaces_;
  TvState state_;
  std::uint64_t revision_;
  notify::Listeners<Event> watchers_;
  notify::Listeners<> replacing_;
  std::vector<std::string> complaints_;
};

}  // namespace virtualtv
