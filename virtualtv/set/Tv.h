// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
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
#include "set/Storage.h"

namespace virtualtv {

class ServiceStore;
class Tv;

/// Puts the set of the process aside, if there is one, for the lifetime of this object. Meanwhile another set can be
/// created, which must be destroyed before this object.
class TvAside {
 public:
  TvAside();
  TvAside(const TvAside&) = delete;
  TvAside& operator=(const TvAside&) = delete;
  ~TvAside();

 private:
  Tv* aside_;
};

/// The TV set. A process has one set at a time, which the adapters behind the platform interfaces find through
/// `current`. Only the verbs change its state, services and settings keys included. A verb that changes anything
/// persists the change, increments the revision and notifies the listeners. What is not persisted, such as the planes
/// and the clock, has its default when the set is switched on. A verb throws `StoreError` when the set can't persist
/// the change; nothing is changed then. Used from one thread.
class Tv {
 public:
  /// Switches the set on: loads the content of `storage`. A new storage contains the embedded set. @param revision  the
  /// revision to continue from. @throws StoreError when the storage can't be read.
  explicit Tv(Storage& storage, std::uint64_t revision = 0);
  Tv(const Tv&) = delete;
  Tv& operator=(const Tv&) = delete;
  ~Tv();

  /// The set of this process. It must exist.
  static Tv& current();

  const TvState& state() const { return state_; }
  /// Grows with each verb that changes anything.
  std::uint64_t revision() const { return revision_; }
  const ServiceStore& services() const;
  const SettingsStore& settings() const;
  /// Everything that the set persists.
  Snapshot snapshot() const;
  /// The interfaces that the set created for those who connected to it.
  Interfaces& interfaces() { return interfaces_; }

  /// Calls `listener` with each change after it was persisted. The call is made inside the verb, so the listener must
  /// neither call a verb nor throw.
  notify::Subscription onEvent(std::function<void(const Event&)> listener);

  /// Calls `told` before all services are replaced, while everything is still unchanged. The replacement may still
  /// fail. `told` must neither call a verb nor throw.
  notify::Subscription onReplacing(std::function<void()> told);

  /// Strength of the tuner's signal for the service on a window's screen, 0 to 255: a value derived from its frequency,
  /// minus the attenuation. Returns nothing when there is no service.
  std::optional<int> signalStrength(WindowId window);

  // Verbs.

  /// Puts a service on a window's screen. The service there becomes the previous one, and the TV mode switches to the
  /// antenna of the new one. @return false when there is no such service.
  bool tune(WindowId window, ServiceKey service);
  /// Shows an input in a window, and `service` unless it is 0. @return false, and nothing changed, when the set has no
  /// such input or no such service.
  bool switchSource(WindowId id, int source, ServiceKey service = 0);
  /// Leaves a window without a source.
  void deactivate(WindowId id);
  /// Makes the secondary TV stack show the ISP source. @return false when the stack can't be reached.
  bool showIsp();
  /// Plugs something into an input, or unplugs it. Windows that show the input gain or lose its picture.
  void plug(int source, bool plugged);
  void setMode(WindowId window, TvMode mode);
  /// Places a window's picture and removes its crop. @return false, and nothing changed, for an empty rectangle.
  bool place(WindowId window, const Rect& rect);
  /// Moves a window's picture to its default place and removes its crop. The main window then fills the screen.
  void placeDefault(WindowId window);
  /// Shows a part of the picture. @return false, and nothing changed, when one of the rectangles is empty.
  bool crop(WindowId window, const Crop& crop);
  /// @return false, and nothing changed, for a negative order.
  bool setOrder(WindowId window, int order);
  void mute(WindowId window, bool muted);
  /// Selects the audio or subtitle track at a position, for the service on a window's screen. A newly shown service
  /// starts with its first audio track and without subtitles. @return false, and nothing changed, when the service has
  /// no track at the position.
  bool selectAudio(WindowId window, int position);
  bool selectSubtitle(WindowId window, int position);
  /// The same on the secondary TV stack. @return false also while the stack does not show the ISP source.
  bool selectIspAudio(int position);
  bool selectIspSubtitle(int position);
  /// Adds services to a favourite group or removes them, by their ids. @return false, and nothing changed, when the set
  /// lacks one of the services.
  bool setFavourites(std::uint8_t group, const std::list<std::pair<unsigned long long, bool>>& members);
  /// Imports the services of a channel list: in place of those of the set or, with `add`, in addition to them. A listed
  /// service with the id of a service of the set updates that service and preserves the user's edits. Windows and the
  /// start service keep their service if it still exists. Otherwise the main window and the start service get the first
  /// service of the list, and the picture-in-picture window gets none; the TV mode of such a window becomes that of the
  /// first service. Either everything is imported or nothing.
  /// @throws std::invalid_argument when there are no services.
  ServiceChanges import(const std::vector<Service>& services, bool add);
  /// Removes all services of the set. Its windows then show none.
  void removeServices();
  /// Removes one service. The first of the other services replaces it in windows that show it, and as the start
  /// service. @return false when there is no such service.
  bool removeService(ServiceKey service);
  /// Moves a service to the place of another service in the list. It takes that service's number, and each service
  /// between the two places takes the number of its neighbour. @return false, and nothing changed, when one of the two
  /// does not exist, or when a service that would be renumbered has no number.
  bool moveService(ServiceKey service, ServiceKey place);
  /// Resets to the embedded set, settings keys included.
  void reset();
  /// Replaces everything that the set persists with a snapshot. The rest of the state is that of a set just switched
  /// on. Either everything is restored or nothing. @throws std::invalid_argument, with the reason, when the snapshot
  /// has a service that no set can have.
  void restore(const Snapshot& snapshot);
  /// Sets a settings key, for the plug-in or from outside.
  void setSetting(const std::string& key, const Setting& value);
  /// @return false when the key was not set.
  bool removeSetting(const std::string& key);
  /// Edits a service: sets one of its fields, or makes it absent. @return false when there is no such service; the
  /// edits below return the same. @throws std::invalid_argument when the field can't hold the value. The message says
  /// which field and why.
  bool setField(ServiceKey service, int fieldId, const FieldValue& value);
  bool setAudioTracks(ServiceKey service, const std::vector<AudioTrack>& tracks);
  bool setSubtitleTracks(ServiceKey service, const std::vector<SubtitleTrack>& tracks);
  /// Replaces all favourite groups of the service.
  bool setFavouritesOf(ServiceKey service, const std::map<std::uint8_t, bool>& groups);
  /// Delays each call of a platform operation by this time from now on; 0 for no delay.
  void setLatency(const seam::Operation& operation, std::uint64_t milliseconds);
  /// Changes anything else from outside. `change` edits a copy of the state, which then replaces the state.
  void adjust(const std::function<void(TvState&)>& change);
  /// Advances the clock, at most to its greatest value.
  void advance(std::uint64_t milliseconds);

  /// Complaints since the last call, one line each, about what the set could not persist or read. The adapters report
  /// here what they can't return.
  std::vector<std::string> takeComplaints();
  void complain(std::string line);

 private:
  void commit(TvState next, const char* lastService = nullptr);
  bool follow(WindowState& window, ServiceKey service);
  void show(WindowId window, const Plane& plane);
  ServiceChanges changeList(const char* what, std::optional<ListEdit> edit,
                            const std::function<ServiceChanges(ServiceStore&, TvState&)>& change);
  bool edit(ServiceKey service, const std::function<bool(ServiceStore&)>& write);
  void raise(std::vector<Change> changes) noexcept;

  Storage& storage_;
  Interfaces interfaces_;
  TvState state_;
  std::uint64_t revision_;
  notify::Listeners<Event> listeners_;
  notify::Listeners<> replacing_;
  std::vector<std::string> complaints_;
};

}  // namespace virtualtv
